#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTemporaryDir>

namespace VkTests {

/// A folder with the files of a small office that can be imported:
///   persons   1 organisation; 2 its branch; 3 private person
///   streams   11 of 1, 12 of 3
///   forms     21 with version 31, one name, one period, one category
class ImportFolder {
public:
    ImportFolder();

    QString Path() const { return theFolder.path(); }
    /// Puts a file there, or another in its place.
    void Write(const QString &aName, const QByteArray &aBytes) const;
    void Remove(const QString &aName) const;
    /// A file as it stands there at first.
    static QByteArray First(const QString &aName);

private:
    QTemporaryDir theFolder;
};

/// The files of a folder by name.
QMap<QString, QByteArray> FilesIn(const QString &aFolder);

}  // namespace VkTests
