#pragma once

#include <QWidget>

class QKeyEvent;
class QLineEdit;

namespace Vk_DocQuery {

/// A labelled filter text that takes the keys of its whole window, wherever the focus is.
class VkFilterBox : public QWidget {
    Q_OBJECT

public:
    explicit VkFilterBox(QWidget *aParent = nullptr);
    QString Text() const;
    void SetText(const QString &aText);

    /// Edits the text by a key of the window and says whether the key is used up. Letters,
    /// backspace, paste and undo are taken from everywhere. The blank never is; what moves a caret,
    /// selects or deletes forwards is left to the element that has the focus, the box's own text
    /// included.
    bool HandleKeyPress(QKeyEvent &aEvent);

    QLineEdit *Edit() const;

signals:
    /// The text changed, by key, mouse or program.
    void Change();

protected:
    void resizeEvent(QResizeEvent *aEvent) override;

private:
    class Line;
    QWidget *theLabel;
    Line *theLine;
};

}  // namespace Vk_DocQuery
