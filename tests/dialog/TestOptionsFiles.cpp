#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFrame>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/Failure.h>

#include "controls/DateBox.h"
#include "controls/TabControl.h"
#include "DialogUser.h"
#include "lists/ListView.h"
#include "support/MemoryRecords.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"
#include "windows/FilePlatform.h"
#include "windows/mFileOpenSaveDialog.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theSaveTitle = QStringLiteral("Сохранить файл критериев поиска");
const QString theLoadTitle = QStringLiteral("Открыть файл критериев поиска");

/// Writes down what it is asked and answers as a user does who cancels.
class AskedPlatform : public FilePlatform {
public:
    bool GetOpenFileName(OpenFileName &aRecord) override { return Note("open", aRecord); }
    bool GetSaveFileName(OpenFileName &aRecord) override { return Note("save", aRecord); }
    qint32 CommDlgExtendedError() override { return 0; }

    QStringList Asked;
    QList<bool> Owners;

private:
    bool Note(const char *aCall, const OpenFileName &aRecord) {
        QByteArray filter;
        for (const char *part = aRecord.lpstrFilter; *part != '\0'; part += qstrlen(part) + 1)
            filter += (filter.isEmpty() ? "" : "|") + QByteArray(part);
        Asked << QStringLiteral("%1 %2 %3 \"%4\" %5")
                     .arg(QLatin1String(aCall), QString::number(aRecord.Flags, 16),
                          QString::number(aRecord.nFilterIndex),
                          QString::fromUtf8(aRecord.lpstrFile), QString::fromUtf8(filter));
        Owners << (aRecord.hwndOwner != 0);
        return false;
    }
};

