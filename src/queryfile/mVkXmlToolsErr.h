#pragma once

#include <Vk_DocQuery/LooseValue.h>

#include "queryfile/XmlNode.h"

namespace Vk_DocQuery {

/// Attributes with a default in hand: a missing attribute or an unreadable value is no failure.

/// An attribute that is there and empty gives an empty text, not the default.
QString XmlGetStringAttributeDef(const XmlNode &aNode, const char *aName, const QString &aDefault);
qint32 XmlGetLongAttributeDef(const XmlNode &aNode, const char *aName, qint32 aDefault);
/// Takes yes, no, 1, 0, true and false in any case, with blanks around.
bool XmlGetBooleanAttributeDef(const XmlNode &aNode, const char *aName, bool aDefault);
/// A date as day, month and year parted by dots. The attribute that is there and empty gives null,
/// whatever the default is; an unreadable date gives the default.
LooseValue XmlGetRussDateAttributeDef(const XmlNode &aNode, const char *aName,
                                      const LooseValue &aDefault);

/// Reason, source text and line of the error that stopped the parser, for the user.
QString XmlExplainParseError(const XmlDocument &aDocument);

}  // namespace Vk_DocQuery
