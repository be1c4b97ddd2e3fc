#include "browser/TextPane.h"

#include <QTextCursor>

namespace Vk_DocQuery {

TextPane::TextPane(QWidget *aParent) : QPlainTextEdit(aParent) {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
}

QString TextPane::Text() const {
    return toPlainText().replace(u'\n', QStringLiteral("\r\n"));
}

void TextPane::SetText(const QString &aText) {
    setPlainText(aText);
}

int TextPane::SelStart() const {
    return textCursor().selectionStart();
}

int TextPane::SelLength() const {
    return textCursor().selectionEnd() - textCursor().selectionStart();
}

void TextPane::SetSelection(int aStart, int aLength) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(aStart);
    cursor.setPosition(aStart + aLength, QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

void TextPane::ReplaceSelection(const QString &aText) {
    QTextCursor cursor = textCursor();
    cursor.insertText(aText);
    setTextCursor(cursor);
}

}  // namespace Vk_DocQuery
