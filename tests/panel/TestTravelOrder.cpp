#include <QLineEdit>
#include <QTabBar>
#include <QTest>

#include "panel/OpenPanel.h"
#include "query/Fields.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

using Data = VkDocQueryData;

/// The object name of an element, or of that which a line is part of.
QString NameOfElement(const QObject *aObject) {
    while (aObject && !aObject->objectName().startsWith(QStringLiteral("the")))
        aObject = aObject->parent();
    return aObject ? aObject->objectName() : QString();
}

/// Notes which elements change, in their order, until it goes.
class Changes : public QObject {
public:
    explicit Changes(const OpenPanel &aPanel) {
        for (const auto *box : aPanel.findChildren<CheckBox *>())
            connect(box, &CheckBox::Click, this, [this, box] { Note(box); });
        for (const auto *option : aPanel.findChildren<OptionButton *>())
            connect(option, &OptionButton::Click, this, [this, option] { Note(option); });
        for (const auto *line : aPanel.findChildren<QLineEdit *>())
            connect(line, &QLineEdit::textChanged, this, [this, line] { Note(line); });
        for (const auto *combo : aPanel.findChildren<ComboBox *>())
            connect(combo, &ComboBox::currentIndexChanged, this, [this, combo] { Note(combo); });
        connect(aPanel.Tabs().Bar(), &QTabBar::currentChanged, this,
                [this] { Names << QStringLiteral("tab"); });
        MemoryOffice::The().OnCall = [this](const QString &aMember) {
            const QHash<QString, QString> lists = {
                {QStringLiteral("VkTemplate.GetDisplayName"), QStringLiteral("theTemplatesList")},
                {QStringLiteral("VkAccStream.DisplayName"), QStringLiteral("theAccStreamsList")},
                {QStringLiteral("VkPerson.IsBranch"), QStringLiteral("theTaxpayersList")},
            };
            if (lists.contains(aMember)) Names << lists.value(aMember);
        };
    }
    ~Changes() override { MemoryOffice::The().OnCall = nullptr; }
    Q_DISABLE_COPY_MOVE(Changes)

    QStringList Names;

private:
    void Note(const QObject *aElement) {
        const QString name = NameOfElement(aElement);
        if (Names.isEmpty() || Names.last() != name) Names << name;
    }
};

/// A record of which every element differs from those of a new one.
Data ChangedEverywhere() {
    Data record;
    for (bool Data::*tick : {&Data::IsDocStatus,
                             &Data::IsNotes,
                             &Data::IsSignDate,
                             &Data::IsSignerFio,
                             &Data::IsDocNum,
                             &Data::IsOrvex,
                             &Data::IsOrvexStages,
                             &Data::IsOrvexTerms,
                             &Data::IsFss,
                             &Data::IsFssStages,
                             &Data::IsFssTerms,
                             &Data::WholePfrCluster,
                             &Data::IsTemplate,
                             &Data::IsPeriods,
                             &Data::IsPeriodTypes,
                             &Data::IsAccStreamType,
                             &Data::IsAccStreamOpeness,
                             &Data::IsContoraPrefix1,
                             &Data::IsContoraPrefix2,
                             &Data::IsAccStreamsList,
                             &Data::IsTaxpayers,
                             &Data::IncludeMainOrgDocs})
        record.*tick = true;
    record.DocStatuses = DocQueryDocStatuses(15);
    record.NotesMode = DocQueryNotesMode(9);
    record.Notes = QStringLiteral("a");
    record.SignDate1 = record.SignDate2 = QDate(2024, 2, 29);
    record.SignerSurname = QStringLiteral("b");
    record.DocNumMode = DocQueryDocNumMode(9);
    record.DocNum1 = record.DocNum2 = record.LastDocNumsCount = 77;
    record.OrvexStages = DocQueryOrvexStages(63);
    record.OrvexTerms = DocQueryOrvexTerms(7);
    record.FssStages = DocQueryFssStages(63);
    record.FssTerms = DocQueryFssTerms(7);
    record.TemplatesMode = TemplateVersion;
    record.Templates = Records({MakeVersion(31)});
    record.PeriodCriterion = OtherPeriod;
    record.OnePeriodYear = record.RangePeriodYear1 = record.RangePeriodYear2 = 1999;
    record.OnePeriodMonthID = record.RangePeriodMonth1 = record.RangePeriodMonth2 = 5;
    record.PeriodTypes = DocQueryPeriodTypes(127);
    record.AccStreamTypes = DocQueryAccStreamTypes(287);
    record.AccStreamOpen = StreamClosed;
    record.ContoraPrefix1 = record.ContoraPrefix2 = QStringLiteral("77");
    record.ContoraJoining = JoinOr;
    record.AccStreamsList = Records({MakeStream(11)});
    record.TaxpayersType = MainOrgs;
    record.TaxpayersList = Records({MakePerson(1)});
    record.LastTab = QStringLiteral("doc");
    return record;
}

