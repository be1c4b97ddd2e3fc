#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>

#include "query/Fields.h"
#include "queryfile/XmlNode.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::MemoryOffice;

namespace {

/// One attribute, where it stands and what it hangs on.
struct Fact {
    const char *Element;
    const char *Attribute;
    const char *Switch1 = "";
    const char *Switch2 = "";
};

constexpr Fact theFacts[] = {
    {"DocCriteria", "IsDocStatus"},
    {"DocCriteria", "DocStatuses", "IsDocStatus"},
    {"DocCriteria", "IsNotes"},
    {"DocCriteria", "NotesMode", "IsNotes"},
    {"DocCriteria", "Notes", "IsNotes"},
    {"DocCriteria", "IsSignDate"},
    {"DocCriteria", "SignDate1", "IsSignDate"},
    {"DocCriteria", "SignDate2", "IsSignDate"},
    {"DocCriteria", "IsSignerFio"},
    {"DocCriteria", "SignerSurname", "IsSignerFio"},
    {"DocCriteria", "IsOrvex"},
    {"DocCriteria", "IsOrvexStages", "IsOrvex"},
    {"DocCriteria", "OrvexStages", "IsOrvex", "IsOrvexStages"},
    {"DocCriteria", "IsOrvexTerms", "IsOrvex"},
    {"DocCriteria", "OrvexTerms", "IsOrvex", "IsOrvexTerms"},
    {"DocCriteria", "IsFss"},
    {"DocCriteria", "IsFssStages", "IsFss"},
    {"DocCriteria", "FssStages", "IsFss", "IsFssStages"},
    {"DocCriteria", "IsFssTerms", "IsFss"},
    {"DocCriteria", "FssTerms", "IsFss", "IsFssTerms"},
    {"DocCriteria", "IsDocNum"},
    {"DocCriteria", "DocNumMode", "IsDocNum"},
    {"DocCriteria", "DocNum1", "IsDocNum"},
    {"DocCriteria", "DocNum2", "IsDocNum"},
    {"DocCriteria", "LastDocNumsCount", "IsDocNum"},
    {"DocCriteria", "WholePfrCluster"},
    {"TemplateCriteria", "IsTemplate"},
    {"TemplateCriteria", "TemplatesMode", "IsTemplate"},
    {"PeriodCriteria", "IsPeriods"},
    {"PeriodCriteria", "PeriodCriterion", "IsPeriods"},
    {"PeriodCriteria", "OnePeriodYear", "IsPeriods"},
    {"PeriodCriteria", "OnePeriodMonthID", "IsPeriods"},
    {"PeriodCriteria", "RangePeriodYear1", "IsPeriods"},
    {"PeriodCriteria", "RangePeriodMonth1", "IsPeriods"},
    {"PeriodCriteria", "RangePeriodYear2", "IsPeriods"},
    {"PeriodCriteria", "RangePeriodMonth2", "IsPeriods"},
    {"PeriodCriteria", "IsPeriodTypes", "IsPeriods"},
    {"PeriodCriteria", "PeriodTypes", "IsPeriods", "IsPeriodTypes"},
    {"AccStreamCriteria", "IsAccStreamType"},
    {"AccStreamCriteria", "AccStreamTypes", "IsAccStreamType"},
    {"AccStreamCriteria", "IsAccStreamOpeness"},
    {"AccStreamCriteria", "AccStreamOpen", "IsAccStreamOpeness"},
    {"AccStreamCriteria", "IsContoraPrefix1"},
    {"AccStreamCriteria", "ContoraPrefix1", "IsContoraPrefix1"},
    {"AccStreamCriteria", "IsContoraPrefix2"},
    {"AccStreamCriteria", "ContoraPrefix2", "IsContoraPrefix2"},
    {"AccStreamCriteria", "ContoraJoining"},
    {"AccStreamCriteria", "IsAccStreamsList"},
    {"TaxpayersCriteria", "IsTaxpayers"},
    {"TaxpayersCriteria", "TaxpayersType", "IsTaxpayers"},
    {"TaxpayersCriteria", "IncludeMainOrgDocs", "IsTaxpayers"},
    {"OtherOptions", "LastTab"},
};

const Field &FieldOf(const QString &aName) {
    for (const Field &field : theFields) {
        if (QLatin1String(field.Name) == aName) return field;
    }
    throw std::out_of_range("field");
}

QString TextOf(const QString &aName, VkDocQueryData &aRecord) {
    const Field &field = FieldOf(aName);
    switch (field.Kind) {
        case FieldKind::Boolean:
            return field.Boolean(aRecord) ? QStringLiteral("true") : QStringLiteral("false");
        case FieldKind::Text:
            return u'"' + field.Text(aRecord) + u'"';
        case FieldKind::Date: {
            const LooseValue &date = field.Date(aRecord);
            return IsEmpty(date)  ? QStringLiteral("empty")
                   : IsNull(date) ? QStringLiteral("null")
                                  : ToText(date);
        }
        case FieldKind::Collection:
            break;
        case FieldKind::Long:
        case FieldKind::Enumeration:
        case FieldKind::Flags:
            return QString::number(field.Long(aRecord));
    }
    return QStringLiteral("?");
}

/// A record in which no field has a value that a file or a default gives.
VkDocQueryData UsedRecord() {
    VkDocQueryData record;
    for (const Field &field : theFields) {
        switch (field.Kind) {
            case FieldKind::Boolean:
                field.Boolean(record) = true;
                break;
            case FieldKind::Text:
                field.Text(record) = QStringLiteral("old");
                break;
            case FieldKind::Date:
                field.Date(record) = QDate(1999, 9, 9);
                break;
            case FieldKind::Collection:
                field.Collection(record) = std::make_shared<RecordCollection>();
                break;
            case FieldKind::Long:
            case FieldKind::Enumeration:
            case FieldKind::Flags:
                field.SetLong(record, 777);
                break;
        }
    }
    return record;
}

bool Read(VkDocQueryData &aRecord, const QString &aXml) {
    XmlDocument document;
    if (!document.LoadBytes(aXml.toUtf8())) return false;
    return aRecord.ReadFromXml(document.Node());
}

QString Xml(const QString &aElement, const QString &aInner) {
    return QStringLiteral("<VkDocQuery ver=\"1\"><%1 %2/></VkDocQuery>").arg(aElement, aInner);
}

QList<double> IDsOf(const std::shared_ptr<RecordCollection> &aList) {
    QList<double> ids;
    if (!aList) return {-1};
    for (const auto &item : *aList) ids << item->ID();
    return ids;
}

/// A record that takes any identity.
class AnyRecord : public Record {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }

private:
    double theID = 0;
};

