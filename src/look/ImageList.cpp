#include "look/ImageList.h"

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

void ImageList::Add(const QString &aKey, const QIcon &aPicture) {
    if (thePictures.contains(aKey)) {
        throw Failure(
            KeyAlreadyPresent, QStringLiteral("ImageList"),
            QStringLiteral("Рисунок с ключом \"%1\" уже есть в списке рисунков.").arg(aKey));
    }
    theKeys.push_back(aKey);
    thePictures.insert(aKey, aPicture);
}

const QIcon &ImageList::Picture(const QString &aKey) const {
    const auto found = thePictures.constFind(aKey);
    if (found == thePictures.cend()) {
        throw Failure(InvalidArgument, QStringLiteral("ImageList"),
                      QStringLiteral("В списке рисунков нет рисунка с ключом \"%1\".").arg(aKey));
    }
    return *found;
}

}  // namespace Vk_DocQuery
