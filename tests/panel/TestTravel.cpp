#include <functional>

#include <QLineEdit>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "controls/DateBox.h"
#include "controls/NumberBox.h"
#include "panel/OpenPanel.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

using Data = VkDocQueryData;

/// What a field of the record and its element must hold together: the field is set, distributed,
/// looked at in the element; then the element is what assembly has to bring into a bare record.
struct FieldFact {
    const char *Name;
    std::function<void(Data &)> Set;
    std::function<bool(const OpenPanel &)> Shown;
    std::function<bool(const Data &)> Back;
};

FieldFact TickFact(const char *aName, bool Data::*aField, const char *aElement, bool aOn) {
    return {aName, [=](Data &record) { record.*aField = aOn; },
            [=](const OpenPanel &panel) { return panel.Check(aElement).Value() == (aOn ? 1 : 0); },
            [=](const Data &record) { return record.*aField == aOn; }};
}

template <class Flags>
FieldFact BitFact(const char *aName, Flags Data::*aField, const QByteArray &aElement, qint32 aBit,
                  int aCount) {
    return {aName, [=](Data &record) { record.*aField = Flags(aBit); },
            [=](const OpenPanel &panel) {
                const QString array = QString::fromLatin1(aElement).section(u'(', 0, 0);
                int ticked = 0;
                for (int i = 0; i < aCount; ++i) {
                    const QString name = QStringLiteral("%1(%2)").arg(array).arg(i);
                    ticked += panel.Check(qPrintable(name)).Value();
                }
                return ticked == 1 && panel.Check(aElement.constData()).Value() == 1;
            },
            [=](const Data &record) { return record.*aField == Flags(aBit); }};
}

template <class Code>
FieldFact OptionFact(const char *aName, Code Data::*aField, qint32 aCode, const char *aElement) {
    return {aName, [=](Data &record) { record.*aField = Code(aCode); },
            [=](const OpenPanel &panel) { return panel.Option(aElement).Value(); },
            [=](const Data &record) { return record.*aField == Code(aCode); }};
}

FieldFact TextFact(const char *aName, QString Data::*aField, const char *aElement,
                   const QString &aText) {
    return {aName, [=](Data &record) { record.*aField = aText; },
            [=](const OpenPanel &panel) { return panel.Get<QLineEdit>(aElement).text() == aText; },
            [=](const Data &record) { return record.*aField == aText; }};
}

FieldFact YearFact(const char *aName, qint32 Data::*aField, const char *aElement, qint32 aYear) {
    return {aName, [=](Data &record) { record.*aField = aYear; },
            [=](const OpenPanel &panel) {
                return panel.Combo(aElement).currentText() == QString::number(aYear);
            },
            [=](const Data &record) { return record.*aField == aYear; }};
}

FieldFact NumberFact(const char *aName, qint32 Data::*aField, const char *aElement,
                     qint32 aNumber) {
    return {aName, [=](Data &record) { record.*aField = aNumber; },
            [=](const OpenPanel &panel) {
                return ToLong(panel.Get<NumberBox>(aElement).Value()) == aNumber;
            },
            [=](const Data &record) { return record.*aField == aNumber; }};
}

FieldFact DateFact(const char *aName, LooseValue Data::*aField, const char *aElement,
                   const LooseValue &aDate) {
    return {aName, [=](Data &record) { record.*aField = aDate; },
            [=](const OpenPanel &panel) { return panel.Get<DateBox>(aElement).Value() == aDate; },
            [=](const Data &record) { return record.*aField == aDate; }};
}

FieldFact CodeFact(const char *aName, qint32 Data::*aField, const char *aElement, qint32 aCode,
                   int aEntry) {
    return {aName, [=](Data &record) { record.*aField = aCode; },
            [=](const OpenPanel &panel) { return panel.Combo(aElement).currentIndex() == aEntry; },
            [=](const Data &record) { return record.*aField == aCode; }};
}

