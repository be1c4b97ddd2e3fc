#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTabBar>
#include <QTest>

#include "controls/DateBox.h"
#include "panel/OpenPanel.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

QString D(const char *aText) {
    return QString::fromUtf8(aText);
}

/// The panel on the screen, on the page of the dates, with the criterion on.
struct Dates {
    Dates() {
        VkDocQueryData record;
        record.IsSignDate = true;
        record.SignDate1 = QDate(2019, 3, 8);
        Panel.DistributeValues(record);
        Panel.SetCurrentTab(D("doc"));
        Panel.show();
        if (!QTest::qWaitForWindowActive(&Panel)) qFatal("the panel does not come up");
    }

    DateBox &Box(const char *aName) const { return Panel.Get<DateBox>(aName); }
    /// Types in the place of what stands there.
    void Type(const char *aBox, const char *aKeys) const {
        Box(aBox).setFocus();
        Box(aBox).Edit()->selectAll();
        QTest::keyClicks(Box(aBox).Edit(), QString::fromLatin1(aKeys));
    }
    LooseValue First() {
        VkDocQueryData record;
        Panel.AssembleValuesTo(record);
        return record.SignDate1;
    }
    /// The next box is the warning; it stands over the page of its date, which has the focus.
    void ExpectWarning(ModalDriver &aDriver, const QString &aText) {
        aDriver.Expect([this, &aDriver, aText](QWidget &aWindow) {
            auto *box = qobject_cast<QMessageBox *>(&aWindow);
            if (!box) return aDriver.Complain(D("no box")), aWindow.close(), void();
            if (box->windowTitle() != D("Дата")) aDriver.Complain(box->windowTitle());
            if (box->text() != aText) aDriver.Complain(box->text());
            if (box->icon() != QMessageBox::Warning) aDriver.Complain(D("icon"));
            if (Panel.GetCurrentTab() != D("doc")) aDriver.Complain(Panel.GetCurrentTab());
            if (Panel.focusWidget() != Box("theSignDate1").Edit()) aDriver.Complain(D("focus"));
            aDriver.Click(box->buttons().first());
        });
    }

    OpenPanel Panel;
};

}  // namespace

