#pragma once

#include <QObject>

class QWidget;

namespace Vk_DocQuery {

/// Scrolls what gets the focus into view, in all areas around it, and so for the row that the keys
/// have reached in a list. What is clicked stays under the pointer. Belongs to the window.
class FocusInView : public QObject {
    Q_OBJECT

public:
    /// Watches the elements that the window has when it comes up.
    explicit FocusInView(QWidget &aWindow);

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override;

private:
    QWidget &theWindow;
};

}  // namespace Vk_DocQuery
