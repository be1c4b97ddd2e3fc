#pragma once

#include <QDeadlineTimer>
#include <QMargins>
#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QSize>

class QWidget;

namespace Vk_DocQuery {

/// Keeps a window within the available place of its screen: when it comes up, when it gets to
/// another screen, and when the screen or what the desktop takes of it changes. Belongs to the
/// window.
class WindowFit : public QObject {
    Q_OBJECT

public:
    /// The user cannot make the window smaller than aLeast, in pixels, unless its screen is.
    /// Without it the window's layout settles that.
    explicit WindowFit(QWidget &aWindow, QSize aLeast = QSize());

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override;

private:
    void ComeUp();
    void Settle();
    void FollowScreen(QScreen *aScreen);
    void ScreenChanged();
    bool Fit();
    void MoveIn();
    QScreen *TargetScreen() const;
    QMargins FrameMargins() const;

    QWidget &theWindow;
    QSize theLeast;
    QPointer<QScreen> theScreen;
    bool theFrameIsAwaited = false;
    QDeadlineTimer theSettling;
};

}  // namespace Vk_DocQuery
