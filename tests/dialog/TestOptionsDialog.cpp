#include <algorithm>
#include <functional>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/Failure.h>

#include "dialog/DocQueryOptionsFrm.h"
#include "foundation/FilePlatform.h"
#include "foundation/mVkGraphLight.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theQuestionTitle = QStringLiteral("Норвик: Критерии поиска документов");
const QString theQuestion = QStringLiteral(
    "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?");
const QString theSaveTitle = QStringLiteral("Сохранить файл критериев поиска");
const QString theLoadTitle = QStringLiteral("Открыть файл критериев поиска");

/// The dialog in the hands of a user.
struct User {
    ModalDriver &theDriver;
    QWidget &theWindow;

    template <class Kind = QWidget>
    Kind *Element(const char *aName) const {
        auto *element = theWindow.findChild<Kind *>(QString::fromUtf8(aName));
        if (!element) theDriver.Complain(QStringLiteral("no element ") + QString::fromUtf8(aName));
        return element;
    }
    void Press(const char *aButton) const { theDriver.Click(Element<QPushButton>(aButton)); }
    /// Turns the criterion by the signer's surname on and types the surname.
    void StateSurname(const QString &aSurname) const {
        QTest::keyClick(&theWindow, Qt::Key_Tab, Qt::ControlModifier);
        auto *box = Element<QLineEdit>("theSignerSurname");
        auto *tick = Element<QCheckBox>("theIsSignerFio");
        if (!box || !tick) return;
        tick->setChecked(true);
        box->setText(aSurname);
    }
    void ExpectCaption(const QString &aCaption) const {
        if (theWindow.windowTitle() != aCaption)
            theDriver.Complain(QStringLiteral("caption is ") + theWindow.windowTitle());
    }
    void ExpectOpen() const {
        if (!theWindow.isVisible()) theDriver.Complain(QStringLiteral("the dialog is closed"));
    }
};

/// Runs the dialog with what the user does in it; what the user leaves open is cancelled.
bool RunWith(DocQueryOptionsFrm &aDialog, ModalDriver &aDriver,
             const std::function<void(const User &)> &aActions) {
    aDriver.Expect([&](QWidget &window) {
        const User user{aDriver, window};
        aActions(user);
        if (window.isVisible()) window.close();
    });
    return aDialog.Execute();
}

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

}  // namespace

