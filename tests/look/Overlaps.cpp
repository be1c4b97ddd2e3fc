#include "look/Overlaps.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontInfo>
#include <QLabel>

#include "controls/Frame.h"

using namespace Vk_DocQuery;

namespace VkTests {

void TurnEverythingOn(QWidget &aDialog) {
    for (auto *box : aDialog.findChildren<QCheckBox *>()) box->setChecked(true);
}

QRect Shown(const QWidget &aElement, const QWidget &aWindow) {
    QSize size = aElement.size();
    const auto *button = qobject_cast<const QAbstractButton *>(&aElement);
    const bool mark = button && button->isCheckable();
    const auto *label = qobject_cast<const QLabel *>(&aElement);
    const QString text = mark ? button->text() : label ? label->text() : QString();
    if (!text.isEmpty()) {
        const int indicator = mark ? 20 * QFontInfo(aElement.font()).pixelSize() / 11 : 0;
        size.setWidth(
            std::min(size.width(), aElement.fontMetrics().horizontalAdvance(text) + indicator));
    }
    QRect shown(aElement.mapTo(&aWindow, QPoint(0, 0)), size);
    for (const QWidget *around = aElement.parentWidget(); around != &aWindow;
         around = around->parentWidget())
        shown &= QRect(around->mapTo(&aWindow, QPoint(0, 0)), around->size());
    return shown & aWindow.rect();
}

QList<QWidget *> LooseElements(const QWidget &aWindow) {
    QList<QWidget *> elements;
    for (QWidget *element : aWindow.findChildren<QWidget *>()) {
        const QString name = element->objectName();
        if (!element->isVisible() || !(name.startsWith(u"the") || name.startsWith(u"Label")))
            continue;
        if (element->findChild<QAbstractButton *>() || element->findChild<QLabel *>() ||
            qobject_cast<const Frame *>(element))
            continue;
        elements << element;
    }
    return elements;
}

QByteArray Overlaps(const QWidget &aWindow) {
    const QList<QWidget *> elements = LooseElements(aWindow);
    QStringList faults;
    for (qsizetype i = 0; i < elements.size(); ++i) {
        for (qsizetype j = i + 1; j < elements.size(); ++j) {
            const QWidget *one = elements.at(i);
            const QWidget *other = elements.at(j);
            if (one->isAncestorOf(other) || other->isAncestorOf(one)) continue;
            if (Shown(*one, aWindow).intersects(Shown(*other, aWindow)))
                faults << one->objectName() + QStringLiteral(" on ") + other->objectName();
        }
    }
    return faults.join(u'\n').toUtf8();
}

}  // namespace VkTests
