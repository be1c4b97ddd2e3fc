#pragma once

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

/// The text in the code page, with numeric references for what the code page lacks. Raises a
/// failure that names the character for one that XML cannot hold, and for a code page that is not
/// known. 1251 and 65001, which is UTF-8, are known everywhere.
QByteArray XmlBytes(const QString &aText, qint32 aCodePage);

}  // namespace Vk_DocQuery
