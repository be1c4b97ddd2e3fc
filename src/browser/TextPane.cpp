#include "browser/TextPane.h"

#include <algorithm>

#include <QTextCursor>

#include "look/Colours.h"
#include "windows/TouchScrolling.h"
#include "windows/WheelLatch.h"

namespace Vk_DocQuery {

TextPane::TextPane(QWidget *aParent) : QPlainTextEdit(aParent) {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    ScrollByTouch(*this, [this] { return fontMetrics().lineSpacing(); });
    KeepWheel(*this);
}

void TextPane::SetText(const QString &aText) {
    if (aText.isEmpty() && theText.isEmpty()) return;
    theText = aText;
    theSelStart = 0;
    theSelLength = 0;
    Changed();
}

void TextPane::SetSelection(int aStart, int aLength) {
    const int size = static_cast<int>(theText.size());
    theSelStart = std::clamp(aStart, 0, size);
    theSelLength = std::clamp(aLength, 0, size - theSelStart);
    Changed();
}

void TextPane::ReplaceSelection(const QString &aText) {
    theText.replace(theSelStart, theSelLength, aText);
    theSelStart += static_cast<int>(aText.size());
    theSelLength = 0;
    Changed();
}

bool TextPane::event(QEvent *aEvent) {
    const bool result = QPlainTextEdit::event(aEvent);
    PaintEdgesOver(*this, *aEvent);
    return result;
}

void TextPane::Changed() {
    if (theFlushPosted) return;
    theFlushPosted = true;
    QMetaObject::invokeMethod(this, &TextPane::Flush, Qt::QueuedConnection);
}

void TextPane::Flush() {
    if (!theFlushPosted) return;
    theFlushPosted = false;
    if (theShownText != theText) {
        setPlainText(theText);
        theShownText = theText;
    }
    // A line end is two characters of the text and one of the document.
    const auto placeOf = [this](int aPosition) {
        const QStringView before = QStringView(theText).first(aPosition);
        return aPosition - static_cast<int>(before.count(u"\r\n"));
    };
    QTextCursor cursor = textCursor();
    cursor.setPosition(placeOf(theSelStart));
    cursor.setPosition(placeOf(theSelStart + theSelLength), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

}  // namespace Vk_DocQuery
