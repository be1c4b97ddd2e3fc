#include "controls/PictureButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include "controls/DateBox.h"
#include "look/Pictures.h"

namespace Vk_DocQuery {

DButton::DButton(const QString &aCaption, int aPicture, QWidget *aParent)
    : QPushButton(aCaption, aParent), thePicture(aPicture) {
    if (aPicture != 0) setIcon(StandardPicture(aPicture));
    // Whoever cancels need not correct first.
    if (aPicture == CancelPicture) setProperty(DateBox::theChecksProperty, false);
}

/// A style may show the focus just as it shows the default button, which then cannot be told from
/// one that has the focus as well.
void DButton::paintEvent(QPaintEvent *aEvent) {
    QPushButton::paintEvent(aEvent);
    QStyleOptionButton option;
    initStyleOption(&option);
    if (!isDefault() || !option.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(option);
    focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
    QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace Vk_DocQuery
