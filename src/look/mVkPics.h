#pragma once

#include <functional>
#include <memory>

#include <QString>

#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

class ImageList;

/// Holder of the picture list that windows share; the class is entered into the class registry
/// under thePictureServerClass.
class VkPictureServer : public Object {
public:
    virtual std::shared_ptr<const ImageList> GetImageList(qint32 aSizeKind) = 0;
};

inline constexpr QLatin1String thePictureServerClass("VkPictureServer");

/// The shared picture list; null under the development environment, where lists go without
/// pictures.
std::shared_ptr<const ImageList> QueryImageList(qint32 aSizeKind);

/// The key to set as a picture, or an empty text, which sets none. Whether the key exists shows
/// when a list resolves it.
QString QueryIcon(const QString &aKey);

/// Whether the process is the development environment, which shows windows while they are designed.
/// Found out once.
bool WeAreUnderIde();

/// Gives the path of the process's executable, empty if it cannot be told.
using ExecutablePathSource = std::function<QString()>;
/// Puts another source in place, none for the process itself, and forgets the answer found before.
void SetExecutablePathSource(ExecutablePathSource aSource);

}  // namespace Vk_DocQuery
