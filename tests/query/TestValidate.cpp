#include <functional>

#include <QGuiApplication>
#include <QMessageBox>
#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::ModalDriver;

namespace {

const QString theTitle = QStringLiteral("Параметры критериев поиска");
const QString theEnding = QStringLiteral("\r\n\r\nТакой запрос вернет пустой список документов.");

std::shared_ptr<RecordCollection> OneItem() {
    auto list = std::make_shared<RecordCollection>();
    list->Add(VkTests::MakePerson(1));
    return list;
}

/// A fault, the two ways out of it, and what the user reads.
struct Fault {
    const char *Name;
    void (*Make)(VkDocQueryData &);
    void (*Mend)(VkDocQueryData &);
    void (*SwitchOff)(VkDocQueryData &);
    const char16_t *Message;
    bool WithEnding;
};

const Fault theFaults[] = {
    {"row 1", [](VkDocQueryData &r) { r.IsTaxpayers = true; },
     [](VkDocQueryData &r) { r.TaxpayersList = OneItem(); },
     [](VkDocQueryData &r) { r.IsTaxpayers = false; },
     uR"~(Закладка "Налогоплательщик": отмечен флажок "Список налогоплательщиков", однако не указан ни один налогоплательщик. )~",
     true},
    {"row 2", [](VkDocQueryData &r) { r.IsAccStreamType = true; },
     [](VkDocQueryData &r) { r.AccStreamTypes = AccStreamOfr; },
     [](VkDocQueryData &r) { r.IsAccStreamType = false; },
     uR"~(Закладка "Комплект отчетности": отмечен флажок "Тип комплекта отчетности", однако не указано ни одного типа. )~",
     true},
    {"row 3", [](VkDocQueryData &r) { r.IsContoraPrefix1 = true; },
     [](VkDocQueryData &r) { r.ContoraPrefix1 = QStringLiteral("77"); },
     [](VkDocQueryData &r) { r.IsContoraPrefix1 = false; },
     uR"~(Закладка "Комплект отчетности": отмечен флажок "Код первого контролирующего органа начинается на", однако не указано на что должен начинаться код контролирующего органа. )~",
     true},
    {"row 4", [](VkDocQueryData &r) { r.IsContoraPrefix2 = true; },
     [](VkDocQueryData &r) { r.ContoraPrefix2 = QStringLiteral("77"); },
     [](VkDocQueryData &r) { r.IsContoraPrefix2 = false; },
     uR"~(Закладка "Комплект отчетности": отмечен флажок "Код второго контролирующего органа начинается на", однако не указано на что должен начинаться код контролирующего органа. )~",
     true},
    {"row 5", [](VkDocQueryData &r) { r.IsAccStreamsList = true; },
     [](VkDocQueryData &r) { r.AccStreamsList = OneItem(); },
     [](VkDocQueryData &r) { r.IsAccStreamsList = false; },
     uR"~(Закладка "Комплект отчетности": отмечен флажок "Список конкретных комплектов отчетности", однако не указано ни одного комплекта отчетности. )~",
     true},
    {"row 6",
     [](VkDocQueryData &r) {
         r.IsPeriods = true;
         r.PeriodCriterion = RangePeriods;
         r.RangePeriodYear1 = 2025;
         r.RangePeriodMonth1 = 1;
         r.RangePeriodYear2 = 2024;
         r.RangePeriodMonth2 = 12;
     },
     [](VkDocQueryData &r) { r.RangePeriodYear2 = 2025; },
     [](VkDocQueryData &r) { r.PeriodCriterion = OnePeriod; },
     uR"~(Закладка "Период отчетности": в диапазоне периодов начало отбираемого периода больше его окончания.)~",
     false},
    {"row 7",
     [](VkDocQueryData &r) {
         r.IsPeriods = true;
         r.PeriodCriterion = RangePeriods;
         r.IsPeriodTypes = true;
     },
     [](VkDocQueryData &r) { r.PeriodTypes = PeriodDocuments; },
     [](VkDocQueryData &r) { r.IsPeriodTypes = false; },
     uR"~(Закладка "Период отчетности": отмечен флажок "только периоды следующего типа:", однако не указано ни одного типа периодов. )~",
     true},
    {"row 8", [](VkDocQueryData &r) { r.IsTemplate = true; },
     [](VkDocQueryData &r) { r.Templates = OneItem(); },
     [](VkDocQueryData &r) { r.IsTemplate = false; },
     uR"~(Закладка "Отчетная форма": отмечен флажок "Список отчетных форм (бланков)", однако не указано ни одной отчетной формы. )~",
     true},
    {"row 9", [](VkDocQueryData &r) { r.IsDocStatus = true; },
     [](VkDocQueryData &r) { r.DocStatuses = DocReady; },
     [](VkDocQueryData &r) { r.IsDocStatus = false; },
     uR"~(Закладка "Свойства документов": отмечен флажок "Состояние документа", однако не указано ни одного состояния. )~",
     true},
    {"row 10", [](VkDocQueryData &r) { r.IsSignDate = true; },
     [](VkDocQueryData &r) { r.SignDate2 = QDate(2024, 3, 5); },
     [](VkDocQueryData &r) { r.IsSignDate = false; },
     uR"~(Закладка "Свойства документа": выбрана опция поиска по "Дате документа", однако не задан искомый период дат. )~",
     true},
    {"row 11", [](VkDocQueryData &r) { r.IsSignerFio = true; },
     [](VkDocQueryData &r) { r.SignerSurname = QStringLiteral("Иванов"); },
     [](VkDocQueryData &r) { r.IsSignerFio = false; },
     uR"~(Закладка "Свойства документа": выбрана опция поиска по "Фамилии подписанта", однако фамилия не задана. )~",
     true},
    {"row 12",
     [](VkDocQueryData &r) {
         r.IsNotes = true;
         r.NotesMode = NotesLike;
     },
     [](VkDocQueryData &r) { r.Notes = QStringLiteral("акт"); },
     [](VkDocQueryData &r) { r.NotesMode = NotesNotEmpty; },
     uR"~(Закладка "Свойства документа": выбран поиск по контексту в поле "Примечание", однако не указан искомый контекст. )~",
     true},
    {"row 13",
     [](VkDocQueryData &r) {
         r.IsDocNum = true;
         r.DocNumMode = DocNumRange;
     },
     [](VkDocQueryData &r) { r.DocNum2 = 7; },
     [](VkDocQueryData &r) { r.DocNumMode = DocLastNums; },
     uR"~(Закладка "Свойства документов": отмечен флажок "Диапазон номеров документов", однако не указаны границы диапазона. )~",
     true},
    {"row 14",
     [](VkDocQueryData &r) {
         r.IsDocNum = true;
         r.DocNumMode = DocNumRange;
         r.DocNum1 = 5;
     },
     [](VkDocQueryData &r) { r.DocNum2 = 5; }, [](VkDocQueryData &r) { r.IsDocNum = false; },
     uR"~(Закладка "Свойства документов": ошибка в указании границ диапазона номеров документов. )~",
     true},
    {"row 15",
     [](VkDocQueryData &r) {
         r.IsDocNum = true;
         r.LastDocNumsCount = 0;
     },
     [](VkDocQueryData &r) { r.LastDocNumsCount = 1; },
     [](VkDocQueryData &r) {
         r.DocNumMode = DocNumRange;
         r.DocNum2 = 3;
     },
     uR"~(Закладка "Свойства документов": отмечен флажок "Последние созданные документы", однако не указано их количество. )~",
     true},
    {"row 16",
     [](VkDocQueryData &r) {
         r.IsDocNum = true;
         r.LastDocNumsCount = -1;
     },
     [](VkDocQueryData &r) { r.LastDocNumsCount = 1; },
     [](VkDocQueryData &r) { r.IsDocNum = false; },
     uR"~(Закладка "Свойства документов": ошибка в количестве последних созданных документов. )~",
     true},
};

QString BoxText(const Fault &aFault) {
    return QString::fromUtf16(aFault.Message) + (aFault.WithEnding ? theEnding : QString());
}

}  // namespace

