#include <QLabel>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/TemplateQuerier.h>

#include "controls/Sheet.h"
#include "look/Pictures.h"
#include "OpenBrowser.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

class TestBrowserWindow : public QObject {
    Q_OBJECT

private slots:
    void init() { EmptyOffice(); }

    void ElementsStandAtTheirPlaces_data() {
        QTest::addColumn<QRect>("made");   // twips
        QTest::addColumn<QRect>("shown");  // as the first resize leaves it: 12720 by 10260 twips
                                           // less four pixels at the right edge
        const auto row = [](const char *aName, QRect aMade, QRect aShown = QRect()) {
            QTest::newRow(aName) << aMade << (aShown.isNull() ? aMade : aShown);
        };
        row("Label1", {120, 60, 6075, 195});
        row("Label2", {120, 900, 6075, 195});
        row("Label3", {120, 5160, 3855, 435});
        row("Label4", {4680, 5340, 7935, 255});
        row("Label5", {345, 465, 705, 255});
        row("theFilterA", {1140, 435, 11325, 300}, {1140, 435, 11520, 300});
        row("theFormList", {60, 1200, 12615, 3855}, {60, 1200, 12600, 3855});
        row("theCatInfo", {60, 5760, 4395, 3735}, {60, 5760, 4395, 3705});
        row("theTimeList", {4560, 5760, 8115, 3735}, {4560, 5760, 8100, 3705});
        row("theBottomFrame", {0, 9480, 12735, 795}, {0, 9465, 12720, 795});
        row("theClose", {5520, 180, 1935, 495}, {5393, 180, 1935, 495});
    }
    void ElementsStandAtTheirPlaces() {
        QFETCH(QRect, made);
        QFETCH(QRect, shown);
        QCOMPARE(GetTwipsPerPixel(), 15);
        const auto pixels = [](const QRect &aTwips) {
            return QRect(PixelsFromTwips(aTwips.x()), PixelsFromTwips(aTwips.y()),
                         PixelsFromTwips(aTwips.width()), PixelsFromTwips(aTwips.height()));
        };
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const TemplateQuerierForm form;
        QCOMPARE(form.findChild<QWidget *>(name)->geometry(), pixels(made));
        const OpenBrowser browser;
        QCOMPARE(browser.Form.findChild<QWidget *>(name)->geometry(), pixels(shown));
    }

