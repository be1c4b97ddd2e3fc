#pragma once

#include <variant>

#include <QDate>
#include <QString>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// The value that was never set. It converts to 0, to false and to an empty text.
struct Empty {
    /// All are equal.
    friend constexpr bool operator==(Empty, Empty) noexcept { return true; }
};

/// The value that is known to be missing, as a database column without a value. It converts to
/// nothing.
struct Null {
    /// All are equal.
    friend constexpr bool operator==(Null, Null) noexcept { return true; }
};

/// A value as it comes from a recordset field or from a record: empty (the state on creation),
/// null, boolean, 32-bit integer, double, calendar date or text.
using LooseValue = std::variant<Empty, Null, bool, qint32, double, QDate, QString>;

/// An invalid date, which is what Qt has for no date, counts as empty.
inline bool IsEmpty(const LooseValue &aValue) noexcept {
    const QDate *date = std::get_if<QDate>(&aValue);
    return date ? !date->isValid() : std::holds_alternative<Empty>(aValue);
}
/// Whether the value is known to be missing.
inline bool IsNull(const LooseValue &aValue) noexcept {
    return std::holds_alternative<Null>(aValue);
}
/// Whether the value is a date that there is.
inline bool IsDate(const LooseValue &aValue) noexcept {
    const QDate *date = std::get_if<QDate>(&aValue);
    return date && date->isValid();
}

/// The date of day number 0, 30 December 1899: what a conversion to a date gives when there is
/// none.
VK_DOCQUERY_EXPORT QDate ZeroDate() noexcept;

/// A number in general form: the shortest text that reads back as the same double, with a decimal
/// point where it has a fraction and without group separators; an exponent only from 1E+15 upwards
/// and below 0.0001.
VK_DOCQUERY_EXPORT QString GeneralNumberText(double aNumber);

/// The general conversions. Each raises TypeMismatch for a value that has no such form (null
/// always) and ArithmeticOverflow for a number out of range. An invalid date converts as empty
/// does.
///
/// To text: a date as "DD.MM.YYYY", a boolean as "True" or "False", a number in general form, empty
/// as an empty text.
VK_DOCQUERY_EXPORT QString ToText(const LooseValue &aValue);
/// To a 32-bit integer: fractions round to the nearest, an exact half to the even one; true is -1,
/// empty is 0; a text must hold a number and nothing else but blanks around it.
VK_DOCQUERY_EXPORT qint32 ToLong(const LooseValue &aValue);
/// To a date: a number counts days from ZeroDate; a text is day, month and year parted by dots;
/// empty gives ZeroDate.
VK_DOCQUERY_EXPORT QDate ToDate(const LooseValue &aValue);

}  // namespace Vk_DocQuery
