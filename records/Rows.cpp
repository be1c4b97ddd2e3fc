#include "Rows.h"

#include <algorithm>

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

Rows::Rows(QStringList aFields, std::shared_ptr<const RowValues> aValues, std::size_t aBegin,
           std::size_t aEnd)
    : theFields(std::move(aFields)),
      theValues(std::move(aValues)),
      theBegin(aBegin),
      theEnd(std::min(aEnd, theValues->size())),
      thePosition(aBegin) {}

void Rows::MoveFirst() {
    thePosition = theBegin;
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
    return (*theValues)[thePosition + static_cast<std::size_t>(column)];
}

}  // namespace Vk_Records
