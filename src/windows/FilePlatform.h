#pragma once

#include <QWidget>

namespace Vk_DocQuery {

/// Bits of OpenFileName::Flags that are looked at.
enum FileDialogFlags : qint32 {
    OverwritePrompt = 0x2,
    AllowMultiSelect = 0x200,
    PathMustExist = 0x800,
    FileMustExist = 0x1000,
};

/// Values of CommDlgExtendedError.
constexpr qint32 theBufferTooSmall = 0x3003;

/// The record of the platform's file dialogs. Texts are bytes in the system's narrow code page,
/// ended by a zero; members that are always 0 are left out.
struct OpenFileName {
    qint32 lStructSize = 88;
    WId hwndOwner = 0;
    const char *lpstrFilter =
        nullptr;  ///< descriptions and patterns in turn, each ended by a zero, then one more
    qint32 nFilterIndex = 0;  ///< counted from 1; in and out
    char *lpstrFile =
        nullptr;  ///< initial name; out: the path, or folder and names with a double zero
    qint32 nMaxFile = 0;
    char *lpstrInitialDir = nullptr;
    const char *lpstrTitle = nullptr;
    qint32 Flags = 0;
    const char *lpstrDefExt = nullptr;
};

/// The platform's file dialogs: two calls and the reason why the last one failed.
class FilePlatform {
public:
    FilePlatform() = default;
    virtual ~FilePlatform();
    FilePlatform(const FilePlatform &) = delete;
    FilePlatform &operator=(const FilePlatform &) = delete;

    /// False on cancel and on failure.
    virtual bool GetOpenFileName(OpenFileName &aRecord) = 0;
    virtual bool GetSaveFileName(OpenFileName &aRecord) = 0;
    /// 0 after a plain cancel.
    virtual qint32 CommDlgExtendedError() = 0;
};

/// The dialogs of Qt, which are the desktop's own where it has some.
FilePlatform &QtFileDialogs();

/// What is asked for file names: the dialogs of Qt.
FilePlatform &FileDialogs();

/// Puts another platform in the place of Qt's dialogs until it is called with null; for tests.
void SetFileDialogsForTests(FilePlatform *aPlatform);

}  // namespace Vk_DocQuery
