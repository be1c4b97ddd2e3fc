#pragma once

#include "Connection.h"

namespace Vk_Records {

/// A transaction that is undone unless it was confirmed. It keeps other programs from filling or
/// changing the same database meanwhile.
class ExclusiveTransaction {
public:
    explicit ExclusiveTransaction(Connection &aConnection) : theConnection(aConnection) {
        if (theConnection.Where().IsServer) {
            theConnection.Run(QStringLiteral("BEGIN"));
            theConnection.Run(QStringLiteral("SELECT pg_advisory_xact_lock(286331153)"));
        } else {
            // Whoever reads meanwhile waits, and sees no tables that are half filled or not there
            // yet.
            theConnection.Run(QStringLiteral("BEGIN EXCLUSIVE"));
        }
    }
    ~ExclusiveTransaction() {
        if (!theIsConfirmed) QSqlQuery(QStringLiteral("ROLLBACK"), theConnection.Database());
    }
    Q_DISABLE_COPY_MOVE(ExclusiveTransaction)

    void Confirm() {
        theConnection.Run(QStringLiteral("COMMIT"));
        theIsConfirmed = true;
    }

private:
    Connection &theConnection;
    bool theIsConfirmed = false;
};

}  // namespace Vk_Records
