#pragma once

class QAbstractScrollArea;

namespace Vk_DocQuery {

/// Lets the area keep the wheel at its end as long as one turn goes on, so that the page does not
/// run away under a list that is scrolled. After a pause the wheel is for what is around the area.
void KeepWheel(QAbstractScrollArea &aArea);

}  // namespace Vk_DocQuery
