#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QScreen>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "browser/TemplateQuerierForm.h"
#include "controls/DateBox.h"
#include "dialog/DialogUser.h"
#include "lists/ListView.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theQuestionTitle = QStringLiteral("Норвик: Критерии поиска документов");
const QString theQuestion = QStringLiteral(
    "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?");

/// The window is on the screen, and the compositor was told over which one it belongs.
bool IsOver(QWidget &aWindow, const QWidget &aOwner) {
    return QTest::qWaitForWindowExposed(&aWindow) &&
           aWindow.windowHandle()->transientParent() == aOwner.window()->windowHandle();
}

void Open(const User &aUser, int aTab) {
    aUser.Element<QTabBar>("theTabBar")->setCurrentIndex(aTab);
}

/// Runs the dialog as the user does; true if it was confirmed.
bool Run(const std::function<void(const User &, ModalDriver &)> &aActions) {
    DocQueryOptionsFrm dialog;
    ModalDriver driver;
    const bool confirmed =
        RunWith(dialog, driver, [&](const User &user) { aActions(user, driver); });
    if (!driver.Done()) QTest::qFail(driver.Complaint(), __FILE__, __LINE__);
    return confirmed;
}

/// The next modal window has to lie over the owner.
void ExpectOver(const User &aUser, ModalDriver &aDriver, const char *aWhat) {
    aDriver.Expect([&aUser, &aDriver, aWhat](QWidget &window) {
        if (!IsOver(window, aUser.theWindow)) aDriver.Complain(QString::fromUtf8(aWhat));
        window.close();
    });
}

QWidget *Tip() {
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->inherits("QTipLabel") && window->isVisible()) return window;
    return nullptr;
}

QByteArray SizeOf(const QWidget &aWindow) {
    return QStringLiteral("%1 %2 x %3")
        .arg(aWindow.objectName())
        .arg(aWindow.width())
        .arg(aWindow.height())
        .toUtf8();
}

}  // namespace

/// Under a compositor of Wayland windows cannot place themselves, and what belongs over another
/// window has to say so.
class TestWayland : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("wayland|popup|grab|transient"),
                                                QRegularExpression::CaseInsensitiveOption));
        MemoryOffice::Install();
    }
    void cleanup() { MemoryOffice::Clear(); }

    /// Without this the others could pass on another display.
    void DisplayIsWayland() {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
    }

    void DialogGoesItsRoad() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("mine.qvk"));
        const bool confirmed = Run([&](const User &user, ModalDriver &driver) {
            Open(user, 4);
            QTest::mouseClick(user.Element<QCheckBox>("theIsSignerFio"), Qt::LeftButton);
            QTest::keyClicks(user.Element<QLineEdit>("theSignerSurname"), QStringLiteral("Petrov"));
            driver.ExpectFileDialog(QStringLiteral("Сохранить файл критериев поиска"),
                                    QStringLiteral("Query.qvk"), path);
            user.Press("theSaveAs");
            user.ExpectCaption(QStringLiteral("Поиск документов - [%1]").arg(path));
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
            user.Press("theOK");
        });
        QVERIFY(confirmed);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("SignerSurname=\"Petrov\""));
    }

    void WindowsLieOverTheirOwner() {
        Run([](const User &user, ModalDriver &driver) {
            QVERIFY(QTest::qWaitForWindowExposed(&user.theWindow));
            ExpectOver(user, driver, "the file dialog does not lie over its owner");
            user.Press("theLoad");
            Open(user, 0);
            user.Element<QCheckBox>("theIsTaxpayers")->setChecked(true);
            ExpectOver(user, driver, "the picker does not lie over its owner");
            user.Press("theTaxpayerAdd");
            ExpectOver(user, driver, "the box does not lie over its owner");
            user.Press("theOK");
        });
    }

    void CalendarComesUp() {
        Run([](const User &user, ModalDriver & /*driver*/) {
            Open(user, 4);
            user.Element<QCheckBox>("theIsSignDate")->setChecked(true);
            auto *date = user.Element<DateBox>("theSignDate1");
            date->SetValue(QDate(2025, 10, 1));
            QTest::keyClick(date->Edit(), Qt::Key_F4);
            QWidget *calendar = QApplication::activePopupWidget();
            QVERIFY(calendar);
            QVERIFY(IsOver(*calendar, user.theWindow));
            QTest::keyClick(calendar->focusProxy(), Qt::Key_Right);
            QTest::keyClick(calendar->focusProxy(), Qt::Key_Return);
            QVERIFY(!QApplication::activePopupWidget());
            QCOMPARE(date->Edit()->text(), QStringLiteral("02.10.2025"));
        });
    }

    void DropDownComesUp() {
        Run([](const User &user, ModalDriver & /*driver*/) {
            Open(user, 2);
            user.Element<QCheckBox>("theIsPeriods")->setChecked(true);
            auto *combo = user.Element<QComboBox>("thePeriodTime");
            combo->setCurrentIndex(0);
            QTest::keyClick(combo, Qt::Key_F4);
            QWidget *list = QApplication::activePopupWidget();
            QVERIFY(list);
            QVERIFY(IsOver(*list, user.theWindow));
            QTest::keyClick(combo->view(), Qt::Key_Down);
            QTest::keyClick(combo->view(), Qt::Key_Return);
            QTRY_VERIFY(!QApplication::activePopupWidget());
            QCOMPARE(combo->currentIndex(), 1);
        });
    }

    void TipComesUp() {
        ListView list;
        list.AddColumn(QString(), 600);
        list.AddRow(QString())->SetText(QStringLiteral("ООО Северный ветер"));
        list.resize(200, 100);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        const QPoint at = list.RowRect(list.Row(0)).topLeft() + QPoint(10, 5);
        QHelpEvent help(QEvent::ToolTip, at, list.viewport()->mapToGlobal(at));
        QApplication::sendEvent(list.viewport(), &help);
        QTRY_VERIFY(Tip());
        QVERIFY(IsOver(*Tip(), list));
    }

    void NoWindowIsLargerThanItsScreen() {
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        Run([&](const User &user, ModalDriver &driver) {
            Open(user, 0);
            user.Element<QCheckBox>("theIsTaxpayers")->setChecked(true);
            QWidget *picker = nullptr;
            driver.Expect([&](QWidget &window) {
                picker = &window;
                const auto end = qScopeGuard([&] { window.close(); });
                const QSize room = window.screen()->availableSize();
                for (const QWidget *shown :
                     {static_cast<QWidget *>(&browser), &user.theWindow, picker})
                    QVERIFY2(shown->width() <= room.width() && shown->height() <= room.height(),
                             SizeOf(*shown));
            });
            user.Press("theTaxpayerAdd");
            QVERIFY(picker);
        });
    }
};

VK_TEST_CLASS(TestWayland);
#include "TestWayland.moc"
