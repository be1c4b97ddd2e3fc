#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theTitle = QStringLiteral("Заголовок");
const QString theText = QStringLiteral("Текст с <знаками> & \"кавычками\"");

QStringList CaptionsOf(const QMessageBox &aBox) {
    QStringList captions;
    for (QAbstractButton *button : aBox.buttons()) captions << button->text().remove(u'&');
    captions.sort();
    return captions;
}

/// What a box looked like while it was up.
struct SeenBox {
    QMessageBox::Icon Icon = QMessageBox::NoIcon;
    QString Title;
    QString Text;
    QStringList Captions;
    QString Default;
    bool IsOverOwner = false;
    Qt::CursorShape Pointer = Qt::BlankCursor;
};

/// Notes what the next box looks like and ends it with a key.
void SeeAndPress(ModalDriver &aDriver, SeenBox &rSeen, Qt::Key aKey,
                 const QWidget *aOwner = nullptr) {
    aDriver.Expect([&aDriver, &rSeen, aKey, aOwner](QWidget &aWindow) {
        auto *box = qobject_cast<QMessageBox *>(&aWindow);
        if (!box) {
            aDriver.Complain(QStringLiteral("not a message box"));
            aWindow.close();
            return;
        }
        rSeen.Icon = box->icon();
        rSeen.Title = box->windowTitle();
        rSeen.Text = box->text();
        rSeen.Captions = CaptionsOf(*box);
        rSeen.IsOverOwner =
            aOwner && box->windowHandle()->transientParent() == aOwner->windowHandle();
        if (box->textFormat() != Qt::PlainText)
            aDriver.Complain(QStringLiteral("text is not plain"));
        for (QAbstractButton *button : box->buttons()) {
            auto *push = qobject_cast<QPushButton *>(button);
            if (push && push->isDefault()) rSeen.Default = button->text().remove(u'&');
        }
        if (const QCursor *pointer = QGuiApplication::overrideCursor())
            rSeen.Pointer = pointer->shape();
        QTest::keyClick(box, aKey);
    });
}

enum BoxKind { WarningKind, InfoKind, FailureKind };

void ShowBox(int aKind) {
    switch (aKind) {
        case WarningKind:
            ShowWarningBox(theText, theTitle);
            break;
        case InfoKind:
            ShowInfoBox(theText, theTitle);
            break;
        default:
            ShowFailureBox(theText, theTitle);
            break;
    }
}

/// Item data 10, 20, 20, 30 under the captions a to d; nothing is selected.
void FillCombo(QComboBox &rCombo) {
    rCombo.addItem(QStringLiteral("a"), 10);
    rCombo.addItem(QStringLiteral("b"), 20);
    rCombo.addItem(QStringLiteral("c"), 20);
    rCombo.addItem(QStringLiteral("d"), 30);
    rCombo.setCurrentIndex(-1);
}

QColor GroundOf(const QWidget &aWidget) {
    return aWidget.palette().color(aWidget.isEnabled() ? QPalette::Active : QPalette::Disabled,
                                   QPalette::Base);
}

}  // namespace

class TestScreenHelpers : public QObject {
    Q_OBJECT

private slots:
    void cleanup() {
        while (QGuiApplication::overrideCursor()) QGuiApplication::restoreOverrideCursor();
    }

