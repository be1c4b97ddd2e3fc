#include <QApplication>
#include <QCheckBox>
#include <QImage>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include "browser/TextPane.h"
#include "controls/Colours.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// Its window, button and base colours differ, as those of few light desktops do.
QPalette DarkPalette() {
    QPalette palette(QColor(230, 230, 230), QColor(70, 70, 73), QColor(90, 90, 93),
                     QColor(25, 25, 28), QColor(35, 35, 38), QColor(230, 230, 230), Qt::red,
                     QColor(30, 30, 30), QColor(45, 45, 48));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(90, 90, 90));
    return palette;
}

/// Every criterion is on, and some elements are disabled.
void FillIn(QWidget &aDialog) {
    for (auto *box : aDialog.findChildren<QCheckBox *>()) box->setChecked(true);
    aDialog.findChild<QRadioButton *>(QStringLiteral("theRangePeriods"))->setChecked(true);
}

QList<QImage> TabsOf(QWidget &aDialog) {
    QList<QImage> images;
    auto *bar = aDialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
    for (int i = 0; i < bar->count(); ++i) {
        bar->setCurrentIndex(i);
        QApplication::processEvents();
        images << aDialog.grab().toImage();
    }
    return images;
}

/// The dialog as it looks when it is opened now.
QList<QImage> TabsOfNewDialog() {
    DocQueryOptionsFrm dialog;
    dialog.SetRecord(nullptr);
    dialog.show();
    FillIn(dialog);
    return TabsOf(dialog);
}

}  // namespace

class TestColours : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        theLight = QApplication::palette();
        MemoryOffice::Install();
    }
    void cleanup() { QApplication::setPalette(theLight); }

    /// The desktop goes dark and light again while the dialog is open.
    void OpenDialogFollowsTheDesktop() {
        const QList<QImage> light = TabsOfNewDialog();
        QApplication::setPalette(DarkPalette());
        const QList<QImage> dark = TabsOfNewDialog();
        QApplication::setPalette(theLight);
        QCOMPARE(light.size(), 5);
        for (int i = 0; i < 5; ++i) QVERIFY(light[i] != dark[i]);

        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        FillIn(dialog);
        QCOMPARE(TabsOf(dialog), light);
        QApplication::setPalette(DarkPalette());
        QCOMPARE(TabsOf(dialog), dark);
        QApplication::setPalette(theLight);
        QCOMPARE(TabsOf(dialog), light);
    }

    void OpenPickerFollowsTheDesktop() {
        QImage fresh;
        QImage followed;
        ModalDriver driver;
        driver.Expect([&](QWidget &aPicker) {
            QApplication::setPalette(DarkPalette());
            QApplication::processEvents();
            followed = aPicker.grab().toImage();
            aPicker.close();
        });
        driver.Expect([&](QWidget &aPicker) {
            fresh = aPicker.grab().toImage();
            aPicker.close();
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!fresh.isNull());
        QCOMPARE(followed, fresh);
    }

    void EdgeTellsTheFocus() {
        QWidget window;
        auto *pane = new TextPane(&window);
        auto *button = new QPushButton(&window);
        pane->setGeometry(10, 10, 100, 60);
        button->setGeometry(10, 80, 100, 25);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto edge = [&] { return window.grab().toImage().pixelColor(10, 40); };
        pane->setFocus();
        QTRY_COMPARE(edge(), window.palette().color(QPalette::Highlight));
        button->setFocus();
        QTRY_COMPARE(edge(), EdgeColour(window.palette()));
    }

    /// It covers the edge of its frame, and nothing else is to be seen of that.
    void CheckBoxOnAnEdgeHasTheGroundOfThePage() {
        QApplication::setPalette(DarkPalette());
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        auto *box = dialog.findChild<QCheckBox *>(QStringLiteral("theIsTaxpayers"));
        const QImage image = box->grab().toImage();
        QCOMPARE(image.pixelColor(image.width() - 1, 0), DarkPalette().color(QPalette::Window));
    }

private:
    QPalette theLight;
};

VK_TEST_CLASS(TestColours);
#include "TestColours.moc"
