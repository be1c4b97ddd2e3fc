#pragma once

#include <optional>

#include <QByteArrayView>
#include <QDate>
#include <QString>

#include <Vk_DocQuery/LooseValue.h>

#include "KeptRow.h"

class QSqlQuery;
struct sqlite3_stmt;

namespace Vk_Records {

/// The row on which a request stands, good until it goes on, or a copy of one. Columns count from
/// 0.
class Row {
public:
    explicit Row(const QSqlQuery &aQuery) : theQuery(&aQuery) {}
    explicit Row(sqlite3_stmt *aStatement) : theStatement(aStatement) {}
    explicit Row(KeptRow aKept) : theKept(aKept) {}

    /// Of a row that is no copy itself.
    void CopyTo(KeptRowMaker &rTo) const;

    /// 0 for NULL.
    qint64 Integer(int aColumn) const;
    /// Empty for NULL.
    QString Text(int aColumn) const;
    /// The same, which shares its memory with aLikely where the two are equal: of what often is the
    /// same, only one is kept.
    QString Text(int aColumn, const QString &aLikely) const;
    /// The same of a short text that many rows have in common, such as the code of an office: of
    /// those that this thread met last one is kept, and they share its memory.
    QString CommonText(int aColumn) const;
    /// Invalid for NULL.
    QDate Date(int aColumn) const;
    Vk_DocQuery::LooseValue Value(int aColumn) const;

private:
    QByteArrayView View(int aColumn) const;

    const QSqlQuery *theQuery = nullptr;
    sqlite3_stmt *theStatement = nullptr;
    std::optional<KeptRow> theKept;
};

}  // namespace Vk_Records
