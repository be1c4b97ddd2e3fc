#include "look/Operable.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QWidget>

#include "browser/TextPane.h"
#include "lists/ListView.h"

using namespace Vk_DocQuery;

namespace VkTests {

QString NameOf(const QWidget *aElement) {
    for (const QWidget *element = aElement; element; element = element->parentWidget())
        if (element->objectName().startsWith(u"the")) return element->objectName();
    return QStringLiteral("nothing");
}

QStringList Operable(const QWidget &aWindow) {
    QStringList names;
    for (const QWidget *element : aWindow.findChildren<QWidget *>()) {
        if (!element->isVisible() || !element->isEnabled() || element->focusProxy()) continue;
        const auto *option = qobject_cast<const QRadioButton *>(element);
        const bool input = qobject_cast<const QAbstractButton *>(element) ||
                           qobject_cast<const QLineEdit *>(element) ||
                           qobject_cast<const QComboBox *>(element) ||
                           qobject_cast<const ListView *>(element) ||
                           qobject_cast<const TextPane *>(element) || element->inherits("QTabBar");
        if (!input || (option && !option->isChecked()) || element->inherits("QToolButton"))
            continue;
        names << NameOf(element);
    }
    names.removeDuplicates();
    names.sort();
    return names;
}

}  // namespace VkTests
