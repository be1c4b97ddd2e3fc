#include "windows/Placement.h"

#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

QRect Placement::InPixels(QSize aGrowth) const {
    QRect place(QPoint(PixelsFromTwips(theLeft), PixelsFromTwips(theTop)),
                SizeFromTwips(theWidth, theHeight));
    if (theFollowed & Left) place.translate(aGrowth.width(), 0);
    if (theFollowed & Top) place.translate(0, aGrowth.height());
    if (theFollowed & Width) place.setWidth(place.width() + aGrowth.width());
    if (theFollowed & Height) place.setHeight(place.height() + aGrowth.height());
    return place;
}

QSize SizeFromTwips(int aWidth, int aHeight) {
    return {PixelsFromTwips(aWidth), PixelsFromTwips(aHeight)};
}

}  // namespace Vk_DocQuery
