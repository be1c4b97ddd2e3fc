#pragma once

#include <QDate>
#include <QString>

#include <Vk_DocQuery/LooseValue.h>

class QSqlQuery;
struct sqlite3_stmt;

namespace Vk_Records {

/// The row on which a request stands, good until it goes on. Columns count from 0.
class Row {
public:
    explicit Row(const QSqlQuery &aQuery) : theQuery(&aQuery) {}
    explicit Row(sqlite3_stmt *aStatement) : theStatement(aStatement) {}

    /// 0 for NULL.
    qint64 Integer(int aColumn) const;
    /// Empty for NULL.
    QString Text(int aColumn) const;
    /// The same, which shares its memory with aLikely where the two are equal: of what often is the
    /// same, only one is kept.
    QString Text(int aColumn, const QString &aLikely) const;
    /// Invalid for NULL.
    QDate Date(int aColumn) const;
    Vk_DocQuery::LooseValue Value(int aColumn) const;

private:
    const QSqlQuery *theQuery = nullptr;
    sqlite3_stmt *theStatement = nullptr;
};

}  // namespace Vk_Records
