#include "controls/TextBox.h"

#include <limits>

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QRegularExpression>

namespace Vk_DocQuery {

TextBox::TextBox(QWidget *aParent) : QLineEdit(aParent) {
    setMaxLength(std::numeric_limits<int>::max());
}

void TextBox::Enter(const QString &aForeign) {
    const QString text = OnOneLine(aForeign);
    if (!text.isEmpty()) InsertStep(text);
}

/// A cell of a table or a line of a letter brings its line end along. A box of one line does not
/// show it, but no surname would be found with one behind it.
QString TextBox::OnOneLine(QString aText) {
    static const QString lineEnds = QStringLiteral("[\\n\\r\\x0B\\x0C\\x{85}\\x{2028}\\x{2029}]+");
    static const QRegularExpression outer(QStringLiteral("^%1|%1$").arg(lineEnds));
    static const QRegularExpression inner(lineEnds);
    return aText.remove(outer).replace(inner, QStringLiteral(" "));
}

void TextBox::InsertStep(const QString &aText) {
    EndStep();
    insert(aText);
    EndStep();
}

/// The history of a line edit begins a new step where the caret was moved or something selected.
void TextBox::EndStep() {
    if (hasSelectedText() || text().isEmpty()) return;
    const int caret = cursorPosition();
    setCursorPosition(caret > 0 ? caret - 1 : caret + 1);
    setCursorPosition(caret);
}

void TextBox::Paste(QClipboard::Mode aMode) {
    const QString text = QGuiApplication::clipboard()->text(aMode);
    if (!isReadOnly() && !text.isEmpty()) Enter(text);
}

void TextBox::keyPressEvent(QKeyEvent *aEvent) {
    if (!aEvent->matches(QKeySequence::Paste)) return QLineEdit::keyPressEvent(aEvent);
    Paste(QClipboard::Clipboard);
    aEvent->accept();
}

/// The menu is the usual one; its command to paste goes the way of all others.
void TextBox::contextMenuEvent(QContextMenuEvent *aEvent) {
    QMenu *menu = createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (QAction *action : menu->actions()) {
        if (!action->text().startsWith(QLineEdit::tr("&Paste"))) continue;
        disconnect(action, nullptr, this, nullptr);
        connect(action, &QAction::triggered, this, [this] { Paste(QClipboard::Clipboard); });
    }
    menu->popup(aEvent->globalPos());
}

void TextBox::mouseReleaseEvent(QMouseEvent *aEvent) {
    const bool pastes = aEvent->button() == Qt::MiddleButton && !isReadOnly() &&
                        QGuiApplication::clipboard()->supportsSelection();
    if (!pastes) return QLineEdit::mouseReleaseEvent(aEvent);
    deselect();
    Paste(QClipboard::Selection);
}

/// What is dragged within the box is its own text.
void TextBox::dropEvent(QDropEvent *aEvent) {
    const QString text = aEvent->mimeData()->text();
    if (aEvent->source() == this || isReadOnly() || text.isEmpty())
        return QLineEdit::dropEvent(aEvent);
    QDragLeaveEvent leave;  // takes the mark of the place away
    dragLeaveEvent(&leave);
    setCursorPosition(cursorPositionAt(aEvent->position().toPoint()));
    Enter(text);
    aEvent->acceptProposedAction();
}

/// A keyboard on the screen may put in what was copied elsewhere.
void TextBox::inputMethodEvent(QInputMethodEvent *aEvent) {
    const QString text = aEvent->commitString();
    if (text.size() < 2 || isReadOnly()) return QLineEdit::inputMethodEvent(aEvent);
    QInputMethodEvent rest(aEvent->preeditString(), aEvent->attributes());
    rest.setCommitString(QString(), aEvent->replacementStart(), aEvent->replacementLength());
    QLineEdit::inputMethodEvent(&rest);
    Enter(text);
}

}  // namespace Vk_DocQuery
