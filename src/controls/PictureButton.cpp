#include "controls/PictureButton.h"

#include <QStyle>

#include "controls/DateBox.h"

namespace Vk_DocQuery {

namespace {

constexpr int thePictureOfCancel = 2;
constexpr int thePictureOfOk = 5;

}  // namespace

DButton::DButton(const QString &aCaption, int aPicture, QWidget *aParent)
    : QPushButton(aCaption, aParent), thePicture(aPicture) {
    if (aPicture == thePictureOfOk) setIcon(style()->standardIcon(QStyle::SP_DialogOkButton));
    if (aPicture == thePictureOfCancel) {
        setIcon(style()->standardIcon(QStyle::SP_DialogCancelButton));
        // Whoever cancels need not correct first.
        setProperty(DateBox::theChecksProperty, false);
    }
}

}  // namespace Vk_DocQuery
