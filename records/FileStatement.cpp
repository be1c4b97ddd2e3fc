#include "FileStatement.h"

#include <sqlite3.h>

#include <QDate>

namespace Vk_Records {

FileStatement::FileStatement(sqlite3 *aFile, const char *aSql) : theFile(aFile) {
    sqlite3_stmt *statement = nullptr;
    Note(sqlite3_prepare_v3(aFile, aSql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    theStatement.reset(statement);
}

void FileStatement::Bind(const QVariantList &aValues) {
    int parameter = 0;
    for (const QVariant &value : aValues) {
        ++parameter;
        if (value.isNull()) {
            sqlite3_bind_null(Handle(), parameter);
        } else if (value.typeId() == QMetaType::LongLong) {
            sqlite3_bind_int64(Handle(), parameter, value.toLongLong());
        } else {
            const QByteArray text = value.typeId() == QMetaType::QDate
                                        ? value.toDate().toString(Qt::ISODate).toLatin1()
                                        : value.toString().toUtf8();
            sqlite3_bind_text64(Handle(), parameter, text.constData(),
                                static_cast<sqlite3_uint64>(text.size()), SQLITE_TRANSIENT,
                                SQLITE_UTF8);
        }
    }
}

bool FileStatement::Next() {
    const int code = sqlite3_step(Handle());
    if (code == SQLITE_ROW) return true;
    Note(code);
    return false;
}

void FileStatement::Reset() {
    sqlite3_reset(Handle());
    sqlite3_clear_bindings(Handle());
    theError = QSqlError();
}

void FileStatement::Note(int aCode) {
    if (aCode == SQLITE_OK || aCode == SQLITE_DONE) return;
    theError = QSqlError(QString(), QString::fromUtf8(sqlite3_errmsg(theFile)),
                         QSqlError::StatementError, QString::number(aCode));
}

void FileStatement::End::operator()(sqlite3_stmt *aStatement) const {
    sqlite3_finalize(aStatement);
}

}  // namespace Vk_Records
