#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "controls/DateBox.h"
#include "lists/ListView.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A window of a host that keeps the editor as a member, as forms do.
class Host : public QWidget {
public:
    Host() {
        setGeometry(40, 40, 500, 300);
        show();
        activateWindow();
    }
    std::unique_ptr<DocQueryEditor> theEditor = std::make_unique<DocQueryEditor>();
};

/// How one of the tests goes: the call that brings the first window up, and what the user does in
/// each window to bring up the next one. In the last window the owner goes.
struct Road {
    std::function<bool(Host &)> Call;  ///< true if something came of it
    QList<std::function<void(QWidget &)>> Steps;
    QString Last;  ///< class name of the last window
};

bool Executes(Host &aHost) {
    return aHost.theEditor->Execute();
}
bool AsksAndLoads(Host &aHost) {
    return aHost.theEditor->AskAndLoadQuery(aHost.winId()) != nullptr;
}
bool AsksAndLoadsWithoutOwner(Host &aHost) {
    return aHost.theEditor->AskAndLoadQuery(0) != nullptr;
}
bool Browses(Host & /*aHost*/) {
    TemplateQuerier().Execute();
    return false;
}

void Press(QWidget &aWindow, const char *aButton) {
    auto *button = aWindow.findChild<QPushButton *>(QString::fromLatin1(aButton));
    if (!button || !button->isVisible()) qFatal("no button %s", aButton);
    QTest::mouseClick(button, Qt::LeftButton);
}
std::function<void(QWidget &)> Presses(const char *aButton) {
    return [aButton](QWidget &aWindow) { Press(aWindow, aButton); };
}

/// The editor has a record with a tab open and these rows.
std::shared_ptr<VkDocQueryData> RecordOn(const char *aTab) {
    auto record = std::make_shared<VkDocQueryData>();
    record->LastTab = QString::fromLatin1(aTab);
    record->IsTaxpayers = true;
    record->TaxpayersType = Taxpayers;
    record->TaxpayersList = std::make_shared<RecordCollection>();
    record->TaxpayersList->Add(MakePerson(1), QStringLiteral("_1"));
    record->IsSignDate = true;
    return record;
}
std::function<bool(Host &)> ExecutesOn(const char *aTab) {
    return [aTab](Host &aHost) {
        aHost.theEditor->SetRecord(RecordOn(aTab));
        return Executes(aHost);
    };
}

void SelectRow(QWidget &aWindow, const char *aList) {
    auto *list = aWindow.findChild<ListView *>(QString::fromLatin1(aList));
    list->SetSelectedItem(list->Row(0));
    list->Row(0)->SetSelected(true);
}

void TypeName(QWidget &aWindow, const QString &aPath) {
    auto *name = aWindow.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    name->selectAll();
    name->insert(aPath);
    QTest::keyClick(name, Qt::Key_Return);
}

/// The question comes from a queued event, as when the user leaves the box.
void TypeNoDate(QWidget &aWindow) {
    auto *box = aWindow.findChild<DateBox *>(QStringLiteral("theSignDate1"));
    auto *edit = box->findChild<QLineEdit *>();
    edit->setFocus();
    edit->setText(QStringLiteral("31.02.2024"));
    QTest::keyClick(edit, Qt::Key_Return);
}

void OpenMenu(QWidget &aWindow) {
    auto *name = aWindow.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(2, 2),
                            name->mapToGlobal(QPoint(2, 2)));
    QCoreApplication::sendEvent(name, &event);
    if (!QApplication::activePopupWidget()) qFatal("no menu");
}

}  // namespace

Q_DECLARE_METATYPE(Road)

/// The owner of a window goes while the window, or another one over it, is up: all of them end like
/// a cancel.
class TestLostOwners : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        theFolder = std::make_unique<QTemporaryDir>();
        for (const QString &name : {QStringLiteral("bad.qvk"), QStringLiteral("old.qvk")}) {
            QFile file(theFolder->filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<Other/>") > 0);
        }
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

    void EndsLikeACancel_data() {
        QTest::addColumn<Road>("road");
        QTest::addColumn<QString>("gone");
        for (const auto &[name, road] : Roads()) {
            for (const char *gone : {"owner", "owner with the editor", "editor"})
                QTest::addRow("%s, %s goes", name, gone) << road << QString::fromLatin1(gone);
        }
    }
    void EndsLikeACancel() {
        QFETCH(Road, road);
        QFETCH(QString, gone);
        auto *host = new Host;
        QVERIFY(QTest::qWaitForWindowActive(host));
        std::unique_ptr<DocQueryEditor> kept;
        ModalDriver driver;
        for (const auto &step : road.Steps) driver.Expect(step);
        driver.Expect([&](QWidget &window) {
            if (QString::fromLatin1(window.metaObject()->className()) != road.Last)
                driver.Complain(QString::fromLatin1(window.metaObject()->className()));
            if (qobject_cast<QFileDialog *>(&window)) OpenMenu(window);
            if (gone == QStringLiteral("owner")) kept = std::move(host->theEditor);
            if (gone == QStringLiteral("editor")) {
                host->theEditor.reset();
                // What does not stand on the dialog stays.
                if (window.isVisible()) delete std::exchange(host, nullptr);
            } else {
                delete std::exchange(host, nullptr);
            }
        });
        QVERIFY(!road.Call(*host));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
        for (const QWidget *window : QApplication::topLevelWidgets())
            QVERIFY2(window == host || !window->isVisible(), window->metaObject()->className());
        delete host;
    }

    /// Nothing but the end of the editor ends the windows that stand on its dialog.
    void EditorTakesItsWindowsAlong() {
        Host host;
        QVERIFY(QTest::qWaitForWindowActive(&host));
        ModalDriver driver;
        driver.Expect(Presses("theOK"));
        driver.Expect([&](QWidget &box) {
            host.theEditor.reset();
            if (box.isVisible()) driver.Complain(QStringLiteral("still up"));
            box.close();
        });
        QVERIFY(!ExecutesOn("doc")(host));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(host.isVisible());
    }

    /// QCoreApplication::exit() and quit() end all loops, and leave their windows to us.
    void EndsWithTheApplication_data() {
        QTest::addColumn<Road>("road");
        for (const auto &[name, road] : Roads()) QTest::addRow("%s", name) << road;
    }
    void EndsWithTheApplication() {
        QFETCH(Road, road);
        Host host;
        QPushButton button(&host);
        button.show();
        int clicks = 0;
        connect(&button, &QPushButton::clicked, this, [&] { ++clicks; });
        const auto click = [&] {
            QTest::mouseClick(host.windowHandle(), Qt::LeftButton, {}, QPoint(5, 5));
        };
        QVERIFY(QTest::qWaitForWindowActive(&host));
        ModalDriver driver;
        for (const auto &step : road.Steps) driver.Expect(step);
        driver.Expect([&](QWidget &window) {
            click();
            if (qobject_cast<QFileDialog *>(&window)) OpenMenu(window);
            QCoreApplication::exit();
        });
        bool came = true;
        QTimer::singleShot(0, &host, [&] { came = road.Call(host); });
        QCoreApplication::exec();
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!came);
        QVERIFY(!QApplication::activeModalWidget());
        QVERIFY(!QApplication::activePopupWidget());
        QVERIFY(!QGuiApplication::overrideCursor());
        for (const QWidget *window : QApplication::topLevelWidgets())
            QVERIFY2(window == &host || !window->isVisible(), window->metaObject()->className());
        QCOMPARE(clicks, 0);
        click();
        QCOMPARE(clicks, 1);
    }

