#include "Rows.h"

#include <Vk_DocQuery/Failure.h>

namespace Vk_Records {

using Vk_DocQuery::Failure;
using Vk_DocQuery::LooseValue;

namespace {

[[noreturn]] void RaiseNoRow() {
    throw Failure(Vk_DocQuery::SubscriptOutOfRange, QStringLiteral("Vk_Records"),
                  QStringLiteral("В наборе записей нет текущей строки."));
}

}  // namespace

Rows::Rows(QStringList aFields, RowValues aValues)
    : theFields(std::move(aFields)), theValues(std::move(aValues)) {}

void Rows::MoveFirst() {
    thePosition = 0;
    if (EndOfData()) RaiseNoRow();
}

void Rows::MoveNext() {
    if (!EndOfData()) thePosition += static_cast<std::size_t>(theFields.size());
}

LooseValue Rows::Value(const QString &aField) const {
    if (EndOfData()) RaiseNoRow();
    qsizetype column = theFields.size() - 1;
    while (column >= 0 && theFields[column].compare(aField, Qt::CaseInsensitive) != 0) --column;
    if (column < 0) {
        throw Failure(Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
                      QStringLiteral("В наборе записей нет поля \"%1\".").arg(aField));
    }
    return theValues[thePosition + static_cast<std::size_t>(column)];
}

}  // namespace Vk_Records
