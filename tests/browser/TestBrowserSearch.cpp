#include <QHeaderView>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/Clock.h"
#include "OpenBrowser.h"
#include "support/Keys.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theTitle = QStringLiteral("Поиск бланков отчетных форм");

/// How often the members of the office are called while it lives.
struct CallCounter {
    CallCounter() {
        MemoryOffice::The().OnCall = [this](const QString &aMember) { ++Calls[aMember]; };
    }
    ~CallCounter() { MemoryOffice::The().OnCall = nullptr; }
    Q_DISABLE_COPY_MOVE(CallCounter)
    std::map<QString, int> Calls;
};

const QString theAvailability = QStringLiteral("GetTemplTypeAvailability");
const QString theNames = QStringLiteral("GetTemplTypeNames");

void DoubleClick(OpenBrowser &aBrowser, double aID) {
    const QPoint point(100,
                       aBrowser.List.RowRect(aBrowser.List.RowByKey(ObjectKey(aID))).center().y());
    QWidget *rows = aBrowser.List.viewport();
    QMouseEvent move(QEvent::MouseMove, point, rows->mapToGlobal(point), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(rows, &move);
    QTest::mouseClick(rows, Qt::LeftButton, {}, point);
    QTest::mouseDClick(rows, Qt::LeftButton, {}, point);
}

}  // namespace

class TestBrowserSearch : public QObject {
    Q_OBJECT

private slots:
    void init() {
        EmptyOffice();
        AddForm(21, QStringLiteral("1151001"), QStringLiteral("НДС"),
                {QStringLiteral("Налоговая декларация по налогу на добавленную стоимость"),
                 QStringLiteral("Прежняя декларация\r\nпо форме 3310"),
                 QStringLiteral("НАЛОГОВАЯ ДЕКЛАРАЦИЯ ПО НАЛОГУ НА ДОБАВЛЕННУЮ СТОИМОСТЬ")});
        AddForm(22, QStringLiteral("1151006"), QStringLiteral("Прибыль"),
                {QStringLiteral("Налоговая декларация по налогу на прибыль организаций")});
        AddForm(23, QStringLiteral("0710099"), QStringLiteral("Без имени"));
    }
    void cleanup() { SetTodayForTests(QDate()); }

    void FilterChoosesRows_data() {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("keys");
        const QString nds = QStringLiteral("_21");
        const QString profit = QStringLiteral("_22");
        const QString nameless = QStringLiteral("_23");
        QTest::newRow("empty") << QString() << QStringList{nds, profit, nameless};
        QTest::newRow("blanks") << QStringLiteral("   ") << QStringList{nds, profit, nameless};
        QTest::newRow("letters, any case") << QStringLiteral("пРиБ") << QStringList{profit};
        QTest::newRow("blanks around") << QStringLiteral("  прибыль ") << QStringList{profit};
        QTest::newRow("blank within") << QStringLiteral("налогу на пр") << QStringList{profit};
        QTest::newRow("two blanks within") << QStringLiteral("налогу  на") << QStringList{};
        QTest::newRow("no blank within") << QStringLiteral("налогуна") << QStringList{};
        QTest::newRow("digits of the code") << QStringLiteral("1151") << QStringList{nds, profit};
        QTest::newRow("digits in a name") << QStringLiteral("331") << QStringList{nds};
        QTest::newRow("across code and name") << QStringLiteral("6|нал") << QStringList{profit};
        QTest::newRow("across name and code")
            << QStringLiteral("имени|07") << QStringList{nameless};
        QTest::newRow("across two names")
            << QStringLiteral("стоимость|прежняя") << QStringList{nds};
        QTest::newRow("bar of a form without names") << QStringLiteral("0710099|") << QStringList{};
        QTest::newRow("line break as a blank")
            << QStringLiteral("декларация по форме") << QStringList{nds};
        QTest::newRow("nothing") << QStringLiteral("ъъ") << QStringList{};
        QTest::newRow("across two forms") << QStringLiteral("3310прибыль") << QStringList{};
        QTest::newRow("not a pattern") << QStringLiteral("н.с") << QStringList{};
        QTest::newRow("tab is no blank") << QStringLiteral("\tндс") << QStringList{};
    }
    void FilterChoosesRows() {
        QFETCH(QString, filter);
        QFETCH(QStringList, keys);
        OpenBrowser browser;
        browser.Filter.setText(filter);
        QCOMPARE(browser.Listed(), keys);
        QCOMPARE(browser.List.SelectedItem(), nullptr);
        QVERIFY(browser.List.SelectedRows().empty());
        QCOMPARE(browser.Times.RowCount(), 0);
        QCOMPARE(browser.Cats.Text(), QString());
    }

