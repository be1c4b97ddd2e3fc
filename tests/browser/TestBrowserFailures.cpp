#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "OpenBrowser.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theTitle = QStringLiteral("Сбой программы");
const QString theOk = QStringLiteral("OK");
const QString theRest = QStringLiteral("[Supplier]\r\nСвязь с базой потеряна.");

/// Lets the call of that member with that number, counted from 1, fail, and every later one.
void Fail(const QString &aMember, int aFrom = 1) {
    const auto calls = std::make_shared<int>(0);
    MemoryOffice::The().OnCall = [=](const QString &aCalled) {
        if (aCalled != aMember || ++*calls < aFrom) return;
        throw Failure(4711, QStringLiteral("Supplier"), QStringLiteral("Связь с базой потеряна."));
    };
}

}  // namespace

class TestBrowserFailures : public QObject {
    Q_OBJECT

private slots:
    void init() {
        EmptyOffice();
        AddForm(1, QStringLiteral("1151001"), QStringLiteral("НДС"),
                {QStringLiteral("Налоговая декларация")});
        AddForm(2, QStringLiteral("1151006"), QStringLiteral("Прибыль"));
        MemoryOffice::The().Categories[1] = {CategoryRow(6, 1, 0, 0)};
    }
    void cleanup() { MemoryOffice::The().OnCall = nullptr; }

