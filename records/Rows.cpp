#include "Rows.h"

#include <limits>

#include <QSqlRecord>

namespace Vk_Records {

using Vk_DocQuery::Failure;
using Vk_DocQuery::LooseValue;

namespace {

LooseValue LooseInteger(qint64 aNumber) {
    const bool fits = aNumber >= std::numeric_limits<qint32>::min() &&
                      aNumber <= std::numeric_limits<qint32>::max();
    return fits ? LooseValue(static_cast<qint32>(aNumber))
                : LooseValue(static_cast<double>(aNumber));
}

[[noreturn]] void RaiseNoRow() {
    throw Failure(Vk_DocQuery::SubscriptOutOfRange, QStringLiteral("Vk_Records"),
                  QStringLiteral("В наборе записей нет текущей строки."));
}

}  // namespace

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

Rows::Rows(Connection &aConnection, QSqlQuery &aQuery) {
    const QSqlRecord record = aQuery.record();
    for (int column = 0; column < record.count(); ++column) theFields << record.fieldName(column);
    aConnection.ForEachRow(aQuery, [this](const QSqlQuery &row) {
        for (int column = 0; column < theFields.size(); ++column)
            theValues.push_back(LooseValueOf(row.value(column)));
        ++theRowCount;
    });
}

void Rows::MoveFirst() {
    thePosition = 0;
    if (EndOfData()) RaiseNoRow();
}

void Rows::MoveNext() {
    if (!EndOfData()) ++thePosition;
}

LooseValue Rows::Value(const QString &aField) const {
    if (EndOfData()) RaiseNoRow();
    qsizetype column = theFields.size() - 1;
    while (column >= 0 && theFields[column].compare(aField, Qt::CaseInsensitive) != 0) --column;
    if (column < 0) {
        throw Failure(Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
                      QStringLiteral("В наборе записей нет поля \"%1\".").arg(aField));
    }
    return theValues[thePosition * static_cast<std::size_t>(theFields.size()) +
                     static_cast<std::size_t>(column)];
}

}  // namespace Vk_Records
