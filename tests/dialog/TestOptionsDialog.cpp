#include <algorithm>
#include <cstdlib>
#include <new>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/Failure.h>

#include "controls/DateBox.h"
#include "DialogUser.h"
#include "lists/ListView.h"
#include "look/Pictures.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theQuestionTitle = QStringLiteral("Норвик: Критерии поиска документов");
const QString theQuestion = QStringLiteral(
    "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?");
const QString theLoadTitle = QStringLiteral("Открыть файл критериев поиска");

constexpr int theManyRows = 5000;
std::size_t theRefusedSize = 0;  // the next request for that many bytes fails

/// So many that what is made for all of them is as large as nothing else.
void AddManyPersons() {
    auto &persons = MemoryOffice::The().Persons;
    for (int i = 0; i < theManyRows; ++i) {
        persons.push_back(persons.front());
        persons.back().ID = 1000 + i;
    }
}

}  // namespace

void *operator new(std::size_t aSize) {
    if (theRefusedSize != 0 && aSize == theRefusedSize) {
        theRefusedSize = 0;
        throw std::bad_alloc();
    }
    if (void *memory = std::malloc(std::max<std::size_t>(aSize, 1))) return memory;
    throw std::bad_alloc();
}
void *operator new(std::size_t aSize, const std::nothrow_t & /*aTag*/) noexcept {
    return std::malloc(std::max<std::size_t>(aSize, 1));
}
void operator delete(void *aMemory) noexcept {
    std::free(aMemory);
}
void operator delete(void *aMemory, std::size_t /*aSize*/) noexcept {
    std::free(aMemory);
}

class TestOptionsDialog : public QObject {
    Q_OBJECT

    static void CheckDesign(const User &aUser) {
        aUser.ExpectCaption(QStringLiteral("Поиск документов"));
        QVERIFY(aUser.theWindow.isModal());
        QCOMPARE(aUser.theWindow.size(), QSize(821, 649));
        struct Fact {
            const char *Name;
            QString Caption;
            QRect Place;  // at 96 dots per inch
            int Picture = 0;
        };
        const Fact facts[] = {
            {"theData", QString(), QRect(0, 0, 821, 592)},
            {"theBottomFrame", QString(), QRect(0, 592, 821, 57)},
            {"theBottomStitch", QString(), QRect(0, 0, 821, 2)},
            {"theLoad", QStringLiteral("Загрузить ..."), QRect(12, 12, 105, 33)},
            {"theSave", QStringLiteral("Сохранить"), QRect(120, 12, 105, 33)},
            {"theSaveAs", QStringLiteral("Сохранить как ..."), QRect(228, 12, 113, 33)},
            {"theHelp", QString(), QRect(420, 12, 93, 33)},
            {"theOK", QStringLiteral("OK"), QRect(591, 12, 93, 33), OkPicture},
            {"theCancel", QStringLiteral("Отмена"), QRect(696, 12, 109, 33), CancelPicture},
        };
        for (const Fact &fact : facts) {
            const QWidget *element = aUser.Element(fact.Name);
            QVERIFY(element);
            QCOMPARE(element->geometry(), fact.Place);
            const auto *button = qobject_cast<const QPushButton *>(element);
            QCOMPARE(button ? button->text() : QString(), fact.Caption);
            const auto shown = [](const QIcon &aIcon) { return aIcon.pixmap(16).toImage(); };
            if (fact.Picture != 0)
                QCOMPARE(shown(button->icon()), shown(StandardPicture(fact.Picture)));
        }
        QVERIFY(aUser.Element<QPushButton>("theOK")->isDefault());
    }

private slots:
    void init() { MemoryOffice::Install(); }

