#include "foundation/RussDate.h"

#include <limits>
#include <optional>

#include "foundation/CheckedArithmetic.h"
#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mVkXmlToolsErr";  // chains know the procedure by its older place
constexpr int theYearsOfThisCentury = 30;  // years below are 20xx, those from here to 99 are 19xx

qint16 Narrowed(qint32 aNumber) {
    if (aNumber < std::numeric_limits<qint16>::min() ||
        aNumber > std::numeric_limits<qint16>::max())
        RaiseOverflow();
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

LooseValue RussStringToDate(const QString &aText, const LooseValue &aDefault, bool &rFailed) try {
    const QString text = aText.trimmed();
    rFailed = false;
    if (IsWithoutDate(text)) return aDefault;

    rFailed = true;
    const qsizetype firstDot = text.indexOf(u'.');
    const qsizetype secondDot = firstDot < 0 ? -1 : text.indexOf(u'.', firstDot + 1);
    if (secondDot < 0) return aDefault;

    std::optional<QDate> date;
    IgnoringBadValues([&] {
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
    RaiseErrorUp(theModule, __func__);
}

LooseValue DateOfField(const LooseValue &aValue) {
    const QString *text = std::get_if<QString>(&aValue);
    if (!text) return aValue;
    bool failed = false;
    return RussStringToDate(*text, Empty(), failed);
}

}  // namespace Vk_DocQuery
