#pragma once

#include <QString>

namespace Vk_Records {

/// Where a database is, taken apart.
struct Address {
    bool IsServer = false;  ///< PostgreSQL; otherwise a file of SQLite
    QString File;           ///< absolute path of the file
    QString Host;           ///< empty: the server of this machine
    int Port = -1;
    QString User;
    QString Password;
    QString Database;
    QString Options;  ///< for the client library, parted by semicolons
    QString Shown;    ///< as texts name it, without the password
};

/// Raises DatabaseAddressBad.
Address AddressOf(const QString &aText);

}  // namespace Vk_Records
