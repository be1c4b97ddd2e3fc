#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/TemplateQuerier.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

#include "browser/TemplateQuerierForm.h"
#include "LargeOffice.h"
#include "lists/ListView.h"
#include "picker/SelectObjectsForm.h"
#include "StatementLog.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theMost = 4;
constexpr int theSizes[] = {10, 1000};

using Action = std::function<void(const std::function<void()> &aBegin)>;

void CloseNext(ModalDriver &rDriver) {
    rDriver.Expect([](QWidget &aWindow) { aWindow.close(); });
}

void OpenPicker(int aType) {
    ModalDriver driver;
    CloseNext(driver);
    SelectObjectsForm().Execute(aType, nullptr);
    QVERIFY2(driver.Done(), driver.Complaint());
}

void OpenTheBrowser() {
    ModalDriver driver;
    CloseNext(driver);
    TemplateQuerier().Execute();
    QVERIFY2(driver.Done(), driver.Complaint());
}

/// The user clicks the second form; its periods are there afterwards.
void ChangeRow(const std::function<void()> &aBegin) {
    TemplateQuerierForm form;
    form.Prepare();
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    auto &forms = *form.findChild<ListView *>(QStringLiteral("theFormList"));
    const auto &times = *form.findChild<ListView *>(QStringLiteral("theTimeList"));
    aBegin();
    QTest::mouseClick(forms.viewport(), Qt::LeftButton, {}, forms.RowRect(forms.Row(1)).center());
    QVERIFY(times.RowCount() > 0);
}

QByteArray ListOf(const char *aName, int aCount) {
    QByteArray list = QByteArray("<") + aName + ">";
    for (int id = aCount; id > 0; --id) list += "<i id='" + QByteArray::number(id) + "'/>";
    return list + "</" + aName + ">";
}

/// A file that names all forms, or all versions, and all streams and persons.
QString QueryFile(const QTemporaryDir &aFolder, int aMode, int aCount) {
    const QByteArray text =
        "<VkDocQuery><TemplateCriteria IsTemplate='1' TemplatesMode='" + QByteArray::number(aMode) +
        "'>" + ListOf("Templates", aCount) +
        "</TemplateCriteria><AccStreamCriteria IsAccStreamsList='1'>" +
        ListOf("AccStreamsList", aCount) +
        "</AccStreamCriteria><TaxpayersCriteria IsTaxpayers='1' TaxpayersType='1'>" +
        ListOf("TaxpayersList", aCount) + "</TaxpayersCriteria></VkDocQuery>";
    QString path = aFolder.filePath(QStringLiteral("all.qvk"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) qFatal("no file");
    return path;
}

/// What a user sees of one record after another, taken from the lists.
QString ShownOf(const VkDocQueryData &aQuery) {
    QString shown;
    for (const auto &stream : *aQuery.AccStreamsList)
        shown += stream->DisplayName() + stream->Person()->GetDisplayName() +
                 stream->Person()->GetParentOrganization()->Kpp();
    for (const auto &person : *aQuery.TaxpayersList)
        shown += person->GetDisplayName() + person->GetParentOrganization()->Inn();
    for (const auto &form : *aQuery.Templates) shown += form->GetIconKey();
    return shown;
}

}  // namespace

