#include "controls/OptionButton.h"

#include <QStyleOptionButton>

#include "controls/CaptionedMark.h"

namespace Vk_DocQuery {

OptionButton::OptionButton(const QString &aCaption, QWidget *aParent)
    : QRadioButton(aCaption, aParent) {
    connect(this, &QRadioButton::toggled, this, &OptionButton::Click);
}

void OptionButton::SetValue(bool aChosen) {
    // An exclusive button that is checked refuses to be unchecked.
    if (!aChosen) setAutoExclusive(false);
    setChecked(aChosen);
    setAutoExclusive(true);
}

bool OptionButton::hitButton(const QPoint &aPoint) const {
    return rect().contains(aPoint);
}

void OptionButton::paintEvent(QPaintEvent * /*aEvent*/) {
    QStyleOptionButton option;
    initStyleOption(&option);
    PaintCaptionedMark(*this, option,
                       {QStyle::PE_IndicatorRadioButton, QStyle::SE_RadioButtonIndicator,
                        QStyle::SE_RadioButtonContents});
}

}  // namespace Vk_DocQuery
