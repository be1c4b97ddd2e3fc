#pragma once

#include <QString>

namespace Vk_DocQuery {

/// Writes the text and a line end to the process's error stream, as UTF-8 and in one piece, so that
/// other threads and processes that write there do not come in between. A stream that is closed,
/// or that nobody reads any more, swallows it.
void WriteToErrorStream(const QString &aText) noexcept;

}  // namespace Vk_DocQuery
