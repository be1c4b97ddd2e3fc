#include <algorithm>
#include <memory>
#include <thread>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "support/Keys.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {
const QString theLoadTitle = QStringLiteral("Открыть файл критериев поиска");
const QString theSaveTitle = QStringLiteral("Сохранить файл критериев поиска");
const QString theQuestionTitle = QStringLiteral("Норвик: Критерии поиска документов");
const QString theQuestion = QStringLiteral(
    "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?");
const QString theSecondRun = QStringLiteral(
    "[Vk_DocQuery::DocQueryTest.RunOptionsDialog]\r\n"
    "[DocQueryEditor]\r\n"
    "Повторный показ окна критериев поиска невозможен: один объект DocQueryEditor служит одному "
    "показу. Создайте новый объект.");

/// Puts the surname in the place of the one in the window with keys; its tab is open.
void TypeSurname(ModalDriver &aDriver, QWidget &aWindow, const QString &aSurname) {
    auto *box = aWindow.findChild<QLineEdit *>(QStringLiteral("theSignerSurname"));
    if (!box || !box->isVisible()) return aDriver.Complain(QStringLiteral("no place to type"));
    QTest::mouseClick(box, Qt::LeftButton);
    QTest::keySequence(box, QKeySequence::SelectAll);
    TypeText(box, aSurname);
    if (box->text() != aSurname) aDriver.Complain(QStringLiteral("typed: ") + box->text());
}

std::shared_ptr<VkDocQueryData> QueryBySurname(const QString &aSurname) {
    auto record = std::make_shared<VkDocQueryData>();
    record->IsSignerFio = true;
    record->SignerSurname = aSurname;
    record->LastTab = QStringLiteral("doc");
    return record;
}

}  // namespace

