#include <QDesktopServices>
#include <QFile>
#include <QTest>
#include <QUrl>

#include "controls/CheckBox.h"
#include "controls/HelpButton.h"
#include "controls/PictureButton.h"
#include "controls/Stitch.h"
#include "controls/TabControl.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// Stands for the desktop.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> Opened;

public slots:
    void Open(const QUrl &aUrl) { Opened << aUrl; }
};

}  // namespace

class TestButtons : public QObject {
    Q_OBJECT

private slots:
    void TabsHaveAnEdgeOnThreeSides() {
        TabControl tabs;
        tabs.resize(300, 200);
        tabs.SetPagePlace(3, 24);
        tabs.AddTab(QStringLiteral("a"), QStringLiteral("A"), new QWidget);
        const QImage image = tabs.grab().toImage();
        const QRgb ground = image.pixel(2, 100);
        QVERIFY(image.pixel(0, 100) != ground);
        for (const QPoint place : {QPoint(299, 100), QPoint(100, 199), QPoint(0, 199)})
            QCOMPARE(image.pixel(place), image.pixel(0, 100));
        for (const QPoint place : {QPoint(1, 100), QPoint(298, 100), QPoint(100, 198)})
            QCOMPARE(image.pixel(place), ground);
    }

    /// A caption has as many lines as there is room for, and stands in the middle of it.
    void CaptionTakesTheLinesThatThereAre() {
        const auto picture = [](QSize aSize) {
            CheckBox box(QStringLiteral("один два три четыре"));
            box.resize(aSize);
            return box.grab().toImage();
        };
        QCOMPARE(picture({60, 20}), picture({400, 20}).copy(0, 0, 60, 20));
        const QImage wide = picture({400, 60});
        QVERIFY(picture({60, 60}) != wide.copy(0, 0, 60, 60));
        int first = 60;
        int last = 0;
        for (int y = 0; y < 60; ++y) {
            for (int x = 30; x < 400; ++x) {
                if (wide.pixel(x, y) == wide.pixel(399, 0)) continue;
                first = std::min(first, y);
                last = y;
            }
        }
        QVERIFY2(std::abs(first + last - 59) < 6, qPrintable(QString::number(first + last)));
    }

    void StandardPictures() {
        const DButton ok(QStringLiteral("OK"), 5);
        const DButton cancel(QStringLiteral("Отмена"), 2);
        QCOMPARE(ok.text(), QStringLiteral("OK"));
        QVERIFY(!ok.icon().isNull());
        QVERIFY(!cancel.icon().isNull());
        QVERIFY(ok.icon().pixmap(16).toImage() != cancel.icon().pixmap(16).toImage());
        QVERIFY(DButton(QStringLiteral("x"), 0).icon().isNull());
    }

    void StitchIsALine() {
        const DStitch stitch;
        QCOMPARE(stitch.frameShape(), QFrame::HLine);
        QCOMPARE(stitch.maximumHeight(), 2);
    }

    void HelpOpensItsPageThroughTheDesktop() {
        Desktop desktop;
        const QString page = QStringLiteral("help_page_of_a_test.htm");
        DHelpButton button(page);
        QFile file(button.PagePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        button.show();
        QTest::mouseClick(&button, Qt::LeftButton);
        file.remove();
        QCOMPARE(desktop.Opened, QList<QUrl>{QUrl::fromLocalFile(button.PagePath())});
        QCOMPARE(button.PagePath(), QCoreApplication::applicationDirPath() + u'/' + page);
    }

    void PageThatTheDesktopDoesNotTakeGivesABox() {
        DHelpButton button(QStringLiteral("help_page_of_a_test.htm"));
        QFile file(button.PagePath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        button.show();
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Warning, QStringLiteral("Справка"),
            QStringLiteral("Не удалось открыть страницу справки \"%1\".").arg(button.PagePath()),
            QStringLiteral("OK"));
        QTest::mouseClick(&button, Qt::LeftButton);  // the platform of the tests has no desktop
        file.remove();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void MissingPageGivesABoxWithItsPath() {
        Desktop desktop;
        DHelpButton button(QStringLiteral("../no_such_folder/Program_setting.htm"));
        QVERIFY(!button.PagePath().contains(QStringLiteral("..")));
        button.show();
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Warning, QStringLiteral("Справка"),
            QStringLiteral("Не найдена страница справки \"%1\".").arg(button.PagePath()),
            QStringLiteral("OK"));
        QTest::mouseClick(&button, Qt::LeftButton);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(desktop.Opened.isEmpty());
    }
};

VK_TEST_CLASS(TestButtons);

#include "TestButtons.moc"
