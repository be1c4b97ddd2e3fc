#include <QPixmap>
#include <QTest>

#include <Vk_DocQuery/PictureKeys.h>

#include "look/Pictures.h"
#include "panel/OpenPanel.h"
#include "picker/ObjectTypes.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theUnknown = QStringLiteral("no_such_picture");

/// Where a key comes from, and which record it is then told to be of.
struct Giver {
    const char *Name;
    void (*Give)(const QString &aKey);
    const char *Told;
    std::shared_ptr<Record> (*Shown)();
    qint32 PickersType;  ///< 0: the panel alone
    void (*ShowInPanel)(OpenPanel &aPanel, const std::shared_ptr<Record> &aRecord);
};

void ShowStream(OpenPanel &aPanel, const std::shared_ptr<Record> &aRecord) {
    aPanel.AddItemToAccStreamsList(aRecord, nullptr);
}
void ShowPerson(OpenPanel &aPanel, const std::shared_ptr<Record> &aRecord) {
    aPanel.AddItemToTaxpayersList(aRecord, nullptr);
}
void ShowVersion(OpenPanel &aPanel, const std::shared_ptr<Record> &aRecord) {
    aPanel.SetTemplatesModeInList(TemplateVersion, true, false);
    aPanel.AddItemToTemplatesList(aRecord, nullptr);
}

PersonFacts &PersonOf(double aID) {
    auto &persons = MemoryOffice::The().Persons;
    return *std::find_if(persons.begin(), persons.end(),
                         [=](const PersonFacts &facts) { return facts.ID == aID; });
}

const Giver theGivers[] = {
    {"stream", [](const QString &aKey) { MemoryOffice::The().Streams[0].Icon = aKey; },
     "Vk_Records.VkAccStream с идентификатором 11",
     []() -> std::shared_ptr<Record> { return MakeStream(11); }, AccountStreams, ShowStream},
    {"owner of a stream", [](const QString &aKey) { PersonOf(1).Icon = aKey; },
     "Vk_Records.VkPerson с идентификатором 1",
     []() -> std::shared_ptr<Record> { return MakeStream(11); }, AccountStreams, ShowStream},
    {"taxpayer", [](const QString &aKey) { PersonOf(3).Icon = aKey; },
     "Vk_Records.VkPerson с идентификатором 3",
     []() -> std::shared_ptr<Record> { return MakePerson(3); }, TaxpayerPersons, ShowPerson},
    {"organisation of a branch", [](const QString &aKey) { PersonOf(1).Icon = aKey; },
     "Vk_Records.VkPerson с идентификатором 1",
     []() -> std::shared_ptr<Record> { return MakePerson(2); }, TaxpayerPersons, ShowPerson},
    {"head organisation", [](const QString &aKey) { PersonOf(1).Icon = aKey; },
     "Vk_Records.VkPerson с идентификатором 1",
     []() -> std::shared_ptr<Record> { return MakePerson(1); }, MainOrganizations, ShowPerson},
    {"version", [](const QString &aKey) { MemoryOffice::The().Versions[0].Icon = aKey; },
     "Vk_Records.VkTemplate с идентификатором 31",
     []() -> std::shared_ptr<Record> { return MakeVersion(31); }, TemplateVersions, ShowVersion},
    {"form", [](const QString &aKey) { MemoryOffice::The().Classes[0].Icon = aKey; },
     "Vk_Records.VkTemplType с идентификатором 21",
     []() -> std::shared_ptr<Record> { return MakeClass(21); }, TemplateClasses, nullptr},
};

void ShowInPanel(const Giver &aGiver) {
    OpenPanel panel;
    aGiver.ShowInPanel(panel, aGiver.Shown());
}

void ShowInPicker(const Giver &aGiver) {
    ListView list;
    for (int i = 0; i < 7; ++i) list.AddColumn(QString(), 100);
    list.SetSmallIcons(PickerImages());
    const auto record = aGiver.Shown();
    FactsOfObjectsType(aGiver.PickersType)->Show(*record, *list.AddRow(QStringLiteral("_1")));
}

/// What a failure says behind the entries of its chain.
QString LastLine(const Failure &aFailure) {
    return aFailure.Description().section(QStringLiteral("\r\n"), -1);
}

QString Text(const QString &aKey, const char *aRecord) {
    return QStringLiteral("В списке рисунков нет рисунка с ключом \"%1\". Его назвал объект %2.")
        .arg(aKey, QString::fromUtf8(aRecord));
}

}  // namespace

/// Pictures that records name, in the lists that show them.
class TestRecordPictures : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void UnknownKeyIsToldWithItsRecord_data() {
        QTest::addColumn<int>("giver");
        for (int i = 0; i < static_cast<int>(std::size(theGivers)); ++i)
            QTest::newRow(theGivers[i].Name) << i;
    }
    void UnknownKeyIsToldWithItsRecord() {
        QFETCH(int, giver);
        const Giver &row = theGivers[giver];
        row.Give(theUnknown);
        const Failure inPicker = RaisedBy([&] { ShowInPicker(row); });
        QCOMPARE(LastLine(inPicker), Text(theUnknown, row.Told));
        QCOMPARE(inPicker.Number(), qint32(InvalidArgument));
        if (!row.ShowInPanel) return;
        const Failure inPanel = RaisedBy([&] { ShowInPanel(row); });
        QCOMPARE(LastLine(inPanel), Text(theUnknown, row.Told));
        QCOMPARE(inPanel.Number(), qint32(InvalidArgument));
    }

    void TwoKeysFailInThePanelAlone() {
        for (const char *key : {"acc_stream_ofr", "acc_stream_rfm"}) {
            theGivers[0].Give(QString::fromLatin1(key));
            ShowInPicker(theGivers[0]);
            QCOMPARE(LastLine(RaisedBy([&] { ShowInPanel(theGivers[0]); })),
                     Text(QString::fromLatin1(key), theGivers[0].Told));
        }
    }

    void FailureOfTheRecordItselfIsLeftAlone() {
        const QString said = QStringLiteral("нет связи");
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == QStringLiteral("VkAccStream.GetIconKey"))
                throw Failure(7, QString(), said);
        };
        const Failure failure = RaisedBy([&] { ShowInPanel(theGivers[0]); });
        QCOMPARE(LastLine(failure), said);
        QCOMPARE(failure.Number(), 7);
    }

    void AppendedKeyIsShown() {
        OpenPanel panel;  // is up already
        const QString key = QStringLiteral("our_own");
        QPixmap picture(16, 16);
        picture.fill(Qt::red);
        AppendPicture(key, picture);
        theGivers[0].Give(key);
        ShowInPicker(theGivers[0]);
        panel.AddItemToAccStreamsList(MakeStream(11), nullptr);
        QCOMPARE(panel.Get<ListView>("theAccStreamsList").Row(0)->Icon(), key);
    }
};

VK_TEST_CLASS(TestRecordPictures);

#include "TestRecordPictures.moc"
