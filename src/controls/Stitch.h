#pragma once

#include <QFrame>

namespace Vk_DocQuery {

/// A horizontal line that parts a row of buttons from what is above it.
class DStitch : public QFrame {
    Q_OBJECT

public:
    explicit DStitch(QWidget *aParent = nullptr);
};

}  // namespace Vk_DocQuery
