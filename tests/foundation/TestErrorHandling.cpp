#include <csignal>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/HostServices.h>

#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/ErrorReport.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

void Raising(qint32 aNumber, const char *aSource, const char *aDescription) {
    throw Failure(aNumber, QString::fromUtf8(aSource), QString::fromUtf8(aDescription));
}

void Innermost() try { Raising(70, "S", "D"); } catch (...) {
    RaiseErrorUp("VkDocQueryData", "ReadCollectedIDsFromXml");
}
void Second() try { Innermost(); } catch (...) {
    RaiseErrorUp("VkDocQueryData", "ReadFromXml");
}
void Third() try { Second(); } catch (...) {
    RaiseErrorUp("VkDocQueryData", "ReadFromXmlFile");
}
void Fourth() try { Third(); } catch (...) {
    RaiseErrorUp("miDocQuery", "AskFileAndLoadDocQuery");
}
void Boundary() try { Fourth(); } catch (...) {
    ReportErrorToUser("DocQueryOptionsFrm", "theLoad_Click");
}

/// What comes up out of a procedure whose body raises what aBody raises.
template <class Body>
Failure Raised(Body aBody, const char *aModule = "M", const char *aProc = "P") {
    try {
        try {
            aBody();
        } catch (...) {
            RaiseErrorUp(aModule, aProc);
        }
    } catch (const Failure &failure) {
        return failure;
    }
    return Failure(0, QString(), QStringLiteral("nothing was raised"));
}

void ReportOnce(const char *aProc, qint32 aFlags) {
    try {
        Raising(5, "", "D");
    } catch (...) {
        ReportErrorToUser("M", aProc, QString(), aFlags);
    }
}

/// Stands in the place of the process's error stream while it lives, and keeps what is written
/// apart by write.
class ErrorStream {
public:
    ErrorStream() : theFormer(dup(STDERR_FILENO)) {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0) qFatal("no socket");
        theReader = ends[0];
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
    }
    ~ErrorStream() {
        dup2(theFormer, STDERR_FILENO);
        close(theFormer);
        CloseReader();
    }
    Q_DISABLE_COPY_MOVE(ErrorStream)

    /// Empty if nothing more was written.
    QByteArray NextWrite() const {
        QByteArray bytes(100000, '\0');
        const auto count =
            recv(theReader, bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_DONTWAIT);
        return bytes.left(std::max<qsizetype>(0, count));
    }
    void CloseReader() {
        if (theReader >= 0) close(theReader);
        theReader = -1;
    }

private:
    int theFormer;
    int theReader = -1;
};

struct ShownError {
    QString Text;
    QString Source;
    QString Extra;
    qint32 Number = 0;
};

ShownError theShown;
int theClosedSplashes = 0;
bool theHandlerFails = false;

class TestErrorHandler : public VkErrorHandler {
public:
    void ErrorMsgBox(const QString &aText, const QString &aSource, qint32 aNumber,
                     const QString &aExtra) override {
        theShown = {aText, aSource, aExtra, aNumber};
        if (theHandlerFails) Raising(1, "handler", "fails");
    }
};

class TestSplash : public SplashWindow {
public:
    void CloseSplashImmediately() override { ++theClosedSplashes; }
};

class FailingSplash : public SplashWindow {
public:
    void CloseSplashImmediately() override { Raising(1, "splash", "fails"); }
};

const QString theErrors = QStringLiteral("Vk_Errors.VkErrorHandler");
const QString theSplash = QStringLiteral("Vk_SplashWindow.SplashWindow");
const QString theBoxTitle = QStringLiteral("Сбой программы");

}  // namespace

class TestErrorHandling : public QObject {
    Q_OBJECT

private:
    static void ReportGoesToTheHost() {
        ModalDriver driver;
        try {
            Raising(77, "S", "D");
        } catch (...) {
            ReportErrorToUser("M", "P");
        }
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(theShown.Text, QStringLiteral("[Vk_DocQuery::M.P]\r\n[S]\r\nD"));
        QCOMPARE(theShown.Source, QStringLiteral("S"));
        QCOMPARE(theShown.Extra, QString());
        QCOMPARE(theShown.Number, 77);
    }

