#pragma once

#include <memory>

#include <QWidget>

#include <Vk_DocQuery/VkDocQueryData.h>

namespace Vk_DocQuery {

class DocQueryOptionsFrm;

/// By this class a host lets its user state a search. One object serves one run of the dialog.
///
///     DocQueryEditor editor;
///     editor.SetRecord(record);
///     if (editor.Execute()) search(*editor.Record());
///
/// Everything happens on the thread of the windows, where the QApplication was made; a call on
/// another one raises InvalidArgument and does nothing. A host without a QApplication gets one on
/// first need, on the thread of that call. Failures of the dialog are shown to the user; the other
/// members raise Failure. A record and its file need no windows: they may be used on any thread, by
/// one at a time, as far as the objects in the record's collections allow.
///
/// The windows stand on the modal window, that of SetHostWindow, the active one or the largest
/// visible one of the program, in this order. When their owner goes, or the editor itself inside of
/// their event loop, they end like a cancel.
class DocQueryEditor {
public:
    VK_DOCQUERY_EXPORT DocQueryEditor();
    /// On any thread: a dialog that belongs to another one goes when that comes to it. Also behind
    /// the end of the QApplication or of main: the dialog is then left to the process.
    VK_DOCQUERY_EXPORT ~DocQueryEditor();
    DocQueryEditor(const DocQueryEditor &) = delete;
    DocQueryEditor &operator=(const DocQueryEditor &) = delete;

    /// The record being edited. After Execute it is the given one or, if the user loaded a file,
    /// the loaded one.
    VK_DOCQUERY_EXPORT std::shared_ptr<VkDocQueryData> Record();
    /// Gives the record to edit, which the dialog then works on in place; null asks for a new one.
    VK_DOCQUERY_EXPORT void SetRecord(std::shared_ptr<VkDocQueryData> aRecord);
    /// Runs the dialog. True if the user confirmed the search; false on cancel and if the dialog
    /// failed. Raises InvalidArgument, with nothing touched, if it was called on this object before
    /// or while the application is ending.
    VK_DOCQUERY_EXPORT bool Execute();
    /// Asks for a .qvk file and loads it, apart from the dialog. Null on cancel and, after a
    /// message box, for a file that cannot be read. aHwnd is the native handle of the owner window,
    /// or 0 for the one on which the dialog would stand.
    VK_DOCQUERY_EXPORT std::shared_ptr<VkDocQueryData> AskAndLoadQuery(WId aHwnd);

private:
    std::unique_ptr<DocQueryOptionsFrm> theDialog;
};

}  // namespace Vk_DocQuery