    void ARowTellsOfItsForm() {
        const OpenBrowser browser;
        const ListRow &row = *browser.List.Row(0);
        QCOMPARE(row.Key(), QStringLiteral("_21"));
        QCOMPARE(row.Text(), QString());
        QCOMPARE(row.Icon(), QStringLiteral("doc_blank"));
        QCOMPARE(row.CellText(1), QStringLiteral("НДС"));
        QCOMPARE(row.CellText(2), QStringLiteral("1151001"));
        QCOMPARE(row.CellText(3),
                 QStringLiteral("Налоговая декларация по налогу на добавленную стоимость"));
        const auto form = std::dynamic_pointer_cast<IntTemplateClass>(row.Tag());
        QVERIFY(form);
        QCOMPARE(form->Class->ID(), 21.0);
        QCOMPARE(form->ActualFullName, row.CellText(3));
        QCOMPARE(form->FullNames.Count(), 2);  // the third differs from the first in case only
        QCOMPARE(form->FullNames.At(1), QStringLiteral("Прежняя декларация по форме 3310"));
        QCOMPARE(form->FullNames.KeyAt(1), form->FullNames.At(1));
        QCOMPARE(browser.List.Row(2)->CellText(3), QString());
    }

    void OnlyPairsOfCrAndLfBecomeBlanks() {
        AddForm(24, QString(), QString(),
                {QStringLiteral("а\r\nб\r\n\r\nв\nг\rд"), Null(), QStringLiteral("последнее")});
        const OpenBrowser browser;
        const auto form = std::dynamic_pointer_cast<IntTemplateClass>(browser.List.Row(3)->Tag());
        QCOMPARE(form->FullNames.At(0), QStringLiteral("а б  в\nг\rд"));
        QCOMPARE(form->FullNames.At(1), QString());
        QCOMPARE(form->FullNames.At(2), QStringLiteral("последнее"));
    }

    /// The needle is found in a name that is not shown.
    void MatchOnALaterNameShowsTheFirst() {
        OpenBrowser browser;
        TypeText(&browser.Filter, QStringLiteral("прежняя"));
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_21")});
        QCOMPARE(browser.List.Row(0)->CellText(3),
                 QStringLiteral("Налоговая декларация по налогу на добавленную стоимость"));
    }

    void ExcludedFormsAndRepeatedIdentitiesAreLeftOut() {
        MemoryOffice &office = MemoryOffice::The();
        office.Classes[1].Excluded = true;
        office.Unkeyed = true;
        office.Versions.push_back(office.Versions[0]);
        OpenBrowser browser;
        QCOMPARE(browser.Listed(), QStringList({QStringLiteral("_21"), QStringLiteral("_23")}));
    }

    /// Forms that were in use on the day 1827 days back, or later.
    void FormsOfTheLastFiveYearsAreOffered_data() {
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QDate>("from");
        QTest::newRow("plain day") << QDate(2026, 11, 21) << QDate(2021, 11, 20);
        QTest::newRow("leap day") << QDate(2024, 2, 29) << QDate(2019, 2, 28);
        QTest::newRow("new year") << QDate(2026, 1, 1) << QDate(2020, 12, 31);
        QTest::newRow("old year's end") << QDate(2025, 12, 31) << QDate(2020, 12, 30);
    }
    void FormsOfTheLastFiveYearsAreOffered() {
        QFETCH(QDate, today);
        QFETCH(QDate, from);
        SetTodayForTests(today);
        MemoryOffice &office = MemoryOffice::The();
        office.Versions[0].EndDate = from;
        office.Versions[1].EndDate = from.addDays(-1);
        office.Versions[2].BegDate = today.addYears(50);
        const OpenBrowser browser;
        QCOMPARE(browser.Listed(), QStringList({QStringLiteral("_21"), QStringLiteral("_23")}));
        QVERIFY(office.AskedFrom == LooseValue(from));
        QVERIFY(IsNull(office.AskedTo));
    }

    void TheProviderIsAskedOncePerFormBeforeTheWindowShows() {
        CallCounter counter;
        OpenBrowser browser;
        QCOMPARE(counter.Calls[QStringLiteral("GetTemplates")], 1);
        QCOMPARE(counter.Calls[theNames], 3);
        QCOMPARE(counter.Calls[theAvailability], 0);
        counter.Calls.clear();
        TypeText(&browser.Filter, QStringLiteral("прибыль"));
        QCOMPARE(counter.Calls[QStringLiteral("GetTemplates")], 0);
        QCOMPARE(counter.Calls[theNames], 0);
        QCOMPARE(counter.Calls[QStringLiteral("VkTemplType.ShortName")], 0);
        QCOMPARE(counter.Calls[theAvailability], 0);
    }

    void OneClickRedrawsTwice() {
        CallCounter counter;
        OpenBrowser browser;
        browser.ClickForm(22);
        QCOMPARE(counter.Calls[theAvailability], 2);
        QCOMPARE(browser.List.SelectedItem()->Key(), QStringLiteral("_22"));
    }

    void NothingIsKeptOfTheLastForm() {
        CallCounter counter;
        OpenBrowser browser;
        browser.ClickForm(22);
        browser.ClickForm(22);
        QCOMPARE(counter.Calls[theAvailability], 4);
        browser.Form.FormChanged();
        QCOMPARE(counter.Calls[theAvailability], 5);
        MemoryOffice::The().Categories[22] = {CategoryRow(6, 1, 0, 0)};
        browser.Form.FormChanged();
        QVERIFY(!browser.Cats.Text().isEmpty());
    }

