#pragma once

#include <QClipboard>
#include <QLineEdit>

namespace Vk_DocQuery {

/// A box of one line of text of any length. What comes from elsewhere at one go, pasted, dropped or
/// put in by an input method, goes through Enter before it is in the text, so that undo and redo
/// know it as it stands there. What is set by program stays as it is, line ends included.
class TextBox : public QLineEdit {
    Q_OBJECT

public:
    explicit TextBox(QWidget *aParent = nullptr);

protected:
    /// Puts a text from elsewhere in the place of the selection or at the caret, on one line.
    virtual void Enter(const QString &aForeign);
    /// Without the line ends before and behind it, and with a blank for those inside.
    static QString OnOneLine(QString aText);
    /// Puts the text in as one step of what can be undone.
    void InsertStep(const QString &aText);

    void keyPressEvent(QKeyEvent *aEvent) override;
    void contextMenuEvent(QContextMenuEvent *aEvent) override;
    void mouseReleaseEvent(QMouseEvent *aEvent) override;
    void dropEvent(QDropEvent *aEvent) override;
    void inputMethodEvent(QInputMethodEvent *aEvent) override;

private:
    void Paste(QClipboard::Mode aMode);
    void EndStep();
};

}  // namespace Vk_DocQuery
