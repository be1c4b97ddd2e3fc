#pragma once

#include <QSqlError>

#include "Connection.h"

namespace Vk_Records {

/// A statement that is run for row after row.
class Insert {
public:
    Insert(Connection &aConnection, const QString &aSql)
        : theConnection(aConnection), theQuery(aConnection.Database()) {
        if (!theQuery.prepare(aSql)) theConnection.RaiseRefusal(theQuery.lastError());
    }
    void Row(const QVariantList &aValues) {
        for (int i = 0; i < aValues.size(); ++i) theQuery.bindValue(i, aValues[i]);
        theConnection.Execute(theQuery);
    }

private:
    Connection &theConnection;
    QSqlQuery theQuery;
};

/// The statements that both offices, the sample and the large one, are made with.
inline const QString theInsertPersonSql = QStringLiteral(
    "INSERT INTO person (id, kind, inn, kpp, display_name, owner_name, is_main, parent_id, "
    "parent_kind) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
inline const QString theInsertStreamSql = QStringLiteral(
    "INSERT INTO acc_stream (id, person_id, type_id, display_name, kpp, office_codes, is_closed) "
    "VALUES (?, ?, ?, ?, ?, ?, ?)");
inline const QString theInsertFormSql = QStringLiteral(
    "INSERT INTO templ_type (id, knd, short_name, is_excluded, icon_key) VALUES (?, ?, ?, ?, ?)");
inline const QString theInsertNameSql = QStringLiteral(
    "INSERT INTO templ_type_name (templ_type_id, name_order, full_name) VALUES (?, ?, ?)");
inline const QString theInsertVersionSql = QStringLiteral(
    "INSERT INTO template (id, templ_type_id, beg_date, end_date, display_name, icon_key) "
    "VALUES (?, ?, ?, ?, ?, ?)");
inline const QString theInsertPeriodSql = QStringLiteral(
    "INSERT INTO templ_type_time (templ_type_id, the_year, month_id) VALUES (?, ?, ?)");
inline const QString theInsertCategorySql = QStringLiteral(
    "INSERT INTO templ_type_category (templ_type_id, category_id, stream_type, allowed_for_main, "
    "allowed_for_branch) VALUES (?, ?, ?, ?, ?)");

}  // namespace Vk_Records
