#pragma once

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
    Rows(QStringList aFields, RowValues aValues);

    /// Raises a failure if there are no rows.
    void MoveFirst() override;
    void MoveNext() override;
    bool EndOfData() const override { return thePosition >= theValues.size(); }
    Vk_DocQuery::LooseValue Value(const QString &aField) const override;

private:
    QStringList theFields;
    RowValues theValues;
    std::size_t thePosition = 0;  // of the first value of the row
};

}  // namespace Vk_Records
