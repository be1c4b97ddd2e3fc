#include "controls/ComboBox.h"

#include <QWheelEvent>

#include "controls/TextBox.h"

namespace Vk_DocQuery {

ComboBox::ComboBox(Kind aKind, QWidget *aParent) : QComboBox(aParent) {
    // All entries of the longest list of periods are seen at once.
    setMaxVisibleItems(24);
    setFocusPolicy(Qt::StrongFocus);
    if (aKind == Fixed) return;
    setEditable(true);
    setLineEdit(new TextBox(this));
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);
}

void ComboBox::AddItem(const QString &aText, qint32 aItemData) {
    // The first entry would select itself.
    const int selected = currentIndex();
    addItem(aText, aItemData);
    setCurrentIndex(selected);
}

void ComboBox::SetText(const QString &aText) {
    const int entry = findText(aText, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (entry >= 0 || isEditable()) setCurrentIndex(entry);
    if (isEditable()) setEditText(aText);
}

void ComboBox::wheelEvent(QWheelEvent *aEvent) {
    // Who turns the wheel over a page scrolls it and must not change a criterion in passing; where
    // the focus is may be long out of mind. The list that drops down is scrolled by its own events.
    aEvent->ignore();
}

}  // namespace Vk_DocQuery
