#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "RecordInWords.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::MemoryOffice;

namespace {

using Change = std::function<void(VkDocQueryData &)>;

template <class... Records>
std::shared_ptr<RecordCollection> ListOf(Records... aRecords) {
    auto list = std::make_shared<RecordCollection>();
    (list->Add(aRecords, ObjectKey(aRecords->ID())), ...);
    return list;
}

std::shared_ptr<RecordCollection> SevenPersons() {
    auto list = std::make_shared<RecordCollection>();
    for (int person = 0; person < 7; ++person) list->Add(VkTests::MakePerson(1 + person % 2));
    return list;
}

void AddRow(const char *aName, const Change &aChange, const QStringList &aWords) {
    QTest::newRow(aName) << aChange << aWords;
}

void AddTaxpayerRows() {
    AddRow("taxpayers",
           [](VkDocQueryData &record) {
               record.IsTaxpayers = true;
               record.IncludeMainOrgDocs = true;  // does not count here
               record.TaxpayersList = ListOf(VkTests::MakePerson(1), VkTests::MakePerson(3));
           },
           {QStringLiteral("Налогоплательщики: ООО Ромашка; Иванов Иван Иванович")});
    AddRow("head organisations",
           [](VkDocQueryData &record) {
               record.IsTaxpayers = true;
               record.TaxpayersType = MainOrgs;
               record.IncludeMainOrgDocs = true;
               record.TaxpayersList = ListOf(VkTests::MakePerson(4));
           },
           {QStringLiteral("Обособленные подразделения головных организаций: АО Василёк"),
            QStringLiteral("Включая документы самой головной организации")});
    AddRow("no list", [](VkDocQueryData &record) { record.IsTaxpayers = true; },
           {QStringLiteral("Налогоплательщики: список пуст")});
    AddRow("a long list",
           [](VkDocQueryData &record) {
               record.IsTaxpayers = true;
               record.TaxpayersList = SevenPersons();
           },
           {QStringLiteral(
               "Налогоплательщики: ООО Ромашка; ООО Ромашка, Тверской филиал; ООО Ромашка; "
               "ООО Ромашка, Тверской филиал; ООО Ромашка; и еще 2")});
}

void AddStreamRows() {
    AddRow("stream types",
           [](VkDocQueryData &record) {
               record.IsAccStreamType = true;
               record.AccStreamTypes = AccStreamFns | AccStreamOfr;
           },
           {QStringLiteral("Тип комплекта отчетности: Отчетность в ИФНС; Отчетность ОФР")});
    AddRow("no stream type", [](VkDocQueryData &record) { record.IsAccStreamType = true; },
           {QStringLiteral("Тип комплекта отчетности: ничего не отмечено")});
    AddRow("open streams", [](VkDocQueryData &record) { record.IsAccStreamOpeness = true; },
           {QStringLiteral("Комплект отчетности: открыт")});
    AddRow("closed streams",
           [](VkDocQueryData &record) {
               record.IsAccStreamOpeness = true;
               record.AccStreamOpen = StreamClosed;
           },
           {QStringLiteral("Комплект отчетности: закрыт")});
    AddRow("second office",
           [](VkDocQueryData &record) {
               record.IsContoraPrefix2 = true;
               record.ContoraPrefix1 = QStringLiteral("77");
               record.ContoraPrefix2 = QStringLiteral("087");
           },
           {QStringLiteral("Код второго контр. органа начинается на: 087")});
    AddRow("either office",
           [](VkDocQueryData &record) {
               record.IsContoraPrefix1 = record.IsContoraPrefix2 = true;
               record.ContoraPrefix1 = QStringLiteral("77, 78");
               record.ContoraPrefix2 = QStringLiteral("087");
               record.ContoraJoining = JoinOr;
           },
           {QStringLiteral(
               "Код первого контр. органа начинается на: 77, 78 ИЛИ Код второго контр. органа "
               "начинается на: 087")});
    AddRow("streams",
           [](VkDocQueryData &record) {
               record.IsAccStreamsList = true;
               record.AccStreamsList = ListOf(VkTests::MakeStream(12));
           },
           {QStringLiteral("Комплекты отчетности: ПФР")});
}

void AddPeriodRows() {
    AddRow("one period",
           [](VkDocQueryData &record) {
               record.IsPeriods = true;
               record.IsPeriodTypes = true;  // does not count here
               record.OnePeriodYear = 2024;
               record.OnePeriodMonthID = 19;
           },
           {QStringLiteral("Период отчетности: период 19 2024")});
    AddRow("range of periods",
           [](VkDocQueryData &record) {
               record.IsPeriods = true;
               record.PeriodCriterion = RangePeriods;
               record.RangePeriodYear1 = 2023;
               record.RangePeriodMonth1 = 4;
               record.RangePeriodYear2 = 2024;
               record.IsPeriodTypes = true;
               record.PeriodTypes = PeriodMonths | PeriodOther;
           },
           {QStringLiteral("Период отчетности: с: период 4 2023, по: период 12 2024"),
            QStringLiteral("Только периоды следующего типа: месяцы; \"иное\"")});
    AddRow("other period",
           [](VkDocQueryData &record) {
               record.IsPeriods = true;
               record.PeriodCriterion = OtherPeriod;
           },
           {QStringLiteral("Период отчетности: \"Прочее\"")});
}

void AddFormRows() {
    AddRow("forms",
           [](VkDocQueryData &record) {
               record.IsTemplate = true;
               record.Templates = ListOf(VkTests::MakeClass(21), VkTests::MakeClass(23));
           },
           {QStringLiteral("Отчетные формы: НДС (КНД 1151001); РСВ (КНД 1151111)")});
    AddRow("versions of forms",
           [](VkDocQueryData &record) {
               record.IsTemplate = true;
               record.TemplatesMode = TemplateVersion;
               record.Templates = ListOf(VkTests::MakeVersion(33));
           },
           {QStringLiteral("Бланки: Прибыль 1")});
}

void AddPropertyRows() {
    AddRow("states",
           [](VkDocQueryData &record) {
               record.IsDocStatus = true;
               record.DocStatuses = DocReady | DocCorrected;
           },
           {QStringLiteral("Состояние документа: Готов к сдаче; Уточнён")});
    AddRow("dates",
           [](VkDocQueryData &record) {
               record.IsSignDate = true;
               record.SignDate1 = QDate(2024, 2, 1);
               record.SignDate2 = QDate(2024, 2, 29);
           },
           {QStringLiteral("Дата документа: с 01.02.2024 по 29.02.2024")});
    AddRow("open start",
           [](VkDocQueryData &record) {
               record.IsSignDate = true;
               record.SignDate1 = Null();
               record.SignDate2 = QDate(2024, 2, 29);
           },
           {QStringLiteral("Дата документа: по 29.02.2024")});
    AddRow("signer and notes",
           [](VkDocQueryData &record) {
               record.IsSignerFio = true;
               record.SignerSurname = QStringLiteral("Петров");
               record.IsNotes = true;
               record.NotesMode = NotesLike;
               record.Notes = QStringLiteral("срочно %1");
           },
           {QStringLiteral("Фамилия подписанта: Петров"),
            QStringLiteral("Примечание: содержит \"срочно %1\"")});
    AddRow("empty notes", [](VkDocQueryData &record) { record.IsNotes = true; },
           {QStringLiteral("Примечание: пусто")});
    AddRow("numbers",
           [](VkDocQueryData &record) {
               record.IsDocNum = true;
               record.DocNumMode = DocNumRange;
               record.DocNum1 = 5;
               record.DocNum2 = 70;
           },
           {QStringLiteral("Номер документа: с 5 по 70")});
    AddRow("last documents and packs",
           [](VkDocQueryData &record) {
               record.IsDocNum = true;
               record.WholePfrCluster = true;
           },
           {QStringLiteral("Последние созданные документы, количество: 10"),
            QStringLiteral("К индивидуальным сведениям добавляется весь комплект документов")});
    AddRow("delivery",
           [](VkDocQueryData &record) {
               record.IsOrvex = true;
               record.IsOrvexStages = true;
               record.OrvexStages = OrvexSent | OrvexNotice;
               record.IsOrvexTerms = true;
               record.OrvexTerms = OrvexSucceeded;
               record.IsFss = true;
           },
           {QStringLiteral(
                "Отправка через Орвекс: Отправлен; Есть уведомление ИФНС. Завершен успешно"),
            QStringLiteral("Отправка через сайт ФСС")});
}

}  // namespace