    /// In its first run and in the next.
    void WindowStandsAsDesigned() {
        DocQueryOptionsFrm dialog;
        QCOMPARE(dialog.objectName(), QStringLiteral("DocQueryOptionsFrm"));
        QCOMPARE(dialog.windowIcon().cacheKey(), WindowIcon(QStringLiteral("dialog")).cacheKey());
        QCOMPARE(dialog.font().pointSizeF(), 8.25);
        QVERIFY(dialog.windowFlags() & Qt::WindowMaximizeButtonHint);
        for (int run = 0; run < 2; ++run) {
            ModalDriver driver;
            RunWith(dialog, driver, CheckDesign);
            QVERIFY2(driver.Done(), driver.Complaint());
        }
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
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
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
                if (confirm)
                    driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                                     QStringLiteral("Да"));
                QTest::keyClick(focus, confirm ? Qt::Key_Return : Qt::Key_Escape);
                if (user.theWindow.isVisible()) driver.Complain(QStringLiteral("still open"));
            });
            QVERIFY2(driver.Done(), driver.Complaint());
            QCOMPARE(confirmed, confirm);
        }
    }

    void TabGoesAlongTheButtons() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            user.Element("theLoad")->setFocus();
            for (const char *next : {"theSave", "theSaveAs", "theHelp", "theOK", "theCancel"}) {
                QTest::keyClick(user.theWindow.focusWidget(), Qt::Key_Tab);
                QCOMPARE(user.theWindow.focusWidget()->objectName(), QLatin1String(next));
            }
        });
        QVERIFY2(driver.Done(), driver.Complaint());
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
                QMessageBox::Warning, QStringLiteral("Параметры критериев поиска"),
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
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Нет"), QStringLiteral("Да"));
            user.Press("theOK");
            user.ExpectOpen();
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QCOMPARE(record->SignerSurname, QString());
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
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Справка"),
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

    void SmallWindowKeepsWhatItsTabsAndButtonsNeed() {
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            for (const QSize size : {QSize(400, 200), QSize(60, 30)}) {
                user.theWindow.resize(size);
                const QSize least = user.theWindow.size();
                const QRect frame = user.Element("theBottomFrame")->geometry();
                const QRect panel = user.Element("theData")->geometry();
                const int cancel = user.Element("theCancel")->x();
                if (frame != QRect(0, least.height() - 57, least.width(), 57))
                    driver.Complain(QStringLiteral("frame"));
                if (panel != QRect(0, 0, least.width(), least.height() - 57))
                    driver.Complain(QStringLiteral("panel"));
                if (cancel != least.width() - 109 - 16 ||
                    user.Element("theOK")->x() != cancel - 93 - 12)
                    driver.Complain(QStringLiteral("buttons"));
                if (user.Element("theOK")->x() < user.Element("theHelp")->geometry().right() + 12)
                    driver.Complain(QStringLiteral("OK on help"));
                const auto *bar = user.Element<QTabBar>("theTabBar");
                if (bar && !bar->rect().contains(bar->tabRect(bar->count() - 1)))
                    driver.Complain(QStringLiteral("tabs"));
            }
        });
        QVERIFY2(driver.Done(), driver.Complaint());
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
            driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Сбой программы"),
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
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
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
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
            user.Press("theOK");
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(confirmed);
        QCOMPARE(record->SignerSurname, QStringLiteral("Иванов"));
    }

    // The end of typing comes before whatever takes the panel's values.

    void HalfTypedDateStopsWhatWouldTakeIt_data() {
        QTest::addColumn<QString>("button");
        for (const char *button : {"theOK", "theSave", "theSaveAs"})
            QTest::newRow(button) << QString::fromLatin1(button);
    }
    void HalfTypedDateStopsWhatWouldTakeIt() {
        QFETCH(QString, button);
        const QTemporaryDir folder;
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->FileName = folder.filePath(QStringLiteral("a.qvk"));
        record->IsSignDate = true;
        record->LastTab = QStringLiteral("taxpayer");
        dialog.SetRecord(record);
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            auto *edit = user.Element<DateBox>("theSignDate2")->Edit();
            edit->setText(QStringLiteral("1.2."));
            driver.ExpectBox(QMessageBox::Warning, QStringLiteral("Дата"),
                             QStringLiteral("\"1_.2_.____\" не является датой."),
                             QStringLiteral("OK"));
            user.Press(button.toLatin1().constData());
            user.ExpectOpen();
            if (!edit->isVisible() || user.theWindow.focusWidget() != edit)
                driver.Complain(QStringLiteral("the date was not brought up"));
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QVERIFY(!QFile::exists(record->FileName));
        QVERIFY(IsEmpty(record->SignDate2));
        QCOMPARE(record->LastTab, QStringLiteral("taxpayer"));  // nothing was assembled
    }

    void HalfTypedDateLetsTheCancelThrough() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->IsSignDate = true;
        record->LastTab = QStringLiteral("doc");
        dialog.SetRecord(record);
        ModalDriver driver;
        RunWith(dialog, driver, [&](const User &user) {
            QLineEdit *edit = user.Element<DateBox>("theSignDate1")->Edit();
            edit->setFocus();
            QTest::keyClicks(edit, QStringLiteral("12"));
            user.Press("theCancel");
            QVERIFY(!user.theWindow.isVisible());
        });
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The values are taken once for the check and once more behind the window's end. The second
    /// time there is no memory for a list.
    void FailingAssemblyBehindOKIsReportedAndGivesFalse() {
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->SignerSurname = QStringLiteral("Прежний");
        record->TaxpayersList = std::make_shared<RecordCollection>();
        AddManyPersons();
        for (int i = 0; i < theManyRows; ++i) record->TaxpayersList->Add(MakePerson(1000 + i));
        dialog.SetRecord(record);
        const auto given = record->TaxpayersList;
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            user.StateSurname(QStringLiteral("Иванов"));
            driver.Expect([&](QWidget &question) {
                driver.ExpectBox(
                    QMessageBox::Critical, QStringLiteral("Сбой программы"),
                    QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.Execute]\r\n"
                                   "[Vk_DocQuery::VkDocQueryCriteries.AssembleValuesTo]\r\n"
                                   "[Vk_DocQuery::VkDocQueryCriteries.GatherTags]\r\n"
                                   "Недостаточно памяти."),
                    QStringLiteral("OK"));
                theRefusedSize = theManyRows * sizeof(std::shared_ptr<Record>);
                QTest::keyClick(&question, Qt::Key_Return);
            });
            user.Press("theOK");
        });
        QCOMPARE(theRefusedSize, std::size_t(0));  // it was asked for
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.Record(), record);
        QCOMPARE(record->SignerSurname, QStringLiteral("Иванов"));  // stood before the list
        QCOMPARE(record->TaxpayersList, given);
    }

    void PickerWithoutMemoryTellsAndStaysOpen_data() {
        QTest::addColumn<QString>("road");
        QTest::addColumn<int>("size");
        const int rows = (theManyRows + 3) * int(sizeof(ListRow *));
        const int collection = 8192 * int(sizeof(std::shared_ptr<Record>));
        QTest::newRow("theOK") << QStringLiteral("theOK_Click Validate GetCheckedObjects")
                               << collection;
        for (const char *button :
             {"theCheckAll", "theUncheckAll", "theCheckSelected", "theUncheckSelected"})
            QTest::newRow(button) << QLatin1String(button) + QStringLiteral("_Click CheckObjects")
                                  << rows;
    }
    void PickerWithoutMemoryTellsAndStaysOpen() {
        QFETCH(QString, road);
        QFETCH(int, size);
        AddManyPersons();
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            const User picker{driver, window};
            QTest::keyClick(picker.Element("theList"), Qt::Key_A, Qt::ControlModifier);
            picker.Press("theCheckAll");
            QString chain;
            for (const QString &procedure : road.split(u' '))
                chain += QStringLiteral("[Vk_DocQuery::SelectObjectsForm.%1]\r\n").arg(procedure);
            driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Сбой программы"),
                             chain + QStringLiteral("Недостаточно памяти."), QStringLiteral("OK"));
            theRefusedSize = std::size_t(size);
            picker.Press(QTest::currentDataTag());
            picker.ExpectOpen();
            window.close();
        });
        QVERIFY(!SelectObjectsForm().Execute(4, nullptr));
        QCOMPARE(theRefusedSize, std::size_t(0));  // it was asked for
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    // The dialog is closed behind an inner window: by the program, or with all windows at the end
    // of the session, the innermost first.

    void ClosedBehindAnInnerWindowItCancels_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("broken");  // what brings the inner window up
        QTest::addColumn<bool>("all");
        struct Row {
            const char *Name;
            const char *Button;
            const char *Broken;
        };
        for (const bool all : {false, true}) {
            for (const Row &row :
                 {Row{"question", "theOK", ""}, Row{"check", "theOK", "surname"},
                  Row{"wrong date", "theOK", "date"}, Row{"load", "theLoad", ""},
                  Row{"save as", "theSaveAs", ""}, Row{"failed save", "theSave", "file"},
                  Row{"failure", "theOK", "year"}, Row{"help", "theHelp", ""},
                  Row{"picker", "theTaxpayerAdd", ""},
                  Row{"nothing selected", "theTaxpayerDelete", ""}})
                QTest::addRow("%s, %s", row.Name, all ? "all windows" : "the dialog")
                    << QString::fromLatin1(row.Button) << QString::fromLatin1(row.Broken) << all;
        }
    }
    void ClosedBehindAnInnerWindowItCancels() {
        QFETCH(QString, button);
        QFETCH(QString, broken);
        QFETCH(bool, all);
        DocQueryOptionsFrm dialog;
        const auto record = std::make_shared<VkDocQueryData>();
        record->IsTaxpayers = record->IsSignerFio = record->IsSignDate = record->IsPeriods = true;
        record->PeriodCriterion = RangePeriods;
        record->RangePeriodYear1 = broken == u"year" ? 99999999 : 2020;
        record->SignDate1 = QDate(2024, 3, 5);
        record->SignerSurname = broken == u"surname" ? QString() : QStringLiteral("Иванов");
        record->FileName = broken == u"file" ? QStringLiteral("/nowhere/a.qvk") : QString();
        record->TaxpayersList = std::make_shared<RecordCollection>();
        record->TaxpayersList->Add(MakePerson(1));
        record->LastTab = QStringLiteral("taxpayer");
        dialog.SetRecord(record);
        const auto given = record->TaxpayersList;
        ModalDriver driver;
        const bool confirmed = RunWith(dialog, driver, [&](const User &user) {
            if (broken == u"date")
                user.Element<DateBox>("theSignDate1")->Edit()->setText(QStringLiteral("1"));
            driver.Expect([&](QWidget &inner) {
                if (all) return QApplication::closeAllWindows();
                user.theWindow.close();
                auto *box = qobject_cast<QMessageBox *>(&inner);
                if (box && box->defaultButton())
                    box->defaultButton()->click();  // "Да" comes too late
                else
                    inner.close();
            });
            user.Press(button.toLatin1().constData());
        });
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
        QCOMPARE(dialog.Record(), record);
        if (!button.startsWith(u"theSave")) QCOMPARE(record->TaxpayersList, given);
        QCOMPARE(record->TaxpayersList->Count(), 1);
    }

    void FailingPanelIsReportedAndGivesFalse() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("GetPeriodName"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
        };
        DocQueryOptionsFrm dialog;
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Сбой программы"),
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