class TestOptionsDialog : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void WindowStandsAsDesigned() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.ExpectCaption(QStringLiteral("Поиск документов"));
            if (user.theWindow.windowIcon().isNull()) driver.Complain(QStringLiteral("no icon"));
            if (!user.theWindow.isModal()) driver.Complain(QStringLiteral("not modal"));
            if (user.theWindow.width() != 821)
                driver.Complain(QStringLiteral("width %1").arg(user.theWindow.width()));
            struct Fact {
                const char *Name;
                QString Caption;
                QRect Place;  // at 96 dots per inch
            };
            const Fact facts[] = {
                {"theLoad", QStringLiteral("Загрузить ..."), QRect(12, 12, 105, 33)},
                {"theSave", QStringLiteral("Сохранить"), QRect(120, 12, 105, 33)},
                {"theSaveAs", QStringLiteral("Сохранить как ..."), QRect(228, 12, 113, 33)},
                {"theOK", QStringLiteral("OK"), QRect(596, 12, 93, 33)},
                {"theCancel", QStringLiteral("Отмена"), QRect(696, 12, 109, 33)},
            };
            for (const Fact &fact : facts) {
                const auto *button = user.Element<QPushButton>(fact.Name);
                if (!button) continue;
                const QString name = QString::fromUtf8(fact.Name);
                if (button->text() != fact.Caption) driver.Complain(name + button->text());
                if (button->height() != 33 || button->y() != 12) driver.Complain(name);
                if (name != QStringLiteral("theOK") && name != QStringLiteral("theCancel") &&
                    button->geometry() != fact.Place)
                    driver.Complain(name + QStringLiteral(" is misplaced"));
                if (button->width() != fact.Place.width())
                    driver.Complain(name + QStringLiteral(" width"));
            }
            if (!user.Element<QPushButton>("theOK")->isDefault())
                driver.Complain(QStringLiteral("OK is not the default"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void WindowStandsOverThatOfTheHost() {
        QWidget host;
        host.show();
        host.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&host));
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            if (user.theWindow.windowHandle()->transientParent() != host.windowHandle())
                driver.Complain(QStringLiteral("no owner"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ResizeMovesTheRightButtonsOnly() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.theWindow.resize(1000, 800);
            const auto placeOf = [&](const char *aName) { return user.Element(aName)->geometry(); };
            const QRect frame = placeOf("theBottomFrame");
            if (frame != QRect(0, 743, 1000, 57)) driver.Complain(QStringLiteral("frame"));
            if (placeOf("theData") != QRect(0, 0, 1000, 743))
                driver.Complain(QStringLiteral("panel"));
            if (placeOf("theBottomStitch").width() != 1000)
                driver.Complain(QStringLiteral("stitch"));
            if (placeOf("theCancel").x() != 1000 - 109 - 16)
                driver.Complain(QStringLiteral("cancel"));
            if (placeOf("theOK").x() != 1000 - 109 - 16 - 93 - 12)
                driver.Complain(QStringLiteral("ok"));
            if (placeOf("theLoad").x() != 12) driver.Complain(QStringLiteral("load"));
            if (placeOf("theSaveAs").x() != 228) driver.Complain(QStringLiteral("save as"));
            if (placeOf("theHelp").x() != 420) driver.Complain(QStringLiteral("help"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ConfirmedSearchFillsTheGivenRecord() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("Иванов"));
            driver.ExpectBox(theQuestionTitle, theQuestion, QStringLiteral("Да"));
            user.Press("theOK");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(confirmed);
        QCOMPARE(record->SignerSurname, QStringLiteral("Иванов"));
        QVERIFY(record->IsSignerFio);
        QCOMPARE(dialog.Record(), record);
    }

    void EnterIsOKAndEscIsCancel_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("element");
        QTest::newRow("tabs") << QStringLiteral("doc") << QStringLiteral("theTabBar");
        QTest::newRow("check box") << QStringLiteral("doc") << QStringLiteral("theIsDocStatus");
        QTest::newRow("option") << QStringLiteral("doc") << QStringLiteral("theNotesLike");
        QTest::newRow("text") << QStringLiteral("doc") << QStringLiteral("theSignerSurname");
        QTest::newRow("number") << QStringLiteral("doc") << QStringLiteral("theDocNum1");
        QTest::newRow("date") << QStringLiteral("doc") << QStringLiteral("theSignDate1");
        QTest::newRow("typed year") << QStringLiteral("time") << QStringLiteral("thePerYear1");
        QTest::newRow("month") << QStringLiteral("time") << QStringLiteral("thePerMonth1");
        QTest::newRow("list") << QStringLiteral("template") << QStringLiteral("theTemplatesList");
    }
    void EnterIsOKAndEscIsCancel() {
        QFETCH(QString, tab);
        QFETCH(QString, element);
        for (const bool confirm : {true, false}) {
            DocQueryOptionsFrm dialog;
            const auto record = std::make_shared<VkDocQueryData>();
            record->IsNotes = record->IsSignerFio = record->IsDocNum = record->IsSignDate = true;
            record->SignDate1 = QDate(2024, 3, 5);
            record->SignerSurname = QStringLiteral("Иванов");
            record->NotesMode = NotesLike;
            record->Notes = QStringLiteral("акт");
            record->DocNumMode = DocNumRange;
            record->DocNum2 = 7;
            record->IsPeriods = record->IsTemplate = true;
            record->PeriodCriterion = RangePeriods;
            record->Templates = std::make_shared<RecordCollection>();
            record->Templates->Add(MakeClass(21));
            record->LastTab = tab;
            dialog.SetRecord(record);
            ModalDriver driver;
            const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
                user.Element(element.toLatin1().constData())->setFocus();
                QWidget *focus = user.theWindow.focusWidget();
                if (!focus || !(focus->objectName() == element ||
                                focus->parentWidget()->objectName() == element))
                    driver.Complain(QStringLiteral("no focus"));
                if (confirm) driver.ExpectBox(theQuestionTitle, theQuestion, QStringLiteral("Да"));
                QTest::keyClick(focus, confirm ? Qt::Key_Return : Qt::Key_Escape);
                if (user.theWindow.isVisible()) driver.Complain(QStringLiteral("still open"));
            });
            QVERIFY2(driver.Done(), driver.Complaint());
            QCOMPARE(confirmed, confirm);
        }
    }

    void EnterPressesTheButtonThatHasTheFocus() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theLoadTitle, QString(), QString());
            user.Element("theLoad")->setFocus();
            QTest::keyClick(user.Element("theLoad"), Qt::Key_Return);
            user.ExpectOpen();
            user.Element("theCancel")->setFocus();
            QTest::keyClick(user.Element("theCancel"), Qt::Key_Return);
            if (user.theWindow.isVisible()) driver.Complain(QStringLiteral("still open"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
    }

    void RejectedSearchLeavesTheDialogOpenAndTheRecordAlone() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->SignerSurname = QStringLiteral("Прежний");
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QString());
            driver.ExpectBox(
                QStringLiteral("Параметры критериев поиска"),
                QStringLiteral("Закладка \"Свойства документа\": выбрана опция поиска по "
                               "\"Фамилии подписанта\", однако фамилия не задана. \r\n\r\n"
                               "Такой запрос вернет пустой список документов."),
                QStringLiteral("OK"));
            user.Press("theOK");
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QCOMPARE(record->SignerSurname, QStringLiteral("Прежний"));
        QVERIFY(!record->IsSignerFio);
    }

    void RefusedQuestionLeavesTheDialogOpen() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("Иванов"));
            driver.ExpectBox(theQuestionTitle, theQuestion, QStringLiteral("Нет"));
            user.Press("theOK");
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QCOMPARE(record->SignerSurname, QString());
    }

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
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("SaveTextToFile"))
                throw Failure(61, QString(), QStringLiteral("Диск переполнен."));
        };
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Query.qvk"), path);
            driver.ExpectBox(QStringLiteral("Ошибка"),
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
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("SaveTextToFile"))
                throw Failure(61, QString(), QStringLiteral("Диск переполнен."));
        };
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = before;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Прежний.qvk"), path);
            driver.ExpectBox(QStringLiteral("Ошибка"),
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
                QStringLiteral("Сбой программы"),
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

    void RecordReadFirstIsThatOfTheUntouchedPanel() {
        DocQueryOptionsFrm dialog;
        const auto first = dialog.Record();
        QVERIFY(first);
        QCOMPARE(first->OnePeriodMonthID, 0);  // no period was selected yet; a new record has 16
        QCOMPARE(qint32(first->NotesMode), qint32(NotesLike));
        ModalDriver driver;
        RunWith(dialog, driver, [](const User &) {});
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(dialog.Record() != first);
        QCOMPARE(dialog.Record()->OnePeriodMonthID, 16);
    }

    void HelpIsThatOfTheProgramsSettings() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            const QString page = QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                                 QStringLiteral("/../service/Program_setting.htm"));
            driver.ExpectBox(QStringLiteral("Справка"),
                             QStringLiteral("Не найдена страница справки \"%1\".").arg(page),
                             QStringLiteral("OK"));
            user.Press("theHelp");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ClosedWindowCancels() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("Иванов"));
            user.theWindow.close();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QCOMPARE(dialog.Record()->SignerSurname, QString());
    }

    void SmallWindowKeepsItsButtonsInOrder() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            for (const QSize size : {QSize(400, 200), QSize(60, 30)}) {
                user.theWindow.resize(size);
                const QRect frame = user.Element("theBottomFrame")->geometry();
                const QRect panel = user.Element("theData")->geometry();
                const int cancel = user.Element("theCancel")->x();
                if (frame != QRect(0, size.height() - 57, size.width(), 57))
                    driver.Complain(QStringLiteral("frame"));
                if (panel != QRect(0, 0, size.width(), std::max(0, size.height() - 57)))
                    driver.Complain(QStringLiteral("panel"));
                if (cancel != size.width() - 109 - 16 ||
                    user.Element("theOK")->x() != cancel - 93 - 12)
                    driver.Complain(QStringLiteral("buttons"));
            }
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void FailedSaveSaysWhyAndKeepsTheName() {
        const QString path = QStringLiteral("/nowhere/Прежний.qvk");
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("SaveTextToFile"))
                throw Failure(76, QString(), QStringLiteral("Путь не найден."));
        };
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = path;
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectBox(QStringLiteral("Ошибка"),
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
                QStringLiteral("Сбой программы"),
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

    void FailingCheckShowsTheChainAndLeavesTheDialogOpen() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->IsPeriods = true;
        record->PeriodCriterion = RangePeriods;
        record->RangePeriodYear1 = 99999999;  // times a hundred it is no 32-bit number
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            driver.ExpectBox(QStringLiteral("Сбой программы"),
                             QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.theOK_Click]\r\n"
                                            "[Vk_DocQuery::DocQueryOptionsFrm.Validate]\r\n"
                                            "[Vk_DocQuery::VkDocQueryData.Validate]\r\n"
                                            "Переполнение."),
                             QStringLiteral("OK"));
            user.Press("theOK");
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
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

    /// The panel of a second run is a new one that nobody prepares or fills; nothing is to be had
    /// from it, but it does no harm either.
    void SecondRunHasAnEmptyPanel() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->SignerSurname = QStringLiteral("Иванов");
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [](const User &) {});
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            if (user.Element<QComboBox>("thePeriodTime")->count() != 0)
                driver.Complain(QStringLiteral("the panel was prepared"));
            if (!user.Element<QLineEdit>("theSignerSurname")->text().isEmpty())
                driver.Complain(QStringLiteral("the panel was filled"));
            driver.ExpectBox(theQuestionTitle, theQuestion, QStringLiteral("Да"));
            user.Press("theOK");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(confirmed);
        QCOMPARE(dialog.Record(), record);
        QCOMPARE(record->SignerSurname, QString());
        QCOMPARE(record->OnePeriodMonthID, 0);
    }

    void RecordGivenAfterTheRunIsHandedBack() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [](const User &) {});
        QVERIFY2(driver.Done(), driver.Complaint());
        const auto record = std::make_shared<VkDocQueryData>();
        record->Notes = QStringLiteral("акт");
        dialog.SetRecord(record);
        QCOMPARE(dialog.Record(), record);
        QCOMPARE(record->Notes, QStringLiteral("акт"));
    }

    void RunInsideARunIsRefused() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            if (dialog.Execute()) driver.Complain(QStringLiteral("the inner run was confirmed"));
            user.ExpectOpen();
            user.StateSurname(QStringLiteral("Иванов"));
            driver.ExpectBox(theQuestionTitle, theQuestion, QStringLiteral("Да"));
            user.Press("theOK");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(confirmed);
        QCOMPARE(record->SignerSurname, QStringLiteral("Иванов"));
    }

    void FailingPanelIsReportedAndGivesFalse() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("GetPeriodName"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
        };
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        driver.ExpectBox(QStringLiteral("Сбой программы"),
                         QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.Execute]\r\n"
                                        "[Vk_DocQuery::DocQueryOptionsFrm.EnsureInitialized]\r\n"
                                        "[Vk_DocQuery::VkDocQueryCriteries.Init]\r\n"
                                        "[S]\r\n"
                                        "нет связи"),
                         QStringLiteral("OK"));
        QVERIFY(!dialog.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
    }
};

VK_TEST_CLASS(TestOptionsDialog);

#include "TestOptionsDialog.moc"
