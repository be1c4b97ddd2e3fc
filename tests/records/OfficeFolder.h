#pragma once

#include <memory>

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>

#include "support/RaisedBy.h"

class QSqlDatabase;
class QSqlQuery;

namespace VkTests {

/// A place for databases that is gone at the end: a folder of SQLite files, or a server of its own.
class OfficeFolder {
public:
    OfficeFolder() = default;
    virtual ~OfficeFolder();
    Q_DISABLE_COPY_MOVE(OfficeFolder)

    /// Why nothing can be done here; empty if it can.
    virtual QString Complaint() const { return QString(); }
    /// The address of a database that holds nothing yet.
    virtual QString NewAddress() = 0;
    /// How texts name that database.
    virtual QString Shown(const QString &aAddress) const = 0;
    /// What a server has written of its statements; a folder has none.
    virtual QString Log() const { return QString(); }
    /// Runs statements past the library and gives the first value of the last one.
    QVariant Tamper(const QString &aAddress, const QStringList &aStatements) const;
    /// Runs a statement and takes it back; false if the database refuses it.
    bool Accepts(const QString &aAddress, const QString &aStatement) const;

protected:
    virtual void Locate(QSqlDatabase &rDatabase, const QString &aAddress) const = 0;
    bool CanConnect(const QString &aAddress) const;

private:
    void WithConnection(const QString &aAddress,
                        const std::function<void(QSqlQuery &)> &aBody) const;
};

class SqliteFolder final : public OfficeFolder {
public:
    QString NewAddress() override;
    QString Shown(const QString &aAddress) const override;
    QString Path(const QString &aName) const { return theFolder.filePath(aName); }

protected:
    void Locate(QSqlDatabase &rDatabase, const QString &aAddress) const override;

private:
    QTemporaryDir theFolder;
    int theCount = 0;
};

/// A PostgreSQL server on a socket in a folder of its own; it cannot be reached over the network.
class ServerFolder final : public OfficeFolder {
public:
    enum class Language { English, Russian };

    explicit ServerFolder(Language aLanguage = Language::English);
    ~ServerFolder() override;
    QString Complaint() const override { return theComplaint; }
    QString NewAddress() override;
    QString Shown(const QString &aAddress) const override;
    QString Log() const override;
    QString Address(const QString &aUser, const QString &aDatabase) const;
    void Start();
    void Stop();

protected:
    void Locate(QSqlDatabase &rDatabase, const QString &aAddress) const override;

private:
    QTemporaryDir theFolder;
    Language theLanguage;
    QString theComplaint;
    QProcess theServer;
    int theCount = 0;
};

/// The places of one test class, each made on first use.
class OfficeFolders {
public:
    OfficeFolders() = default;
    Q_DISABLE_COPY_MOVE(OfficeFolders)
    /// aKind is "sqlite", "sqlite through Qt", whose rows are read as where Qt's driver has a copy
    /// of SQLite of its own, or "postgresql".
    OfficeFolder &Of(const QString &aKind);
    ~OfficeFolders();
    /// Data rows for tests that hold on both databases.
    static void AddKinds();
    /// And on each road on which their rows are read.
    static void AddRoads();

private:
    std::unique_ptr<SqliteFolder> theSqlite;
    std::unique_ptr<ServerFolder> theServer;
};

/// The line behind a text that says what the database itself said.
inline QString Said(const QString &aLine) {
    return QStringLiteral("\r\nСообщение базы данных: ") + aLine;
}

/// An object of the class that is registered under the name.
template <class Class>
std::shared_ptr<Class> Made(const char16_t *aName) {
    return std::dynamic_pointer_cast<Class>(
        Vk_DocQuery::ClassRegistry::Create(QString::fromUtf16(aName)));
}

}  // namespace VkTests
