#include "Row.h"

#include <array>
#include <cstring>
#include <limits>
#include <sqlite3.h>

#include <QAnyStringView>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

namespace Vk_Records {

using Vk_DocQuery::LooseValue;

namespace {

LooseValue LooseInteger(qint64 aNumber) {
    const bool fits = aNumber >= std::numeric_limits<qint32>::min() &&
                      aNumber <= std::numeric_limits<qint32>::max();
    return fits ? LooseValue(static_cast<qint32>(aNumber))
                : LooseValue(static_cast<double>(aNumber));
}

LooseValue LooseValueOf(const QVariant &aValue) {
    if (aValue.isNull()) return Vk_DocQuery::Null();
    switch (aValue.typeId()) {
        case QMetaType::Bool:
            return aValue.toBool();
        case QMetaType::Short:
        case QMetaType::Int:
        case QMetaType::LongLong:
            return LooseInteger(aValue.toLongLong());
        case QMetaType::Float:
        case QMetaType::Double:
            return aValue.toDouble();
        case QMetaType::QDate:
            return aValue.toDate();
        default:
            return aValue.toString();
    }
}

QByteArrayView TextAt(sqlite3_stmt *aStatement, int aColumn) {
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(aStatement, aColumn));
    return {text, sqlite3_column_bytes(aStatement, aColumn)};
}

LooseValue LooseValueOf(sqlite3_stmt *aStatement, int aColumn) {
    switch (sqlite3_column_type(aStatement, aColumn)) {
        case SQLITE_NULL:
            return Vk_DocQuery::Null();
        case SQLITE_INTEGER:
            return LooseInteger(sqlite3_column_int64(aStatement, aColumn));
        case SQLITE_FLOAT:
            return sqlite3_column_double(aStatement, aColumn);
        default:
            return QString::fromUtf8(TextAt(aStatement, aColumn));
    }
}

LooseValue LooseValueOf(const KeptRow &aRow, int aColumn) {
    switch (aRow.KindOf(aColumn)) {
        case ColumnKind::Null:
            return Vk_DocQuery::Null();
        case ColumnKind::Integer:
            return LooseInteger(aRow.Integer(aColumn));
        case ColumnKind::Text:
            return QString::fromUtf8(aRow.Text(aColumn));
    }
    Q_UNREACHABLE();
}

/// Short texts by their bytes, each in a place that they say, which the next one takes over.
class CommonTexts {
public:
    QString Of(QByteArrayView aUtf8) {
        if (aUtf8.isEmpty() || aUtf8.size() >= theBytes) return QString::fromUtf8(aUtf8);
        Key key{};
        std::memcpy(key.data(), aUtf8.data(), static_cast<std::size_t>(aUtf8.size()));
        key.back() |= static_cast<quint64>(aUtf8.size()) << 56U;
        Entry &entry = theEntries[PlaceOf(key)];
        if (entry.Bytes != key) entry = {key, QString::fromUtf8(aUtf8)};
        return entry.Text;
    }

private:
    static constexpr qsizetype theBytes = 24;
    static constexpr int thePlaceBits = 8;
    using Key =
        std::array<quint64, theBytes / sizeof(quint64)>;  // the text, and its size at the end
    struct Entry {
        Key Bytes{};
        QString Text;
    };

    static std::size_t PlaceOf(const Key &aKey) {
        constexpr quint64 odd = 0x9E3779B97F4A7C15U;
        quint64 hash = 0;
        for (const quint64 part : aKey) hash = (hash ^ part) * odd;
        return static_cast<std::size_t>(hash >> (64U - thePlaceBits));
    }

    std::array<Entry, std::size_t{1} << thePlaceBits> theEntries;
};

void Put(KeptRowMaker &rTo, int aColumn, const QVariant &aValue) {
    if (aValue.isNull()) return;
    switch (aValue.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Short:
        case QMetaType::Int:
        case QMetaType::LongLong:
            return rTo.SetInteger(aColumn, aValue.toLongLong());
        case QMetaType::QDate:
            return rTo.SetText(aColumn, aValue.toDate().toString(Qt::ISODate).toLatin1());
        default:
            return rTo.SetText(aColumn, aValue.toString().toUtf8());
    }
}

void Put(KeptRowMaker &rTo, int aColumn, sqlite3_stmt *aStatement) {
    switch (sqlite3_column_type(aStatement, aColumn)) {
        case SQLITE_NULL:
            return;
        case SQLITE_INTEGER:
            return rTo.SetInteger(aColumn, sqlite3_column_int64(aStatement, aColumn));
        default:
            return rTo.SetText(aColumn, TextAt(aStatement, aColumn));
    }
}

}  // namespace

void Row::CopyTo(KeptRowMaker &rTo) const {
    const int count =
        theStatement ? sqlite3_column_count(theStatement) : theQuery->record().count();
    rTo.Begin(count);
    for (int column = 0; column < count; ++column) {
        if (theStatement)
            Put(rTo, column, theStatement);
        else
            Put(rTo, column, theQuery->value(column));
    }
}

/// Empty of a copy's NULL and numbers, which are no texts there.
QByteArrayView Row::View(int aColumn) const {
    if (theStatement) return TextAt(theStatement, aColumn);
    return theKept->KindOf(aColumn) == ColumnKind::Text ? theKept->Text(aColumn) : QByteArrayView();
}

qint64 Row::Integer(int aColumn) const {
    if (theStatement) return sqlite3_column_int64(theStatement, aColumn);
    if (!theKept) return theQuery->value(aColumn).toLongLong();
    return theKept->KindOf(aColumn) == ColumnKind::Integer ? theKept->Integer(aColumn) : 0;
}

QString Row::Text(int aColumn) const {
    return theQuery ? theQuery->value(aColumn).toString() : QString::fromUtf8(View(aColumn));
}

QString Row::Text(int aColumn, const QString &aLikely) const {
    if (theQuery) {
        const QString text = Text(aColumn);
        return text == aLikely ? aLikely : text;
    }
    const QByteArrayView utf8 = View(aColumn);
    return QAnyStringView::equal(QUtf8StringView(utf8), aLikely) ? aLikely
                                                                 : QString::fromUtf8(utf8);
}

QString Row::CommonText(int aColumn) const {
    thread_local CommonTexts texts;
    return texts.Of(theQuery ? QByteArrayView(theQuery->value(aColumn).toByteArray())
                             : View(aColumn));
}

QDate Row::Date(int aColumn) const {
    if (theQuery) return theQuery->value(aColumn).toDate();
    return QDate::fromString(Text(aColumn), Qt::ISODate);
}

LooseValue Row::Value(int aColumn) const {
    if (theQuery) return LooseValueOf(theQuery->value(aColumn));
    return theStatement ? LooseValueOf(theStatement, aColumn) : LooseValueOf(*theKept, aColumn);
}

}  // namespace Vk_Records
