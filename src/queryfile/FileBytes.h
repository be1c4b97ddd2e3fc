#pragma once

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

/// Reads a whole file, if it is within the bound of a file, into rBytes. A folder, a pipe or a
/// device is not opened at all, since opening a pipe may wait for ever. Returns why it could not,
/// or an empty text.
QString ReadFileBytes(const QString &aFileName, QByteArray &rBytes);

}  // namespace Vk_DocQuery
