#pragma once

#include <QWidget>

#include "windows/FilePlatform.h"

namespace Vk_DocQuery {

/// Flags of a dialog for opening: path and file must exist.
constexpr qint32 theOpeningFlags = 0x281800;
/// Flags of a dialog for saving: the path must exist, and an existing file is asked about.
constexpr qint32 theSavingFlags = 0x880802;

/// Each gives the chosen path, or an empty text on cancel. aFilter is description|pattern|...;
/// aHwnd is the native handle of the owner window, or 0.
///
/// A name that the user types for saving without an extension gets aDefaultExt, or, where that is
/// empty, the extension of the chosen filter.
QString AskFileNameForSaving(const QString &aTitle, const QString &aFilter,
                             const QString &aFileName, WId aHwnd, qint32 aFlags,
                             const QString &aDefaultExt, FilePlatform &aPlatform = FileDialogs());
QString AskFileNameForOpening(const QString &aTitle, const QString &aFilter,
                              const QString &aFileName, WId aHwnd, qint32 aFlags,
                              const QString &aInitialDir, FilePlatform &aPlatform = FileDialogs());

}  // namespace Vk_DocQuery
