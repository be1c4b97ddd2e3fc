#include "controls/Stitch.h"

namespace Vk_DocQuery {

DStitch::DStitch(QWidget *aParent) : QFrame(aParent) {
    setFrameShape(QFrame::HLine);
    setFrameShadow(QFrame::Sunken);
    setFixedHeight(2);
}

}  // namespace Vk_DocQuery