/// The number of statements of an action does not grow with the office.
class TestStatements : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void TheLogSeesEachStatement_data() { OfficeFolders::AddRoads(); }
    void TheLogSeesEachStatement() {
        QFETCH(QString, kind);
        if (!Open(kind, theSizes[0])) QSKIP(qUtf8Printable(theFolder->Complaint()));
        theLog.Begin(*theFolder);
        QCOMPARE(theLog.Since(*theFolder), QStringList());
        for (int id = 1; id <= 5; ++id)
            Made<VkPerson>(u"Vk_Records.VkPerson")->SetID(static_cast<double>(id));
        const QStringList found = theLog.Since(*theFolder);
        QVERIFY2(found.size() == 5, qPrintable(found.join(u'\n')));
    }

    void Count_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("action");
        for (const char *kind : {"sqlite", "postgresql"}) {
            for (const auto &action : Actions().keys())
                QTest::addRow("%s, %s", kind, qPrintable(action))
                    << QString::fromLatin1(kind) << action;
        }
    }
    void Count() {
        QFETCH(QString, kind);
        QFETCH(QString, action);
        QList<QStringList> statements;
        for (const int size : theSizes) {
            if (!Open(kind, size)) QSKIP(qUtf8Printable(theFolder->Complaint()));
            theSize = size;
            const auto begin = [this] { theLog.Begin(*theFolder); };
            begin();
            Actions().value(action)(begin);
            if (QTest::currentTestFailed()) return;
            statements << theLog.Since(*theFolder);
        }
        const QString all =
            statements[0].join(u'\n') + u'\n' + statements[1].join(u'\n').left(9999);
        QVERIFY2(statements[0].size() == statements[1].size(), qPrintable(all));
        QVERIFY2(statements[1].size() <= theMost, qPrintable(all));
        // What is shown stands in memory by then.
        QCOMPARE(statements[1].isEmpty(), action.startsWith(QStringLiteral("show")));
    }

    /// Records that one statement brought are those that each brings for itself.
    void AnnouncedRecordsAreTheSame_data() { OfficeFolders::AddRoads(); }
    void AnnouncedRecordsAreTheSame() {
        QFETCH(QString, kind);
        if (!Open(kind, theSizes[1])) QSKIP(qUtf8Printable(theFolder->Complaint()));
        for (const int mode : {1, 2}) {
            const QString path = QueryFile(theFiles, mode, theSizes[1]);
            VkDocQueryData together;
            QVERIFY(together.ReadFromXmlFile(path));
            ClassRegistry::Unregister(theAnnouncements);
            VkDocQueryData oneByOne;
            QVERIFY(oneByOne.ReadFromXmlFile(path));
            Vk_Records::OpenDatabase(theAddresses[kind][theSizes[1]]);  // announces again
            QCOMPARE(together.AccStreamsList->Count(), theSizes[1]);
            QCOMPARE(ShownOf(together), ShownOf(oneByOne));
        }
    }

private:
    QMap<QString, Action> Actions() {
        QMap<QString, Action> actions;
        for (int type = 1; type <= 5; ++type)
            actions[QStringLiteral("open picker %1").arg(type)] = [type](const auto &) {
                OpenPicker(type);
            };
        actions[QStringLiteral("open the browser")] = [](const auto &) { OpenTheBrowser(); };
        actions[QStringLiteral("change the row of the browser")] = ChangeRow;
        for (const int mode : {1, 2}) {
            actions[QStringLiteral("read a query file, mode %1").arg(mode)] =
                [this, mode](const auto &) { ReadFile(mode); };
            actions[QStringLiteral("show a record, mode %1").arg(mode)] =
                [this, mode](const auto &aBegin) { Show(ReadFile(mode), aBegin); };
        }
        return actions;
    }

    std::shared_ptr<VkDocQueryData> ReadFile(int aMode) {
        auto query = std::make_shared<VkDocQueryData>();
        if (!query->ReadFromXmlFile(QueryFile(theFiles, aMode, theSize))) qFatal("not read");
        if (query->Templates->Count() != theSize || query->TaxpayersList->Count() != theSize)
            qFatal("not all");
        return query;
    }

    static void Show(std::shared_ptr<VkDocQueryData> aQuery, const std::function<void()> &aBegin) {
        aBegin();
        ModalDriver driver;
        CloseNext(driver);
        DocQueryEditor editor;
        editor.SetRecord(std::move(aQuery));
        editor.Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// Opens an office with so many records of each class.
    bool Open(const QString &aKind, int aSize) {
        theFolder = &theFolders.Of(aKind);
        if (!theFolder->Complaint().isEmpty()) return false;
        QString &address = theAddresses[aKind][aSize];
        if (address.isEmpty()) {
            address = theFolder->NewAddress();
            Vk_Records::MakeLargeOffice(address, {aSize, aSize, aSize});
        }
        Vk_Records::OpenDatabase(address);
        return true;
    }

    static inline const QString theAnnouncements =
        QStringLiteral("Vk_DBProvider.RecordAnnouncements");

    StatementLog theLog;
    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    QHash<QString, QHash<int, QString>> theAddresses;
    QTemporaryDir theFiles;
    int theSize = 0;
};

VK_TEST_CLASS(TestStatements);

#include "TestStatements.moc"
