#include <QCheckBox>
#include <QFile>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "HostWindow.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/ScreenSize.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theQuestionTitle = QStringLiteral("Норвик: Критерии поиска документов");
const QString theQuestion = QStringLiteral(
    "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?");
const QString theLoadTitle = QStringLiteral("Открыть файл критериев поиска");

/// The host in the hands of a user.
class ShownHost : public HostWindow {
public:
    ShownHost() { show(); }

    void Press(const QString &aCaption) {
        for (QPushButton *button : findChildren<QPushButton *>()) {
            if (button->text() == aCaption) return QTest::mouseClick(button, Qt::LeftButton);
        }
        qFatal("no such button");
    }
    QStringList Words() const {
        const auto *list = findChild<QListWidget *>();
        QStringList words;
        for (int i = 0; i < list->count(); ++i) words << list->item(i)->text();
        return words;
    }
    QString FileText() const { return findChild<QPlainTextEdit *>()->toPlainText(); }
    QString Status() const { return statusBar()->currentMessage(); }
};

void PressIn(ModalDriver &aDriver, QWidget &aWindow, const char *aButton) {
    aDriver.Click(aWindow.findChild<QPushButton *>(QString::fromLatin1(aButton)));
}

}  // namespace

class TestHostWindow : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void ConfirmedSearchIsShown() {
        ShownHost host;
        QCOMPARE(host.Status(), QStringLiteral("Критерии поиска еще не заданы"));
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            window.findChild<QCheckBox *>(QStringLiteral("theIsNotes"))->setChecked(true);
            driver.ExpectBox(QMessageBox::Question, theQuestionTitle, theQuestion,
                             QStringLiteral("Да"));
            PressIn(driver, window, "theOK");
        });
        host.Press(QStringLiteral("Поиск документов ..."));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(host.Record() && host.Record()->IsNotes);
        QCOMPARE(host.Words(), QStringList(QStringLiteral("Примечание: пусто")));
        QVERIFY(
            host.FileText().contains(QStringLiteral("IsNotes=\"1\" NotesMode=\"0\" Notes=\"\"")));
        QCOMPARE(host.Status(), QStringLiteral("Критерии поиска заданы, поиск можно выполнять"));
    }

    void CancelledSearchIsTold() {
        ShownHost host;
        ModalDriver driver;
        driver.Expect([&](QWidget &window) { PressIn(driver, window, "theCancel"); });
        host.Press(QStringLiteral("Поиск документов ..."));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!host.Record());
        QCOMPARE(host.Words(), QStringList());
        QCOMPARE(host.Status(), QStringLiteral("Поиск отменен"));
    }

    void LoadedCriteriaAreShownAndEditedNext() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.qvk"));
        VkDocQueryData saved;
        saved.IsNotes = true;
        saved.NotesMode = NotesNotEmpty;
        saved.WriteToFile(path);
        ShownHost host;
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), path);
        host.Press(QStringLiteral("Открыть критерии ..."));
        QCOMPARE(host.Words(), QStringList(QStringLiteral("Примечание: не пусто")));
        QCOMPARE(host.Status(), QStringLiteral("Критерии поиска загружены из файла: ") + path);

        driver.Expect([&](QWidget &window) {
            if (window.windowTitle() != QStringLiteral("Поиск документов - [") + path + u']')
                driver.Complain(window.windowTitle());
            PressIn(driver, window, "theCancel");
        });
        host.Press(QStringLiteral("Поиск документов ..."));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void CancelledFileDialogChangesNothing() {
        ShownHost host;
        ModalDriver driver;
        driver.ExpectFileDialog(theLoadTitle, QString(), QString());
        host.Press(QStringLiteral("Открыть критерии ..."));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!host.Record());
        QCOMPARE(host.Status(), QStringLiteral("Критерии поиска еще не заданы"));
    }

    void FailureIsShownAndTheHostGoesOn() {
        MemoryOffice::The().OnCall = [](const QString &member) {
            if (member == QStringLiteral("GetPeriodName"))
                throw Failure(70, QStringLiteral("S"), QStringLiteral("нет связи"));
        };
        ShownHost host;
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Норвик"),
                         QStringLiteral("[Vk_DocQuery::DocQueryTest.Set-Record]\r\n"
                                        "[Vk_DocQuery::DocQueryOptionsFrm.Set-Record]\r\n"
                                        "[Vk_DocQuery::DocQueryOptionsFrm.EnsureInitialized]\r\n"
                                        "[Vk_DocQuery::VkDocQueryCriteries.Init]\r\n"
                                        "[S]\r\n"
                                        "нет связи"),
                         QStringLiteral("OK"));
        host.Press(QStringLiteral("Поиск документов ..."));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(host.isVisible());
    }
};

/// A display that gets smaller while the host is up. Needs a server of its own.
class TestHostOnScreen : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (QStandardPaths::findExecutable(QStringLiteral("xrandr")).isEmpty())
            QSKIP("there is no xrandr");
    }
    void cleanup() { QVERIFY(SetScreenSize({1366, 768})); }

    void WindowStaysInSight_data() {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QRect>("wanted");
        const QRect whole(0, 0, 900, 600);
        QTest::newRow("moved in") << QPoint(466, 168) << QSize(1024, 700)
                                  << whole.translated(124, 100);
        QTest::newRow("made smaller")
            << QPoint(466, 168) << QSize(800, 480) << QRect(0, 0, 800, 480);
        QTest::newRow("left alone")
            << QPoint(17, 23) << QSize(1024, 700) << whole.translated(17, 23);
    }
    void WindowStaysInSight() {
        QFETCH(QPoint, place);
        QFETCH(QSize, screen);
        QFETCH(QRect, wanted);
        HostWindow host;
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        host.move(place);
        QTRY_COMPARE(host.geometry(), QRect(place, QSize(900, 600)));
        QVERIFY(SetScreenSize(screen));
        QTRY_COMPARE(host.geometry(), wanted);
    }
};

VK_TEST_CLASS(TestHostOnScreen);
VK_TEST_CLASS(TestHostWindow);

#include "TestHostWindow.moc"