    void AFailureBeforeTheWindowKeepsItClosed_data() {
        QTest::addColumn<QString>("member");
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("proc");
        const auto row = [](const char *aMember, int aFrom, const char *aProc) {
            QTest::newRow(
                qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(aMember)).arg(aFrom)))
                << QString::fromLatin1(aMember) << aFrom << QString::fromLatin1(aProc);
        };
        row("GetTemplates", 1, "LoadAllObjects");
        row("VkTemplType.IsExcludedFromSearch", 1, "LoadAllObjects");
        row("VkTemplType.ID", 2, "LoadAllObjects");
        row("GetTemplTypeNames", 1, "LoadAllObjects");
        row("GetTemplTypeNames", 2, "LoadAllObjects");
        row("VkTemplType.ShortName", 1, "FillList");
        row("VkTemplType.KND", 2, "FillList");
        row("VkTemplType.GetIconKey", 2, "FillList");
    }
    void AFailureBeforeTheWindowKeepsItClosed() {
        QFETCH(QString, member);
        QFETCH(int, from);
        QFETCH(QString, proc);
        Fail(member, from);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, theTitle,
                         Chain({QStringLiteral("Execute"), proc}, theRest), theOk);
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ASupplierThatGivesNothingKeepsTheWindowClosed() {
        for (const QString &absent :
             {QStringLiteral("GetTemplates"), QStringLiteral("GetTemplTypeNames")}) {
            MemoryOffice::The().Absent = absent;
            ModalDriver driver;
            driver.ExpectBox(QMessageBox::Critical, theTitle,
                             Chain({QStringLiteral("Execute"), QStringLiteral("LoadAllObjects")},
                                   QStringLiteral("[%1]\r\nОбъект не задан: %1.").arg(absent)),
                             theOk);
            TemplateQuerier().Execute();
            QVERIFY2(driver.Done(), driver.Complaint());
        }
    }

    void AnUnknownPictureKeepsTheWindowClosed() {
        MemoryOffice::The().Classes[1].Icon = QStringLiteral("no_such_picture");
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Critical, theTitle,
            Chain({QStringLiteral("Execute"), QStringLiteral("FillList")},
                  QStringLiteral("[ImageList]\r\nВ списке рисунков нет рисунка с ключом "
                                 "\"no_such_picture\". Его "
                                 "назвал объект Vk_Records.VkTemplType с идентификатором 2.")),
            theOk);
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void TheNextOpeningIsAsGoodAsNew() {
        Fail(QStringLiteral("GetTemplates"));
        ModalDriver driver;
        driver.Expect([](QWidget &aWindow) { aWindow.close(); });
        TemplateQuerier().Execute();
        MemoryOffice::The().OnCall = nullptr;
        driver.Expect([](QWidget &aWindow) {
            QCOMPARE(aWindow.findChild<ListView *>(QStringLiteral("theFormList"))->RowCount(), 2);
            aWindow.close();
        });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// One click is two events, and each of them tells of its failure.
    void AvailabilityFailingOnAClickLeavesThePanesEmpty() {
        OpenBrowser browser;
        browser.ClickForm(1);
        QCOMPARE(browser.Times.RowCount(), 8);
        Fail(QStringLiteral("GetTemplTypeAvailability"));
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Critical, theTitle,
            Chain({QStringLiteral("theFormList_ItemClick"), QStringLiteral("FormChanged")},
                  theRest),
            theOk);
        driver.ExpectBox(
            QMessageBox::Critical, theTitle,
            Chain({QStringLiteral("theFormList_Click"), QStringLiteral("FormChanged")}, theRest),
            theOk);
        browser.ClickForm(2);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(browser.Form.isVisible());
        QCOMPARE(browser.List.SelectedItem()->Key(), QStringLiteral("_2"));
        QCOMPARE(browser.Times.RowCount(), 0);
        QCOMPARE(browser.Cats.Text(), QString());

        MemoryOffice::The().OnCall = nullptr;
        browser.ClickForm(1);
        QCOMPARE(browser.Times.RowCount(), 8);
    }

    void AvailabilityFailingOnAnArrowTellsOnce() {
        OpenBrowser browser;
        Fail(QStringLiteral("GetTemplTypeAvailability"));
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Critical, theTitle,
            Chain({QStringLiteral("theFormList_ItemClick"), QStringLiteral("FormChanged")},
                  theRest),
            theOk);
        browser.List.setFocus();
        QTest::keyClick(&browser.List, Qt::Key_Down);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(browser.Form.isVisible());
    }

    /// The periods are drawn first, and stay.
    void AbsentCategoriesAreAFailureAndAbsentTimesAreNot() {
        MemoryOffice::The().CategoriesAbsent = true;
        OpenBrowser browser;
        ModalDriver driver;
        const QString rest = QStringLiteral(
            "[GetTemplTypeAvailability]\r\nОбъект не задан: GetTemplTypeAvailability.");
        for (const QString &event :
             {QStringLiteral("theFormList_ItemClick"), QStringLiteral("theFormList_Click")}) {
            driver.ExpectBox(
                QMessageBox::Critical, theTitle,
                Chain({event, QStringLiteral("FormChanged"), QStringLiteral("DrawCats"),
                       QStringLiteral("BuildCategoryMatrix")},
                      rest),
                theOk);
        }
        browser.ClickForm(1);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(browser.Times.RowCount(), 8);
        QCOMPARE(browser.Cats.Text(), QString());
    }

    void ABrokenTimesRecordsetNamesItsRoad() {
        MemoryOffice::The().Times[1] = {{{QStringLiteral("the_year"), 2026}}};
        OpenBrowser browser;
        browser.List.SetSelectedItem(browser.List.Row(0));
        try {
            browser.Form.FormChanged();
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(SubscriptOutOfRange));
            QVERIFY(failure.Description().startsWith(
                Chain({QStringLiteral("FormChanged"), QStringLiteral("DrawTimes"),
                       QStringLiteral("BuildTimeTable")},
                      QString())));
        }
        QCOMPARE(browser.Times.RowCount(), 0);
        QCOMPARE(browser.Cats.Text(), QString());
    }

    void ABrokenCategoriesRecordsetNamesItsRoad() {
        MemoryOffice::The().Categories[1] = {{{QStringLiteral("TPCategory_ID"), 1}}};
        OpenBrowser browser;
        browser.List.SetSelectedItem(browser.List.Row(0));
        try {
            browser.Form.FormChanged();
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QVERIFY(failure.Description().startsWith(
                Chain({QStringLiteral("FormChanged"), QStringLiteral("DrawCats"),
                       QStringLiteral("BuildCategoryMatrix")},
                      QString())));
        }
        QCOMPARE(browser.Times.RowCount(), 8);
    }
};

VK_TEST_CLASS(TestBrowserFailures);
#include "TestBrowserFailures.moc"