struct TakenField {
    const char *Name;
    const char *Element;
};

/// The fields in the order in which they are taken from their elements. Two groups stand elsewhere
/// than on the way into the elements.
constexpr TakenField theTakenFields[] = {
    {"IsDocStatus", "theIsDocStatus"},
    {"DocStatuses", "theDocStatuses(0)"},
    {"IsNotes", "theIsNotes"},
    {"Notes", "theNotes"},
    {"NotesMode", "theNotesEmpty"},
    {"IsSignDate", "theIsSignDate"},
    {"SignDate1", "theSignDate1"},
    {"SignDate2", "theSignDate2"},
    {"IsSignerFio", "theIsSignerFio"},
    {"SignerSurname", "theSignerSurname"},
    {"IsDocNum", "theIsDocNum"},
    {"DocNumMode", "theDocNumRange"},
    {"DocNum1", "theDocNum1"},
    {"DocNum2", "theDocNum2"},
    {"LastDocNumsCount", "theDocLastNumCount"},
    {"IsOrvex", "theIsOrvex"},
    {"IsOrvexStages", "theIsOrvexStages"},
    {"OrvexStages", "theOrvexStages(5)"},
    {"IsOrvexTerms", "theIsOrvexTerms"},
    {"OrvexTerms", "theOrvexTerms(2)"},
    {"IsFss", "theIsFss"},
    {"IsFssStages", "theIsFssStages"},
    {"FssStages", "theFssStages(5)"},
    {"IsFssTerms", "theIsFssTerms"},
    {"FssTerms", "theFssTerms(2)"},
    {"WholePfrCluster", "theWholePfrCluster"},
    {"IsTemplate", "theIsTemplate"},
    {"TemplatesMode", "theOptTemplateClass"},
    {"Templates", "theTemplatesList"},
    {"IsPeriods", "theIsPeriods"},
    {"PeriodCriterion", "theOnePeriod"},
    {"OnePeriodYear", "theOnePerYear"},
    {"OnePeriodMonthID", "thePeriodTime"},
    {"RangePeriodYear1", "thePerYear1"},
    {"RangePeriodMonth1", "thePerMonth1"},
    {"RangePeriodYear2", "thePerYear2"},
    {"RangePeriodMonth2", "thePerMonth2"},
    {"IsPeriodTypes", "theIsPeriodTypes"},
    {"PeriodTypes", "thePeriodTypes(6)"},
    {"IsAccStreamType", "theIsAccStreamType"},
    {"AccStreamTypes", "theAccStreamTypes(5)"},
    {"IsAccStreamOpeness", "theIsAccStreamOpeness"},
    {"AccStreamOpen", "theAccStreamOpen"},
    {"IsContoraPrefix1", "theIsContoraPrefix1"},
    {"ContoraPrefix1", "theContoraPrefix1"},
    {"IsContoraPrefix2", "theIsContoraPrefix2"},
    {"ContoraPrefix2", "theContoraPrefix2"},
    {"ContoraJoining", "theContoraJoinAnd"},
    {"IsAccStreamsList", "theIsAccStreamsList"},
    {"AccStreamsList", "theAccStreamsList"},
    {"IsTaxpayers", "theIsTaxpayers"},
    {"TaxpayersType", "theOptTaxpayers"},
    {"TaxpayersList", "theTaxpayersList"},
    {"IncludeMainOrgDocs", "theIncludeMainOrgDocs"},
};

/// What a field holds, as far as it is needed to see whether it changed.
QString Held(const Field &aField, Data &aRecord) {
    switch (aField.Kind) {
        case FieldKind::Text:
            return aField.Text(aRecord);
        case FieldKind::Boolean:
            return QString::number(int(aField.Boolean(aRecord)));
        case FieldKind::Date:
            return ToText(aField.Date(aRecord));
        case FieldKind::Collection:
            return aField.Collection(aRecord) ? Ids(*aField.Collection(aRecord)) : QString();
        case FieldKind::Long:
        case FieldKind::Enumeration:
        case FieldKind::Flags:
            return QString::number(aField.Long(aRecord));
    }
    return QString();
}

QSet<QString> ChangedFields(Data aRecord) {
    QSet<QString> changed;
    Data bare;
    for (const Field &field : theFields)
        if (Held(field, aRecord) != Held(field, bare)) changed << QString::fromLatin1(field.Name);
    return changed;
}