/// Dates that are half typed, on the panel.
class TestDates : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }

    void changingTheTabBringsThePageBackAndAsks_data() {
        QTest::addColumn<QString>("way");
        for (const char *way : {"click", "Ctrl+Tab", "Alt+1", "Ctrl+PgUp"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void changingTheTabBringsThePageBackAndAsks() {
        QFETCH(QString, way);
        Dates dates;
        dates.Type("theSignDate1", "3102");
        ModalDriver driver;
        dates.ExpectWarning(driver, D("\"31.02.____\" не является датой."));
        QTabBar *bar = dates.Panel.Tabs().Bar();
        QWidget *focus = dates.Box("theSignDate1").Edit();
        if (way == u"click")
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(1).center());
        else if (way == u"Ctrl+Tab")
            QTest::keyClick(focus, Qt::Key_Tab, Qt::ControlModifier);
        else if (way == u"Alt+1")
            QTest::keyClick(focus, Qt::Key_1, Qt::AltModifier);
        else
            QTest::keyClick(focus, Qt::Key_PageUp, Qt::ControlModifier);
        QTRY_VERIFY2(driver.Done(), driver.Complaint());
        QTRY_COMPARE(QApplication::focusWidget(), focus);
        QCOMPARE(dates.Panel.GetCurrentTab(), D("doc"));
        QCOMPARE(dates.Box("theSignDate1").Edit()->displayText(), D("31.02.____"));
        // Once it is right the way is free.
        QTest::keyClick(focus, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(focus, D("28022024"));
        QTest::keyClick(focus, Qt::Key_1, Qt::AltModifier);
        QCoreApplication::processEvents();
        QCOMPARE(dates.Panel.GetCurrentTab(), D("taxpayer"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void switchedOffAsksNothingAndKeepsTheLastWholeDate_data() {
        QTest::addColumn<bool>("byMouse");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("shown");
        for (const bool byMouse : {true, false}) {
            const char *by = byMouse ? "mouse" : "keys";
            QTest::addRow("half typed, %s", by) << byMouse << "3102"
                                                << "08.03.2019";
            QTest::addRow("no such day, %s", by) << byMouse << "31022024"
                                                 << "08.03.2019";
            QTest::addRow("whole date, then half, %s", by) << byMouse << "01022024\b\b"
                                                           << "01.02.2024";
            QTest::addRow("whole date, %s", by) << byMouse << "01022024"
                                                << "01.02.2024";
            QTest::addRow("emptied, %s", by) << byMouse << "\b"
                                             << "__.__.____";
        }
    }
    void switchedOffAsksNothingAndKeepsTheLastWholeDate() {
        QFETCH(bool, byMouse);
        QFETCH(QString, keys);
        QFETCH(QString, shown);
        Dates dates;
        auto &tick = dates.Panel.Check("theIsSignDate");
        dates.Type("theSignDate1", "");
        for (const QChar key : keys)
            QTest::keyClick(dates.Box("theSignDate1").Edit(), key.toLatin1());
        const ModalDriver driver;
        const auto turn = [&] {
            if (byMouse) {
                QTest::mousePress(&tick, Qt::LeftButton, {}, QPoint(8, 8));
                QCoreApplication::processEvents();
                QTest::mouseRelease(&tick, Qt::LeftButton, {}, QPoint(8, 8));
            } else {
                while (!tick.hasFocus())
                    QTest::keyClick(dates.Panel.focusWidget(), Qt::Key_Backtab);
                QCoreApplication::processEvents();
                QTest::keyClick(&tick, Qt::Key_Space);
            }
            QCoreApplication::processEvents();
        };
        turn();
        QVERIFY(!tick.isChecked());
        QVERIFY(!dates.Box("theSignDate1").isVisible());
        const LooseValue value = dates.First();
        QCOMPARE(IsEmpty(value) ? D("__.__.____") : ToText(value), shown);
        turn();
        QCOMPARE(dates.Box("theSignDate1").Edit()->displayText(), shown);
        QVERIFY(dates.Panel.FinishInput());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The switch is passed by without a question, which then comes behind it.
    void passingTheSwitchAsksBehindIt() {
        Dates dates;
        dates.Type("theSignDate1", "3102");
        ModalDriver driver;
        auto &tick = dates.Panel.Check("theIsSignDate");
        QTest::keyClick(dates.Box("theSignDate1").Edit(), Qt::Key_Backtab);
        QCoreApplication::processEvents();
        QVERIFY(tick.hasFocus());
        QVERIFY2(driver.Done(), driver.Complaint());
        dates.ExpectWarning(driver, D("\"31.02.____\" не является датой."));
        QTest::keyClick(&tick, Qt::Key_Backtab);
        QTRY_VERIFY2(driver.Done(), driver.Complaint());
        QTRY_VERIFY(dates.Box("theSignDate1").Edit()->hasFocus());
    }

    /// Enter presses the default button without moving the focus.
    void finishingCompletesTheYearsOfBothDates() {
        Dates dates;
        dates.Box("theSignDate1").Edit()->setText(D("01.10.24"));
        dates.Box("theSignDate2").Edit()->setText(D("31.12.24"));
        QVERIFY(dates.Panel.FinishInput());
        VkDocQueryData record;
        dates.Panel.AssembleValuesTo(record);
        QCOMPARE(ToText(record.SignDate1), D("01.10.2024"));
        QCOMPARE(ToText(record.SignDate2), D("31.12.2024"));
    }

    void finishingAsksForTheSecondDateBehindAShortYear() {
        Dates dates;
        dates.Box("theSignDate1").Edit()->setText(D("01.10.24"));
        dates.Box("theSignDate2").Edit()->setText(D("31.02.24"));
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, D("Дата"), D("\"31.02.24__\" не является датой."),
                         D("OK"));
        QVERIFY(!dates.Panel.FinishInput());
        QVERIFY2(driver.Done(), driver.Complaint());
        QTRY_VERIFY(dates.Box("theSignDate2").Edit()->hasFocus());
    }

    void whoeverFinishesIsLedToThePage() {
        Dates dates;
        dates.Box("theSignDate1").Edit()->setText(D("31.02"));
        dates.Panel.SetCurrentTab(D("time"));
        ModalDriver driver;
        dates.ExpectWarning(driver, D("\"31.02.____\" не является датой."));
        QVERIFY(!dates.Panel.FinishInput());
        QVERIFY2(driver.Done(), driver.Complaint());
        QTRY_VERIFY(dates.Box("theSignDate1").Edit()->hasFocus());
    }
};

VK_TEST_CLASS(TestDates);
#include "TestDates.moc"
