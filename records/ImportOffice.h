#pragma once

#include <QString>

namespace Vk_Records {

/// How many rows came out of a file.
struct FileRows {
    QString Name;
    qsizetype Rows = 0;
};

/// Makes a new database of the files in the folder, in one transaction. Raises
/// Vk_DocQuery::Failure: with every line that is wrong, for a database that is there already, and
/// what a database gives rise to. Nothing is entered then.
QList<FileRows> ImportOffice(const QString &aAddress, const QString &aFolder);

}  // namespace Vk_Records
