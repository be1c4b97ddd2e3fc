#include <QTest>

#include "lists/ListView.h"
#include "picker/Picker.h"
#include "picker/SelectObjectsForm.h"
#include "support/TestMain.h"
#include "windows/ModalRun.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theMessageTitle = QStringLiteral("Выбор из списка");

QString D(const char *aText) {
    return QString::fromUtf8(aText);
}

}  // namespace

/// Marks, sorting, and what leaves the picker.
class TestMarking : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        MemoryOffice::The().Persons = {
            {1, D("7701"), D("550101001"), D("Вега"), true, 0, true, true, D("org")},
            {2, D("7702"), D("550102001"), D("Альфа"), true, 0, true, true, D("org")},
            {3, D("7703"), D("550103001"), D("Гамма"), true, 0, true, true, D("org")},
            {4, D("7704"), D("550104001"), D("Бета"), true, 3, false, true, D("branch")},
            {5, D("7705"), QString(), D("Дельта 7701"), false, 0, false, true, D("man_purple")},
        };
    }
    void cleanup() { MemoryOffice::Clear(); }

    void marksOfTheMouseAreTheResult() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_4");
                     picker.ClickMark("_2");
                     picker.ClickMark("_1");
                     picker.ClickMark("_2");
                     QCOMPARE(picker.Marked(), D("_1 _4"));
                     picker.Click("theOK");
                 }),
                 D("_1 _4"));
    }

    void resultHoldsTheRecordsThemselves() {
        ModalDriver driver;
        std::shared_ptr<Object> tag;
        ExpectPicker(driver, [&](Picker &picker) {
            tag = picker.List().Row(2)->Tag();
            picker.ClickMark("_3");
            picker.Click("theOK");
        });
        const auto result = SelectObjectsForm().Execute(4, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(result);
        QCOMPARE(result->Count(), 1);
        QVERIFY(result->At(0) == tag);
        QCOMPARE(result->KeyAt(0), QString());
    }

    void cancelGivesNothing() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_1");
                     picker.Click("theCancel");
                 }),
                 D("nothing"));
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_1");
                     picker.Window.close();
                 }),
                 D("nothing"));
    }

    void onlyTheOkOfTheUserGivesAResult() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_1");
                     static_cast<QDialog &>(picker.Window).accept();
                 }),
                 D("nothing"));
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_1");
                     picker.Click("theOK");
                     ModalRun::EndAllOf(picker.Window);  // as when its owner goes then
                 }),
                 D("nothing"));
    }

    void okWithoutMarksTellsAndStays() {
        QCOMPARE(Chosen([](ModalDriver &driver, Picker &picker) {
                     picker.Type(D("га"));
                     driver.ExpectBox(QMessageBox::Warning, theMessageTitle,
                                      D("Необходимо выделить хотя бы один элемент."), D("OK"));
                     picker.Click("theOK");
                     QVERIFY(picker.Window.isVisible());
                     QCOMPARE(picker.Filter().text(), D("га"));
                     QCOMPARE(picker.Rows(), D("_1 _3 _4"));
                     picker.ClickMark("_3");
                     picker.Click("theOK");
                     QVERIFY(!picker.Window.isVisible());
                 }),
                 D("_3"));
    }

    void closedBehindItsMessageItGivesNothing_data() {
        QTest::addColumn<bool>("all");
        QTest::newRow("the picker") << false;
        QTest::newRow("all windows, the innermost first") << true;
    }
    void closedBehindItsMessageItGivesNothing() {
        QFETCH(bool, all);
        QCOMPARE(Chosen([=](ModalDriver &driver, Picker &picker) {
                     driver.Expect([&](QWidget &message) {
                         if (all) return QApplication::closeAllWindows();
                         picker.Window.close();
                         message.close();
                     });
                     picker.Click("theOK");
                     QVERIFY(!picker.Window.isVisible());
                 }),
                 D("nothing"));
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }

    void resultStandsInTheOrderOfTheList() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickHeader(3);
                     picker.Click("theCheckAll");
                     picker.Click("theOK");
                 }),
                 D("_2 _4 _1 _3 _5"));
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.Click("theCheckAll");
                     picker.ClickHeader(3);
                     picker.ClickHeader(3);
                     picker.ClickMark("_1");
                     picker.Click("theOK");
                 }),
                 D("_5 _3 _4 _2"));
    }

    void threeClicksOnAHeader() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.Click("theCheckAll");
            picker.ClickHeader(3);
            QCOMPARE(picker.Rows(), D("_2 _4 _1 _3 _5"));
            QVERIFY(picker.List().IsSorted());
            QCOMPARE(picker.List().SortKey(), qint16(3));
            QCOMPARE(picker.List().SortOrder(), 0);
            picker.ClickHeader(3);
            QCOMPARE(picker.Rows(), D("_5 _3 _1 _4 _2"));
            QCOMPARE(picker.List().SortOrder(), 1);
            QCOMPARE(picker.Marked(), picker.Rows());
            picker.ClickHeader(3);
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
            QVERIFY(!picker.List().IsSorted());
            QCOMPARE(picker.List().SortKey(), qint16(0));
            QCOMPARE(picker.Marked(), QString());
            picker.ClickHeader(3);
            QCOMPARE(picker.Rows(), D("_2 _4 _1 _3 _5"));
            QCOMPARE(picker.Marked(), QString());
        });
    }

    void theThirdClickKeepsTheFilter() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.Type(D("7701"));
            picker.Click("theCheckAll");
            for (int i = 0; i < 3; ++i) picker.ClickHeader(1);
            QCOMPARE(picker.Rows(), D("_1 _5"));
            QCOMPARE(picker.Marked(), QString());
            QCOMPARE(picker.Filter().text(), D("7701"));
        });
    }

    void anotherHeaderStartsAscendingWithMarksKept() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickMark("_4");
            picker.ClickMark("_5");
            picker.ClickHeader(3);
            picker.ClickHeader(3);
            picker.ClickHeader(1);
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
            QVERIFY(picker.List().IsSorted());
            QCOMPARE(picker.List().SortKey(), qint16(1));
            QCOMPARE(picker.List().SortOrder(), 0);
            QCOMPARE(picker.Marked(), D("_4 _5"));
        });
    }

    void theFirstHeaderSortsToo() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickHeader(0);
            QVERIFY(picker.List().IsSorted());
            QCOMPARE(picker.List().SortKey(), qint16(0));
            picker.ClickHeader(0);
            QCOMPARE(picker.List().SortOrder(), 1);
            picker.ClickHeader(0);
            QVERIFY(!picker.List().IsSorted());
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
        });
    }

    void aRefillStaysSorted() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickHeader(3);
            picker.Type(D("та"));
            QCOMPARE(picker.Rows(), D("_4 _5"));
            picker.Press(Qt::Key_Backspace);
            picker.Press(Qt::Key_Backspace);
            QCOMPARE(picker.Rows(), D("_2 _4 _1 _3 _5"));
        });
    }

    void marksAreCarriedOverARefillAndLostWithTheirRows() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.ClickMark("_1");
                     picker.ClickMark("_2");
                     picker.ClickMark("_5");
                     picker.Type(D("7701"));
                     QCOMPARE(picker.Rows(), D("_1 _5"));
                     QCOMPARE(picker.Marked(), D("_1 _5"));
                     for (int i = 0; i < 4; ++i) picker.Press(Qt::Key_Backspace);
                     QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
                     QCOMPARE(picker.Marked(), D("_1 _5"));
                     picker.Click("theOK");
                 }),
                 D("_1 _5"));
    }

    void theResultHoldsOnlyWhatIsShown() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.Click("theCheckAll");
                     picker.Type(D("7701"));
                     picker.Click("theOK");
                 }),
                 D("_1 _5"));
    }

    void markAllMarksWhatTheFilterLeaves() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.Type(D("гамма"));
            QCOMPARE(picker.Rows(), D("_3 _4"));
            picker.Click("theCheckAll");
            QCOMPARE(picker.Marked(), D("_3 _4"));
            for (int i = 0; i < 5; ++i) picker.Press(Qt::Key_Backspace);
            QCOMPARE(picker.Marked(), D("_3 _4"));
            picker.Click("theUncheckAll");
            QCOMPARE(picker.Marked(), QString());
        });
    }

    void selectedRowsAreMarkedInBulk() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickRow("_2");
            picker.ClickRow("_4", Qt::ControlModifier);
            picker.Click("theCheckSelected");
            QCOMPARE(picker.Marked(), D("_2 _4"));
            picker.Click("theCheckAll");
            picker.ClickRow("_1");
            picker.ClickRow("_3", Qt::ShiftModifier);
            QCOMPARE(picker.Selected(), D("_1 _2 _3"));
            picker.Click("theUncheckSelected");
            QCOMPARE(picker.Marked(), D("_4 _5"));
        });
    }

    void theCurrentRowServesWhereNoneIsSelected() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickRow("_3");
            picker.ClickRow("_3", Qt::ControlModifier);
            QCOMPARE(picker.Selected(), QString());
            QCOMPARE(picker.Current(), D("_3"));
            picker.Click("theCheckSelected");
            QCOMPARE(picker.Marked(), D("_3"));
            picker.Click("theUncheckSelected");
            QCOMPARE(picker.Marked(), QString());
        });
    }

    void withoutSelectionAndCurrentRowNothingChanges() {
        Chosen([](ModalDriver &, Picker &picker) {
            QCOMPARE(picker.Current(), QString());
            picker.Click("theCheckSelected");
            QCOMPARE(picker.Marked(), QString());
            picker.Click("theCheckAll");
            picker.Click("theUncheckSelected");
            QCOMPARE(picker.Marked(), D("_1 _2 _3 _4 _5"));
        });
    }

    void aRefillTakesSelectionAndCurrentRowAway() {
        Chosen([](ModalDriver &, Picker &picker) {
            picker.ClickRow("_1");
            picker.Type(D("7"));
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
            QCOMPARE(picker.Selected(), QString());
            QCOMPARE(picker.Current(), QString());
        });
    }
};

VK_TEST_CLASS(TestMarking);
#include "TestMarking.moc"
