#pragma once

#include <QStringList>

class QWidget;

namespace VkTests {

/// The name of the element, or of the one that it is a part of.
QString NameOf(const QWidget *aElement);

/// The names of what the user can operate on the window as it stands, sorted, by what stands on it
/// and not by the order of focus. Of the options of a group the chosen one stands for all.
QStringList Operable(const QWidget &aWindow);

}  // namespace VkTests