std::vector<FieldFact> Facts() {
    std::vector<FieldFact> facts;
    const auto tick = [&](const char *name, bool Data::*field, const char *element) {
        facts.push_back(TickFact(name, field, element, true));
        facts.push_back(TickFact(name, field, element, false));
    };
    const auto bits = [&](const char *name, auto field, const char *array,
                          const std::vector<qint32> &values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            const QByteArray element =
                QByteArray(array) + '(' + QByteArray::number(qulonglong(i)) + ')';
            facts.push_back(BitFact(name, field, element, values[i], int(values.size())));
        }
    };

    tick("IsDocStatus", &Data::IsDocStatus, "theIsDocStatus");
    bits("DocStatuses", &Data::DocStatuses, "theDocStatuses", {1, 2, 4, 8});
    tick("IsNotes", &Data::IsNotes, "theIsNotes");
    facts.push_back(OptionFact("NotesMode", &Data::NotesMode, 0, "theNotesEmpty"));
    facts.push_back(OptionFact("NotesMode", &Data::NotesMode, 1, "theNotesNotEmpty"));
    facts.push_back(OptionFact("NotesMode", &Data::NotesMode, 2, "theNotesLike"));
    facts.push_back(TextFact("Notes", &Data::Notes, "theNotes", QStringLiteral("  акт <&> ")));
    tick("IsSignDate", &Data::IsSignDate, "theIsSignDate");
    facts.push_back(DateFact("SignDate1", &Data::SignDate1, "theSignDate1", QDate(2025, 2, 28)));
    facts.push_back(DateFact("SignDate1", &Data::SignDate1, "theSignDate1", Empty()));
    facts.push_back(DateFact("SignDate2", &Data::SignDate2, "theSignDate2", QDate(2024, 2, 29)));
    facts.push_back(DateFact("SignDate2", &Data::SignDate2, "theSignDate2", Empty()));
    tick("IsSignerFio", &Data::IsSignerFio, "theIsSignerFio");
    facts.push_back(TextFact("SignerSurname", &Data::SignerSurname, "theSignerSurname",
                             QStringLiteral("Щукин")));
    tick("IsDocNum", &Data::IsDocNum, "theIsDocNum");
    facts.push_back(OptionFact("DocNumMode", &Data::DocNumMode, 0, "theDocNumRange"));
    facts.push_back(NumberFact("DocNum1", &Data::DocNum1, "theDocNum1", -7));
    facts.push_back(NumberFact("DocNum1", &Data::DocNum1, "theDocNum1", 2147483647));
    facts.push_back(NumberFact("DocNum2", &Data::DocNum2, "theDocNum2", 12));
    facts.push_back(OptionFact("DocNumMode", &Data::DocNumMode, 1, "theDocLastNumMode"));
    facts.push_back(
        NumberFact("LastDocNumsCount", &Data::LastDocNumsCount, "theDocLastNumCount", 25));
    tick("IsOrvex", &Data::IsOrvex, "theIsOrvex");
    tick("IsOrvexStages", &Data::IsOrvexStages, "theIsOrvexStages");
    bits("OrvexStages", &Data::OrvexStages, "theOrvexStages", {1, 2, 4, 8, 16, 32});
    tick("IsOrvexTerms", &Data::IsOrvexTerms, "theIsOrvexTerms");
    bits("OrvexTerms", &Data::OrvexTerms, "theOrvexTerms", {1, 2, 4});
    tick("IsFss", &Data::IsFss, "theIsFss");
    tick("IsFssStages", &Data::IsFssStages, "theIsFssStages");
    bits("FssStages", &Data::FssStages, "theFssStages", {1, 2, 4, 8, 16, 32});
    tick("IsFssTerms", &Data::IsFssTerms, "theIsFssTerms");
    bits("FssTerms", &Data::FssTerms, "theFssTerms", {1, 2, 4});
    tick("WholePfrCluster", &Data::WholePfrCluster, "theWholePfrCluster");
    tick("IsTemplate", &Data::IsTemplate, "theIsTemplate");
    facts.push_back(OptionFact("TemplatesMode", &Data::TemplatesMode, 1, "theOptTemplateClass"));
    facts.push_back(OptionFact("TemplatesMode", &Data::TemplatesMode, 2, "theOptTemplate"));
    tick("IsPeriods", &Data::IsPeriods, "theIsPeriods");
    facts.push_back(OptionFact("PeriodCriterion", &Data::PeriodCriterion, 1, "theOnePeriod"));
    facts.push_back(OptionFact("PeriodCriterion", &Data::PeriodCriterion, 2, "theRangePeriods"));
    facts.push_back(OptionFact("PeriodCriterion", &Data::PeriodCriterion, 3, "theOtherPeriod"));
    facts.push_back(YearFact("OnePeriodYear", &Data::OnePeriodYear, "theOnePerYear", 1999));
    facts.push_back(CodeFact("OnePeriodMonthID", &Data::OnePeriodMonthID, "thePeriodTime", 24, 20));
    facts.push_back(CodeFact("OnePeriodMonthID", &Data::OnePeriodMonthID, "thePeriodTime", 19, 8));
    facts.push_back(YearFact("RangePeriodYear1", &Data::RangePeriodYear1, "thePerYear1", 0));
    facts.push_back(CodeFact("RangePeriodMonth1", &Data::RangePeriodMonth1, "thePerMonth1", 5, 4));
    facts.push_back(YearFact("RangePeriodYear2", &Data::RangePeriodYear2, "thePerYear2", -5));
    facts.push_back(
        CodeFact("RangePeriodMonth2", &Data::RangePeriodMonth2, "thePerMonth2", 12, 11));
    tick("IsPeriodTypes", &Data::IsPeriodTypes, "theIsPeriodTypes");
    bits("PeriodTypes", &Data::PeriodTypes, "thePeriodTypes", {1, 2, 4, 8, 16, 32, 64});
    tick("IsAccStreamType", &Data::IsAccStreamType, "theIsAccStreamType");
    bits("AccStreamTypes", &Data::AccStreamTypes, "theAccStreamTypes", {1, 2, 4, 8, 16, 256});
    tick("IsAccStreamOpeness", &Data::IsAccStreamOpeness, "theIsAccStreamOpeness");
    facts.push_back(OptionFact("AccStreamOpen", &Data::AccStreamOpen, 1, "theAccStreamOpen"));
    facts.push_back(OptionFact("AccStreamOpen", &Data::AccStreamOpen, 2, "theAccStreamClosed"));
    tick("IsContoraPrefix1", &Data::IsContoraPrefix1, "theIsContoraPrefix1");
    facts.push_back(TextFact("ContoraPrefix1", &Data::ContoraPrefix1, "theContoraPrefix1",
                             QStringLiteral("77, 50 ")));
    tick("IsContoraPrefix2", &Data::IsContoraPrefix2, "theIsContoraPrefix2");
    facts.push_back(TextFact("ContoraPrefix2", &Data::ContoraPrefix2, "theContoraPrefix2",
                             QString(40000, u'7')));
    facts.push_back(OptionFact("ContoraJoining", &Data::ContoraJoining, 0, "theContoraJoinAnd"));
    facts.push_back(OptionFact("ContoraJoining", &Data::ContoraJoining, 1, "theContoraJoinOr"));
    tick("IsAccStreamsList", &Data::IsAccStreamsList, "theIsAccStreamsList");
    tick("IsTaxpayers", &Data::IsTaxpayers, "theIsTaxpayers");
    facts.push_back(OptionFact("TaxpayersType", &Data::TaxpayersType, 1, "theOptTaxpayers"));
    facts.push_back(OptionFact("TaxpayersType", &Data::TaxpayersType, 2, "theOptMainOrgs"));
    tick("IncludeMainOrgDocs", &Data::IncludeMainOrgDocs, "theIncludeMainOrgDocs");
    return facts;
}

