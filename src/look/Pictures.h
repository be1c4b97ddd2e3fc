#pragma once

#include <memory>

#include <QIcon>

#include "look/ImageList.h"

namespace Vk_DocQuery {

/// The picture lists of the windows. They are made at first need, kept to the end of the process
/// and share their pictures. Every picture has a form for 100 %, 125 %, 150 % and 200 %.
std::shared_ptr<const ImageList> PanelImages();
std::shared_ptr<const ImageList> PickerImages();
/// Keys "active" and "passive".
std::shared_ptr<const ImageList> TabImages();
/// What the picture server gives: the picker's keys and those that the browser asks for beside
/// them.
std::shared_ptr<const ImageList> SharedImages();

/// aIndex is the bit of the document status, 0 to 3.
QIcon StatusPicture(int aIndex);

/// Numbers of the standard pictures of buttons.
enum StandardPictureNumber : int {
    CancelPicture = 2,
    HelpPicture = 3,
    OkPicture = 5,
};

QIcon StandardPicture(int aNumber);

/// aWindow is "dialog", "picker" or "browser".
QIcon WindowIcon(const QString &aWindow);

}  // namespace Vk_DocQuery