    void BoxesHaveIconTextsAndOneButton_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("icon");
        QTest::newRow("warning") << int(WarningKind) << int(QMessageBox::Warning);
        QTest::newRow("information") << int(InfoKind) << int(QMessageBox::Information);
        QTest::newRow("failure") << int(FailureKind) << int(QMessageBox::Critical);
    }
    void BoxesHaveIconTextsAndOneButton() {
        QFETCH(int, kind);
        QFETCH(int, icon);
        ModalDriver driver;
        SeenBox seen;
        SeeAndPress(driver, seen, Qt::Key_Return);
        ShowBox(kind);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(int(seen.Icon), icon);
        QCOMPARE(seen.Title, theTitle);
        QCOMPARE(seen.Text, theText);
        QCOMPARE(seen.Captions, QStringList{QStringLiteral("OK")});
    }

    void BusyPointerDoesNotStandOverABox_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("warning") << int(WarningKind);
        QTest::newRow("information") << int(InfoKind);
        QTest::newRow("failure") << int(FailureKind);
        QTest::newRow("question") << -1;
    }
    void BusyPointerDoesNotStandOverABox() {
        QFETCH(int, kind);
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        ModalDriver driver;
        SeenBox seen;
        SeeAndPress(driver, seen, Qt::Key_Escape);
        if (kind >= 0) {
            ShowBox(kind);
        } else {
            AskYesNo(theText, theTitle);
        }
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(seen.Pointer, Qt::ArrowCursor);
        QVERIFY(QGuiApplication::overrideCursor());
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QGuiApplication::restoreOverrideCursor();
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void PlainPointerIsGivenBackToo() {
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, theTitle, theText, QStringLiteral("OK"));
        ShowInfoBox(theText, theTitle);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void BoxStandsOverTheModalWindow() {
        QDialog dialog;
        SeenBox seen;
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            SeeAndPress(driver, seen, Qt::Key_Return, &dialog);
            ShowWarningBox(theText, theTitle);
            aWindow.close();
        });
        dialog.exec();
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(seen.IsOverOwner);
    }

    void QuestionHasTwoButtons_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("byDefault");
        QTest::addColumn<bool>("onReturn");
        QTest::newRow("no flags") << 0 << QStringLiteral("Да") << true;
        QTest::newRow("second button") << 0x100 << QStringLiteral("Нет") << false;
    }
    void QuestionHasTwoButtons() {
        QFETCH(int, flags);
        QFETCH(QString, byDefault);
        QFETCH(bool, onReturn);
        ModalDriver driver;
        SeenBox seen;
        SeeAndPress(driver, seen, Qt::Key_Return);
        QCOMPARE(AskYesNo(theText, theTitle, flags), onReturn);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(seen.Icon, QMessageBox::Question);
        QCOMPARE(seen.Title, theTitle);
        QCOMPARE(seen.Text, theText);
        QCOMPARE(seen.Captions, QStringList({QStringLiteral("Да"), QStringLiteral("Нет")}));
        QCOMPARE(seen.Default, byDefault);
    }

    void AnswerIsTheButtonThatWasClicked_data() {
        QTest::addColumn<int>("flags");
        QTest::addColumn<QString>("byDefault");
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("answer");
        const QString yes = QStringLiteral("Да");
        const QString no = QStringLiteral("Нет");
        for (const int flags : {0, 0x100}) {
            const QString byDefault = flags == 0 ? yes : no;
            QTest::addRow("yes, flags %d", flags) << flags << byDefault << yes << true;
            QTest::addRow("no, flags %d", flags) << flags << byDefault << no << false;
        }
    }
    void AnswerIsTheButtonThatWasClicked() {
        QFETCH(int, flags);
        QFETCH(QString, byDefault);
        QFETCH(QString, button);
        QFETCH(bool, answer);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Question, theTitle, theText, button, byDefault);
        QCOMPARE(AskYesNo(theText, theTitle, flags), answer);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EscapeIsNo() {
        ModalDriver driver;
        SeenBox seen;
        SeeAndPress(driver, seen, Qt::Key_Escape);
        QVERIFY(!AskYesNo(theText, theTitle));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void BoxIsCopiedWhole_data() {
        QTest::addColumn<bool>("question");
        QTest::addColumn<QString>("focus");
        QTest::addColumn<QString>("copied");
        const QString line = QStringLiteral("---------------------------\n");
        const QString head = line + QStringLiteral("Заголовок\n") + line +
                             QStringLiteral("Первая\nвторая & <третья>\n") + line;
        const QString failure = head + QStringLiteral("OK\n") + line;
        const QString question = head + QStringLiteral("Да   Нет\n") + line;
        QTest::newRow("failure, button") << false << "QPushButton" << failure;
        QTest::newRow("failure, text") << false << "QLabel" << failure;
        QTest::newRow("question, button") << true << "QPushButton" << question;
        QTest::newRow("question, text") << true << "QLabel" << question;
    }
    void BoxIsCopiedWhole() {
        QFETCH(bool, question);
        QFETCH(QString, focus);
        QFETCH(QString, copied);
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            QApplication::clipboard()->clear();
            QWidget *element = nullptr;
            for (auto *child : aBox.findChildren<QWidget *>())
                if (child->inherits(focus.toLatin1().constData()) &&
                    child->focusPolicy() != Qt::NoFocus)
                    element = child;
            if (!element) return aBox.close(), driver.Complain(QStringLiteral("no element"));
            element->setFocus();
            QTest::keyClick(aBox.focusWidget(), Qt::Key_C, Qt::ControlModifier);
            aBox.close();
        });
        const QString text = QStringLiteral("Первая\r\nвторая & <третья>");
        if (question)
            AskYesNo(text, theTitle);
        else
            ShowFailureBox(text, theTitle);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(QApplication::clipboard()->text(), copied);
    }

    void WhatIsSelectedInABoxIsCopiedAlone() {
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            auto *label = aBox.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
            label->setFocus();
            label->setSelection(0, 5);
            QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
            aBox.close();
        });
        ShowFailureBox(theText, theTitle);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(QApplication::clipboard()->text(), theText.left(5));
    }

    void BoxIsWrittenAsItsOwnerIs() {
        QDialog owner;
        QFont font = owner.font();
        font.setPointSizeF(font.pointSizeF() + 3);
        owner.setFont(font);
        owner.show();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            if (aBox.font() != font) driver.Complain(QStringLiteral("the box has another font"));
            for (auto *button : aBox.findChildren<QPushButton *>()) {
                if (!button->icon().isNull()) driver.Complain(button->text());
            }
            aBox.close();
        });
        ShowInfoBox(theText, theTitle);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EnablingGivesTheWindowColour() {
        QLineEdit control;
        control.setPalette(QPalette(Qt::red, Qt::red));
        control.setEnabled(false);
        EnableControl(control, true);
        QVERIFY(control.isEnabled());
        QCOMPARE(GroundOf(control),
                 QApplication::palette().color(QPalette::Active, QPalette::Base));
    }

    void DisablingGivesTheColourOfAButtonFace() {
        QLineEdit control;
        control.setPalette(QPalette(Qt::red, Qt::red));
        EnableControl(control, false);
        QVERIFY(!control.isEnabled());
        QCOMPARE(GroundOf(control),
                 QApplication::palette().color(QPalette::Disabled, QPalette::Button));
    }

    void CompanionFollowsWithoutAColour() {
        QLineEdit control;
        QLabel companion;
        const QPalette before = companion.palette();
        EnableControl(control, false, &companion);
        QVERIFY(!control.isEnabled());
        QVERIFY(!companion.isEnabled());
        QVERIFY(!companion.testAttribute(Qt::WA_SetPalette));
        EnableControl(control, true, &companion);
        QVERIFY(companion.isEnabled());
        QCOMPARE(companion.palette(), before);
    }

    void ColoursFollowTheDesktop() {
        const QPalette before = QApplication::palette();
        QPalette dark = before;
        dark.setColor(QPalette::Active, QPalette::Base, QColor(20, 21, 22));
        dark.setColor(QPalette::Disabled, QPalette::Button, QColor(50, 51, 52));
        QLineEdit control;
        EnableControl(control, true);
        QApplication::setPalette(dark);
        EnableControl(control, true);
        const QColor enabled = GroundOf(control);
        EnableControl(control, false);
        const QColor disabled = GroundOf(control);
        QApplication::setPalette(before);
        QCOMPARE(enabled, QColor(20, 21, 22));
        QCOMPARE(disabled, QColor(50, 51, 52));
    }

    void SelectComboByData_data() {
        QTest::addColumn<int>("data");
        QTest::addColumn<int>("byDefault");
        QTest::addColumn<int>("index");
        QTest::newRow("first") << 10 << -1 << 0;
        QTest::newRow("last") << 30 << -1 << 3;
        QTest::newRow("first of two equal") << 20 << -1 << 1;
        QTest::newRow("none, nothing selected") << 40 << -1 << -1;
        QTest::newRow("none, default") << 40 << 2 << 2;
        QTest::newRow("a row number is no data") << 1 << 3 << 3;
    }
    void SelectComboByData() {
        QFETCH(int, data);
        QFETCH(int, byDefault);
        QFETCH(int, index);
        QComboBox combo;
        FillCombo(combo);
        Vk_DocQuery::SelectComboByData(combo, data, byDefault);
        QCOMPARE(combo.currentIndex(), index);
    }

    void NoRowsSelectNothing() {
        QComboBox combo;
        Vk_DocQuery::SelectComboByData(combo, 10, -1);
        QCOMPARE(combo.currentIndex(), -1);
        QCOMPARE(GetComboData(combo, 7), 7);
    }

    void ComboDataIsThatOfTheSelectedRow() {
        QComboBox combo;
        FillCombo(combo);
        QCOMPARE(GetComboData(combo, -5), -5);
        combo.setCurrentIndex(3);
        QCOMPARE(GetComboData(combo, -5), 30);
    }

    void TwipsPerPixelAreThoseOfTheScreen() {
        const double dots = QGuiApplication::primaryScreen()->logicalDotsPerInchX();
        QCOMPARE(GetTwipsPerPixel(), qRound(1440 / dots));
        QCOMPARE(GetTwipsPerPixel(), GetTwipsPerPixel());
    }

    void TwipsAndPixels() {
        if (QGuiApplication::primaryScreen()->logicalDotsPerInchX() != 96.0)
            QSKIP("the screen has another density");
        QCOMPARE(GetTwipsPerPixel(), 15);
        QCOMPARE(PixelsFromTwips(0), 0);
        QCOMPARE(PixelsFromTwips(12315), 821);
        QCOMPARE(PixelsFromTwips(8835), 589);
        QCOMPARE(PixelsFromTwips(-30), -2);
        QCOMPARE(PixelsFromTwips(22), 1);
        QCOMPARE(PixelsFromTwips(23), 2);
        QCOMPARE(TwipsFromPixels(821), 12315);
        QCOMPARE(TwipsFromPixels(-2), -30);
    }
};

VK_TEST_CLASS(TestScreenHelpers);

#include "TestScreenHelpers.moc"
