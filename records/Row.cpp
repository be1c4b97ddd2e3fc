#include "Row.h"

#include <limits>
#include <sqlite3.h>

#include <QAnyStringView>
#include <QSqlQuery>
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

QByteArrayView Utf8(sqlite3_stmt *aStatement, int aColumn) {
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(aStatement, aColumn));
    return {text, sqlite3_column_bytes(aStatement, aColumn)};
}

}  // namespace

qint64 Row::Integer(int aColumn) const {
    if (theStatement) return sqlite3_column_int64(theStatement, aColumn);
    return theQuery->value(aColumn).toLongLong();
}

QString Row::Text(int aColumn) const {
    if (theStatement) return QString::fromUtf8(Utf8(theStatement, aColumn));
    return theQuery->value(aColumn).toString();
}

QString Row::Text(int aColumn, const QString &aLikely) const {
    if (!theStatement) {
        const QString text = Text(aColumn);
        return text == aLikely ? aLikely : text;
    }
    const QByteArrayView utf8 = Utf8(theStatement, aColumn);
    return QAnyStringView::equal(QUtf8StringView(utf8), aLikely) ? aLikely
                                                                 : QString::fromUtf8(utf8);
}

QDate Row::Date(int aColumn) const {
    if (!theStatement) return theQuery->value(aColumn).toDate();
    if (sqlite3_column_type(theStatement, aColumn) == SQLITE_NULL) return QDate();
    return QDate::fromString(Text(aColumn), Qt::ISODate);
}

LooseValue Row::Value(int aColumn) const {
    if (!theStatement) return LooseValueOf(theQuery->value(aColumn));
    switch (sqlite3_column_type(theStatement, aColumn)) {
        case SQLITE_NULL:
            return Vk_DocQuery::Null();
        case SQLITE_INTEGER:
            return LooseInteger(Integer(aColumn));
        case SQLITE_FLOAT:
            return sqlite3_column_double(theStatement, aColumn);
        default:
            return Text(aColumn);
    }
}

}  // namespace Vk_Records
