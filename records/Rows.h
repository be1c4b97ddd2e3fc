#pragma once

#include <vector>

#include <QStringList>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"

namespace Vk_Records {

/// A tabular result, read whole, so that it does not need its connection any more. It stands on the
/// first row from the start.
class Rows final : public Vk_DocQuery::Recordset {
public:
    Rows(Connection &aConnection, QSqlQuery &aQuery);

    /// Raises a failure if there are no rows.
    void MoveFirst() override;
    void MoveNext() override;
    bool EndOfData() const override { return thePosition >= theRowCount; }
    Vk_DocQuery::LooseValue Value(const QString &aField) const override;

private:
    QStringList theFields;
    std::vector<Vk_DocQuery::LooseValue> theValues;
    std::size_t theRowCount = 0;
    std::size_t thePosition = 0;
};

/// A value of a column.
Vk_DocQuery::LooseValue LooseValueOf(const QVariant &aValue);

}  // namespace Vk_Records
