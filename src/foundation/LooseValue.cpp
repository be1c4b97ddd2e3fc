#include <charconv>
#include <cmath>
#include <limits>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/LooseValue.h>

#include "foundation/CheckedArithmetic.h"

namespace Vk_DocQuery {

namespace {

[[noreturn]] void RaiseMismatch() {
    throw Failure(TypeMismatch, QString(), QStringLiteral("Несоответствие типа."));
}

template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

qint32 RoundToLong(double aNumber) {
    if (std::isnan(aNumber)) RaiseMismatch();
    const double rounded = std::nearbyint(aNumber);  // an exact half goes to the even neighbour
    if (rounded < std::numeric_limits<qint32>::min() ||
        rounded > std::numeric_limits<qint32>::max())
        RaiseOverflow();
    return static_cast<qint32>(rounded);
}

double NumberOfText(const QString &aText) {
    // Only digits, a sign, a point and an exponent make a number here: "inf" and "nan" do not.
    const QString text = aText.trimmed();
    for (const QChar character : text) {
        if (!QStringLiteral("0123456789+-.eE").contains(character)) RaiseMismatch();
    }
    bool good = false;
    const double number = text.toDouble(&good);
    if (!good) RaiseMismatch();
    return number;
}

QDate DateOfDays(double aDays) {
    const double days = std::trunc(aDays);
    if (!(days >= -657434 && days <= 2958465)) RaiseMismatch();  // years 100 to 9999
    return ZeroDate().addDays(static_cast<qint64>(days));
}

QDate DateOfText(const QString &aText) {
    const QDate date = QDate::fromString(aText.trimmed(), QStringLiteral("d.M.yyyy"));
    if (!date.isValid()) RaiseMismatch();
    return date;
}

QString TextOfDate(QDate aDate) {
    if (!aDate.isValid()) return QString();
    return QStringLiteral("%1.%2.%3")
        .arg(aDate.day(), 2, 10, QLatin1Char('0'))
        .arg(aDate.month(), 2, 10, QLatin1Char('0'))
        .arg(aDate.year(), 4, 10, QLatin1Char('0'));
}

}  // namespace

QDate ZeroDate() noexcept {
    return QDate(1899, 12, 30);
}

QString GeneralNumberText(double aNumber) {
    const double size = std::fabs(aNumber);
    if (size < 1e15 && aNumber == std::trunc(aNumber))
        return QString::number(static_cast<qint64>(aNumber));
    char buffer[64];
    const bool plain = size >= 1e-4 && size < 1e15;
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, aNumber,
                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    return QString::fromLatin1(buffer, end.ptr - buffer).toUpper();
}

QString ToText(const LooseValue &aValue) {
    return std::visit(
        Overloaded{
            [](Empty) { return QString(); }, [](Null) -> QString { RaiseMismatch(); },
            [](bool aTrue) { return aTrue ? QStringLiteral("True") : QStringLiteral("False"); },
            [](qint32 aNumber) { return QString::number(aNumber); },
            [](double aNumber) { return GeneralNumberText(aNumber); },
            [](QDate aDate) { return TextOfDate(aDate); },
            [](const QString &aText) { return aText; }},
        aValue);
}

qint32 ToLong(const LooseValue &aValue) {
    return std::visit(
        Overloaded{[](Empty) { return 0; }, [](Null) -> qint32 { RaiseMismatch(); },
                   [](bool aTrue) { return aTrue ? -1 : 0; },
                   [](qint32 aNumber) { return aNumber; },
                   [](double aNumber) { return RoundToLong(aNumber); },
                   [](QDate aDate) -> qint32 {
                       return RoundToLong(static_cast<double>(ZeroDate().daysTo(aDate)));
                   },
                   [](const QString &aText) { return RoundToLong(NumberOfText(aText)); }},
        aValue);
}

QDate ToDate(const LooseValue &aValue) {
    return std::visit(
        Overloaded{[](Empty) { return ZeroDate(); }, [](Null) -> QDate { RaiseMismatch(); },
                   [](bool aTrue) { return DateOfDays(aTrue ? -1 : 0); },
                   [](qint32 aNumber) { return DateOfDays(aNumber); },
                   [](double aNumber) { return DateOfDays(aNumber); },
                   [](QDate aDate) { return aDate.isValid() ? aDate : ZeroDate(); },
                   [](const QString &aText) { return DateOfText(aText); }},
        aValue);
}

}  // namespace Vk_DocQuery
