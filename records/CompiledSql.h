#pragma once

#include <QString>
#include <QStringList>

#include "Connection.h"

namespace Vk_Records {

/// The text of a compiled-in file, such as "sql/stream_types.sql".
QString CompiledText(const QString &aName);

/// The statements of a compiled-in file for the kind of the database.
QStringList Statements(const Connection &aConnection, const QString &aFile);

/// Runs them.
void RunFile(Connection &aConnection, const QString &aFile);

}  // namespace Vk_Records
