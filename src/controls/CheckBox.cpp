#include "controls/CheckBox.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include <Vk_DocQuery/Failure.h>

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

void CheckBox::paintEvent(QPaintEvent *aEvent) {
    QStyleOptionButton option;
    initStyleOption(&option);
    if (FitsOneLine(option))
        QCheckBox::paintEvent(aEvent);
    else
        PaintWrapped(option);
}

bool CheckBox::FitsOneLine(const QStyleOptionButton &aOption) const {
    const QRect contents = style()->subElementRect(QStyle::SE_CheckBoxContents, &aOption, this);
    return fontMetrics().horizontalAdvance(text()) <= contents.width() ||
           height() < 2 * fontMetrics().height();
}

void CheckBox::PaintWrapped(const QStyleOptionButton &aOption) {
    QStylePainter painter(this);
    const QRect contents = style()->subElementRect(QStyle::SE_CheckBoxContents, &aOption, this);
    const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;
    const QRect lines = fontMetrics().boundingRect(contents, flags, text());

    // The mark stands at the first line.
    QStyleOptionButton indicator = aOption;
    indicator.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &aOption, this);
    const int middle = lines.top() + fontMetrics().height() / 2;
    indicator.rect.moveTop(qMax(0, middle - indicator.rect.height() / 2));
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, indicator);

    painter.drawItemText(contents, flags, palette(), isEnabled(), text(), QPalette::WindowText);
    if (!aOption.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(aOption);
    focus.rect = lines.intersected(rect());
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace Vk_DocQuery
