#include "ExportOffice.h"

#include <cerrno>
#include <memory>
#include <vector>

#include <QtGlobal>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include <QDir>
#include <QSaveFile>

#include <Vk_Records/Database.h>

#include "Connection.h"
#include "DelimitedText.h"
#include "ImportFiles.h"
#include "Schema.h"
#include "TableFiles.h"

namespace Vk_Records {

namespace {

constexpr char theMark[] = "\xEF\xBB\xBF";
constexpr char theSeparator[] = ";";
constexpr char theLineEnd[] = "\r\n";

[[noreturn]] void RaiseNotWritten(const QString &aText) {
    throw Vk_DocQuery::Failure(Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"), aText);
}

/// A file that takes the place of the one with its name at last, or is gone.
class NewFile {
public:
    NewFile(const QString &aFolder, const TableFile &aFacts)
        : theFile(QDir(aFolder).filePath(NameOf(aFacts))) {
        if (!theFile.open(QIODevice::WriteOnly)) RaiseFailure();
        Write(theMark);
    }

    static QString NameOf(const TableFile &aFacts) {
        return QLatin1String(aFacts.Stem) + QStringLiteral(".csv");
    }

    void Write(const QByteArray &aBytes) {
        if (theFile.write(aBytes) != aBytes.size()) RaiseFailure();
    }
    /// What a full disk would refuse later it refuses here.
    void Settle() {
        if (!theFile.flush()) RaiseFailure();
#ifdef Q_OS_UNIX
        if (fsync(theFile.handle()) != 0) RaiseFailure();
#endif
    }
    void TakePlace() {
        if (theFile.commit()) return;
        RaiseNotWritten(QStringLiteral("Файл \"%1\" не заменен новым. Проверьте права на папку и "
                                       "диск и повторите: остальные файлы могут быть уже новыми.")
                            .arg(theFile.fileName()));
    }

private:
    [[noreturn]] void RaiseFailure() const {
        const bool isFull = theFile.error() == QFileDevice::ResourceError || errno == ENOSPC;
        RaiseNotWritten(
            QStringLiteral("Файл \"%1\" не записан: %2 Прежние файлы остались как были.")
                .arg(theFile.fileName(), isFull
                                             ? QStringLiteral("на диске не осталось места.")
                                             : QStringLiteral("проверьте права на папку и диск.")));
    }

    QSaveFile theFile;
};

/// Other programs may write meanwhile; what is read is of the moment of the first statement.
class ReadTransaction {
public:
    explicit ReadTransaction(Connection &aConnection) : theConnection(aConnection) {
        theConnection.Run(theConnection.Where().IsServer
                              ? QStringLiteral("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY")
                              : QStringLiteral("BEGIN"));
    }
    ~ReadTransaction() { QSqlQuery(QStringLiteral("ROLLBACK"), theConnection.Database()); }
    Q_DISABLE_COPY_MOVE(ReadTransaction)

private:
    Connection &theConnection;
};

QString Request(const TableFile &aFacts) {
    QStringList columns;
    QStringList keys;
    for (const FileColumn &column : aFacts.Columns) {
        const auto name = QString::fromLatin1(column.Name);
        columns << (column.Kind == CellKind::Day ? QStringLiteral("CAST(%1 AS TEXT)").arg(name)
                                                 : name);
        if (static_cast<std::size_t>(keys.size()) < aFacts.KeyColumns) keys << name;
    }
    return QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
        .arg(columns.join(QStringLiteral(", ")), QLatin1String(aFacts.Table),
             keys.join(QStringLiteral(", ")));
}

void WriteRows(Connection &aConnection, const TableFile &aFacts, NewFile &rFile) {
    rFile.Write(
        ColumnList(aFacts).replace(QStringLiteral(", "), QLatin1String(theSeparator)).toUtf8() +
        theLineEnd);
    QSqlQuery query = aConnection.Run(Request(aFacts));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) {
        QByteArray line;
        for (std::size_t i = 0; i < aFacts.Columns.size(); ++i) {
            if (i > 0) line += theSeparator;
            const auto column = static_cast<int>(i);
            // A number that is null reads as 0 from a server.
            if (!row.isNull(column)) line += CellOf(row.value(column).toString());
        }
        rFile.Write(line + theLineEnd);
    });
}

/// A file under another name would stand beside ours, and nobody could tell which one counts.
void CheckNames(const QString &aFolder) {
    for (const TableFile &facts : TableFiles()) {
        for (const QString &name : NamesOfFiles(aFolder, facts)) {
            if (name == NewFile::NameOf(facts)) continue;
            RaiseNotWritten(
                QStringLiteral("В папке \"%1\" уже есть файл \"%2\". Укажите другую папку или "
                               "уберите его.")
                    .arg(aFolder, name));
        }
    }
}

void MakeFolder(const QString &aFolder) {
    if (QFileInfo(aFolder).isDir() || QDir().mkdir(aFolder)) return;
    RaiseNotWritten(QStringLiteral("Папки \"%1\" нет, и создать ее не удалось. Проверьте имя папки "
                                   "и права.")
                        .arg(aFolder));
}

}  // namespace

void ExportOffice(const QString &aAddress, const QString &aFolder) {
    Connection connection(AddressOf(aAddress), MissingFile::IsNoOffice);
    RequireOffice(connection);
    CheckOffice(connection);
    MakeFolder(aFolder);
    CheckNames(aFolder);
    std::vector<std::unique_ptr<NewFile>> files;
    const ReadTransaction transaction(connection);
    for (const TableFile &facts : TableFiles()) {
        files.push_back(std::make_unique<NewFile>(aFolder, facts));
        WriteRows(connection, facts, *files.back());
    }
    for (const auto &file : files) file->Settle();
    for (const auto &file : files) file->TakePlace();
}

}  // namespace Vk_Records
