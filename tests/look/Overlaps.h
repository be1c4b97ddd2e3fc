#pragma once

#include <QWidget>

namespace VkTests {

/// Switches everything of the dialog on, so that all of it shows.
void TurnEverythingOn(QWidget &aDialog);

/// The part of an element that shows something and that no area around it cuts off, in the window.
QRect Shown(const QWidget &aElement, const QWidget &aWindow);

/// The elements that the user sees something of or could scroll to; groups of others are left out.
QList<QWidget *> LooseElements(const QWidget &aWindow);

/// Pairs of elements that lie on one another, parted by line ends.
QByteArray Overlaps(const QWidget &aWindow);

}  // namespace VkTests