QString FileText(const QString &aPath) {
    QFile file(aPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

/// Every saving fails from now on.
void FailSaving(qint32 aNumber, const QString &aDescription) {
    MemoryOffice::The().OnCall = [=](const QString &member) {
        if (member == QStringLiteral("SaveTextToFile"))
            throw Failure(aNumber, QString(), aDescription);
    };
}

enum Fails { Once, Always, WithAllOthers };

/// The member fails: the next time, from now on, or from now on with whatever is asked after it.
void FailCalls(const QString &aMember, Fails aHow) {
    const auto failed = std::make_shared<bool>(false);
    MemoryOffice::The().OnCall = [=](const QString &member) {
        const bool isDue =
            member == aMember ? aHow != Once || !*failed : aHow == WithAllOthers && *failed;
        if (!isDue) return;
        *failed = true;
        throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
    };
}

/// A file of another search, with an object in a list; its text.
QString SaveOther(const QString &aPath) {
    VkDocQueryData saved;
    saved.IsDocStatus = saved.IsTaxpayers = saved.IsSignerFio = saved.IsPeriods = true;
    saved.SignerSurname = QStringLiteral("other");
    saved.TaxpayersList = std::make_shared<RecordCollection>();
    saved.TaxpayersList->Add(MakePerson(4));
    saved.Templates = std::make_shared<RecordCollection>();
    saved.Templates->Add(MakeClass(22));
    saved.LastTab = QStringLiteral("taxpayer");
    saved.WriteToFile(aPath);
    return FileText(aPath);
}

/// A file of a search with objects in each list; its text.
QString SaveFull(const QString &aPath, bool aOfVersions) {
    VkDocQueryData saved;
    saved.IsTemplate = saved.IsAccStreamsList = saved.IsTaxpayers = saved.IsPeriods = true;
    saved.TemplatesMode = aOfVersions ? TemplateVersion : TemplateClass;
    saved.Templates = std::make_shared<RecordCollection>();
    saved.AccStreamsList = std::make_shared<RecordCollection>();
    saved.TaxpayersList = std::make_shared<RecordCollection>();
    const MemoryOffice &office = MemoryOffice::The();
    if (aOfVersions)
        saved.Templates->Add(MakeVersion(office.Versions.front().ID));
    else
        saved.Templates->Add(MakeClass(22));
    saved.AccStreamsList->Add(MakeStream(office.Streams.front().ID));
    saved.TaxpayersList->Add(MakePerson(4));
    saved.TaxpayersList->Add(MakePerson(2));
    saved.LastTab = QStringLiteral("taxpayer");
    saved.WriteToFile(aPath);
    return FileText(aPath);
}

/// What is asked of the suppliers from now on fails at that call, and for good also behind it.
void FailFrom(int aCall, bool aForGood) {
    const auto calls = std::make_shared<int>(0);
    MemoryOffice::The().OnCall = [=](const QString &) {
        ++*calls;
        if (*calls == aCall || (aForGood && *calls > aCall))
            throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
    };
}

/// How often suppliers are asked while the file is loaded into the dialog.
int CallsOfLoading(const QString &aPath) {
    DocQueryOptionsFrm dialog;
    dialog.SetRecord(nullptr);
    int calls = 0;
    MemoryOffice::The().OnCall = [&](const QString &) { ++calls; };
    auto record = std::make_shared<VkDocQueryData>();
    if (record->ReadFromXmlFile(aPath)) dialog.SetRecord(record);
    MemoryOffice::The().OnCall = nullptr;
    return calls;
}

std::shared_ptr<VkDocQueryData> OwnSearch(const QString &aPath) {
    auto record = std::make_shared<VkDocQueryData>();
    record->FileName = aPath;
    record->IsSignDate = record->IsTaxpayers = true;
    record->TaxpayersList = std::make_shared<RecordCollection>();
    record->TaxpayersList->Add(MakePerson(1));
    record->TaxpayersList->Add(MakePerson(3));
    record->Templates = std::make_shared<RecordCollection>();
    record->Templates->Add(MakeClass(21));
    record->PeriodCriterion = DocQueryPeriodCriterion(4);  // leaves its options without a choice
    record->LastTab = QStringLiteral("doc");
    return record;
}

/// What the user has done since, and a record does not hold in part.
void TypeBesides(const User &aUser) {
    aUser.Element<QLineEdit>("theSignerSurname")->setText(QStringLiteral("typed"));
    aUser.Element<DateBox>("theSignDate1")->Edit()->setText(QStringLiteral("1.2."));
    aUser.Element<DateBox>("theSignDate2")->Edit()->setText(QStringLiteral("..20"));
    aUser.Element<QLineEdit>("theDocNum1")->setText(QStringLiteral("-"));
    aUser.Element<QComboBox>("thePerYear1")->setEditText(QStringLiteral("20"));
    auto &list = *aUser.Element<ListView>("theTaxpayersList");
    list.SetSortOrder(1);
    list.SetSelectedItem(list.Row(1));
    list.SetColumnWidth(4, 3000);
}

/// All that the panel shows.
QStringList Seen(const User &aUser) {
    const QWidget &panel = *aUser.Element("theData");
    QStringList seen{aUser.Element<TabControl>("theTabs")->SelectedTab()};
    for (const QAbstractButton *button : panel.findChildren<QAbstractButton *>())
        if (button->isCheckable())
            seen << button->objectName() + u'=' + QString::number(button->isChecked());
    for (const QLineEdit *line : panel.findChildren<QLineEdit *>())
        seen << line->objectName() + u'=' + line->displayText();
    for (const QComboBox *combo : panel.findChildren<QComboBox *>())
        seen << combo->objectName() + u'=' + combo->currentText();
    for (const QWidget *frame : panel.findChildren<QFrame *>())
        seen << frame->objectName() + u'=' + QString::number(frame->isHidden());
    for (const ListView *list : panel.findChildren<ListView *>()) {
        seen << list->objectName() + QString::number(list->SortOrder());
        for (int i = 0; i < list->ColumnCount(); ++i)
            seen << QString::number(list->Column(i).Width);
        for (int i = 0; i < list->RowCount(); ++i) {
            const ListRow &row = *list->Row(i);
            seen << row.Key() + row.Icon() + QString::number(row.IsSelected()) +
                        QString::number(&row == list->SelectedItem());
            for (int cell = 1; cell <= row.CellCount(); ++cell)
                seen << row.CellText(cell) + row.CellIcon(cell);
        }
    }
    return seen;
}

}  // namespace

class TestOptionsFiles : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void SaveOffersTheDefaultNameAndThenWritesSilently() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("Мой запрос.qvk"));
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("ABC"));
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Query.qvk"), path);
            user.Press("theSave");
            user.ExpectCaption(QStringLiteral("Поиск документов - [") + path + u']');
            if (!FileText(path).contains(QStringLiteral("SignerSurname=\"ABC\"")))
                driver.Complain(QStringLiteral("the file lacks the surname"));
            user.StateSurname(QStringLiteral("DEF"));
            user.Press("theSave");
            if (!FileText(path).contains(QStringLiteral("SignerSurname=\"DEF\"")))
                driver.Complain(QStringLiteral("the second save is not in the file"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(record->FileName, path);
        QCOMPARE(record->SignerSurname, QStringLiteral("DEF"));
    }

    void CancelledSaveAsTakesThePanelButNoName() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = QStringLiteral("/nowhere/Прежний.qvk");
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("Иванов"));
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Прежний.qvk"), QString());
            user.Press("theSaveAs");
            user.ExpectCaption(QStringLiteral("Поиск документов - [/nowhere/Прежний.qvk]"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(record->FileName, QStringLiteral("/nowhere/Прежний.qvk"));
        QCOMPARE(record->SignerSurname, QStringLiteral("Иванов"));
    }

    void FailedSaveAsSaysWhyAndKeepsTheName() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.qvk"));
        FailSaving(61, QStringLiteral("Диск переполнен."));
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Query.qvk"), path);
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Ошибка"),
                             QStringLiteral("Ошибка сохранения файла критериев поиска \"") + path +
                                 QStringLiteral("\":\r\nДиск переполнен."),
                             QStringLiteral("OK"));
            user.Press("theSaveAs");
            user.ExpectCaption(QStringLiteral("Поиск документов"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(dialog.Record()->FileName, QString());
    }

    void FailedSaveAsOfANamedRecordKeepsNameAndCaption() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.qvk"));
        const QString before = folder.filePath(QStringLiteral("Прежний.qvk"));
        FailSaving(61, QStringLiteral("Диск переполнен."));
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = before;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Прежний.qvk"), path);
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Ошибка"),
                             QStringLiteral("Ошибка сохранения файла критериев поиска \"") + path +
                                 QStringLiteral("\":\r\nДиск переполнен."),
                             QStringLiteral("OK"));
            user.Press("theSaveAs");
            user.ExpectOpen();
            user.ExpectCaption(QStringLiteral("Поиск документов - [") + before + u']');
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(dialog.Record(), record);
        QCOMPARE(record->FileName, before);
        QVERIFY(!QFile::exists(path));
    }

    void LoadAndSaveAsAskWithTheirOwnFlags() {
        AskedPlatform platform;
        SetFileDialogsForTests(&platform);
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.Press("theLoad");
            user.Press("theSave");
            user.Press("theSaveAs");
        });
        SetFileDialogsForTests(nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        const QString filter = QStringLiteral("Файлы критериев поиска Норвика (*.qvk)|*.qvk");
        QCOMPARE(platform.Asked,
                 QStringList({QStringLiteral("open 281800 0 \"\" ") + filter,
                              QStringLiteral("save 880802 1 \"Query.qvk\" ") + filter,
                              QStringLiteral("save 880802 1 \"Query.qvk\" ") + filter}));
        QCOMPARE(platform.Owners, QList<bool>({true, true, true}));
    }

    void LoadedRecordTakesThePlaceOfTheGivenOne() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("saved.qvk"));
        VkDocQueryData saved;
        saved.IsSignerFio = true;
        saved.SignerSurname = QStringLiteral("Из файла");
        saved.LastTab = QStringLiteral("doc");
        QVERIFY(saved.WriteToXmlFile(path));

        DocQueryOptionsFrm dialog;
        const auto given = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(given);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theLoadTitle, QString(), path);
            user.Press("theLoad");
            user.ExpectCaption(QStringLiteral("Поиск документов - [") + path + u']');
            if (user.Element<QLineEdit>("theSignerSurname")->text() != QStringLiteral("Из файла"))
                driver.Complain(QStringLiteral("the panel does not show the file"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(dialog.Record() != given);
        QCOMPARE(dialog.Record()->SignerSurname, QStringLiteral("Из файла"));
        QCOMPARE(dialog.Record()->FileName, path);
        QCOMPARE(given->SignerSurname, QString());
    }

    void FailingLoadShowsTheChainAndLeavesTheDialogOpen() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("saved.qvk"));
        VkDocQueryData saved;
        saved.IsTaxpayers = true;
        saved.TaxpayersList = std::make_shared<RecordCollection>();
        saved.TaxpayersList->Add(MakePerson(4));
        QVERIFY(saved.WriteToXmlFile(path));
        MemoryOffice::The().Persons.pop_back();

        DocQueryOptionsFrm dialog;
        const auto given = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(given);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theLoadTitle, QString(), path);
            driver.ExpectBox(
                QMessageBox::Critical, QStringLiteral("Сбой программы"),
                QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.theLoad_Click]\r\n"
                               "[Vk_DocQuery::miDocQuery.AskFileAndLoadDocQuery]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.ReadFromXmlFile]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\r\n"
                               "[MemoryRecords]\r\n"
                               "no VkPerson with ID 4"),
                QStringLiteral("OK"));
            user.Press("theLoad");
            user.ExpectOpen();
            user.ExpectCaption(QStringLiteral("Поиск документов"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(dialog.Record(), given);
    }

    void CaptionShortensNamesOfMoreThanAHundredCharacters() {
        for (const int length : {100, 101}) {
            DocQueryOptionsFrm dialog;
            const auto record = std::make_shared<VkDocQueryData>();
            record->FileName = QStringLiteral("/") + QString(length - 1, u'x');
            dialog.SetRecord(record);
            const QString shown =
                length == 100 ? record->FileName : QStringLiteral("...") + QString(20, u'x');
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Поиск документов - [") + shown + u']');
        }
    }

    /// The caption that the window system gets, which takes "[*]" for a mark of its own.
    void CaptionShowsTheNameToTheLetter_data() {
        QTest::addColumn<QString>("name");
        for (const char *name : {"a[*].qvk", "a[*", "*]a.qvk", "[*][*].qvk", "[*", "*]"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void CaptionShowsTheNameToTheLetter() {
        QFETCH(QString, name);
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = name;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            const QString shown = user.theWindow.windowHandle()->title();
            if (shown != QStringLiteral("Поиск документов - [") + name + u']')
                driver.Complain(shown);
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void SaveAsOpensInTheFolderOfTheName_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("folder");
        QTest::newRow("bare") << QStringLiteral("a.qvk") << QString();
        QTest::newRow("relative") << QStringLiteral("sub/a.qvk") << QStringLiteral("/sub");
        QTest::newRow("upwards") << QStringLiteral("sub/../a.qvk") << QString();
    }
    void SaveAsOpensInTheFolderOfTheName() {
        QFETCH(QString, name);
        QFETCH(QString, folder);
        const QTemporaryDir elsewhere;
        const QTemporaryDir work;
        QVERIFY(QDir(work.path()).mkdir(QStringLiteral("sub")));
        ModalDriver driver;
        // File dialogs begin where the last one was left.
        driver.ExpectFileDialog(QStringLiteral("T"), QString(),
                                elsewhere.filePath(QStringLiteral("b.qvk")));
        AskFileNameForSaving(QStringLiteral("T"), QString(), QString(), 0, 0, QString());
        const QString before = QDir::currentPath();
        const auto goBack = qScopeGuard([&] { QDir::setCurrent(before); });
        QVERIFY(QDir::setCurrent(work.path()));

        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = name;
        dialog.SetRecord(record);
        QString opened;
        RunWith(dialog, driver, [&](const User &user) {
            driver.Expect([&](QWidget &window) {
                if (const auto *asked = qobject_cast<QFileDialog *>(&window))
                    opened = asked->directory().canonicalPath();
                window.close();
            });
            user.Press("theSaveAs");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(opened, QDir(work.path()).canonicalPath() + folder);
        QCOMPARE(record->FileName, name);
    }

    // A load that fails while the record is shown.

    void FailedLoadKeepsTheSearch_data() {
        QTest::addColumn<QString>("member");  // fails
        QTest::addColumn<Fails>("fails");
        QTest::addColumn<QString>("road");
        const QString list = QStringLiteral(
            "[Vk_DocQuery::VkDocQueryCriteries.DistributeValues]\r\n"
            "[Vk_DocQuery::VkDocQueryCriteries.FillTaxpayersList]\r\n"
            "[Vk_DocQuery::VkDocQueryCriteries.AddItemToTaxpayersList]\r\n"
            "[Vk_DocQuery::VkDocQueryCriteries.RefreshItemInTaxpayersList]\r\n");
        QTest::newRow("row") << QStringLiteral("VkPerson.Inn") << Once << list;
        QTest::newRow("row, and so on the way back")
            << QStringLiteral("VkPerson.Inn") << Always << list;
        QTest::newRow("row, and then all other suppliers")
            << QStringLiteral("VkPerson.Inn") << WithAllOthers << list;
        QTest::newRow("caption") << QStringLiteral("ShortenFilePath") << Always
                                 << QStringLiteral(
                                        "[Vk_DocQuery::DocQueryOptionsFrm.RefreshCaption]\r\n");
    }
    void FailedLoadKeepsTheSearch() {
        QFETCH(QString, member);
        QFETCH(Fails, fails);
        QFETCH(QString, road);
        const bool isRow = member == u"VkPerson.Inn";
        const QTemporaryDir folder;
        const QString pathA = folder.filePath(QStringLiteral("A.qvk"));
        const QString pathB =
            folder.filePath(QString(isRow ? 1 : 100, u'B') + QStringLiteral(".qvk"));
        const QString fileB = SaveOther(pathB);
        const auto record = OwnSearch(pathA);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            TypeBesides(user);
            const QStringList before = Seen(user);
            FailCalls(member, fails);
            driver.ExpectFileDialog(theLoadTitle, QString(), pathB);
            driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Сбой программы"),
                             QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.theLoad_Click]\r\n"
                                            "[Vk_DocQuery::DocQueryOptionsFrm.Set-Record]\r\n") +
                                 road + QStringLiteral("[S]\r\nнет связи"),
                             QStringLiteral("OK"));
            user.Press("theLoad");
            user.ExpectOpen();
            if (Seen(user) != before)
                driver.Complain(before.join(u'\n') + QStringLiteral("\nbecame\n") +
                                Seen(user).join(u'\n'));
            user.ExpectCaption(QStringLiteral("Поиск документов - [") + pathA + u']');

            for (const char *date : {"theSignDate1", "theSignDate2"})
                user.Element<DateBox>(date)->SetValue(Empty());
            MemoryOffice::The().OnCall = nullptr;
            // A search whose distribution failed on the way back takes no file's place unasked.
            if (isRow && fails != Once)
                driver.ExpectFileDialog(theSaveTitle, QStringLiteral("A.qvk"), QString());
            user.Press("theSave");
            if (QFile::exists(pathA) != (fails == Once || !isRow))
                driver.Complain(QStringLiteral("saved unasked, or not at all"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(FileText(pathB), fileB);
        QCOMPARE(dialog.Record(), record);
        QCOMPARE(record->SignerSurname, QStringLiteral("typed"));
        QVERIFY(!record->IsDocStatus);
        QCOMPARE(record->TaxpayersList->Count(), 2);
    }

    /// Whatever a supplier is asked while a search is read and shown fails once, or from then on:
    /// the former search is there, whole with what was typed, and nothing else is written.
    void EveryStepOfALoadThatFails_data() {
        QTest::addColumn<bool>("ofVersions");
        QTest::addColumn<bool>("forGood");
        QTest::newRow("classes, once") << false << false;
        QTest::newRow("versions, for good") << true << true;
    }
    void EveryStepOfALoadThatFails() {
        QFETCH(bool, ofVersions);
        QFETCH(bool, forGood);
        const QTemporaryDir folder;
        const QString pathA = folder.filePath(QStringLiteral("A.qvk"));
        const QString pathB = folder.filePath(QString(100, u'B') + QStringLiteral(".qvk"));
        const QString fileB = SaveFull(pathB, ofVersions);
        const int steps = CallsOfLoading(pathB);
        int brokenShows = 0;
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            for (int step = 1; step <= steps && driver.Done(); ++step) {
                dialog.SetRecord(OwnSearch(pathA));
                TypeBesides(user);
                const QStringList before = Seen(user);
                FailFrom(step, forGood);
                QString told;
                driver.ExpectFileDialog(theLoadTitle, QString(), pathB);
                driver.Expect([&](QWidget &box) {
                    if (const auto *asked = qobject_cast<QMessageBox *>(&box)) told = asked->text();
                    box.close();
                });
                user.Press("theLoad");
                MemoryOffice::The().OnCall = nullptr;
                const QString where = QStringLiteral("step %1: ").arg(step) + told;
                if (!told.endsWith(QStringLiteral("\r\n[S]\r\nнет связи"))) driver.Complain(where);
                if (Seen(user) != before)
                    driver.Complain(where + before.join(u'\n') + QStringLiteral("\nbecame\n") +
                                    Seen(user).join(u'\n'));
                user.ExpectCaption(QStringLiteral("Поиск документов - [") + pathA + u']');
                for (const char *date : {"theSignDate1", "theSignDate2"})
                    user.Element<DateBox>(date)->SetValue(Empty());
                // A search that the way back could not show whole takes no file's place unasked.
                const bool isShown = told.contains(QStringLiteral("Set-Record"));
                const bool isAsked = isShown && forGood;
                brokenShows += isShown ? 1 : 0;
                if (isAsked)
                    driver.ExpectFileDialog(theSaveTitle, QStringLiteral("A.qvk"), QString());
                user.Press("theSave");
                if (QFile::exists(pathA) == isAsked ||
                    (!isAsked &&
                     !FileText(pathA).contains(QStringLiteral("SignerSurname=\"typed\""))))
                    driver.Complain(where + QStringLiteral(": saved unasked, or not at all"));
                QFile::remove(pathA);
                if (FileText(pathB) != fileB)
                    driver.Complain(where + QStringLiteral(": B is lost"));
                if (QDir(folder.path()).entryList(QDir::Files).size() != 1)
                    driver.Complain(where + QStringLiteral(": another file"));
            }
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY2(brokenShows > 15, QByteArray::number(brokenShows).constData());
        QVERIFY(brokenShows < steps);
    }

    void DistributionThatGoesThroughLetsSaveWriteAgain() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("B.qvk"));
        const QString saved = SaveOther(path);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(OwnSearch(folder.filePath(QStringLiteral("A.qvk"))));
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            FailCalls(QStringLiteral("VkPerson.Inn"), Always);
            driver.ExpectFileDialog(theLoadTitle, QString(), path);
            driver.Expect([](QWidget &box) { box.close(); });
            user.Press("theLoad");
            MemoryOffice::The().OnCall = nullptr;
            driver.ExpectFileDialog(theLoadTitle, QString(), path);
            user.Press("theLoad");
            user.ExpectCaption(QStringLiteral("Поиск документов - [") + path + u']');
            user.StateSurname(QStringLiteral("ABC"));
            user.Press("theSave");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(FileText(path).contains(QStringLiteral("SignerSurname=\"ABC\"")));
        QVERIFY(FileText(path) != saved);
    }

    /// The host gives a record that cannot be shown, and opens the dialog all the same.
    void RecordThatWasNotShownIsNotSavedUnasked_data() {
        QTest::addColumn<QString>("member");
        QTest::newRow("row") << QStringLiteral("VkPerson.Inn");
        QTest::newRow("caption") << QStringLiteral("ShortenFilePath");
    }
    void RecordThatWasNotShownIsNotSavedUnasked() {
        QFETCH(QString, member);
        const QTemporaryDir folder;
        const QString name = QString(100, u'a') + QStringLiteral(".qvk");
        const QString path = folder.filePath(name);
        const QString saved = SaveOther(path);
        const auto record = OwnSearch(path);
        DocQueryOptionsFrm dialog;
        FailCalls(member, Always);
        QCOMPARE(RaisedBy([&] { dialog.SetRecord(record); }).Number(), 70);
        MemoryOffice::The().OnCall = nullptr;
        const QString other = folder.filePath(QStringLiteral("other.qvk"));
        SaveOther(other);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.ExpectCaption(QStringLiteral("Поиск документов"));
            driver.ExpectFileDialog(theSaveTitle, name, QString());
            user.Press("theSave");
            // A failed load brings back what was half shown, which is no whole by that.
            FailCalls(QStringLiteral("VkPerson.Inn"), Once);
            driver.ExpectFileDialog(theLoadTitle, QString(), other);
            driver.Expect([](QWidget &box) { box.close(); });
            user.Press("theLoad");
            driver.ExpectFileDialog(theSaveTitle, name, QString());
            user.Press("theSave");
            dialog.SetRecord(record);  // now it is shown
            user.StateSurname(QStringLiteral("ABC"));
            if (FileText(path) != saved) driver.Complain(QStringLiteral("saved unasked"));
            user.Press("theSave");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(FileText(path).contains(QStringLiteral("SignerSurname=\"ABC\"")));
    }

    void FailedSaveSaysWhyAndKeepsTheName() {
        const QString path = QStringLiteral("/nowhere/Прежний.qvk");
        FailSaving(76, QStringLiteral("Путь не найден."));
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = path;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Ошибка"),
                             QStringLiteral("Ошибка сохранения файла критериев поиска \"") + path +
                                 QStringLiteral("\":\r\nПуть не найден."),
                             QStringLiteral("OK"));
            user.Press("theSave");
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(record->FileName, path);
    }

    /// What the library itself cannot write is no failed save: the chain is shown, and the dialog
    /// stays open.
    void FailingSaveShowsTheChain_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("save") << QStringLiteral("theSave");
        QTest::newRow("save as") << QStringLiteral("theSaveAs");
    }

    void FailingSaveShowsTheChain() {
        QFETCH(QString, button);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.qvk"));
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = path;
        record->TaxpayersList = std::make_shared<RecordCollection>();
        record->TaxpayersList->Add(MakePerson(1));
        dialog.SetRecord(record);
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("VkPerson.ID"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
        };
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            if (button == QStringLiteral("theSaveAs"))
                driver.ExpectFileDialog(theSaveTitle, QStringLiteral("a.qvk"), path);
            driver.ExpectBox(
                QMessageBox::Critical, QStringLiteral("Сбой программы"),
                QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.%1_Click]\r\n"
                               "[Vk_DocQuery::DocQueryOptionsFrm.SaveRecord]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.WriteToXmlFile]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.WriteToXmlString]\r\n"
                               "[Vk_DocQuery::VkDocQueryData.WriteCollectedIDsToXmlString]\r\n"
                               "[S]\r\n"
                               "нет связи")
                    .arg(button),
                QStringLiteral("OK"));
            user.Press(button.toLatin1().constData());
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QFile::exists(path));
    }

    void FailingCaptionNamesItself() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("ShortenFilePath"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = QString(101, u'x');
        QCOMPARE(RaisedBy([&] { dialog.SetRecord(record); }).Description(),
                 QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.Set-Record]\r\n"
                                "[Vk_DocQuery::DocQueryOptionsFrm.RefreshCaption]\r\n"
                                "[S]\r\nD"));
    }
};

VK_TEST_CLASS(TestOptionsFiles);

#include "TestOptionsFiles.moc"