Q_DECLARE_METATYPE(Change)

class TestRecordInWords : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { MemoryOffice::Install(); }

    void nothingIsAskedFor() {
        VkDocQueryData record;
        record.SignerSurname = QStringLiteral("Петров");  // a value without its switch
        QCOMPARE(RecordInWords(record),
                 QStringList{QStringLiteral("Критерии не заданы: подойдет любой документ")});
    }

    void criteria_data() {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("words");
        AddTaxpayerRows();
        AddStreamRows();
        AddPeriodRows();
        AddFormRows();
        AddPropertyRows();
    }

    void criteria() {
        QFETCH(const Change, change);
        QFETCH(const QStringList, words);
        VkDocQueryData record;
        change(record);
        QCOMPARE(RecordInWords(record), words);
    }

    void failuresOfTheSupplierPassThrough() {
        VkDocQueryData record;
        record.IsTaxpayers = true;
        record.TaxpayersList = ListOf(VkTests::MakePerson(1));
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == u"VkPerson.GetDisplayName")
                throw Failure(42, QStringLiteral("Office"), QStringLiteral("закрыто"));
        };
        const auto calm = qScopeGuard([] { MemoryOffice::The().OnCall = nullptr; });
        QVERIFY_THROWS_EXCEPTION(Failure, RecordInWords(record));
    }
};

VK_TEST_CLASS(TestRecordInWords);

#include "TestRecordInWords.moc"