    void TheWindowItself() {
        const OpenBrowser browser;
        QCOMPARE(browser.Form.windowTitle(), QStringLiteral("Поиск бланков отчетных форм"));
        QCOMPARE(browser.Form.size(), QSize(848, 684));
        QVERIFY(browser.Form.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        QVERIFY(browser.Form.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
        QVERIFY(browser.Form.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QVERIFY(browser.Form.windowFlags().testFlag(Qt::WindowSystemMenuHint));
        QCOMPARE(browser.Form.windowType(), Qt::Window);
        QCOMPARE(browser.Form.windowIcon().cacheKey(),
                 WindowIcon(QStringLiteral("browser")).cacheKey());
        QCOMPARE(browser.Form.font().pointSizeF(), 8.25);
        QVERIFY(browser.List.testAttribute(Qt::WA_InputMethodEnabled));
        QVERIFY(browser.Filter.hasFocus());
        QVERIFY(browser.Filter.text().isEmpty());
    }

    void CaptionsAndNames() {
        const OpenBrowser browser;
        const auto label = [&](const char *aName) {
            return browser.Form.findChild<QLabel *>(QString::fromLatin1(aName));
        };
        const QString forms =
            QStringLiteral("Комплекты отчетности, в которых доступна указанная отчетная форма:");
        const QString times =
            QStringLiteral("Отчетные периоды, в которых доступна указанная отчетная форма:");
        QCOMPARE(label("Label1")->text(),
                 QStringLiteral("1. Наберите буквы названия отчетной формы или цифры КНД:"));
        QCOMPARE(label("Label2")->text(),
                 QStringLiteral("2. Уточните отчетную форму, указав ее в списке:"));
        QCOMPARE(label("Label3")->text(), forms);
        QCOMPARE(label("Label4")->text(), times);
        QCOMPARE(label("Label5")->text(), QStringLiteral("Фильтр:"));
        for (const char *name : {"Label1", "Label2", "Label3", "Label4"})
            QCOMPARE(label(name)->font().weight(), QFont::Bold);
        QCOMPARE(label("Label5")->font().weight(), QFont::Normal);
        for (const QLabel *each : browser.Form.findChildren<QLabel *>()) {
            QCOMPARE(each->alignment(), Qt::AlignLeft | Qt::AlignTop);
            QCOMPARE(each->textFormat(), Qt::PlainText);
            QVERIFY(each->wordWrap());
        }
        QCOMPARE(browser.Close.text(), QStringLiteral("Закрыть"));

        QCOMPARE(browser.Filter.accessibleName(), QStringLiteral("Фильтр:"));
        QCOMPARE(browser.List.accessibleName(),
                 QStringLiteral("2. Уточните отчетную форму, указав ее в списке:"));
        QCOMPARE(browser.Cats.accessibleName(), forms);
        QCOMPARE(browser.Times.accessibleName(), times);
    }

    void NoCaptionIsCutOff() {
        const OpenBrowser browser;
        for (const QLabel *label : browser.Form.findChildren<QLabel *>()) {
            const QRect needed = label->fontMetrics().boundingRect(
                QRect(0, 0, label->width(), 1000), Qt::TextWordWrap, label->text());
            QVERIFY2(needed.width() <= label->width(), qPrintable(label->objectName()));
            QVERIFY2(needed.height() <= label->height(), qPrintable(label->objectName()));
        }
    }

    void ColumnsOfTheForms() {
        const OpenBrowser browser;
        const std::vector<std::pair<QString, int>> expected = {
            {QStringLiteral("*"), 300},
            {QStringLiteral("Краткое наименование"), 4500},
            {QStringLiteral("КНД"), 900},
            {QStringLiteral("Полное (официальное) наименование"), 9000},
        };
        QCOMPARE(browser.List.ColumnCount(), 4);
        for (int i = 0; i < 4; ++i) {
            const auto &[caption, width] = expected[static_cast<std::size_t>(i)];
            QCOMPARE(browser.List.Column(i).Caption, caption);
            QCOMPARE(browser.List.Column(i).Width, width);
            QCOMPARE(browser.List.Column(i).Key, QString());
        }
    }

    void TabGoesRound() {
        OpenBrowser browser;
        for (const char *name :
             {"theFormList", "theCatInfo", "theTimeList", "theClose", "theFilterA"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
        }
    }

    void ExtraRoomGoesToTheFilterTheListsAndThePanes() {
        OpenBrowser browser;
        browser.Form.resize(1000, 800);
        QCOMPARE(browser.Filter.geometry(), QRect(76, 29, 1000 - 76 - 4, 20));
        QCOMPARE(browser.List.geometry(), QRect(4, 80, 1000 - 4 - 4, 257));
        QCOMPARE(browser.Cats.geometry(), QRect(4, 384, 293, 800 - 384 - 53));
        QCOMPARE(browser.Times.geometry(), QRect(304, 384, 1000 - 304 - 4, 800 - 384 - 53));
        QCOMPARE(browser.Close.parentWidget()->geometry(), QRect(0, 800 - 53, 1000, 53));
        QCOMPARE(browser.Close.geometry(), QRect(436, 12, 129, 33));
    }

    /// What stands above the panes keeps its size, and the panes show all years.
    void ASmallWindowScrolls() {
        OpenBrowser browser;
        browser.Form.setMinimumSize(0, 0);  // as on a screen that is smaller still
        browser.Form.resize(400, 300);
        QCOMPARE(browser.Close.parentWidget()->geometry(), QRect(0, 300 - 53, 400, 53));
        QCOMPARE(browser.Close.geometry(), QRect(136, 12, 129, 33));
        const auto *sheet = browser.Form.findChild<Sheet *>();
        QCOMPARE(sheet->geometry(), QRect(0, 0, 400, 300 - 53));
        QCOMPARE(sheet->Content()->size(), QSize(841, 514));
        QVERIFY(sheet->verticalScrollBar()->maximum() > 0);
        QVERIFY(sheet->horizontalScrollBar()->maximum() > 0);
        QCOMPARE(browser.List.geometry(), QRect(4, 80, 841 - 4 - 4, 257));
        QCOMPARE(browser.Times.geometry(), QRect(304, 384, 841 - 304 - 4, 514 - 384));
    }

    /// Each step that cannot be taken is passed over, and the next one is taken.
    void AnAbsurdlySmallWindowKeepsWhatCannotBeSet() {
        OpenBrowser browser;
        browser.Form.resize(1000, 800);
        browser.Form.setMinimumSize(0, 0);
        auto *sheet = browser.Form.findChild<Sheet *>();
        sheet->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        sheet->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        sheet->SetLeast(QSize(0, 0));
        browser.Form.resize(50, 100);
        QCOMPARE(browser.Filter.geometry(), QRect(76, 29, 1000 - 76 - 4, 20));
        QCOMPARE(browser.List.geometry(), QRect(4, 80, 50 - 4 - 4, 257));
        QCOMPARE(browser.Cats.geometry(), QRect(4, 384, 293, 800 - 384 - 53));
        QCOMPARE(browser.Times.geometry(), QRect(304, 384, 1000 - 304 - 4, 800 - 384 - 53));
        QCOMPARE(browser.Close.parentWidget()->geometry(), QRect(0, 100 - 53, 50, 53));
        QCOMPARE(browser.Close.geometry(), QRect(-40, 12, 129, 33));
    }

    void RunsModallyOverItsOwnerAndComesToAnEnd() {
        QWidget owner;
        owner.setGeometry(100, 100, 600, 500);
        owner.show();
        owner.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            QCOMPARE(aWindow.objectName(), QStringLiteral("TemplateQuerierForm"));
            QVERIFY(aWindow.isModal());
            QCOMPARE(aWindow.windowHandle()->transientParent(), owner.windowHandle());
            driver.Click(aWindow.findChild<QWidget *>(QStringLiteral("theClose")));
            QVERIFY(!aWindow.isVisible());
        });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void CentredOnItsOwner() {
        QWidget owner;
        owner.setGeometry(400, 300, 1200, 1000);
        owner.show();
        TemplateQuerierForm form(&owner);
        form.resize(900, 700);
        form.show();
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        const QPoint between = form.frameGeometry().center() - owner.frameGeometry().center();
        QVERIFY2(between.manhattanLength() <= 4,
                 qPrintable(QStringLiteral("%1, %2").arg(between.x()).arg(between.y())));
    }

    void TheTitleBarsButtonClosesToo() {
        ModalDriver driver;
        driver.Expect([](QWidget &aWindow) { aWindow.close(); });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EscPressesTheClose() {
        ModalDriver driver;
        driver.Expect([](QWidget &aWindow) {
            QSignalSpy pressed(aWindow.findChild<QPushButton *>(), &QPushButton::clicked);
            QVERIFY(QTest::qWaitForWindowActive(&aWindow));
            QTest::keyClick(aWindow.focusWidget(), Qt::Key_Escape);
            QCOMPARE(pressed.size(), 1);
        });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EnterPressesTheButtonOnlyWhileItHasTheFocus() {
        OpenBrowser browser;
        QTest::keyClick(&browser.Filter, Qt::Key_Return);
        QVERIFY(browser.Form.isVisible());
        browser.Close.setFocus();
        QTest::keyClick(&browser.Close, Qt::Key_Return);
        QVERIFY(!browser.Form.isVisible());
    }

    void AnOwnerThatGoesTakesTheWindowAlong() {
        auto *owner = new QWidget;
        owner->show();
        owner->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(owner));
        ModalDriver driver;
        driver.Expect([&](QWidget &) { owner->deleteLater(); });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }
};

VK_TEST_CLASS(TestBrowserWindow);
#include "TestBrowserWindow.moc"
