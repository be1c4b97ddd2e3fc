#include <QPushButton>
#include <QShortcut>

#include "controls/AltKeys.h"
#include "panel/VkDocQueryCriteries.h"

namespace Vk_DocQuery {

namespace {

/// A button beside a list is pressed by Alt with its letter from the whole page, and by a key of
/// its own in the list.
struct ButtonKeys {
    ElementOf<QPushButton> Button;
    char16_t AltKey;
    ElementOf<ListView> List;
    Qt::Key KeyInList;
};

constexpr ButtonKeys theButtonKeys[] = {
    {"theTaxpayerAdd", u'Д', "theTaxpayersList", Qt::Key_Insert},
    {"theTaxpayerDelete", u'У', "theTaxpayersList", Qt::Key_Delete},
    {"theAccStreamAdd", u'Д', "theAccStreamsList", Qt::Key_Insert},
    {"theAccStreamDelete", u'У', "theAccStreamsList", Qt::Key_Delete},
    {"theTemplatesAdd", u'Д', "theTemplatesList", Qt::Key_Insert},
    {"theTemplatesDelete", u'У', "theTemplatesList", Qt::Key_Delete},
};

}  // namespace

void VkDocQueryCriteries::GiveKeys() {
    for (const ButtonKeys &keys : theButtonKeys) {
        auto *button = &The(keys.Button);
        const QKeySequence inList(keys.KeyInList);
        GiveAltKey(*button, keys.AltKey, inList.toString(QKeySequence::NativeText));
        auto *shortcut = new QShortcut(inList, &The(keys.List));
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, button, [button] {
            if (button->isVisible()) button->click();
        });
    }
}

}  // namespace Vk_DocQuery
