#include "controls/PictureButton.h"

#include "controls/DateBox.h"
#include "controls/Pictures.h"

namespace Vk_DocQuery {

DButton::DButton(const QString &aCaption, int aPicture, QWidget *aParent)
    : QPushButton(aCaption, aParent), thePicture(aPicture) {
    if (aPicture != 0) setIcon(StandardPicture(aPicture));
    // Whoever cancels need not correct first.
    if (aPicture == CancelPicture) setProperty(DateBox::theChecksProperty, false);
}

}  // namespace Vk_DocQuery
