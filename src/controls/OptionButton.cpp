#include "controls/OptionButton.h"

#include <algorithm>
#include <functional>

#include <QStyleOptionButton>

#include "controls/CaptionedMark.h"

namespace Vk_DocQuery {

OptionButton::OptionButton(const QString &aCaption, QWidget *aParent)
    : QRadioButton(aCaption, aParent) {
    connect(this, &QRadioButton::toggled, this, &OptionButton::ShareTabStop);
    connect(this, &QRadioButton::toggled, this, &OptionButton::Click);
}

void OptionButton::SetValue(bool aChosen) {
    // An exclusive button that is checked refuses to be unchecked.
    if (!aChosen) setAutoExclusive(false);
    setChecked(aChosen);
    setAutoExclusive(true);
}

void OptionButton::ShareTabStop() {
    if (!parentWidget()) return;
    const auto group = parentWidget()->findChildren<OptionButton *>(Qt::FindDirectChildrenOnly);
    const bool any = std::any_of(group.begin(), group.end(), std::mem_fn(&OptionButton::Value));
    for (OptionButton *option : group)
        option->setFocusPolicy(!any || option->Value() ? Qt::StrongFocus : Qt::ClickFocus);
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
