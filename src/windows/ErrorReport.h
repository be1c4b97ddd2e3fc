#pragma once

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

/// The tail of a procedure that the window system calls: puts the current failure before the user
/// and returns. It goes to the host's error window, without one into a box of ours, and to the
/// error stream where nobody can read a box. The flags are those of RaiseErrorUp.
void ReportErrorToUser(const char *aModule, const char *aProc, const QString &aDetail = QString(),
                       qint32 aFlags = 0) noexcept;

}  // namespace Vk_DocQuery
