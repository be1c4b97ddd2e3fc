#pragma once

#include <QScrollArea>

namespace Vk_DocQuery {

/// A pane with the background of a list that scrolls what is put on its content.
class ScrollBox : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrollBox(QWidget *aParent = nullptr);
    /// The parent of the elements in the pane.
    QWidget *Content() const { return widget(); }
    /// Makes the content as large as what is on it, or as the pane if that is larger.
    void FitContent();

protected:
    bool event(QEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;
};

}  // namespace Vk_DocQuery
