#pragma once

#include <QString>

namespace Vk_Records {

/// Writes the tables of an office into files of the folder, which is made if it is missing: UTF-8
/// with a byte order mark, semicolons, CRLF, rows in the order of their identities. All are of one
/// moment. Files that are there are replaced when all new ones are whole on the disk. Raises
/// Vk_DocQuery::Failure.
void ExportOffice(const QString &aAddress, const QString &aFolder);

}  // namespace Vk_Records
