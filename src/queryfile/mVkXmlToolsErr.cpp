#include "queryfile/mVkXmlToolsErr.h"

#include <charconv>
#include <optional>

#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mVkXmlToolsErr";

/// A value that cannot stand in a file.
const QString theMissing = QStringLiteral("\x01");

constexpr int theYearsOfThisCentury = 30;  // years below are 20xx, those from here to 99 are 19xx

std::optional<qint32> PlainLong(const QByteArray &aText) {
    qint32 number = 0;
    const char *end = aText.constData() + aText.size();
    const auto result = std::from_chars(aText.constData(), end, number);
    if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
    return number;
}

qint16 Narrowed(qint32 aNumber) {
    if (aNumber < std::numeric_limits<qint16>::min() ||
        aNumber > std::numeric_limits<qint16>::max())
        throw Failure(ArithmeticOverflow, QString(), QStringLiteral("Переполнение."));
    return static_cast<qint16>(aNumber);
}

/// The date with the usual roll-over: day 32 is a day of the next month, month 13 is January of the
/// next year.
QDate RolledDate(qint16 aYear, qint16 aMonth, qint16 aDay) {
    const qint32 months = aMonth - 1;
    const QDate first(aYear + months / 12, months % 12 + 1, 1);
    const QDate date = first.addDays(aDay - 1);
    if (aYear < 100 || !date.isValid() || date.year() > 9999)
        throw Failure(InvalidArgument, QString(), QStringLiteral("Такой даты нет."));
    return date;
}

bool IsWithoutDate(const QString &aText) {
    return aText.isEmpty() || aText == QStringLiteral(".  .") ||
           aText == QStringLiteral(".  .   0") || aText == QStringLiteral(".  . 0");
}

}  // namespace

QString XmlGetStringAttributeDef(const XmlNode &aNode, const char *aName,
                                 const QString &aDefault) try {
    const QByteArray value = aNode.Attribute(aName);
    return value.isNull() ? aDefault : QString::fromUtf8(value);
} catch (...) {
    RaiseErrorUp(theModule, "XmlGetStringAttributeDef");
}

qint32 XmlGetLongAttributeDef(const XmlNode &aNode, const char *aName, qint32 aDefault) try {
    const QByteArray value = aNode.Attribute(aName);
    if (value.isEmpty()) return aDefault;
    if (const auto number = PlainLong(value)) return *number;  // as the writer writes them
    return VarToLongDef(QString::fromUtf8(value), aDefault);
} catch (...) {
    RaiseErrorUp(theModule, "XmlGetLongAttributeDef");
}

bool XmlGetBooleanAttributeDef(const XmlNode &aNode, const char *aName, bool aDefault) try {
    const QByteArray text = aNode.Attribute(aName).trimmed().toLower();
    if (text == "yes" || text == "1" || text == "true") return true;
    if (text == "no" || text == "0" || text == "false") return false;
    return aDefault;
} catch (...) {
    RaiseErrorUp(theModule, "XmlGetBooleanAttributeDef");
}

LooseValue RussStringToDate(const QString &aText, const LooseValue &aDefault, bool &rFailed) try {
    const QString text = aText.trimmed();
    rFailed = false;
    if (IsWithoutDate(text)) return aDefault;

    rFailed = true;
    const qsizetype firstDot = text.indexOf(u'.');
    const qsizetype secondDot = firstDot < 0 ? -1 : text.indexOf(u'.', firstDot + 1);
    if (secondDot < 0) return aDefault;

    std::optional<QDate> date;
    IgnoringFailures([&] {
        const qint32 day = ToLong(text.left(firstDot));
        const qint32 month = ToLong(text.mid(firstDot + 1, secondDot - firstDot - 1));
        qint32 year = ToLong(text.mid(secondDot + 1));
        if (day > 0 && month > 0) {
            if (year < 100) year += year < theYearsOfThisCentury ? 2000 : 1900;
            date = RolledDate(Narrowed(year), Narrowed(month), Narrowed(day));
        }
        rFailed = false;
    });
    return date ? LooseValue(*date) : aDefault;
} catch (...) {
    RaiseErrorUp(theModule, "RussStringToDate");
}

LooseValue XmlGetRussDateAttributeDef(const XmlNode &aNode, const char *aName,
                                      const LooseValue &aDefault) try {
    const QString text = XmlGetStringAttributeDef(aNode, aName, theMissing);
    if (text == theMissing) return aDefault;
    if (text.isEmpty()) return Null();
    bool failed = false;  // an unreadable date is the same as a missing one
    return RussStringToDate(text, aDefault, failed);
} catch (...) {
    RaiseErrorUp(theModule, "XmlGetRussDateAttributeDef");
}

QString XmlExplainParseError(const XmlDocument &aDocument) try {
    const XmlParseError &error = aDocument.ParseError();
    return QStringLiteral("   Reason: ") + error.Reason + QStringLiteral("\r\n   Source: ") +
           error.SourceText + QStringLiteral("\r\n   Line: ") + QString::number(error.Line);
} catch (...) {
    RaiseErrorUp(theModule, "XmlExplainParseError");
}

}  // namespace Vk_DocQuery