Data WithLists() {
    Data record;
    record.Templates = Records({MakeClass(21), MakeClass(22)});
    record.AccStreamsList = Records({MakeStream(11), MakeStream(12)});
    record.TaxpayersList = Records({MakePerson(1), MakePerson(3)});
    return record;
}

template <class Body>
QString Chain(Body aBody) {
    return RaisedBy(aBody).Description();
}

}  // namespace

class TestTravel : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void EveryField_data() {
        QTest::addColumn<int>("fact");
        const auto facts = Facts();
        for (std::size_t i = 0; i < facts.size(); ++i)
            QTest::addRow("%s %d", facts[i].Name, int(i)) << int(i);
    }
    void EveryField() {
        QFETCH(int, fact);
        const FieldFact field = Facts()[std::size_t(fact)];
        OpenPanel panel;
        Data other;
        panel.DistributeValues(other);
        Data record;
        field.Set(record);
        panel.DistributeValues(record);
        QVERIFY(field.Shown(panel));
        Data back;
        panel.AssembleValuesTo(back);
        QVERIFY(field.Back(back));
    }

    void ListsThereAndBack() {
        OpenPanel panel;
        Data record = WithLists();
        panel.DistributeValues(record);
        QCOMPARE(Keys(panel.List("theTemplatesList")), QStringLiteral("_21 _22"));
        QCOMPARE(Keys(panel.List("theAccStreamsList")), QStringLiteral("_11 _12"));
        QCOMPARE(Keys(panel.List("theTaxpayersList")), QStringLiteral("_3 _1"));
        Data back;
        panel.AssembleValuesTo(back);
        QCOMPARE(Ids(*back.Templates), QStringLiteral("21 22"));
        QCOMPARE(Ids(*back.AccStreamsList), QStringLiteral("11 12"));
        QCOMPARE(Ids(*back.TaxpayersList), QStringLiteral("3 1"));
        QCOMPARE(back.Templates->At(0).get(), record.Templates->At(0).get());
    }

    void TheOrderIsTheOneTheUserSortedIn() {
        OpenPanel panel;
        Data record = WithLists();
        panel.DistributeValues(record);
        panel.List("theTaxpayersList").SetSortOrder(1);
        panel.AssembleValuesTo(record);
        QCOMPARE(Ids(*record.TaxpayersList), QStringLiteral("1 3"));
    }

    void UntouchedPanelGivesTheRecordBack() {
        OpenPanel panel;
        Data record;
        panel.DistributeValues(record);
        Data back;
        back.FileName = QStringLiteral("a.qvk");
        back.LastError = QStringLiteral("e");
        back.NotesMode = NotesLike;
        back.TemplatesMode = TemplateVersion;
        panel.AssembleValuesTo(back);
        QCOMPARE(back.OnePeriodYear, record.OnePeriodYear);
        QCOMPARE(back.OnePeriodMonthID, 16);
        QCOMPARE(back.RangePeriodMonth1, 1);
        QCOMPARE(back.RangePeriodMonth2, 12);
        QCOMPARE(back.NotesMode, NotesEmpty);
        QCOMPARE(back.DocNumMode, DocLastNums);
        QCOMPARE(back.LastDocNumsCount, 10);
        QCOMPARE(back.TemplatesMode, TemplateClass);
        QCOMPARE(back.TaxpayersType, Taxpayers);
        QVERIFY(back.SignDate1 == LooseValue(Empty()));
        QCOMPARE(back.LastTab, QStringLiteral("taxpayer"));
        QCOMPARE(back.FileName, QStringLiteral("a.qvk"));
        QCOMPARE(back.LastError, QStringLiteral("e"));
    }

    void SwitchedOffListIsFilledAllTheSame() {
        OpenPanel panel;
        Data record;
        record.Templates = Records({MakeClass(21), MakeClass(22), MakeClass(23)});
        panel.DistributeValues(record);
        QCOMPARE(panel.Check("theIsTemplate").Value(), 0);
        QCOMPARE(panel.List("theTemplatesList").RowCount(), 3);
        QVERIFY(panel.Get("theTemplatesListFrame").isHidden());
        QCOMPARE(panel.Tabs().TabPicture(QStringLiteral("template")), QStringLiteral("passive"));
        Data back;
        panel.AssembleValuesTo(back);
        QVERIFY(!back.IsTemplate);
        QCOMPARE(back.Templates->Count(), 3);
    }

    void AbsentCollectionsAreMade() {
        OpenPanel panel;
        Data record;
        QVERIFY(!record.Templates);
        panel.DistributeValues(record);
        QVERIFY(record.Templates && record.AccStreamsList && record.TaxpayersList);
        QCOMPARE(record.Templates->Count(), 0);
        QCOMPARE(panel.List("theTemplatesList").RowCount(), 0);
    }

    void PresentCollectionStaysTheRecordsOwn() {
        OpenPanel panel;
        Data record = WithLists();
        const auto templates = record.Templates;
        panel.DistributeValues(record);
        QCOMPARE(record.Templates.get(), templates.get());
    }

    void CodesTheCombosLackSelectTheFirstEntry() {
        OpenPanel panel;
        Data record;
        record.OnePeriodMonthID = 18;
        record.RangePeriodMonth1 = 0;
        panel.DistributeValues(record);
        QCOMPARE(panel.Combo("thePeriodTime").currentIndex(), 0);
        QCOMPARE(panel.Combo("thePerMonth1").currentIndex(), 0);
        panel.AssembleValuesTo(record);
        QCOMPARE(record.OnePeriodMonthID, 1);
        QCOMPARE(record.RangePeriodMonth1, 1);
    }

    void ComboWithoutASelectionGivesZero() {
        OpenPanel panel;  // no record has been distributed
        Data record;
        panel.AssembleValuesTo(record);
        QCOMPARE(record.OnePeriodMonthID, 0);
        QCOMPARE(record.RangePeriodMonth1, 0);
        QCOMPARE(record.RangePeriodMonth2, 0);
    }

    void UnknownPeriodCriterionChoosesNothing() {
        OpenPanel panel;
        Data record;
        record.PeriodCriterion = DocQueryPeriodCriterion(4);
        panel.DistributeValues(record);
        for (const char *name : {"theOnePeriod", "theRangePeriods", "theOtherPeriod"})
            QVERIFY(!panel.Option(name).Value());
        for (const char *name : {"theOnePerYear", "thePeriodTime", "thePerYear1", "thePerMonth1",
                                 "thePerYear2", "thePerMonth2"})
            QVERIFY(!panel.Combo(name).isEnabled());
        QVERIFY(panel.Get("thePeriodsFrame3").isHidden());
        panel.AssembleValuesTo(record);
        QCOMPARE(record.PeriodCriterion, OnePeriod);
    }

    void UnknownCodesComeBackAsTheFirst() {
        OpenPanel panel;
        Data record;
        panel.DistributeValues(record);
        record.TemplatesMode = DocQueryTemplatesMode(9);
        record.AccStreamOpen = DocQueryAccStreamOpen(0);
        record.ContoraJoining = DocQueryContoraJoining(-1);
        record.TaxpayersType = DocQueryTaxpayersType(3);
        record.NotesMode = DocQueryNotesMode(3);
        record.DocNumMode = DocQueryDocNumMode(2);
        panel.DistributeValues(record);
        for (const char *name :
             {"theOptTemplateClass", "theOptTemplate", "theAccStreamOpen", "theAccStreamClosed",
              "theContoraJoinAnd", "theContoraJoinOr", "theOptTaxpayers", "theOptMainOrgs",
              "theNotesEmpty", "theNotesNotEmpty", "theNotesLike", "theDocNumRange",
              "theDocLastNumMode"})
            QVERIFY2(!panel.Option(name).Value(), name);
        panel.AssembleValuesTo(record);
        QCOMPARE(record.TemplatesMode, TemplateClass);
        QCOMPARE(record.AccStreamOpen, StreamOpen);
        QCOMPARE(record.ContoraJoining, JoinAnd);
        QCOMPARE(record.TaxpayersType, Taxpayers);
        QCOMPARE(record.NotesMode, NotesLike);  // the odd one
        QCOMPARE(record.DocNumMode, DocNumRange);
    }

    void BitsOffThePanelAreLost() {
        OpenPanel panel;
        Data record;
        record.AccStreamTypes = DocQueryAccStreamTypes(32);
        record.DocStatuses = DocQueryDocStatuses(16 + 1);
        panel.DistributeValues(record);
        for (int i = 0; i < 6; ++i) {
            const QString name = QStringLiteral("theAccStreamTypes(%1)").arg(i);
            QCOMPARE(panel.Check(qPrintable(name)).Value(), 0);
        }
        panel.AssembleValuesTo(record);
        QCOMPARE(qint32(record.AccStreamTypes), 0);
        QCOMPARE(qint32(record.DocStatuses), 1);
    }

    void AllBits() {
        OpenPanel panel;
        for (auto *box : panel.findChildren<CheckBox *>()) box->SetValue(1);
        Data record;
        panel.AssembleValuesTo(record);
        QCOMPARE(qint32(record.AccStreamTypes), 287);
        QCOMPARE(qint32(record.PeriodTypes), 127);
        QCOMPARE(qint32(record.DocStatuses), 15);
        QCOMPARE(qint32(record.OrvexStages), 63);
        QCOMPARE(qint32(record.FssTerms), 7);
    }

    void GreyCountsAsABitButNotAsATick() {
        OpenPanel panel;
        panel.Check("theDocStatuses(2)").SetValue(2);
        panel.Check("theIsDocStatus").SetValue(2);
        Data record;
        panel.AssembleValuesTo(record);
        QCOMPARE(qint32(record.DocStatuses), 4);
        QVERIFY(!record.IsDocStatus);
    }

    void TypedYears_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("year");
        QTest::newRow("word") << QStringLiteral("abc") << 0;
        QTest::newRow("empty") << QString() << 0;
        QTest::newRow("listed") << QStringLiteral("2021") << 2021;
        QTest::newRow("not listed") << QStringLiteral("1987") << 1987;
        QTest::newRow("blanks") << QStringLiteral(" 2021 ") << 2021;
        QTest::newRow("too large") << QStringLiteral("99999999999") << 0;
    }
    void TypedYears() {
        QFETCH(QString, text);
        QFETCH(int, year);
        OpenPanel panel;
        Data record;
        record.PeriodCriterion = OnePeriod;
        record.IsPeriods = true;
        record.LastTab = QStringLiteral("time");
        panel.DistributeValues(record);
        panel.show();
        QLineEdit &edit = *panel.Combo("theOnePerYear").lineEdit();
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, text);
        QCOMPARE(panel.Combo("theOnePerYear").Text(), text);
        panel.AssembleValuesTo(record);
        QCOMPARE(record.OnePeriodYear, year);
    }

    void BlankNumberIsZero() {
        OpenPanel panel;
        Data record;
        record.DocNum1 = 5;
        panel.DistributeValues(record);
        panel.Get<NumberBox>("theDocNum1").SetValue(Empty());
        panel.AssembleValuesTo(record);
        QCOMPARE(record.DocNum1, 0);
    }

    void NumberOutOfRangeIsZero() {
        OpenPanel panel;
        Data record;
        panel.Get<NumberBox>("theDocNum2").SetValue(99999999999999.0);
        panel.AssembleValuesTo(record);
        QCOMPARE(record.DocNum2, 0);
    }

    void DateThatIsNoneComesBackEmpty_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("null") << 0;
        QTest::newRow("invalid date") << 1;
        QTest::newRow("empty text") << 2;
        QTest::newRow("text that is no date") << 3;
    }
    void DateThatIsNoneComesBackEmpty() {
        const LooseValue values[] = {Null(), QDate(), QString(), QStringLiteral("вчера")};
        QFETCH(int, kind);
        OpenPanel panel;
        Data record;
        record.SignDate1 = QDate(2025, 1, 1);
        panel.DistributeValues(record);
        record.SignDate1 = values[kind];
        panel.DistributeValues(record);
        panel.AssembleValuesTo(record);
        QVERIFY(record.SignDate1 == LooseValue(Empty()));
    }

    void TextOfADateComesBackAsTheDate() {
        OpenPanel panel;
        Data record;
        record.SignDate2 = QStringLiteral("31.2.21");
        panel.DistributeValues(record);
        panel.AssembleValuesTo(record);
        QVERIFY(record.SignDate2 == LooseValue(QDate(2021, 3, 3)));
    }

    void TabOfTheRecord_data() {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("selected");
        QTest::newRow("known") << QStringLiteral("doc") << QStringLiteral("doc");
        QTest::newRow("unknown") << QStringLiteral("nothing") << QStringLiteral("time");
        QTest::newRow("other case") << QStringLiteral("DOC") << QStringLiteral("time");
        QTest::newRow("empty") << QString() << QStringLiteral("time");
    }
    void TabOfTheRecord() {
        QFETCH(QString, given);
        QFETCH(QString, selected);
        OpenPanel panel;
        panel.SetCurrentTab(QStringLiteral("time"));
        Data record;
        record.LastTab = given;
        panel.DistributeValues(record);
        QCOMPARE(panel.GetCurrentTab(), selected);
        panel.AssembleValuesTo(record);
        QCOMPARE(record.LastTab, selected);
    }

    void SecondRecordLeavesNothingOfTheFirst() {
        OpenPanel panel;
        Data first = WithLists();
        panel.DistributeValues(first);
        Data second;
        second.TaxpayersList = Records({MakePerson(4)});
        panel.DistributeValues(second);
        QCOMPARE(Keys(panel.List("theTaxpayersList")), QStringLiteral("_4"));
        QCOMPARE(panel.List("theTemplatesList").RowCount(), 0);
        QCOMPARE(panel.List("theAccStreamsList").RowCount(), 0);
    }

    void AssemblyPutsNewCollections() {
        OpenPanel panel;
        Data record = WithLists();
        const Data before = record;
        panel.DistributeValues(record);
        panel.List("theTemplatesList").RemoveRow(QStringLiteral("_21"));
        panel.List("theAccStreamsList").RemoveRow(QStringLiteral("_12"));
        panel.List("theTaxpayersList").RemoveRow(QStringLiteral("_1"));
        panel.AssembleValuesTo(record);
        QVERIFY(record.Templates != before.Templates);
        QVERIFY(record.AccStreamsList != before.AccStreamsList);
        QVERIFY(record.TaxpayersList != before.TaxpayersList);
        QCOMPARE(Ids(*before.Templates), QStringLiteral("21 22"));
        QCOMPARE(Ids(*before.AccStreamsList), QStringLiteral("11 12"));
        QCOMPARE(Ids(*before.TaxpayersList), QStringLiteral("1 3"));
        QCOMPARE(Ids(*record.Templates), QStringLiteral("22"));
        QCOMPARE(Ids(*record.AccStreamsList), QStringLiteral("11"));
        QCOMPARE(Ids(*record.TaxpayersList), QStringLiteral("3"));
        for (const char *list : {"theTemplatesList", "theAccStreamsList", "theTaxpayersList"})
            panel.List(list).ClearRows();
        panel.AssembleValuesTo(record);
        for (const auto &list : {record.Templates, record.AccStreamsList, record.TaxpayersList}) {
            QVERIFY(list);
            QCOMPARE(list->Count(), 0);
        }
    }

    // One refresh, at the last unlock.

    void DistributionRefreshesOnce() {
        OpenPanel panel;
        Data record = WithLists();
        record.IsTemplate = record.IsTaxpayers = record.IsPeriods = true;
        record.TemplatesMode = TemplateClass;
        record.TaxpayersType = MainOrgs;
        record.PeriodCriterion = RangePeriods;
        panel.Refreshes = 0;
        panel.DistributeValues(record);
        QCOMPARE(panel.Refreshes, 1);
        QCOMPARE(panel.theLockCount, 0);
        QVERIFY(!panel.theRefreshPending);
    }

    /// No element of a fresh panel changes, so that none asks for the refresh.
    void DistributionThatChangesNothingRefreshesToo() {
        OpenPanel panel;
        Data record;
        record.PeriodCriterion = DocQueryPeriodCriterion(4);
        record.NotesMode = DocQueryNotesMode(3);
        record.DocNumMode = DocQueryDocNumMode(2);
        QVERIFY(!panel.Get("theTaxpayersFrame2").isHidden());
        panel.DistributeValues(record);
        QCOMPARE(panel.Refreshes, 1);
        QVERIFY(panel.Get("theTaxpayersFrame2").isHidden());
    }

    void AssemblyRefreshesNothing() {
        OpenPanel panel;
        Data record;
        panel.DistributeValues(record);
        panel.Refreshes = 0;
        panel.AssembleValuesTo(record);
        QCOMPARE(panel.Refreshes, 0);
    }

    void RowsAreNotConvertedWhileARecordIsShown() {
        OpenPanel panel;
        Data record = WithLists();
        panel.DistributeValues(record);
        record.TemplatesMode = TemplateVersion;
        record.Templates = Records({MakeVersion(31), MakeVersion(32)});
        panel.DistributeValues(record);
        QCOMPARE(Keys(panel.List("theTemplatesList")), QStringLiteral("_31 _32"));
        QCOMPARE(record.Templates->Count(), 2);
    }

    void ChoicesRefreshOnceOnTheirOwn() {
        OpenPanel panel;
        Data record;
        panel.DistributeValues(record);
        panel.Refreshes = 0;
        panel.SetPeriodCriterion(RangePeriods);
        QCOMPARE(panel.Refreshes, 1);
        panel.SetContoraJoining(JoinOr);
        QCOMPARE(panel.Refreshes, 1);
        panel.LockUpdate();
        panel.SetPeriodCriterion(OnePeriod);
        QCOMPARE(panel.Refreshes, 1);
        QCOMPARE(panel.theLockCount, 1);
        panel.UnlockUpdate();
        QCOMPARE(panel.Refreshes, 2);
    }

    void ChoicesAreMadeUnderTheLock_data() {
        QTest::addColumn<int>("choice");
        for (int i = 0; i < 5; ++i) QTest::addRow("%d", i) << i;
    }
    void ChoicesAreMadeUnderTheLock() {
        QFETCH(int, choice);
        OpenPanel panel;
        QList<qint32> locks;
        for (auto *option : panel.findChildren<OptionButton *>())
            connect(option, &OptionButton::Click, this, [&] { locks << panel.theLockCount; });
        if (choice == 0) panel.SetTemplatesMode(TemplateVersion);
        if (choice == 1) panel.SetPeriodCriterion(OtherPeriod);
        if (choice == 2) panel.SetAccStreamOpeness(StreamClosed);
        if (choice == 3) panel.SetContoraJoining(JoinOr);
        if (choice == 4) panel.SetTaxpayersType(MainOrgs);
        QCOMPARE(locks, QList<qint32>{1});
        QCOMPARE(panel.theLockCount, 0);
    }

    void Readers() {
        OpenPanel panel;
        QCOMPARE(panel.GetTemplatesMode(), TemplateClass);
        QCOMPARE(panel.GetPeriodCriterion(), OnePeriod);
        QCOMPARE(panel.GetAccStreamOpeness(), StreamOpen);
        QCOMPARE(panel.GetContoraJoining(), JoinAnd);
        QCOMPARE(panel.GetTaxpayersType(), Taxpayers);
        panel.SetTemplatesMode(TemplateVersion);
        panel.SetPeriodCriterion(OtherPeriod);
        panel.SetAccStreamOpeness(StreamClosed);
        panel.SetContoraJoining(JoinOr);
        panel.SetTaxpayersType(MainOrgs);
        QCOMPARE(panel.GetTemplatesMode(), TemplateVersion);
        QCOMPARE(panel.GetPeriodCriterion(), OtherPeriod);
        QCOMPARE(panel.GetAccStreamOpeness(), StreamClosed);
        QCOMPARE(panel.GetContoraJoining(), JoinOr);
        QCOMPARE(panel.GetTaxpayersType(), MainOrgs);
    }

    // Failures.

    void FailingDistribution() {
        OpenPanel panel;
        Data good = WithLists();
        panel.DistributeValues(good);
        Data record = WithLists();
        record.IsDocStatus = record.IsPeriods = true;
        panel.Refreshes = 0;
        MemoryOffice::The().OnCall = [](const QString &aMember) {
            if (aMember == u"VkTemplType.ShortName")
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        const QString chain = Chain([&] { panel.DistributeValues(record); });
        MemoryOffice::The().OnCall = nullptr;
        QCOMPARE(chain,
                 QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.FillTemplatesList]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.AddItemToTemplatesList]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.RefreshItemInTemplatesList]\r\n"
                                "[S]\r\nD"));
        QCOMPARE(panel.theLockCount, 0);
        QCOMPARE(panel.Refreshes, 0);
        QVERIFY(panel.theRefreshPending);
        QCOMPARE(panel.Check("theIsDocStatus").Value(), 1);  // was written before
        QCOMPARE(panel.Check("theIsPeriods").Value(), 0);    // would have been written after
        panel.Check("theIsNotes").SetValue(1);               // the next refresh catches up
        QVERIFY(!panel.Get("theDocStatusFrame2").isHidden());
        QVERIFY(!panel.theRefreshPending);
    }

    void FailingAssembly_data() {
        QTest::addColumn<QString>("reader");
        QTest::newRow("theDocStatuses(1)") << QStringLiteral("GatherBitfield");
        QTest::newRow("theNotes") << QString();
        QTest::newRow("theOptTemplateClass") << QStringLiteral("GetTemplatesMode");
        QTest::newRow("theOnePeriod") << QStringLiteral("GetPeriodCriterion");
        QTest::newRow("theAccStreamOpen") << QStringLiteral("GetAccStreamOpeness");
        QTest::newRow("theContoraJoinAnd") << QStringLiteral("GetContoraJoining");
        QTest::newRow("theOptTaxpayers") << QStringLiteral("GetTaxpayersType");
    }
    /// The host has taken an element away.
    void FailingAssembly() {
        QFETCH(QString, reader);
        OpenPanel panel;
        Data record;
        record.IsDocStatus = true;
        record.LastTab = QStringLiteral("doc");
        panel.DistributeValues(record);
        panel.SetCurrentTab(QStringLiteral("time"));
        panel.Check("theIsDocStatus").SetValue(0);
        delete &panel.Get(QTest::currentDataTag());
        QString road = QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.AssembleValuesTo]\r\n");
        if (!reader.isEmpty())
            road += QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.%1]\r\n").arg(reader);
        QCOMPARE(Chain([&] { panel.AssembleValuesTo(record); }),
                 road + QStringLiteral("[VkDocQueryCriteries]\r\n"
                                       "На панели нет нужного элемента \"%1\".")
                            .arg(QLatin1String(QTest::currentDataTag())));
        QVERIFY(!record.IsDocStatus);                     // was read before
        QCOMPARE(record.LastTab, QStringLiteral("doc"));  // would have been read after
    }

    void FailingLastRefreshLeavesNoLockBehind() {
        OpenPanel panel;
        panel.Tabs().SetImages(std::make_shared<ImageList>());
        Data record;
        const QString chain = Chain([&] { panel.DistributeValues(record); });
        QVERIFY(chain.startsWith(
            QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
                           "[Vk_DocQuery::VkDocQueryCriteries.UnlockUpdate]\r\n"
                           "[Vk_DocQuery::VkDocQueryCriteries.RefreshControls]\r\n")));
        QCOMPARE(panel.theLockCount, 0);
    }

    void RecordWithAHoleInAList() {
        OpenPanel panel;
        Data record;
        record.TaxpayersList = Records({nullptr});
        QCOMPARE(Chain([&] { panel.DistributeValues(record); }),
                 QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.FillTaxpayersList]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.AddItemToTaxpayersList]\r\n"
                                "[Record]\r\nОбъект не задан: Record."));
    }
};

VK_TEST_CLASS(TestTravel);

#include "TestTravel.moc"
