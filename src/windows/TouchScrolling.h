#pragma once

#include <functional>

class QAbstractScrollArea;

namespace Vk_DocQuery {

/// Lets a finger scroll the area, and makes a click of a tap. An area that shows all of its content
/// leaves touches to what is around it. The mouse does what it did.
///
/// aStep tells how many pixels a step of the vertical bar is high; without it one.
void ScrollByTouch(QAbstractScrollArea &aArea, std::function<int()> aStep = nullptr);

}  // namespace Vk_DocQuery
