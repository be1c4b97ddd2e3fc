#include "queryfile/mVkXmlToolsErr.h"

#include <charconv>
#include <optional>

#include <QStringDecoder>

#include "foundation/mErrorHandling.h"
#include "foundation/RussDate.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mVkXmlToolsErr";

/// A value that cannot stand in a file.
const QString theMissing = QStringLiteral("\x01");

std::optional<qint32> PlainLong(const QByteArray &aText) {
    qint32 number = 0;
    const char *end = aText.constData() + aText.size();
    const auto result = std::from_chars(aText.constData(), end, number);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return number;
}

/// As it stands there: what looks like a byte order mark is a character of the value.
QString TextOf(const QByteArray &aUtf8) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(aUtf8);
}

}  // namespace

QString XmlGetStringAttributeDef(const XmlNode &aNode, const char *aName,
                                 const QString &aDefault) try {
    const QByteArray value = aNode.Attribute(aName);
    return value.isNull() ? aDefault : TextOf(value);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

qint32 XmlGetLongAttributeDef(const XmlNode &aNode, const char *aName, qint32 aDefault) try {
    const QByteArray value = aNode.Attribute(aName);
    if (value.isEmpty()) return aDefault;
    if (const auto number = PlainLong(value)) return *number;  // as the writer writes them
    qint32 result = aDefault;
    IgnoringBadValues([&] { result = ToLong(TextOf(value)); });
    return result;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

bool XmlGetBooleanAttributeDef(const XmlNode &aNode, const char *aName, bool aDefault) try {
    const QByteArray text = aNode.Attribute(aName).trimmed().toLower();
    if (text == "yes" || text == "1" || text == "true") return true;
    if (text == "no" || text == "0" || text == "false") return false;
    return aDefault;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

LooseValue XmlGetRussDateAttributeDef(const XmlNode &aNode, const char *aName,
                                      const LooseValue &aDefault) try {
    const QString text = XmlGetStringAttributeDef(aNode, aName, theMissing);
    if (text == theMissing) return aDefault;
    if (text.isEmpty()) return Null();
    bool failed = false;  // an unreadable date is the same as a missing one
    return RussStringToDate(text, aDefault, failed);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString XmlExplainParseError(const XmlDocument &aDocument) try {
    const XmlParseError &error = aDocument.ParseError();
    return QStringLiteral("   Reason: ") + error.Reason + QStringLiteral("\r\n   Source: ") +
           error.SourceText + QStringLiteral("\r\n   Line: ") + QString::number(error.Line);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
