#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <QStringList>

#include <Vk_DocQuery/Providers.h>

namespace Vk_Records {

/// The values of row after row, field by field.
using RowValues = std::vector<Vk_DocQuery::LooseValue>;

/// A tabular result, read whole, so that it does not need its connection any more. It stands on the
/// first row from the start.
class Rows final : public Vk_DocQuery::Recordset {
public:
    /// The rows that begin and end there among the values; all without an end.
    Rows(QStringList aFields, std::shared_ptr<const RowValues> aValues, std::size_t aBegin = 0,
         std::size_t aEnd = SIZE_MAX);

    /// Raises a failure if there are no rows.
    void MoveFirst() override;
    void MoveNext() override;
    bool EndOfData() const override { return thePosition >= theEnd; }
    Vk_DocQuery::LooseValue Value(const QString &aField) const override;

private:
    QStringList theFields;
    std::shared_ptr<const RowValues> theValues;
    std::size_t theBegin;
    std::size_t theEnd;
    std::size_t thePosition;  // of the first value of the row
};

}  // namespace Vk_Records
