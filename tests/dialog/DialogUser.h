#pragma once

#include <functional>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "dialog/DocQueryOptionsFrm.h"
#include "support/ModalDriver.h"

namespace VkTests {

/// The dialog in the hands of a user.
struct User {
    ModalDriver &theDriver;
    QWidget &theWindow;

    template <class Kind = QWidget>
    Kind *Element(const char *aName) const {
        auto *element = theWindow.findChild<Kind *>(QString::fromUtf8(aName));
        if (!element) theDriver.Complain(QStringLiteral("no element ") + QString::fromUtf8(aName));
        return element;
    }
    void Press(const char *aButton) const { theDriver.Click(Element<QPushButton>(aButton)); }
    /// Turns the criterion by the signer's surname on and types the surname.
    void StateSurname(const QString &aSurname) const {
        QTest::keyClick(&theWindow, Qt::Key_Tab, Qt::ControlModifier);
        auto *box = Element<QLineEdit>("theSignerSurname");
        auto *tick = Element<QCheckBox>("theIsSignerFio");
        if (!box || !tick) return;
        tick->setChecked(true);
        box->setText(aSurname);
    }
    void ExpectCaption(const QString &aCaption) const {
        if (theWindow.windowTitle() != aCaption)
            theDriver.Complain(QStringLiteral("caption is ") + theWindow.windowTitle());
    }
    void ExpectOpen() const {
        if (!theWindow.isVisible()) theDriver.Complain(QStringLiteral("the dialog is closed"));
    }
};

/// Runs the dialog with what the user does in it; what the user leaves open is cancelled.
inline bool RunWith(Vk_DocQuery::DocQueryOptionsFrm &aDialog, ModalDriver &aDriver,
                    const std::function<void(const User &)> &aActions) {
    aDriver.Expect([&](QWidget &window) {
        const User user{aDriver, window};
        aActions(user);
        if (window.isVisible()) window.close();
    });
    return aDialog.Execute();
}

}  // namespace VkTests