    static void ReportInALoop(bool aIsEnding) {
        QTimer::singleShot(0, QCoreApplication::instance(), [aIsEnding] {
            if (aIsEnding) QCoreApplication::exit();
            ReportOnce("P", 0);
            QCoreApplication::exit();
        });
        QCoreApplication::exec();
    }
    static void EndBox(QWidget &aBox, const QString &aWay, std::unique_ptr<QWidget> &rOwner) {
        if (aWay == QStringLiteral("ends")) QCoreApplication::exit();
        if (aWay == QStringLiteral("owner goes")) rOwner.reset();
        if (aWay == QStringLiteral("close")) aBox.close();
        if (aWay == QStringLiteral("Esc")) QTest::keyClick(&aBox, Qt::Key_Escape);
        if (aWay == QStringLiteral("OK")) QTest::keyClick(&aBox, Qt::Key_Return);
    }

private slots:
    void init() {
        theShown = ShownError();
        theClosedSplashes = 0;
        theHandlerFails = false;
    }
    void cleanup() {
        ClassRegistry::Unregister(theErrors);
        ClassRegistry::Unregister(theSplash);
        SetRunningUnattended(false);
    }

    void ChainIsShownOutermostFirst() {
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, theBoxTitle,
                         QStringLiteral("[Vk_DocQuery::DocQueryOptionsFrm.theLoad_Click]\r\n"
                                        "[Vk_DocQuery::miDocQuery.AskFileAndLoadDocQuery]\r\n"
                                        "[Vk_DocQuery::VkDocQueryData.ReadFromXmlFile]\r\n"
                                        "[Vk_DocQuery::VkDocQueryData.ReadFromXml]\r\n"
                                        "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\r\n"
                                        "[S]\r\n"
                                        "D"),
                         QStringLiteral("OK"));
        Boundary();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void NumberStaysAndSourceIsUsedUp() {
        const Failure failure = Raised([] { Fourth(); }, "M5", "P5");
        QCOMPARE(failure.Number(), 70);
        QCOMPARE(failure.Source(), QString());
        const QStringList lines = failure.Description().split(QStringLiteral("\r\n"));
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.first(), QStringLiteral("[Vk_DocQuery::M5.P5]"));
        QCOMPARE(lines.mid(5), QStringList({QStringLiteral("[S]"), QStringLiteral("D")}));
    }

    void EntryWithoutModuleOrProcedure() {
        QCOMPARE(Raised([] { Raising(1, "", "D"); }, "", "P").Description(),
                 QStringLiteral("[Vk_DocQuery::?.P]\r\nD"));
        QCOMPARE(Raised([] { Raising(1, "", "D"); }, "M", "").Description(),
                 QStringLiteral("[Vk_DocQuery::M]\r\nD"));
    }

    void LineNumberStandsInTheEntry() {
        const Failure failure =
            Raised([] { throw Failure(1, QString(), QStringLiteral("D"), 42); });
        QCOMPARE(failure.Description(), QStringLiteral("[Vk_DocQuery::M.P (42)]\r\nD"));
    }

    void DescriptionThatBeginsWithALineEnd_data() {
        QTest::addColumn<QString>("description");
        QTest::newRow("cr lf") << QStringLiteral("\r\nD");
        QTest::newRow("lf") << QStringLiteral("\nD");
        QTest::newRow("cr") << QStringLiteral("\rD");
    }
    void DescriptionThatBeginsWithALineEnd() {
        QFETCH(QString, description);
        const Failure failure = Raised([&] { throw Failure(1, QString(), description); });
        QCOMPARE(failure.Description(), QStringLiteral("[Vk_DocQuery::M.P]") + description);
    }

    void StandardExceptionsBecomeFailures_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        QTest::newRow("no memory")
            << 0 << 7 << QStringLiteral("[Vk_DocQuery::M.P]\r\nНедостаточно памяти.");
        QTest::newRow("range") << 1 << 9
                               << QStringLiteral("[Vk_DocQuery::M.P]\r\n[std::out_of_range]\r\nr");
        QTest::newRow("overflow") << 2 << 6
                                  << QStringLiteral(
                                         "[Vk_DocQuery::M.P]\r\n[std::overflow_error]\r\no");
        QTest::newRow("argument") << 5 << 5
                                  << QStringLiteral(
                                         "[Vk_DocQuery::M.P]\r\n[std::invalid_argument]\r\na");
        QTest::newRow("other") << 3 << 51
                               << QStringLiteral("[Vk_DocQuery::M.P]\r\n[std::exception]\r\ne");
        QTest::newRow("unknown") << 4 << 51
                                 << QStringLiteral(
                                        "[Vk_DocQuery::M.P]\r\nНеизвестная внутренняя ошибка.");
    }
    void StandardExceptionsBecomeFailures() {
        QFETCH(int, kind);
        QFETCH(int, number);
        QFETCH(QString, description);
        const Failure failure = Raised([&] {
            switch (kind) {
                case 0:
                    throw std::bad_alloc();
                case 1:
                    throw std::out_of_range("r");
                case 2:
                    throw std::overflow_error("o");
                case 3:
                    throw std::runtime_error("e");
                case 5:
                    throw std::invalid_argument("a");
                default:
                    throw 4;
            }
        });
        QCOMPARE(failure.Number(), number);
        QCOMPARE(failure.Description(), description);
    }

    void CreateObjectErrNamesTheClass() {
        try {
            CreateObjectErr(QStringLiteral("Vk_Records.Missing"));
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(ClassNotCreatable));
            QCOMPARE(
                failure.Description(),
                QStringLiteral(
                    "[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: Vk_Records.Missing}\r\n"
                    "[ClassRegistry]\r\n"
                    "Класс \"Vk_Records.Missing\" не зарегистрирован."));
        }
    }

    void CreateObjectErrNamesTheServer() {
        RegisterClass<TestSplash>(theSplash);
        try {
            CreateObjectErr(theSplash, QStringLiteral("srv"));
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QVERIFY(failure.Description().startsWith(
                QStringLiteral("[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: "
                               "Vk_SplashWindow.SplashWindow@srv}\r\n")));
        }
    }

    void HostsErrorWindowTakesTheBoxsPlace() {
        RegisterClass<TestErrorHandler>(theErrors);
        ReportGoesToTheHost();
    }

    void FailingErrorWindowShowsNothing() {
        RegisterClass<TestErrorHandler>(theErrors);
        theHandlerFails = true;
        ModalDriver driver;
        ReportOnce("P", 0);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!theShown.Text.isEmpty());
    }

    void ErrorLibraryThatCannotBeMadeGivesThePlainBox() {
        ClassRegistry::Register(theErrors, []() -> std::shared_ptr<Object> {
            throw Failure(1, QString(), QStringLiteral("no"));
        });
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, theBoxTitle,
                         QStringLiteral("[Vk_DocQuery::M.P]\r\nD"), QStringLiteral("OK"));
        ReportOnce("P", 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void PlainBoxHasTheStopIconAndOneButton() {
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            auto *box = qobject_cast<QMessageBox *>(&window);
            if (!box || box->icon() != QMessageBox::Critical)
                driver.Complain(QStringLiteral("icon"));
            if (!box || box->buttons().size() != 1) driver.Complain(QStringLiteral("buttons"));
            window.close();
        });
        ReportOnce("P", 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void SplashIsClosedBeforeTheBox() {
        RegisterClass<TestSplash>(theSplash);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            if (theClosedSplashes != 1) driver.Complain(QStringLiteral("splash is still up"));
            window.close();
        });
        ReportOnce("P", 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void FailingSplashChangesNothing() {
        RegisterClass<FailingSplash>(theSplash);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, theBoxTitle,
                         QStringLiteral("[Vk_DocQuery::M.P]\r\nD"), QStringLiteral("OK"));
        ReportOnce("P", 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void UnattendedShowsNoBoxButTellsTheErrorStream() {
        RegisterClass<TestSplash>(theSplash);
        SetRunningUnattended(true);
        ModalDriver driver;
        const ErrorStream stream;
        Boundary();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(theClosedSplashes, 0);
        // Each write is a packet of its own.
        QCOMPARE(stream.NextWrite(),
                 QByteArray("[Vk_DocQuery::DocQueryOptionsFrm.theLoad_Click]\n"
                            "[Vk_DocQuery::miDocQuery.AskFileAndLoadDocQuery]\n"
                            "[Vk_DocQuery::VkDocQueryData.ReadFromXmlFile]\n"
                            "[Vk_DocQuery::VkDocQueryData.ReadFromXml]\n"
                            "[Vk_DocQuery::VkDocQueryData.ReadCollectedIDsFromXml]\n"
                            "[S]\n"
                            "D\n"));
        QCOMPARE(stream.NextWrite(), QByteArray());
    }

    void ErrorStreamGetsRussianAsUtf8AndOfAnyLength() {
        SetRunningUnattended(true);
        const QString text = QString(20000, QChar(u'ж'));
        const ErrorStream stream;
        try {
            throw Failure(1, QString(), text);
        } catch (...) {
            ReportErrorToUser("M", "P");
        }
        QCOMPARE(stream.NextWrite(), "[Vk_DocQuery::M.P]\n" + text.toUtf8() + '\n');
    }

    void ErrorStreamThatNobodyReadsHarmsNobody() {
        SetRunningUnattended(true);
        sigset_t pending;
        {
            ErrorStream stream;
            stream.CloseReader();
            ReportOnce("P", 0);
        }
        QCOMPARE(sigpending(&pending), 0);
        QCOMPARE(sigismember(&pending, SIGPIPE), 0);  // nothing is left that would end the process
    }

    void ErrorWindowThatCannotBeMadeLeavesTheErrorStream() {
        ClassRegistry::Register(theErrors, []() -> std::shared_ptr<Object> {
            throw Failure(1, QString(), QStringLiteral("no"));
        });
        SetRunningUnattended(true);
        const ErrorStream stream;
        ReportOnce("P", 0);
        QCOMPARE(stream.NextWrite(), QByteArray("[Vk_DocQuery::M.P]\nD\n"));
    }

    /// What no user has closed may have been seen by nobody.
    void BoxThatGoesWithoutItsUserLeavesTheErrorStream_data() {
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("told");
        for (const char *way : {"ending", "ends", "owner goes", "other thread"})
            QTest::newRow(way) << QString::fromLatin1(way) << true;
        for (const char *way : {"close", "Esc", "OK"})
            QTest::newRow(way) << QString::fromLatin1(way) << false;
    }
    void BoxThatGoesWithoutItsUserLeavesTheErrorStream() {
        QFETCH(QString, way);
        QFETCH(bool, told);
        auto owner = std::make_unique<QWidget>();
        owner->show();
        owner->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(owner.get()));
        ModalDriver driver;
        if (way != QStringLiteral("ending") && way != QStringLiteral("other thread"))
            driver.Expect([&](QWidget &box) { EndBox(box, way, owner); });
        const ErrorStream stream;
        if (way == QStringLiteral("other thread"))
            std::thread([] { ReportOnce("P", 0); }).join();
        else
            ReportInALoop(way == QStringLiteral("ending"));
        QCOMPARE(stream.NextWrite(), QByteArray(told ? "[Vk_DocQuery::M.P]\nD\n" : ""));
        QCOMPARE(stream.NextWrite(), QByteArray());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QApplication::activeModalWidget());
    }

    void UnattendedTellsTheHostsErrorWindow() {
        RegisterClass<TestErrorHandler>(theErrors);
        RegisterClass<TestSplash>(theSplash);
        SetRunningUnattended(true);
        const ErrorStream stream;
        ReportGoesToTheHost();
        QCOMPARE(theClosedSplashes, 0);
        QCOMPARE(stream.NextWrite(), QByteArray());
    }

    void ThirdReportOfOneProcedureIsSilentWithTheLimit() {
        RegisterClass<TestErrorHandler>(theErrors);
        for (const bool shown : {true, true, false, false}) {
            theShown = ShownError();
            ReportOnce("Limited", UseRepeatLimit);
            QCOMPARE(!theShown.Text.isEmpty(), shown);
        }
        theShown = ShownError();
        ReportOnce("LimitedOther", UseRepeatLimit);
        QVERIFY(!theShown.Text.isEmpty());
        theShown = ShownError();
        ReportOnce("Limited", 0);
        QVERIFY(!theShown.Text.isEmpty());
    }

    void LimitCountsReportsOnly() {
        for (int i = 0; i < 5; ++i) {
            try {
                try {
                    Raising(1, "", "D");
                } catch (...) {
                    RaiseErrorUp("M", "LimitRaise", QString(), UseRepeatLimit);
                }
                QFAIL("nothing was raised");
            } catch (const Failure &failure) {
                QCOMPARE(failure.Description(), QStringLiteral("[Vk_DocQuery::M.LimitRaise]\r\nD"));
            }
        }
        RegisterClass<TestErrorHandler>(theErrors);
        for (const bool shown : {true, true, false}) {
            theShown = ShownError();
            ReportOnce("LimitRaise", UseRepeatLimit);
            QCOMPARE(theShown.Text,
                     shown ? QStringLiteral("[Vk_DocQuery::M.LimitRaise]\r\nD") : QString());
        }
    }

    void SavedFailureTakesThePlaceOfTheCurrentOne() {
        SaveFailure(Failure(8, QStringLiteral("saved"), QStringLiteral("kept"), 3));
        try {
            try {
                Raising(1, "", "D");
            } catch (...) {
                RaiseErrorUp("M", "P", QString(), UseSavedFailure);
            }
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), 8);
            QCOMPARE(failure.Description(),
                     QStringLiteral("[Vk_DocQuery::M.P (3)]\r\n[saved]\r\nkept"));
        }
    }
};

VK_TEST_CLASS(TestErrorHandling);

#include "TestErrorHandling.moc"
