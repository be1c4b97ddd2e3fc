#pragma once

#include <functional>

#include <QStringList>

#include "OfficeFolder.h"

namespace VkTests {

/// The statements that the databases themselves report, of all connections of this process. SQLite
/// hands each one that begins to a trace of every connection that is opened while this lives; a
/// server writes each one it gets into its log.
class StatementLog {
public:
    StatementLog();
    ~StatementLog();
    Q_DISABLE_COPY_MOVE(StatementLog)

    /// Forgets what was there so far.
    void Begin(const OfficeFolder &aFolder);
    /// What came since then, without those that ask for nothing: BEGIN, COMMIT, SET, PREPARE and
    /// DEALLOCATE.
    QStringList Since(const OfficeFolder &aFolder) const;
    /// Runs the function when the next statement to a file begins that holds the text, before it
    /// reads anything.
    void Before(const QString &aText, std::function<void()> aWhat);

private:
    qsizetype theServersBegin = 0;
};

}  // namespace VkTests
