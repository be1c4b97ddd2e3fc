#include "windows/mFileOpenSaveDialog.h"

#include "foundation/mErrorHandling.h"
#include "windows/FileOpenSaveDialog.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "mFileOpenSaveDialog";
}

QString AskFileNameForSaving(const QString &aTitle, const QString &aFilter,
                             const QString &aFileName, WId aHwnd, qint32 aFlags,
                             const QString &aDefaultExt, FilePlatform &aPlatform) try {
    FileOpenSaveDialog dialog(aPlatform);
    dialog.OwnerHwnd = aHwnd;
    dialog.DialogTitle = aTitle;
    dialog.Filter = aFilter;
    dialog.FilterIndex = 1;
    dialog.Flags = aFlags;
    if (!aFileName.isEmpty()) dialog.FileName = aFileName;
    dialog.DefaultExt = aDefaultExt;
    return dialog.RunSaveFileDialog() ? dialog.FileName : QString();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString AskFileNameForOpening(const QString &aTitle, const QString &aFilter,
                              const QString &aFileName, WId aHwnd, qint32 aFlags,
                              const QString &aInitialDir, FilePlatform &aPlatform) try {
    FileOpenSaveDialog dialog(aPlatform);  // its filter index stays 0
    dialog.OwnerHwnd = aHwnd;
    dialog.DialogTitle = aTitle;
    dialog.Filter = aFilter;
    dialog.Flags = aFlags;
    if (!aFileName.isEmpty()) dialog.FileName = aFileName;
    if (!aInitialDir.isEmpty()) dialog.InitialDir = aInitialDir;
    return dialog.RunOpenFileDialog() ? dialog.FileName : QString();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