private:
    using Named = std::pair<const char *, Road>;
    QString Path(const char *aName) const {
        return theFolder->filePath(QString::fromLatin1(aName));
    }

    QList<Named> Roads() const {
        // The folder is another one in each row.
        const auto types = [this](const char *aName) {
            return [this, aName](QWidget &aWindow) { TypeName(aWindow, Path(aName)); };
        };
        const QString file = QStringLiteral("QFileDialog");
        const QString box = QStringLiteral("QMessageBox");
        const QString dialog = QStringLiteral("Vk_DocQuery::DocQueryOptionsFrm");
        const QString picker = QStringLiteral("Vk_DocQuery::SelectObjectsForm");
        const auto fails = [](const char *aMember) {
            return [aMember](Host &aHost) {
                MemoryOffice::The().OnCall = [aMember](const QString &member) {
                    if (member == QString::fromLatin1(aMember))
                        throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
                };
                return Executes(aHost);
            };
        };
        const auto refused = [this](Host &aHost) {
            auto record = RecordOn("doc");
            record->FileName = theFolder->filePath(QStringLiteral("no/such/folder.qvk"));
            aHost.theEditor->SetRecord(record);
            return Executes(aHost);
        };
        const auto selectsAndDeletes = [](QWidget &aWindow) {
            SelectRow(aWindow, "theTaxpayersList");
            Press(aWindow, "theTaxpayerDelete");
        };
        const auto doubleClicks = [](QWidget &aWindow) {
            auto *list = aWindow.findChild<ListView *>(QStringLiteral("theFormList"));
            const QPoint point = list->RowRect(list->Row(0)).center();
            QTest::mouseMove(list->viewport(), point);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, point);
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, point);
        };
        const auto fullList = ExecutesOn("taxpayer");
        return {
            {"file dialog for loading", {AsksAndLoads, {}, file}},
            {"file dialog without an owner", {AsksAndLoadsWithoutOwner, {}, file}},
            {"box of a bad file", {AsksAndLoads, {types("bad.qvk")}, box}},
            {"box of a missing file", {AsksAndLoads, {types("none.qvk")}, box}},
            {"dialog", {Executes, {}, dialog}},
            {"question at OK", {ExecutesOn("doc"), {Presses("theOK")}, box}},
            {"loading from the dialog", {Executes, {Presses("theLoad")}, file}},
            {"bad file in the dialog", {Executes, {Presses("theLoad"), types("bad.qvk")}, box}},
            {"saving from the dialog", {Executes, {Presses("theSaveAs")}, file}},
            {"first saving", {Executes, {Presses("theSave")}, file}},
            {"overwriting", {Executes, {Presses("theSaveAs"), types("old.qvk")}, box}},
            {"refused saving", {refused, {Presses("theSave")}, box}},
            {"wrong date", {ExecutesOn("doc"), {TypeNoDate}, box}},
            {"help", {Executes, {Presses("theHelp")}, box}},
            {"deletion", {fullList, {selectsAndDeletes}, box}},
            {"picker", {fullList, {Presses("theTaxpayerAdd")}, picker}},
            {"box over the picker", {fullList, {Presses("theTaxpayerAdd"), Presses("theOK")}, box}},
            {"failure at the start", {fails("GetPeriodName"), {}, box}},
            {"failure in the picker",
             {[fails](Host &aHost) {
                  aHost.theEditor->SetRecord(RecordOn("taxpayer"));
                  return fails("GetTaxpayers")(aHost);
              },
              {Presses("theTaxpayerAdd")},
              box}},
            {"browser", {Browses, {}, QStringLiteral("Vk_DocQuery::TemplateQuerierForm")}},
            {"box over the browser", {Browses, {doubleClicks}, box}},
        };
    }

    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestLostOwners);

#include "TestLostOwners.moc"
