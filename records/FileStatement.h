#pragma once

#include <memory>

#include <QSqlError>
#include <QVariantList>

struct sqlite3;
struct sqlite3_stmt;

namespace Vk_Records {

/// A request to an SQLite file, prepared, past QSqlQuery, which puts each value of each row into a
/// QVariant and its texts through UTF-16.
class FileStatement {
public:
    /// Raises nothing: look at Error.
    FileStatement(sqlite3 *aFile, const char *aSql);

    sqlite3_stmt *Handle() const { return theStatement.get(); }
    void Bind(const QVariantList &aValues);
    /// Whether there is a further row; if not, Error says whether it was the last.
    bool Next();
    /// Sets the file free again.
    void Reset();
    /// Of type NoError if there was none.
    const QSqlError &Error() const { return theError; }

private:
    struct End {
        void operator()(sqlite3_stmt *aStatement) const;
    };
    void Note(int aCode);

    sqlite3 *theFile;
    std::unique_ptr<sqlite3_stmt, End> theStatement;
    QSqlError theError;
};

}  // namespace Vk_Records