class TestValidate : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { VkTests::MemoryOffice::Install(); }

    void EveryFaultHasItsBox_data() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(theFaults)); ++i) QTest::newRow(theFaults[i].Name) << i;
    }
    void EveryFaultHasItsBox() {
        QFETCH(int, index);
        const Fault &fault = theFaults[index];
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(fault), QStringLiteral("OK"));
        VkDocQueryData record;
        record.LastError = QStringLiteral("kept");
        fault.Make(record);
        QVERIFY(!record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(record.LastError, QStringLiteral("kept"));

        VkDocQueryData mended = record;
        fault.Mend(mended);
        QVERIFY(mended.Validate());
        VkDocQueryData off = record;
        fault.SwitchOff(off);
        QVERIFY(off.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The first fault in the order of the table is the only one that is shown.
    void EarlierFaultHidesLaterOnes_data() { EveryFaultHasItsBox_data(); }
    void EarlierFaultHidesLaterOnes() {
        QFETCH(int, index);
        VkDocQueryData record;
        for (int i = int(std::size(theFaults)) - 1; i >= index; --i) {
            // The document numbers and the range serve several rows; the earliest wins.
            theFaults[i].Make(record);
        }
        if (index == 12) record.DocNum1 = 0;  // row 13 is the pair of noughts, row 14 any other
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[index]),
                         QStringLiteral("OK"));
        QVERIFY(!record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void NewRecordPasses() {
        ModalDriver driver;
        VkDocQueryData record;
        QVERIFY(record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!record.TaxpayersList && !record.AccStreamsList && !record.Templates);
    }

    void AbsentListsBecomeEmptyAsFarAsTheRunCame() {
        ModalDriver driver;
        VkDocQueryData record;
        record.IsTaxpayers = true;
        record.IsAccStreamsList = true;
        record.IsTemplate = true;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[0]),
                         QStringLiteral("OK"));
        QVERIFY(!record.Validate());
        QVERIFY(record.TaxpayersList && record.TaxpayersList->IsEmpty());
        QVERIFY(!record.AccStreamsList);
        QVERIFY(!record.Templates);

        record.IsTaxpayers = false;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[4]),
                         QStringLiteral("OK"));
        QVERIFY(!record.Validate());
        QVERIFY(record.AccStreamsList && record.AccStreamsList->IsEmpty());
        QVERIFY(!record.Templates);

        record.IsAccStreamsList = false;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[7]),
                         QStringLiteral("OK"));
        QVERIFY(!record.Validate());
        QVERIFY(record.Templates && record.Templates->IsEmpty());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void EndsOfTheRange_data() {
        QTest::addColumn<QList<int>>("ends");
        QTest::addColumn<bool>("passes");
        QTest::newRow("across new year") << QList<int>{2024, 12, 2025, 1} << true;
        QTest::newRow("years swapped") << QList<int>{2025, 12, 2024, 1} << false;
        QTest::newRow("equal") << QList<int>{2024, 5, 2024, 5} << true;
        QTest::newRow("one month back") << QList<int>{2024, 6, 2024, 5} << false;
        QTest::newRow("month 100 counts as a year") << QList<int>{2024, 100, 2025, 0} << true;
        QTest::newRow("largest number") << QList<int>{21474836, 46, 21474836, 47} << true;
        QTest::newRow("least number") << QList<int>{-21474836, -48, 2025, 1} << true;
    }
    void EndsOfTheRange() {
        QFETCH(QList<int>, ends);
        QFETCH(bool, passes);
        VkDocQueryData record;
        record.IsPeriods = true;
        record.PeriodCriterion = RangePeriods;
        record.RangePeriodYear1 = ends[0];
        record.RangePeriodMonth1 = ends[1];
        record.RangePeriodYear2 = ends[2];
        record.RangePeriodMonth2 = ends[3];
        ModalDriver driver;
        if (!passes)
            driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[5]),
                             QStringLiteral("OK"));
        QCOMPARE(record.Validate(), passes);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void PeriodTypesCountInARangeOnly_data() {
        QTest::addColumn<int>("criterion");
        QTest::newRow("one") << 1;
        QTest::newRow("other") << 3;
    }
    void PeriodTypesCountInARangeOnly() {
        QFETCH(int, criterion);
        VkDocQueryData record;
        record.IsPeriods = true;
        record.IsPeriodTypes = true;
        record.PeriodCriterion = DocQueryPeriodCriterion(criterion);
        ModalDriver driver;
        QVERIFY(record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void DatesOneIsEnoughAndNullCountsAsGiven_data() {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::newRow("first") << 2 << 0;
        QTest::newRow("second") << 0 << 2;
        QTest::newRow("null first") << 1 << 0;
        QTest::newRow("null both") << 1 << 1;
        QTest::newRow("text") << 0 << 3;
    }
    void DatesOneIsEnoughAndNullCountsAsGiven() {
        const LooseValue values[] = {Empty(), Null(), QDate(2024, 3, 5),
                                     QStringLiteral("5.3.2024")};
        QFETCH(int, first);
        QFETCH(int, second);
        VkDocQueryData record;
        record.IsSignDate = true;
        record.SignDate1 = values[first];
        record.SignDate2 = values[second];
        ModalDriver driver;
        QVERIFY(record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void DatesThatAreNone_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("empty") << 0;
        QTest::newRow("invalid date") << 1;
        QTest::newRow("text that is no date") << 2;
        QTest::newRow("empty text") << 3;
    }
    void DatesThatAreNone() {
        const LooseValue values[] = {Empty(), QDate(), QStringLiteral("вчера"), QString()};
        QFETCH(int, kind);
        VkDocQueryData record;
        record.IsSignDate = true;
        record.SignDate1 = record.SignDate2 = values[kind];
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[9]),
                         QStringLiteral("OK"));
        QVERIFY(!record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(record.SignDate1 == values[kind]);
    }

    void DocumentNumbers_data() {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("fault");  // row, or -1
        QTest::newRow("5 to 0") << 5 << 0 << 13;
        QTest::newRow("0 to 7") << 0 << 7 << -1;
        QTest::newRow("7 to 7") << 7 << 7 << -1;
        QTest::newRow("7 to 6") << 7 << 6 << 13;
        QTest::newRow("-1 to 6") << -1 << 6 << 13;
        QTest::newRow("-2 to -1") << -2 << -1 << 13;
        QTest::newRow("0 to 0") << 0 << 0 << 12;
    }
    void DocumentNumbers() {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(int, fault);
        VkDocQueryData record;
        record.IsDocNum = true;
        record.DocNumMode = DocNumRange;
        record.DocNum1 = from;
        record.DocNum2 = to;
        ModalDriver driver;
        if (fault >= 0)
            driver.ExpectBox(QMessageBox::Warning, theTitle, BoxText(theFaults[fault]),
                             QStringLiteral("OK"));
        QCOMPARE(record.Validate(), fault < 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void WhatIsNotJudged() {
        VkDocQueryData record;
        record.IsOrvex = record.IsOrvexStages = record.IsOrvexTerms = true;
        record.IsFss = record.IsFssStages = record.IsFssTerms = true;
        record.IsNotes = true;
        record.NotesMode = NotesEmpty;
        record.IsAccStreamOpeness = true;
        record.AccStreamOpen = DocQueryAccStreamOpen(99);
        record.IsPeriods = true;
        record.OnePeriodYear = -5;
        record.OnePeriodMonthID = 77;
        record.IsTemplate = true;
        record.TemplatesMode = TemplateVersion;
        record.Templates = OneItem();  // of persons: nobody looks at the class
        ModalDriver driver;
        QVERIFY(record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// A fault counts under all the switches in front of it, and not when one of them is off.
    void SwitchesInFront_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<std::function<void(VkDocQueryData &)>>("turn");
        const auto row = [](const char *aName, int aNumber, void (*aTurn)(VkDocQueryData &)) {
            QTest::newRow(aName) << aNumber - 1 << std::function<void(VkDocQueryData &)>(aTurn);
        };
        row("6, periods", 6, [](VkDocQueryData &r) { r.IsPeriods = false; });
        row("6, other", 6, [](VkDocQueryData &r) { r.PeriodCriterion = {}; });
        row("7, periods", 7, [](VkDocQueryData &r) { r.IsPeriods = false; });
        row("12, notes", 12, [](VkDocQueryData &r) { r.IsNotes = false; });
        row("12, empty ones", 12, [](VkDocQueryData &r) { r.NotesMode = NotesEmpty; });
        row("13, numbers", 13, [](VkDocQueryData &r) { r.IsDocNum = false; });
        row("14, last ones", 14, [](VkDocQueryData &r) { r.DocNumMode = DocLastNums; });
        row("15, numbers", 15, [](VkDocQueryData &r) { r.IsDocNum = false; });
        row("16, other", 16, [](VkDocQueryData &r) { r.DocNumMode = DocQueryDocNumMode(2); });
    }
    void SwitchesInFront() {
        QFETCH(int, index);
        QFETCH(std::function<void(VkDocQueryData &)>, turn);
        ModalDriver driver;
        VkDocQueryData record;
        theFaults[index].Make(record);
        turn(record);
        QVERIFY(record.Validate());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void OverflowIsRaised_data() {
        QTest::addColumn<QList<int>>("ends");
        QTest::newRow("first year") << QList<int>{21474837, 1, 2025, 1};
        QTest::newRow("first month") << QList<int>{21474836, 48, 2025, 1};
        QTest::newRow("last year") << QList<int>{2025, 1, -21474837, 1};
        QTest::newRow("last month") << QList<int>{2025, 1, -21474836, -49};
    }
    void OverflowIsRaised() {
        QFETCH(QList<int>, ends);
        VkDocQueryData record;
        record.RangePeriodYear1 = ends[0];
        record.RangePeriodMonth1 = ends[1];
        record.RangePeriodYear2 = ends[2];
        record.RangePeriodMonth2 = ends[3];
        record.IsPeriods = true;
        QVERIFY(record.Validate());  // nothing is counted but in a range
        record.PeriodCriterion = RangePeriods;
        try {
            record.Validate();
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 6);
            QCOMPARE(failure.Description(),
                     QStringLiteral("[Vk_DocQuery::VkDocQueryData.Validate]\r\nПереполнение."));
        }
    }

    void BoxIsAWarningUnderANormalPointer() {
        VkDocQueryData record;
        record.IsDocStatus = true;
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            const auto *box = qobject_cast<QMessageBox *>(&window);
            if (!box || box->icon() != QMessageBox::Warning)
                driver.Complain(QStringLiteral("icon"));
            if (!box || box->buttons().size() != 1) driver.Complain(QStringLiteral("buttons"));
            const QCursor *pointer = QGuiApplication::overrideCursor();
            if (!pointer || pointer->shape() != Qt::ArrowCursor)
                driver.Complain(QStringLiteral("pointer"));
            window.close();
        });
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        const bool passed = record.Validate();
        const Qt::CursorShape after = QGuiApplication::overrideCursor()->shape();
        QGuiApplication::restoreOverrideCursor();
        QVERIFY(!passed);
        QCOMPARE(after, Qt::WaitCursor);
        QVERIFY2(driver.Done(), driver.Complaint());
    }
};

VK_TEST_CLASS(TestValidate);

#include "TestValidate.moc"
