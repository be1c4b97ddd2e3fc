#include "controls/ImageList.h"

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

void ImageList::Add(const QString &aKey, const QIcon &aPicture) {
    if (!thePictures.contains(aKey)) theKeys.push_back(aKey);
    thePictures.insert(aKey, aPicture);
}

const QIcon &ImageList::Picture(const QString &aKey) const {
    const auto found = thePictures.constFind(aKey);
    if (found == thePictures.constEnd()) {
        throw Failure(InvalidArgument, QStringLiteral("ImageList"),
                      QStringLiteral("Картинки \"%1\" нет в списке.").arg(aKey));
    }
    return *found;
}

}  // namespace Vk_DocQuery