    void ARefillEmptiesThePanes() {
        MemoryOffice::The().Categories[21] = {CategoryRow(6, 1, 0, 0)};
        OpenBrowser browser;
        browser.ClickForm(21);
        QCOMPARE(browser.Times.RowCount(), 8);
        QVERIFY(!browser.Cats.Text().isEmpty());
        TypeText(&browser.List, QStringLiteral("н"));
        QCOMPARE(browser.List.SelectedItem(), nullptr);
        QCOMPARE(browser.Times.RowCount(), 0);
        QCOMPARE(browser.Times.ColumnCount(), 23);
        QCOMPARE(browser.Cats.Text(), QString());

        browser.ClickForm(21);
        QCOMPARE(browser.Times.RowCount(), 8);
        TypeText(&browser.List, QStringLiteral("ъъ"));
        QCOMPARE(browser.List.RowCount(), 0);
        QCOMPARE(browser.Times.RowCount(), 0);
        QCOMPARE(browser.Cats.Text(), QString());
    }

    void FormsWithTheIdentities0AndMinus1() {
        AddForm(0, QString(), QStringLiteral("ноль"));
        AddForm(-1, QString(), QStringLiteral("минус один"));
        CallCounter counter;
        OpenBrowser browser;
        browser.ClickForm(21);
        QCOMPARE(counter.Calls[theAvailability], 2);
        browser.ClickForm(-1);  // counts as the form that is shown already
        QCOMPARE(counter.Calls[theAvailability], 2);
        QCOMPARE(browser.Times.RowCount(), 8);
        browser.ClickForm(0);  // counts as no form
        QCOMPARE(counter.Calls[theAvailability], 2);
        QCOMPARE(browser.Times.RowCount(), 0);
    }

    void AFormThatDoesNotTellItsIdentityCountsAsNone() {
        OpenBrowser browser;
        browser.ClickForm(21);
        MemoryOffice::The().OnCall = [](const QString &aMember) {
            if (aMember == QStringLiteral("VkTemplType.ID"))
                throw Failure(7, QString(), QStringLiteral("no"));
        };
        browser.Form.FormChanged();
        MemoryOffice::The().OnCall = nullptr;
        QCOMPARE(browser.Times.RowCount(), 0);
    }

    void RowsStayInTheProvidersOrderWhateverHeaderIsClicked() {
        OpenBrowser browser;
        QHeaderView *header = browser.List.header();
        for (int column = 1; column < 3; ++column) {
            const QPoint point(header->sectionViewportPosition(column) + 20, 5);
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, point);
        }
        QCOMPARE(browser.Listed(), QStringList({QStringLiteral("_21"), QStringLiteral("_22"),
                                                QStringLiteral("_23")}));
    }

    void DoubleClickShowsTheFullName_data() {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("text");
        QTest::newRow("name") << 21
                              << QStringLiteral(
                                     "Налоговая декларация по налогу на добавленную стоимость");
        QTest::newRow("other") << 22
                               << QStringLiteral(
                                      "Налоговая декларация по налогу на прибыль организаций");
        QTest::newRow("no name") << 23 << QString();
    }
    void DoubleClickShowsTheFullName() {
        QFETCH(int, id);
        QFETCH(QString, text);
        OpenBrowser browser;
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, theTitle, text, QStringLiteral("OK"));
        DoubleClick(browser, id);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void DoubleClickOnTheHeadersOrBesideTheRowsShowsNothing() {
        OpenBrowser browser;
        ModalDriver driver;
        browser.ClickForm(21);
        QTest::mouseDClick(browser.List.header()->viewport(), Qt::LeftButton, {}, QPoint(100, 5));
        QWidget *rows = browser.List.viewport();
        const QPoint below(100, rows->height() - 5);
        QMouseEvent move(QEvent::MouseMove, below, rows->mapToGlobal(below), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(rows, &move);
        QTest::mouseDClick(rows, Qt::LeftButton, {}, below);
        QTest::qWait(20);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void DoubleClickInAnEmptyListShowsNothing() {
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("ъъ"));
        ModalDriver driver;
        QTest::mouseDClick(browser.List.viewport(), Qt::LeftButton, {}, QPoint(100, 5));
        QTest::qWait(20);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ManyFormsAreListedFromTheTopAfterARefill() {
        for (int i = 100; i < 400; ++i)
            AddForm(i, QString::number(i), QStringLiteral("Форма %1").arg(i));
        OpenBrowser browser;
        browser.List.EnsureVisible(browser.List.Row(302));
        QVERIFY(browser.List.FirstVisible() != browser.List.Row(0));
        TypeText(&browser.Filter, QStringLiteral("форма"));
        QCOMPARE(browser.List.RowCount(), 300);
        QCOMPARE(browser.List.FirstVisible(), browser.List.Row(0));
    }
};

VK_TEST_CLASS(TestBrowserSearch);
#include "TestBrowserSearch.moc"
