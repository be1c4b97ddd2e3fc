#pragma once

#include <QRect>

namespace Vk_DocQuery {

/// Where an element lies in what holds it, as designed, in twips, and what of it follows the right
/// and the lower edge when that is larger or smaller than designed.
struct Placement {
    enum Follows : int { Nothing = 0, Left = 1, Top = 2, Width = 4, Height = 8 };

    int theLeft, theTop, theWidth, theHeight;
    int theFollowed = Nothing;

    /// In pixels; aGrowth tells how many pixels what holds it is larger than designed.
    QRect InPixels(QSize aGrowth = QSize(0, 0)) const;
};

/// The size in pixels of something that is so many twips wide and high.
QSize SizeFromTwips(int aWidth, int aHeight);

}  // namespace Vk_DocQuery
