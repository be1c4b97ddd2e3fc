#pragma once

#include <memory>

#include <QPointer>
#include <QWidget>

class QDialog;
class QWindow;

namespace Vk_DocQuery {

class ForeignWindow;

/// The running of a window of ours over its owner. The window has no parent that could delete it:
/// it stands over its owner by the window system alone, and when the owner goes, the run ends like
/// a cancel, with everything that stands on the window. So whoever runs a window on the stack finds
/// it, and itself, as it was left.
class ModalRun {
public:
    /// aOwner is the native handle of a window, or 0 for the one that fits best: the modal window,
    /// that of SetHostWindow, the active one, or the largest visible one of the program.
    explicit ModalRun(QDialog &aWindow, WId aOwner = 0);
    ~ModalRun();
    ModalRun(const ModalRun &) = delete;
    ModalRun &operator=(const ModalRun &) = delete;

    /// QDialog::exec, at the end of which the window is hidden, whatever has ended it. Rejected if
    /// the owner has gone, be it before.
    int Exec();
    bool IsEnded() const { return theIsEnded; }
    /// Null where the owner is none of Qt's widgets.
    QWidget *OwnerWidget() const;

    /// Ends the runs of the window and of all that stands on it like a cancel.
    static void EndAllOf(const QObject &aWindow);

private:
    void FindOwner(WId aOwner);
    void TakeHandle(WId aHandle);
    QWindow *OwnerHandle() const;
    void CentreOnForeign();
    void End();

    QDialog &theWindow;
    QPointer<QObject> theOwner;  ///< a QWidget or a QWindow
    QMetaObject::Connection theWatch;
    std::unique_ptr<ForeignWindow> theForeign;
    bool theIsEnded = false;
};

}  // namespace Vk_DocQuery
