#pragma once

#include "queryfile/XmlNode.h"
#include "queryfile/XmlTree.h"

namespace Vk_DocQuery {

/// Fills an empty tree from a text in UTF-8. False leaves the cause in rError.
bool ParseXml(const QByteArray &aUtf8, XmlTree &rTree, XmlParseError &rError);

/// The line of the text at that place, or what of it lies near; and its number.
QString LineAt(QByteArrayView aUtf8, qsizetype aPlace);
qint32 LineNumberAt(QByteArrayView aUtf8, qsizetype aPlace);

}  // namespace Vk_DocQuery