/// "theDocStatuses(0)" to the one before the count.
QString Boxes(const char *aArray, int aCount) {
    QStringList names;
    for (int i = 0; i < aCount; ++i)
        names << QStringLiteral("%1(%2)").arg(QString::fromLatin1(aArray)).arg(i);
    return names.join(u' ');
}

}  // namespace

/// In which order values travel, which shows where something fails in the middle.
class TestTravelOrder : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void ElementsAreWrittenInTheirOrder_data() {
        QTest::addColumn<QString>("beforeTheNumbers");
        QTest::addColumn<QString>("behindTheNumbers");
        QTest::addColumn<int>("numMode");
        QTest::newRow("the range was chosen") << "theDocNumRange"
                                              << "" << int(DocNumRange);
        QTest::newRow("the last were chosen") << ""
                                              << "theDocLastNumMode" << int(DocLastNums);
    }
    /// The choice of document numbers is written in two pieces, that of notes before their text.
    void ElementsAreWrittenInTheirOrder() {
        QFETCH(QString, beforeTheNumbers);
        QFETCH(QString, behindTheNumbers);
        QFETCH(int, numMode);
        const QString expected =
            QStringLiteral("theIsDocStatus ") + Boxes("theDocStatuses", 4) +
            QStringLiteral(
                " theIsNotes theNotesEmpty theNotes theIsSignDate theSignDate1 theSignDate2"
                " theIsSignerFio theSignerSurname theIsDocNum ") +
            beforeTheNumbers + QStringLiteral(" theDocNum1 theDocNum2 ") + behindTheNumbers +
            QStringLiteral(" theDocLastNumCount theIsOrvex theIsOrvexStages ") +
            Boxes("theOrvexStages", 6) + QStringLiteral(" theIsOrvexTerms ") +
            Boxes("theOrvexTerms", 3) + QStringLiteral(" theIsFss theIsFssStages ") +
            Boxes("theFssStages", 6) + QStringLiteral(" theIsFssTerms ") + Boxes("theFssTerms", 3) +
            QStringLiteral(
                " theWholePfrCluster theIsTemplate theOptTemplateClass theOptTemplate"
                " theTemplatesList theIsPeriods theOnePeriod theOtherPeriod theOnePerYear"
                " thePeriodTime thePerYear1 thePerMonth1 thePerYear2 thePerMonth2"
                " theIsPeriodTypes ") +
            Boxes("thePeriodTypes", 7) + QStringLiteral(" theIsAccStreamType ") +
            Boxes("theAccStreamTypes", 6) +
            QStringLiteral(
                " theIsAccStreamOpeness theAccStreamOpen theAccStreamClosed theIsContoraPrefix1"
                " theContoraPrefix1 theIsContoraPrefix2 theContoraPrefix2 theContoraJoinAnd"
                " theContoraJoinOr theIsAccStreamsList theAccStreamsList theIsTaxpayers"
                " theOptTaxpayers theOptMainOrgs theTaxpayersList theIncludeMainOrgDocs tab");
        OpenPanel panel;
        Data before;
        before.DocNumMode = DocQueryDocNumMode(numMode);
        panel.DistributeValues(before);
        Data record = ChangedEverywhere();
        const Changes changes(panel);
        panel.DistributeValues(record);
        QCOMPARE(changes.Names, expected.split(u' ', Qt::SkipEmptyParts));
    }

    void ElementsAreTakenInTheirOrder_data() {
        QTest::addColumn<int>("number");
        for (int i = 0; i < int(std::size(theTakenFields)); ++i)
            QTest::newRow(theTakenFields[i].Name) << i;
    }
    /// Where an element is gone, the fields before it are taken and those behind it are not.
    void ElementsAreTakenInTheirOrder() {
        QFETCH(int, number);
        OpenPanel panel;
        Data record = ChangedEverywhere();
        panel.DistributeValues(record);
        delete &panel.Get(theTakenFields[number].Element);
        Data back;
        RaisedBy([&] { panel.AssembleValuesTo(back); });
        QSet<QString> before;
        for (int i = 0; i < number; ++i) before << QString::fromLatin1(theTakenFields[i].Name);
        QCOMPARE(ChangedFields(back), before);
    }
    void AllFieldsAreTaken() {
        OpenPanel panel;
        Data record = ChangedEverywhere();
        panel.DistributeValues(record);
        Data back;
        panel.AssembleValuesTo(back);
        QSet<QString> all = {QStringLiteral("LastTab")};
        for (const TakenField &field : theTakenFields) all << QString::fromLatin1(field.Name);
        QCOMPARE(ChangedFields(back), all);
    }
};

VK_TEST_CLASS(TestTravelOrder);

#include "TestTravelOrder.moc"
