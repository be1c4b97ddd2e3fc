#include "controls/ComboBox.h"

#include <algorithm>

#include <QCompleter>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>

#include "controls/TextBox.h"

namespace Vk_DocQuery {

ComboBox::ComboBox(Kind aKind, QWidget *aParent) : QComboBox(aParent) {
    // All entries of the longest list of periods are seen at once.
    setMaxVisibleItems(24);
    setFocusPolicy(Qt::StrongFocus);
    if (aKind == Editable) TakeTexts();
}

/// A combo that is made editable makes a line, a completer and its drop-down list, which comes up
/// seldom. One that gets its line makes the list when it drops down, and no completer for a line
/// that has one.
void ComboBox::TakeTexts() {
    static auto *none =
        new QCompleter;  // never released: nothing may go after the application object has
    auto *line = new TextBox(this);
    line->setCompleter(none);
    setLineEdit(line);
    setCompleter(nullptr);
    setInsertPolicy(NoInsert);
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

/// Styles that draw a fixed combo as a button give it the colours of one. It is filled in as a text
/// box is, and shows by the same grounds whether it can be.
void ComboBox::initStyleOption(QStyleOptionComboBox *aOption) const {
    QComboBox::initStyleOption(aOption);
    if (isEditable()) return;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QPalette &colours = aOption->palette;
        colours.setBrush(group, QPalette::Button, colours.brush(group, QPalette::Base));
        colours.setBrush(group, QPalette::ButtonText, colours.brush(group, QPalette::Text));
    }
}

/// What the style shades like a button gets the even ground of a text box.
void ComboBox::paintEvent(QPaintEvent *aEvent) {
    if (isEditable()) return QComboBox::paintEvent(aEvent);
    constexpr int theFrame = 2;
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect ground = rect().adjusted(theFrame, theFrame, -theFrame, -theFrame);
    painter.fillRect(ground, option.palette.base());
    PaintArrow(painter, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    if (!hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(option);
    focus.rect = ground.adjusted(1, 1, -1, -1);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

void ComboBox::PaintArrow(QStylePainter &aPainter, const QStyleOptionComboBox &aOption) const {
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, &aOption, QStyle::SC_ComboBoxArrow, this);
    QStyleOption arrow = aOption;
    const int side = std::min({room.width(), room.height(), 2 * fontMetrics().height() / 3});
    arrow.rect = QRect(0, 0, side, side);
    arrow.rect.moveCenter(room.center());
    aPainter.drawPrimitive(QStyle::PE_IndicatorArrowDown, arrow);
}

void ComboBox::wheelEvent(QWheelEvent *aEvent) {
    // Who turns the wheel over a page scrolls it and must not change a criterion in passing; where
    // the focus is may be long out of mind. The list that drops down is scrolled by its own events.
    aEvent->ignore();
}

}  // namespace Vk_DocQuery
