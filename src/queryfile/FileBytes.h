#pragma once

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

/// Reads a whole file of no more than aLargest bytes into rBytes. A folder, a pipe or a device is
/// not opened at all, since opening a pipe may wait for ever. Returns why it could not, or an empty
/// text.
QString ReadFileBytes(const QString &aFileName, qint64 aLargest, QByteArray &rBytes);

/// The bytes of an XML text as UTF-8, if its character set is one that need not be left to the
/// parser: a byte order mark, which counts more than the declaration, or a declaration of
/// windows-1251. Otherwise the bytes as they are and rDecoded false.
QByteArray DecodedXmlBytes(const QByteArray &aBytes, bool &rDecoded);

/// The line of the first start tag with more than aMost attributes; 0 if there is none. The parser
/// compares every attribute of an element with all the others before it tells of any.
qint32 LineWithMoreAttributes(const QByteArray &aBytes, qint32 aMost);

}  // namespace Vk_DocQuery
