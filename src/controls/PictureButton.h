#pragma once

#include <QPushButton>

namespace Vk_DocQuery {

/// A push button with one of the standard pictures: 5 for OK, 2 for cancel, 0 for none.
class DButton : public QPushButton {
    Q_OBJECT

public:
    DButton(const QString &aCaption, int aPicture, QWidget *aParent = nullptr);
    int Picture() const { return thePicture; }

protected:
    void paintEvent(QPaintEvent *aEvent) override;

private:
    int thePicture;
};

}  // namespace Vk_DocQuery
