#include "controls/PictureButton.h"

#include "controls/DateBox.h"
#include "controls/Pictures.h"

namespace Vk_DocQuery {

DButton::DButton(const QString &aCaption, int aPicture, QWidget *aParent)
    : QPushButton(aCaption, aParent), thePicture(aPicture) {
    // The style's own pictures are unpacked anew for every window.
    if (aPicture == OkPicture || aPicture == CancelPicture) setIcon(StandardPicture(aPicture));
    if (aPicture == CancelPicture) {
        // Whoever cancels need not correct first.
        setProperty(DateBox::theChecksProperty, false);
    }
}

}  // namespace Vk_DocQuery
