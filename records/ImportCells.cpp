#include "ImportCells.h"

#include <algorithm>
#include <charconv>

namespace Vk_Records {

namespace {

constexpr qsizetype theLongestShown = 50;

/// How many characters a database counts: all bytes but those that continue one.
qsizetype LengthOf(const RawCell &aCell) {
    const auto characters = std::count_if(aCell.Bytes.begin(), aCell.Bytes.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    });
    return aCell.HasQuotes ? characters - aCell.Bytes.count("\"\"") : characters;
}

bool IsNumberFrom(const RawCell &aCell, qint32 aFirst, qint32 aLast) {
    const auto number = NumberIn(aCell);
    return number && *number >= aFirst && *number <= aLast;
}

bool IsEmpty(const RawCell &aCell) {
    return aCell.Bytes.trimmed().isEmpty();
}

bool Fits(const RawCell &aCell, const FileColumn &aColumn) {
    switch (aColumn.Kind) {
        case CellKind::Identity:
            return IsNumberFrom(aCell, 1, std::numeric_limits<qint32>::max());
        case CellKind::Parent:
            return IsEmpty(aCell) || IsNumberFrom(aCell, 1, std::numeric_limits<qint32>::max());
        case CellKind::Number:
            return NumberIn(aCell).has_value();
        case CellKind::Flag:
            return IsNumberFrom(aCell, 0, 1);
        case CellKind::PersonKind:
            return IsNumberFrom(aCell, 1, 3);
        case CellKind::Text:
            return aCell.Bytes.size() <= aColumn.Longest || LengthOf(aCell) <= aColumn.Longest;
        case CellKind::Day:
            return DayIn(aCell).has_value();
    }
    return false;
}

QString Wanted(const FileColumn &aColumn) {
    switch (aColumn.Kind) {
        case CellKind::Identity:
            return QStringLiteral("нужно целое число от 1 до 2147483647");
        case CellKind::Parent:
            return QStringLiteral("нужно целое число от 1 до 2147483647 или ничего");
        case CellKind::Number:
            return QStringLiteral("нужно целое число от -2147483648 до 2147483647");
        case CellKind::Flag:
            return QStringLiteral("нужно 0 или 1");
        case CellKind::PersonKind:
            return QStringLiteral("нужно 1, 2 или 3");
        case CellKind::Text:
            return QStringLiteral("текст длиннее %1 знаков").arg(aColumn.Longest);
        case CellKind::Day:
            return QStringLiteral("нужна дата вида 2024-12-31 или 31.12.2024 или ничего");
    }
    return QString();
}

/// What a line of an explanation can show of a cell.
QString Shown(const RawCell &aCell) {
    QString text = aCell.Text().left(theLongestShown).simplified();
    if (aCell.Text().size() > theLongestShown) text += u'…';
    return text;
}

}  // namespace

std::optional<qint32> NumberIn(const RawCell &aCell) {
    const QByteArrayView digits = aCell.Bytes.trimmed();
    qint32 number = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    if (error != std::errc() || end != digits.end()) return std::nullopt;
    return number;
}

std::optional<QDate> DayIn(const RawCell &aCell) {
    if (IsEmpty(aCell)) return QDate();
    const QString text = QString::fromUtf8(aCell.Bytes).trimmed();
    for (const QString &format : {QStringLiteral("yyyy-MM-dd"), QStringLiteral("dd.MM.yyyy")}) {
        const QDate day = QDate::fromString(text, format);
        if (day.isValid()) return day;
    }
    return std::nullopt;
}

QString WhatIsWrongWith(const RawCell &aCell, const FileColumn &aColumn) {
    if (Fits(aCell, aColumn)) return QString();
    const QString column = QStringLiteral("столбец \"%1\": ").arg(QLatin1String(aColumn.Name));
    if (aColumn.Kind == CellKind::Text) return column + Wanted(aColumn) + u'.';
    return column + Wanted(aColumn) + QStringLiteral(", а стоит \"%1\".").arg(Shown(aCell));
}

QVariant ValueIn(const RawCell &aCell, CellKind aKind) {
    if (aKind == CellKind::Text) return aCell.Text();
    if (aKind == CellKind::Day) {
        const QDate day = DayIn(aCell).value_or(QDate());
        return day.isValid() ? QVariant(day) : QVariant(QMetaType(QMetaType::QDate));
    }
    const auto number = NumberIn(aCell);
    return number ? QVariant(*number) : QVariant(QMetaType(QMetaType::Int));
}

}  // namespace Vk_Records
