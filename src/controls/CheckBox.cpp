#include "controls/CheckBox.h"

#include <QStyleOptionButton>

#include <Vk_DocQuery/Failure.h>

#include "controls/CaptionedMark.h"

namespace Vk_DocQuery {

CheckBox::CheckBox(const QString &aCaption, QWidget *aParent) : QCheckBox(aCaption, aParent) {
    connect(this, &QCheckBox::stateChanged, this, &CheckBox::Click);
}

int CheckBox::Value() const {
    switch (checkState()) {
        case Qt::Checked:
            return 1;
        case Qt::PartiallyChecked:
            return 2;
        case Qt::Unchecked:
            break;
    }
    return 0;
}

void CheckBox::SetValue(int aValue) {
    switch (aValue) {
        case 0:
            return setCheckState(Qt::Unchecked);
        case 1:
            return setCheckState(Qt::Checked);
        case 2:
            return setCheckState(Qt::PartiallyChecked);
        default:
            throw Failure(InvalidArgument, objectName(),
                          QStringLiteral("Недопустимое значение флажка: %1.").arg(aValue));
    }
}

bool CheckBox::hitButton(const QPoint &aPoint) const {
    return rect().contains(aPoint);
}

void CheckBox::nextCheckState() {
    setCheckState(checkState() == Qt::Unchecked ? Qt::Checked : Qt::Unchecked);
}

void CheckBox::paintEvent(QPaintEvent * /*aEvent*/) {
    QStyleOptionButton option;
    initStyleOption(&option);
    PaintCaptionedMark(
        *this, option,
        {QStyle::PE_IndicatorCheckBox, QStyle::SE_CheckBoxIndicator, QStyle::SE_CheckBoxContents});
}

}  // namespace Vk_DocQuery