QString theCreated;  // class that was made last

void RegisterAny(const QString &aClass) {
    ClassRegistry::Register(aClass, [aClass] {
        theCreated = aClass;
        return std::make_shared<AnyRecord>();
    });
}

/// An attribute with a switch stands at its reset value when the switch is off; that of the other
/// groups stays what it was, and so does NotesMode.
QString ValueWhenOff(const Fact &aFact) {
    const QString name = QString::fromLatin1(aFact.Attribute);
    VkDocQueryData fresh;
    VkDocQueryData used = UsedRecord();
    const bool reset =
        qstrcmp(aFact.Element, "DocCriteria") == 0 && name != QStringLiteral("NotesMode");
    return TextOf(name, reset ? fresh : used);
}

}  // namespace

class TestDocQueryReader : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        theCreated.clear();
    }
    void cleanup() { MemoryOffice::Install(); }

    void EveryAttribute_data() {
        QTest::addColumn<int>("fact");
        for (int i = 0; i < int(std::size(theFacts)); ++i)
            QTest::newRow(theFacts[i].Attribute) << i;
    }
    void EveryAttribute() {
        QFETCH(int, fact);
        const Fact &row = theFacts[fact];
        const QString name = QString::fromLatin1(row.Attribute);
        const QString element = QString::fromLatin1(row.Element);
        const QString switch1 = QString::fromLatin1(row.Switch1);
        const QString switch2 = QString::fromLatin1(row.Switch2);
        QString on;
        if (!switch1.isEmpty()) on += switch1 + QStringLiteral("=\"1\" ");
        if (!switch2.isEmpty()) on += switch2 + QStringLiteral("=\"1\" ");

        QString present, presentValue, unreadable, standard;
        switch (FieldOf(name).Kind) {
            case FieldKind::Boolean:
                present = QStringLiteral("1"), presentValue = QStringLiteral("true");
                unreadable = QStringLiteral("maybe"), standard = QStringLiteral("false");
                break;
            case FieldKind::Text:
                present = QStringLiteral("Иван&quot;"), presentValue = QStringLiteral("\"Иван\"\"");
                unreadable = QString(), standard = QStringLiteral("\"\"");
                break;
            case FieldKind::Date:
                present = QStringLiteral("5.3.24"), presentValue = QStringLiteral("05.03.2024");
                unreadable = QStringLiteral("5/3/24"), standard = QStringLiteral("null");
                break;
            default:
                present = QStringLiteral("-42"), presentValue = QStringLiteral("-42");
                unreadable = QStringLiteral("abc"), standard = QStringLiteral("0");
                break;
        }
        const auto with = [&](const QString &aValue) {
            return name + QStringLiteral("=\"") + aValue + QStringLiteral("\" ");
        };
        const auto result = [&](const QString &aInner) {
            VkDocQueryData record = UsedRecord();
            if (!Read(record, Xml(element, aInner))) return QStringLiteral("not read");
            return TextOf(name, record);
        };
        QCOMPARE(result(on + with(present)), presentValue);
        QCOMPARE(result(on), standard);
        QCOMPARE(result(on + with(unreadable)), standard);
        if (!switch1.isEmpty()) {
            const QString off = ValueWhenOff(row);
            QCOMPARE(result(on.replace(switch1 + QStringLiteral("=\"1\""),
                                       switch1 + QStringLiteral("=\"0\"")) +
                            with(present)),
                     off);
            // A missing switch is off.
            QCOMPARE(result(with(present)), off);
        }
        if (!switch2.isEmpty()) {
            QCOMPARE(result(switch1 + QStringLiteral("=\"1\" ") + switch2 +
                            QStringLiteral("=\"0\" ") + with(present)),
                     ValueWhenOff(row));
        }
    }

    /// Every attribute that the writer writes is among the facts above.
    void NoAttributeIsForgotten() {
        int attributes = 0;
        for (const Field &field : theFields) {
            const QLatin1String name(field.Name);
            if (field.Kind == FieldKind::Collection || name == QLatin1String("FileName") ||
                name == QLatin1String("LastError"))
                continue;
            ++attributes;
            QVERIFY2(std::any_of(
                         std::begin(theFacts), std::end(theFacts),
                         [&](const Fact &fact) { return name == QLatin1String(fact.Attribute); }),
                     field.Name);
        }
        QCOMPARE(attributes, int(std::size(theFacts)));
    }

    void MissingElementKeepsItsFields_data() {
        QTest::addColumn<QString>("element");
        for (const char *name : {"TemplateCriteria", "PeriodCriteria", "AccStreamCriteria",
                                 "TaxpayersCriteria", "OtherOptions"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void MissingElementKeepsItsFields() {
        QFETCH(QString, element);
        VkDocQueryData record = UsedRecord();
        VkDocQueryData untouched = UsedRecord();
        QVERIFY(Read(record, QStringLiteral("<VkDocQuery/>")));
        for (const Fact &fact : theFacts) {
            if (QLatin1String(fact.Element) != element) continue;
            const QString name = QString::fromLatin1(fact.Attribute);
            QCOMPARE(TextOf(name, record), TextOf(name, untouched));
        }
    }

    void RootAloneGivesTheResetValues() {
        VkDocQueryData record;
        QVERIFY(Read(record, QStringLiteral("<VkDocQuery/>")));
        VkDocQueryData fresh;
        for (const Field &field : theFields) {
            if (field.Kind == FieldKind::Collection) continue;
            const QString name = QString::fromLatin1(field.Name);
            QCOMPARE(TextOf(name, record), TextOf(name, fresh));
        }
    }

    /// What is put back before a file is read, whatever it holds.
    void ResetFields() {
        const std::pair<const char *, const char *> values[] = {
            {"IsDocStatus", "false"},   {"DocStatuses", "0"},
            {"IsNotes", "false"},       {"Notes", "\"\""},
            {"IsSignDate", "false"},    {"SignDate1", "empty"},
            {"SignDate2", "empty"},     {"IsSignerFio", "false"},
            {"SignerSurname", "\"\""},  {"IsOrvex", "false"},
            {"IsOrvexStages", "false"}, {"OrvexStages", "0"},
            {"IsOrvexTerms", "false"},  {"OrvexTerms", "0"},
            {"IsFss", "false"},         {"IsFssStages", "false"},
            {"FssStages", "0"},         {"IsFssTerms", "false"},
            {"FssTerms", "0"},          {"WholePfrCluster", "false"},
            {"IsDocNum", "false"},      {"DocNumMode", "1"},
            {"DocNum1", "0"},           {"DocNum2", "0"},
            {"LastDocNumsCount", "10"}, {"LastError", "\"\""}};
        VkDocQueryData used = UsedRecord();
        VkDocQueryData untouched = UsedRecord();
        QVERIFY(Read(used, QStringLiteral("<VkDocQuery/>")));
        for (const Field &field : theFields) {
            const auto *row = std::find_if(
                std::begin(values), std::end(values),
                [&](const auto &value) { return qstrcmp(value.first, field.Name) == 0; });
            const QString name = QString::fromLatin1(field.Name);
            QCOMPARE(name + TextOf(name, used),
                     name + (row == std::end(values) ? TextOf(name, untouched)
                                                     : QString::fromLatin1(row->second)));
        }
    }

    void IsDocNumAloneGivesNoughts() {
        VkDocQueryData record;
        QVERIFY(Read(record, Xml(QStringLiteral("DocCriteria"), QStringLiteral("IsDocNum=\"1\""))));
        QVERIFY(record.IsDocNum);
        QCOMPARE(qint32(record.DocNumMode), 0);
        QCOMPARE(record.DocNum1, 0);
        QCOMPARE(record.DocNum2, 0);
        QCOMPARE(record.LastDocNumsCount, 0);
    }

    void SwitchesOnWithoutValuesFallBelowCreation() {
        VkDocQueryData record;
        QVERIFY(Read(record, QStringLiteral("<VkDocQuery><TemplateCriteria IsTemplate='1'/>"
                                            "<PeriodCriteria IsPeriods='1'/>"
                                            "<AccStreamCriteria IsAccStreamOpeness='1'/>"
                                            "<TaxpayersCriteria IsTaxpayers='1'/></VkDocQuery>")));
        QCOMPARE(qint32(record.TemplatesMode), 0);
        QCOMPARE(qint32(record.PeriodCriterion), 0);
        QCOMPARE(record.OnePeriodYear, 0);
        QCOMPARE(record.RangePeriodMonth2, 0);
        QCOMPARE(qint32(record.AccStreamOpen), 0);
        QCOMPARE(qint32(record.TaxpayersType), 0);
    }

    void UnknownTemplatesModeIsReadAndLeavesTheListAlone() {
        VkDocQueryData saved;
        saved.IsTemplate = true;
        saved.TemplatesMode = DocQueryTemplatesMode(3);
        saved.Templates = std::make_shared<RecordCollection>();
        saved.Templates->Add(VkTests::MakeClass(21));
        VkDocQueryData record;
        const auto before = std::make_shared<RecordCollection>();
        record.Templates = before;
        QVERIFY(Read(record, saved.WriteToXmlString(false, 0)));
        QVERIFY(record.IsTemplate);
        QCOMPARE(qint32(record.TemplatesMode), 3);
        QCOMPARE(record.Templates, before);
        QCOMPARE(before->Count(), 0);
    }

    void DatesAreNullWhereEmptyOrUnreadable() {
        VkDocQueryData record;
        QVERIFY(Read(record,
                     Xml(QStringLiteral("DocCriteria"),
                         QStringLiteral("IsSignDate='1' SignDate1='' SignDate2='01.02.2023'"))));
        QVERIFY(IsNull(record.SignDate1));
        QVERIFY(record.SignDate2 == LooseValue(QDate(2023, 2, 1)));
        QVERIFY(Read(record, Xml(QStringLiteral("DocCriteria"), QStringLiteral("IsSignDate='1'"))));
        QVERIFY(IsNull(record.SignDate1) && IsNull(record.SignDate2));
        QVERIFY(Read(record, Xml(QStringLiteral("DocCriteria"),
                                 QStringLiteral("IsSignDate='0' SignDate1=''"))));
        QVERIFY(IsEmpty(record.SignDate1) && IsEmpty(record.SignDate2));
    }

    void Lists_data() {
        QTest::addColumn<QString>("xml");
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("className");  // empty: the list keeps what it held
        const auto row = [](const char *aName, const char *aElement, const char *aList,
                            const char *aInner, const char *aClass) {
            const QString list = QString::fromLatin1(aList);
            QTest::newRow(aName)
                << QStringLiteral("<VkDocQuery><%1 %2><%3><i id=\"5\" /></%3></%1></VkDocQuery>")
                       .arg(QString::fromLatin1(aElement), QString::fromLatin1(aInner), list)
                << list << QString::fromLatin1(aClass);
        };
        row("templates off", "TemplateCriteria", "Templates", "TemplatesMode='1'", "");
        row("template classes", "TemplateCriteria", "Templates", "IsTemplate='1' TemplatesMode='1'",
            "Vk_Records.VkTemplType");
        row("template versions", "TemplateCriteria", "Templates",
            "IsTemplate='1' TemplatesMode='2'", "Vk_Records.VkTemplate");
        row("template mode 3", "TemplateCriteria", "Templates", "IsTemplate='1' TemplatesMode='3'",
            "");
        row("template mode missing", "TemplateCriteria", "Templates", "IsTemplate='1'", "");
        row("streams off", "AccStreamCriteria", "AccStreamsList", "IsAccStreamType='1'", "");
        row("streams", "AccStreamCriteria", "AccStreamsList", "IsAccStreamsList='1'",
            "Vk_Records.VkAccStream");
        row("taxpayers off", "TaxpayersCriteria", "TaxpayersList", "TaxpayersType='1'", "");
        row("taxpayers", "TaxpayersCriteria", "TaxpayersList", "IsTaxpayers='1' TaxpayersType='1'",
            "Vk_Records.VkPerson");
        row("head organisations", "TaxpayersCriteria", "TaxpayersList",
            "IsTaxpayers='1' TaxpayersType='2'", "Vk_Records.VkPerson");
        row("taxpayers of any type", "TaxpayersCriteria", "TaxpayersList",
            "IsTaxpayers='1' TaxpayersType='9'", "Vk_Records.VkPerson");
    }
    void Lists() {
        QFETCH(QString, xml);
        QFETCH(QString, field);
        QFETCH(QString, className);
        for (const char *name : {"VkTemplType", "VkTemplate", "VkAccStream", "VkPerson"})
            RegisterAny(QStringLiteral("Vk_Records.") + QLatin1String(name));
        VkDocQueryData record;
        const auto before = std::make_shared<RecordCollection>();
        FieldOf(field).Collection(record) = before;
        QVERIFY(Read(record, xml));
        const auto &list = FieldOf(field).Collection(record);
        QCOMPARE(theCreated, className);
        if (className.isEmpty()) {
            QCOMPARE(list.get(), before.get());
        } else {
            QCOMPARE(IDsOf(list), QList<double>{5});
            QVERIFY(list.get() != before.get());
            QCOMPARE(list->KeyAt(0), QString());
        }
    }

    void ListItems_data() {
        QTest::addColumn<QString>("items");
        QTest::addColumn<QList<double>>("ids");
        const auto row = [](const char *aName, const char *aItems, const QList<double> &aIDs) {
            QTest::newRow(aName) << QString::fromLatin1(aItems) << aIDs;
        };
        row("in order", "<L><i id='3'/><i id='1'/><i id='2'/></L>", {3, 1, 2});
        row("twice", "<L><i id='3'/><i id='3'/></L>", {3, 3});
        row("nought", "<L><i id='0'/></L>", {});
        row("without id", "<L><i/></L>", {});
        row("no number", "<L><i id='abc'/><i id='4'/></L>", {4});
        row("negative", "<L><i id='-4'/></L>", {-4});
        row("beyond 32 bits", "<L><i id='99999999999'/></L>", {});
        row("exponent", "<L><i id='1E+15'/></L>", {});
        row("fraction", "<L><i id='1.5'/></L>", {2});
        row("others between", "<L>text<j id='1'/><i id='2'/><!-- --><i><i id='9'/></i></L>", {2});
        row("empty", "<L/>", {});
        row("missing", "", {});
        row("two lists, the first counts", "<L><i id='1'/></L><L><i id='2'/></L>", {1});
    }
    void ListItems() {
        QFETCH(QString, items);
        QFETCH(QList<double>, ids);
        RegisterAny(QStringLiteral("Vk_Records.VkPerson"));
        VkDocQueryData record;
        QVERIFY(Read(record,
                     QStringLiteral("<VkDocQuery><TaxpayersCriteria IsTaxpayers='1'>") +
                         items.replace(QStringLiteral("<L"), QStringLiteral("<TaxpayersList"))
                             .replace(QStringLiteral("</L"), QStringLiteral("</TaxpayersList")) +
                         QStringLiteral("</TaxpayersCriteria></VkDocQuery>")));
        QCOMPARE(IDsOf(record.TaxpayersList), ids);
    }

    void WrongRootChangesNothing_data() {
        QTest::addColumn<QString>("xml");
        QTest::newRow("other name") << QStringLiteral("<Query><VkDocQuery/></Query>");
        QTest::newRow("other case") << QStringLiteral("<vkdocquery/>");
        QTest::newRow("deeper") << QStringLiteral(
            "<a><b><VkDocQuery><DocCriteria/></VkDocQuery></b></a>");
        QTest::newRow("namespace") << QStringLiteral("<VkDocQuery xmlns=\"urn:x\"/>");
    }
    void WrongRootChangesNothing() {
        QFETCH(QString, xml);
        VkDocQueryData record = UsedRecord();
        VkDocQueryData untouched = UsedRecord();
        QVERIFY(!Read(record, xml));
        QCOMPARE(record.LastError,
                 QStringLiteral("Неверный формат файла критериев поиска. Отсутствует корневой узел "
                                "VkDocQuery."));
        record.LastError = untouched.LastError;
        for (const Field &field : theFields) {
            if (field.Kind == FieldKind::Collection) continue;
            const QString name = QString::fromLatin1(field.Name);
            QCOMPARE(TextOf(name, record), TextOf(name, untouched));
        }
    }

    void ElementOfAnyNameIsTheRoot() {
        XmlDocument document;
        QVERIFY(document.LoadBytes(
            "<all><query><DocCriteria IsDocStatus='1' DocStatuses='3'/></query></all>"));
        const XmlNode element = document.Node().SelectSingleNode("all").SelectSingleNode("query");
        VkDocQueryData record;
        record.FileName = QStringLiteral("kept");
        record.LastError = QStringLiteral("old");
        QVERIFY(record.ReadFromXml(element));
        QCOMPARE(qint32(record.DocStatuses), 3);
        QCOMPARE(record.FileName, QStringLiteral("kept"));
        QCOMPARE(record.LastError, QString());
    }

    void AbsentNodeIsRaised() {
        try {
            VkDocQueryData().ReadFromXml(XmlNode());
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 91);
            QCOMPARE(
                failure.Description(),
                QStringLiteral("[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\nУзел XML не задан."));
        }
    }

    void VersionIsNotLookedAt() {
        VkDocQueryData record;
        QVERIFY(Read(
            record,
            QStringLiteral("<VkDocQuery ver='99'><OtherOptions LastTab='doc'/></VkDocQuery>")));
        QCOMPARE(record.LastTab, QStringLiteral("doc"));
    }

    void RecordThatIsRefusedGoesUpTheChain() {
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        VkDocQueryData saved;
        saved.IsTaxpayers = true;
        saved.TaxpayersList = std::make_shared<RecordCollection>();
        saved.TaxpayersList->Add(VkTests::MakePerson(1));
        QVERIFY(saved.WriteToXmlFile(name));
        MemoryOffice::The().Persons.clear();
        VkDocQueryData record;
        record.FileName = QStringLiteral("old");
        try {
            record.ReadFromXmlFile(name);
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 1);
            QCOMPARE(failure.Description(),
                     QStringLiteral("[Vk_DocQuery::VkDocQueryData.ReadFromXmlFile]\r\n"
                                    "[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\n"
                                    "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\r\n"
                                    "[MemoryRecords]\r\nno VkPerson with ID 1"));
        }
        QCOMPARE(record.LastError, QString());
        QCOMPARE(record.FileName, QString());
    }

    void ClassThatCannotBeMadeIsNamed() {
        ClassRegistry::Unregister(QStringLiteral("Vk_Records.VkAccStream"));
        VkDocQueryData record;
        try {
            Read(record, QStringLiteral("<VkDocQuery><AccStreamCriteria IsAccStreamsList='1'>"
                                        "<AccStreamsList><i id='1'/></AccStreamsList>"
                                        "</AccStreamCriteria></VkDocQuery>"));
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 429);
            QCOMPARE(failure.Description(),
                     QStringLiteral("[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\n"
                                    "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\r\n"
                                    "[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: "
                                    "Vk_Records.VkAccStream}\r\n[ClassRegistry]\r\n"
                                    "Класс \"Vk_Records.VkAccStream\" не зарегистрирован."));
        }
    }

    /// What stands under a switch that is on survives; what stands under one that is off does not.
    void SaveAndLoad_data() {
        QTest::addColumn<bool>("on");
        QTest::newRow("switches on") << true;
        QTest::newRow("switches off") << false;
    }
    void SaveAndLoad() {
        QFETCH(bool, on);
        VkDocQueryData saved;
        for (const Field &field : theFields) {
            switch (field.Kind) {
                case FieldKind::Boolean:
                    field.Boolean(saved) = on;
                    break;
                case FieldKind::Text:
                    field.Text(saved) = QStringLiteral("Жук & <\"%1\">").arg(field.Dispatch);
                    break;
                case FieldKind::Date:
                    field.Date(saved) = QDate(2020, 1, 1).addDays(field.Dispatch);
                    break;
                case FieldKind::Collection:
                    break;
                case FieldKind::Long:
                case FieldKind::Enumeration:
                case FieldKind::Flags:
                    field.SetLong(saved, 100 + field.Dispatch);
                    break;
            }
        }
        saved.TemplatesMode = TemplateVersion;
        saved.Templates = std::make_shared<RecordCollection>();
        saved.Templates->Add(VkTests::MakeVersion(32));
        QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("Мои критерии.qvk"));
        QVERIFY(saved.WriteToXmlFile(name));

        VkDocQueryData loaded;
        QVERIFY2(loaded.ReadFromXmlFile(name), qPrintable(loaded.LastError));
        QCOMPARE(loaded.FileName, name);
        QCOMPARE(loaded.LastError, QString());
        VkDocQueryData fresh;
        for (const Field &field : theFields) {
            const QString field_ = QString::fromLatin1(field.Name);
            if (field.Kind == FieldKind::Collection || field_ == QStringLiteral("FileName") ||
                field_ == QStringLiteral("LastError"))
                continue;
            const bool always =
                field_ == QStringLiteral("ContoraJoining") || field_ == QStringLiteral("LastTab");
            QCOMPARE(TextOf(field_, loaded), TextOf(field_, on || always ? saved : fresh));
        }
        QCOMPARE(IDsOf(loaded.Templates), on ? QList<double>{32} : QList<double>{-1});
    }

    void OwnFieldMayNameTheFile() {
        QTemporaryDir folder;
        VkDocQueryData record;
        record.FileName = folder.filePath(QStringLiteral("a.qvk"));
        const QString name = record.FileName;
        QVERIFY(record.WriteToXmlFile(record.FileName));
        QVERIFY(record.ReadFromXmlFile(record.FileName));
        QCOMPARE(record.FileName, name);
    }

    void FailedReadLeavesFileNameEmpty() {
        VkDocQueryData record;
        record.FileName = QStringLiteral("old");
        QVERIFY(!record.ReadFromXmlFile(QStringLiteral("/nowhere/a.qvk")));
        QCOMPARE(record.FileName, QString());
        QCOMPARE(record.LastError,
                 QStringLiteral("   Reason: Файл не найден.\r\n   Source: \r\n   Line: 0"));
    }
};

VK_TEST_CLASS(TestDocQueryReader);

#include "TestDocQueryReader.moc"