class TestDocQueryEditor : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void WithoutARecordItWorksOnANewOne() {
        DocQueryEditor editor;
        ModalDriver driver;
        driver.Expect([](QWidget &window) { window.close(); });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        const auto record = editor.Record();
        QVERIFY(record);
        QCOMPARE(record->OnePeriodMonthID, 16);
        QCOMPARE(editor.Record(), record);
    }

    void CancelGivesBackTheGivenRecordUnchanged() {
        DocQueryEditor editor;
        const auto record = QueryBySurname(QStringLiteral("Прежний"));
        editor.SetRecord(record);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            TypeSurname(driver, window, QStringLiteral("Новый"));
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theCancel")));
        });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(editor.Record(), record);
        QCOMPARE(record->SignerSurname, QStringLiteral("Прежний"));
        QVERIFY(record->IsSignerFio);
    }

    void CancelAfterSaveAsGivesBackWhatWasSaved() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.qvk"));
        DocQueryEditor editor;
        const auto record = QueryBySurname(QStringLiteral("Прежний"));
        editor.SetRecord(record);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            TypeSurname(driver, window, QStringLiteral("Сохранен"));
            driver.ExpectFileDialog(theSaveTitle, QStringLiteral("Query.qvk"), path);
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theSaveAs")));
            TypeSurname(driver, window, QStringLiteral("Не сохранен"));
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theCancel")));
        });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(editor.Record(), record);
        QCOMPARE(record->SignerSurname, QStringLiteral("Сохранен"));
        QCOMPARE(record->FileName, path);
    }

    void CancelAfterLoadGivesTheLoadedRecord() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("saved.qvk"));
        VkDocQueryData saved;
        saved.IsSignerFio = true;
        saved.SignerSurname = QStringLiteral("Из файла");
        saved.LastTab = QStringLiteral("doc");
        saved.WriteToFile(path);
        DocQueryEditor editor;
        const auto given = std::make_shared<VkDocQueryData>();
        given->SignerSurname = QStringLiteral("Прежний");
        editor.SetRecord(given);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            driver.ExpectFileDialog(theLoadTitle, QString(), path);
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theLoad")));
            TypeSurname(driver, window, QStringLiteral("Новый"));
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theCancel")));
        });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(editor.Record() != given);
        QCOMPARE(editor.Record()->SignerSurname, QStringLiteral("Из файла"));
        QCOMPARE(editor.Record()->FileName, path);
        QCOMPARE(given->SignerSurname, QStringLiteral("Прежний"));
    }

    void ConfirmedSearchIsTrue() {
        DocQueryEditor editor;
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theOK")));
        });
        QVERIFY(editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void CancelledFileDialogGivesNothing() {
        DocQueryEditor editor;
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), QString());
        QVERIFY(!editor.AskAndLoadQuery(0));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void FileWithAnotherRootGivesTheBox() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("other.qvk"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<Other/>");
        file.close();
        DocQueryEditor editor;
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), path);
        driver.ExpectBox(
            QMessageBox::Warning, QStringLiteral("Ошибка"),
            QStringLiteral("Ошибка открытия файла критериев поиска \"") + path +
                QStringLiteral(
                    "\":\r\nНеверный формат файла критериев поиска. Отсутствует корневой узел "
                    "VkDocQuery."),
            QStringLiteral("OK"));
        QVERIFY(!editor.AskAndLoadQuery(0));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void GoodFileGivesItsRecordAndLeavesTheDialogAlone() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("good.qvk"));
        VkDocQueryData saved;
        saved.IsNotes = true;
        saved.NotesMode = NotesLike;
        saved.Notes = QStringLiteral("акт");
        saved.WriteToFile(path);
        DocQueryEditor editor;
        const auto given = std::make_shared<VkDocQueryData>();
        editor.SetRecord(given);
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), path);
        const auto loaded = editor.AskAndLoadQuery(0);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(loaded);
        QCOMPARE(loaded->Notes, QStringLiteral("акт"));
        QCOMPARE(loaded->FileName, path);
        QCOMPARE(editor.Record(), given);
    }

    void FailingLoadIsRaisedToTheHost() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("saved.qvk"));
        VkDocQueryData saved;
        saved.IsAccStreamsList = true;
        saved.AccStreamsList = std::make_shared<RecordCollection>();
        saved.AccStreamsList->Add(MakeStream(11));
        saved.WriteToFile(path);
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("VkAccStream.SetID"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        DocQueryEditor editor;
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), path);
        const Failure failure = RaisedBy([&] { editor.AskAndLoadQuery(0); });
        QCOMPARE(failure.Number(), 70);
        QCOMPARE(failure.Description(),
                 QStringLiteral("[Vk_DocQuery::DocQueryTest.AskAndLoadQuery]\r\n"
                                "[Vk_DocQuery::miDocQuery.AskFileAndLoadDocQuery]\r\n"
                                "[Vk_DocQuery::VkDocQueryData.ReadFromXmlFile]\r\n"
                                "[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\n"
                                "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\r\n"
                                "[S]\r\n"
                                "D"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void SecondRunIsRefusedAndTouchesNothing_data() {
        QTest::addColumn<bool>("confirm");
        QTest::newRow("after OK") << true;
        QTest::newRow("after cancel") << false;
    }
    void SecondRunIsRefusedAndTouchesNothing() {
        QFETCH(bool, confirm);
        DocQueryEditor editor;
        const auto record = QueryBySurname(QStringLiteral("Прежний"));
        editor.SetRecord(record);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            if (confirm)
                driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                                 QStringLiteral("Да"));
            driver.Click(window.findChild<QPushButton *>(confirm ? QStringLiteral("theOK")
                                                                 : QStringLiteral("theCancel")));
        });
        QCOMPARE(editor.Execute(), confirm);
        const Failure failure = RaisedBy([&] { editor.Execute(); });
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(failure.Number(), qint32(InvalidArgument));
        QCOMPARE(failure.Description(), theSecondRun);
        QCOMPARE(editor.Record(), record);
        QCOMPARE(record->SignerSurname, QStringLiteral("Прежний"));
        QCOMPARE(record->LastTab, QStringLiteral("doc"));
        QCOMPARE(record->OnePeriodMonthID, 16);

        const auto given = QueryBySurname(QStringLiteral("Новый"));
        editor.SetRecord(given);  // is handed back, but not shown either
        QCOMPARE(RaisedBy([&] { editor.Execute(); }).Description(), theSecondRun);
        QCOMPARE(editor.Record(), given);
        QCOMPARE(given->SignerSurname, QStringLiteral("Новый"));
    }

    void RunInsideARunIsRefusedAndTheFirstGoesOn() {
        DocQueryEditor editor;
        const auto record = QueryBySurname(QStringLiteral("Прежний"));
        editor.SetRecord(record);
        ModalDriver driver;
        QString raised;
        driver.Expect([&](QWidget &window) {
            raised = RaisedBy([&] { editor.Execute(); }).Description();
            TypeSurname(driver, window, QStringLiteral("Новый"));
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theOK")));
        });
        QVERIFY(editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(raised, theSecondRun);
        QCOMPARE(record->SignerSurname, QStringLiteral("Новый"));
    }

    void RunThatFailedIsARunToo() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("GetPeriodName"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        DocQueryEditor editor;
        ModalDriver driver;
        driver.Expect([](QWidget &box) { box.close(); });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(RaisedBy([&] { editor.Execute(); }).Description(), theSecondRun);
    }

    /// What a host's exit leaves behind: no window, and no call that does nothing without a word.
    void EndingApplicationTakesTheWindowAlong() {
        ModalDriver driver;
        QPointer<QWidget> window;
        bool confirmed = true;
        bool isLeft = true;
        QStringList raised;
        DocQueryEditor editor;
        QTimer::singleShot(0, this, [&] {
            driver.Expect([&](QWidget &dialog) {
                window = &dialog;
                driver.Expect([](QWidget &) { QCoreApplication::exit(); });
                driver.Click(dialog.findChild<QPushButton *>(QStringLiteral("theOK")));
            });
            confirmed = editor.Execute();
            isLeft = !window || window->isVisible() || QApplication::activeModalWidget();
            DocQueryEditor next;
            raised << RaisedBy([&] { next.Execute(); }).Description();
            raised << RaisedBy([&] { next.AskAndLoadQuery(0); }).Description();
            raised << RaisedBy([&] { TemplateQuerier().Execute(); }).Description();
        });
        QCoreApplication::exec();
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!confirmed);
        QVERIFY(!isLeft);
        const QString why = QStringLiteral(
            "]\r\n[QApplication]\r\nОкно показать нельзя: программа завершает работу.");
        QCOMPARE(raised,
                 QStringList({QStringLiteral("[Vk_DocQuery::DocQueryTest.RunOptionsDialog") + why,
                              QStringLiteral("[Vk_DocQuery::DocQueryTest.AskAndLoadQuery") + why,
                              QStringLiteral("[Vk_DocQuery::TemplateQuerier.Execute") + why}));
    }

    /// What was waiting in the host's queue comes first, be it the end of the editor.
    void EditorThatGoesBeforeItsWindow() {
        auto editor = std::make_unique<DocQueryEditor>();
        QTimer::singleShot(0, this, [&] { editor.reset(); });
        const ModalDriver driver;
        QVERIFY(!editor->Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!editor);
    }

    void EditorReleasedByAnotherThreadLeavesItsDialogToThatOfTheWindows() {
        auto editor = std::make_unique<DocQueryEditor>();
        const auto windows = QApplication::topLevelWidgets();
        const auto found =
            std::ranges::find(windows, QStringLiteral("DocQueryOptionsFrm"),
                              [](const QWidget *window) { return window->objectName(); });
        QVERIFY(found != windows.end());
        const QPointer<QWidget> dialog(*found);
        std::thread([&] { editor.reset(); }).join();
        QVERIFY(dialog);
        QTRY_VERIFY(!dialog);
    }

    /// A refused run is none: the same object shows its window once loops run again.
    void EditorRefusedWhileEndingIsStillGood() {
        DocQueryEditor editor;
        ModalDriver driver;
        int number = 0;
        QTimer::singleShot(0, this, [&] {
            QCoreApplication::exit();
            number = RaisedBy([&] { editor.Execute(); }).Number();
        });
        QCoreApplication::exec();
        QCOMPARE(number, int(InvalidArgument));
        bool shown = false;
        driver.Expect([&](QWidget &window) {
            shown = true;
            window.close();
        });
        QVERIFY(!editor.Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(shown);
    }

    /// A window whose loop was ended from outside lets go of the windows that it blocked.
    void EndedLoopLeavesNoWindowBlocked_data() {
        QTest::addColumn<bool>("browser");
        QTest::newRow("dialog") << false;
        QTest::newRow("browser") << true;
    }
    void EndedLoopLeavesNoWindowBlocked() {
        QFETCH(bool, browser);
        QPushButton host;
        host.show();
        QVERIFY(QTest::qWaitForWindowActive(&host));
        int clicks = 0;
        connect(&host, &QPushButton::clicked, this, [&] { ++clicks; });
        const auto click = [&] {
            QTest::mouseClick(host.windowHandle(), Qt::LeftButton, {}, host.rect().center());
        };
        ModalDriver driver;
        DocQueryEditor editor;
        QTimer::singleShot(0, this, [&] {
            driver.Expect([&](QWidget &) {
                click();
                QCoreApplication::exit();
            });
            if (browser)
                TemplateQuerier().Execute();
            else
                editor.Execute();
        });
        QCoreApplication::exec();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(clicks, 0);
        click();
        QCOMPARE(clicks, 1);
    }

    void FileDialogStandsOverTheGivenWindow() {
        QWidget first;
        QWidget second;
        for (QWidget *window : {&first, &second}) {
            window->show();
            QVERIFY(QTest::qWaitForWindowActive(window));
        }
        DocQueryEditor editor;
        for (const QWidget *owner : {&first, &second}) {
            ModalDriver driver;
            driver.Expect([&](QWidget &dialog) {
                if (dialog.windowHandle()->transientParent() != owner->windowHandle())
                    driver.Complain(QStringLiteral("not over its owner"));
                dialog.close();
            });
            QVERIFY(!editor.AskAndLoadQuery(owner->winId()));
            QVERIFY2(driver.Done(), driver.Complaint());
        }
    }

    void FailureNamesTheOlderClassName() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("GetPeriodName"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        DocQueryEditor editor;
        const Failure failure = RaisedBy([&] { editor.SetRecord(nullptr); });
        QCOMPARE(failure.Number(), 70);
        QCOMPARE(failure.Description(),
                 QStringLiteral("[Vk_DocQuery::DocQueryTest.Set-Record]\r\n"
                                "[Vk_DocQuery::DocQueryOptionsFrm.Set-Record]\r\n"
                                "[Vk_DocQuery::DocQueryOptionsFrm.EnsureInitialized]\r\n"
                                "[Vk_DocQuery::VkDocQueryCriteries.Init]\r\n"
                                "[S]\r\n"
                                "D"));
    }
};

VK_TEST_CLASS(TestDocQueryEditor);

#include "TestDocQueryEditor.moc"
