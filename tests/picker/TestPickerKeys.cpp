#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include "lists/ListView.h"
#include "picker/Picker.h"
#include "picker/SelectObjectsForm.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

QString D(const char *aText) {
    return QString::fromUtf8(aText);
}

}  // namespace

/// The keys of the picker, and what the filter lets through.
class TestPickerKeys : public QObject {
    Q_OBJECT

private:
    static void Run(std::function<void(Picker &)> aWork) {
        QCOMPARE(Chosen([&](ModalDriver &, Picker &picker) { aWork(picker); }), D("nothing"));
    }

private slots:
    void init() {
        MemoryOffice::Install();
        MemoryOffice::The().Persons = {
            {1, D("7701"), D("770101001"), D("ООО Вега"), true, 0, true, true, D("org")},
            {2, D("7702"), D("770102001"), D("АО Альфа"), true, 0, true, true, D("org")},
            {3, D("7703"), D("770103001"), D("ООО Гамма"), true, 0, true, true, D("org")},
            {4, D("7704"), D("990104001"), D("Бета"), true, 3, false, true, D("branch")},
            {5, D("7705"), QString(), D("Ёлкин Иван 99"), false, 0, false, true, D("man_purple")},
        };
        QGuiApplication::clipboard()->clear();
    }
    void cleanup() { MemoryOffice::Clear(); }

    void filterFinds_data() {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("rows");
        QTest::newRow("a taxpayer number") << D("7702") << D("_2");
        QTest::newRow("digits of a code and of a name") << D("99") << D("_4 _5");
        QTest::newRow("a name, whatever the case") << D("вЕгА") << D("_1");
        QTest::newRow("the parent's name of a branch") << D("гамма") << D("_3 _4");
        QTest::newRow("the parent's own form of the name") << D("гамма (7703") << D("_4");
        QTest::newRow("ё is not е") << D("елкин") << QString();
        QTest::newRow("ё") << D("ёлкин") << D("_5");
        QTest::newRow("a blank within") << D("ооо г") << D("_3 _4");
        QTest::newRow("blanks at the ends") << D("  вега ") << D("_1");
        QTest::newRow("blanks alone") << D("   ") << D("_1 _2 _3 _4 _5");
        QTest::newRow("not across two fields") << D("7701770101001") << QString();
        QTest::newRow("across two fields with the line between") << D("7701|7701") << D("_1");
        QTest::newRow("an empty field") << D("7705||ё") << D("_5");
        QTest::newRow("nothing of the picture") << D("man_purple") << QString();
        QTest::newRow("no pattern") << D("77.1") << QString();
    }
    void filterFinds() {
        QFETCH(QString, filter);
        QFETCH(QString, rows);
        Run([&](Picker &picker) {
            QGuiApplication::clipboard()->setText(filter);
            picker.Press(Qt::Key_V, Qt::ControlModifier);
            QCOMPARE(picker.Filter().text(), filter);
            QCOMPARE(picker.Rows(), rows);
            QVERIFY(picker.Window.isVisible());
        });
    }

    void typingGoesToTheFilterWhereverTheFocusIs_data() {
        QTest::addColumn<QString>("element");
        for (const char *name : {"theFilter", "theList", "theCheckAll", "theOK", "theCancel"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void typingGoesToTheFilterWhereverTheFocusIs() {
        QFETCH(QString, element);
        Run([&](Picker &picker) {
            picker.Window.findChild<QWidget *>(element)->setFocus();
            picker.Type(D("гамм"));
            QCOMPARE(picker.Filter().text(), D("гамм"));
            QCOMPARE(picker.Rows(), D("_3 _4"));
            picker.Press(Qt::Key_Backspace);
            picker.Press(Qt::Key_Backspace);
            QCOMPARE(picker.Filter().text(), D("га"));
            QCOMPARE(picker.Rows(), D("_1 _3 _4"));
        });
    }

    void theFocusStartsInTheList() {
        Run([](Picker &picker) { QCOMPARE(picker.Window.focusWidget(), &picker.List()); });
    }

    void aKeyForTheWindowItselfGoesToTheFilter() {
        Run([](Picker &picker) {
            QTest::keyClick(&picker.Window, Qt::Key_7);
            QCOMPARE(picker.Filter().text(), D("7"));
        });
    }

    void theBlankMarksInTheList() {
        Run([](Picker &picker) {
            picker.ClickRow("_2");
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), D("_2"));
            QCOMPARE(picker.Filter().text(), QString());
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), QString());
        });
    }

    void theBlankMarksAllSelectedRows() {
        Run([](Picker &picker) {
            picker.ClickRow("_2");
            picker.Press(Qt::Key_Down, Qt::ShiftModifier);
            picker.Press(Qt::Key_Down, Qt::ShiftModifier);
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), D("_2 _3 _4"));
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), QString());
        });
    }

    void theBlankWithoutACurrentRowDoesNothing() {
        Run([](Picker &picker) {
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), QString());
            QCOMPARE(picker.Filter().text(), QString());
        });
    }

    void theBlankInTheFilterBoxIsTheBoxesOwn() {
        Run([](Picker &picker) {
            picker.ClickRow("_3");
            picker.Filter().setFocus();
            picker.Type(D("ооо"));
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Filter().text(), D("ооо "));
            QCOMPARE(picker.Rows(), D("_1 _3 _4"));
            QCOMPARE(picker.Marked(), QString());
            picker.Type(D("в"));
            QCOMPARE(picker.Rows(), D("_1"));
        });
    }

    void theBlankOnAButtonPressesIt() {
        Run([](Picker &picker) {
            picker.Button("theCheckAll").setFocus();
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), D("_1 _2 _3 _4 _5"));
        });
    }

    void arrowsMoveInTheList() {
        Run([](Picker &picker) {
            picker.Press(Qt::Key_Down);
            QCOMPARE(picker.Current(), D("_1"));
            picker.Press(Qt::Key_Down);
            picker.Press(Qt::Key_Down);
            QCOMPARE(picker.Current(), D("_3"));
            picker.Press(Qt::Key_Up);
            QCOMPARE(picker.Current(), D("_2"));
            QCOMPARE(picker.Selected(), D("_2"));
            picker.Press(Qt::Key_End);
            QCOMPARE(picker.Current(), D("_5"));
            picker.Press(Qt::Key_Home);
            QCOMPARE(picker.Current(), D("_1"));
            picker.Press(Qt::Key_PageDown);
            QCOMPARE(picker.Current(), D("_5"));
            picker.Press(Qt::Key_PageUp);
            QCOMPARE(picker.Current(), D("_1"));
            QCOMPARE(picker.Filter().text(), QString());
        });
    }

    void arrowDownLeadsFromTheFilterIntoTheList() {
        Run([](Picker &picker) {
            picker.Filter().setFocus();
            picker.Type(D("ооо"));
            picker.Press(Qt::Key_Down);
            QCOMPARE(picker.Window.focusWidget(), &picker.List());
            QCOMPARE(picker.Current(), D("_1"));
            picker.Press(Qt::Key_Space);
            QCOMPARE(picker.Marked(), D("_1"));
            QCOMPARE(picker.Filter().text(), D("ооо"));
        });
    }

    void theFilterIsEdited() {
        Run([](Picker &picker) {
            picker.Filter().setFocus();
            picker.Type(D("галма"));
            picker.Press(Qt::Key_Left);
            picker.Press(Qt::Key_Left);
            picker.Press(Qt::Key_Backspace);
            picker.Type(D("м"));
            QCOMPARE(picker.Filter().text(), D("гамма"));
            QCOMPARE(picker.Rows(), D("_3 _4"));
            picker.Press(Qt::Key_Home);
            picker.Press(Qt::Key_Delete);
            QCOMPARE(picker.Filter().text(), D("амма"));
            picker.Press(Qt::Key_End);
            picker.Press(Qt::Key_Left, Qt::ShiftModifier);
            picker.Press(Qt::Key_Left, Qt::ShiftModifier);
            picker.Type(D("й"));
            QCOMPARE(picker.Filter().text(), D("амй"));
            QCOMPARE(picker.Rows(), QString());
            QVERIFY(picker.Window.isVisible());
            picker.Press(Qt::Key_Z, Qt::ControlModifier);
            QVERIFY(picker.Filter().text() != D("амй"));
        });
    }

    void theFilterIsCutCopiedAndPasted() {
        Run([](Picker &picker) {
            picker.Filter().setFocus();
            picker.Type(D("вега"));
            picker.Press(Qt::Key_A, Qt::ControlModifier);
            picker.Press(Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QGuiApplication::clipboard()->text(), D("вега"));
            picker.Press(Qt::Key_X, Qt::ControlModifier);
            QCOMPARE(picker.Filter().text(), QString());
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
            picker.Press(Qt::Key_V, Qt::ControlModifier);
            QCOMPARE(picker.Rows(), D("_1"));
            picker.Press(Qt::Key_A, Qt::ControlModifier);
            picker.Press(Qt::Key_Delete);
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
            picker.Press(Qt::Key_Insert, Qt::ShiftModifier);
            QCOMPARE(picker.Filter().text(), D("вега"));
            QCOMPARE(picker.Rows(), D("_1"));
        });
    }

    void aTextPastedWithTheListInFocusGoesToTheFilter() {
        Run([](Picker &picker) {
            QGuiApplication::clipboard()->setText(D("альфа"));
            picker.Press(Qt::Key_V, Qt::ControlModifier);
            QCOMPARE(picker.Filter().text(), D("альфа"));
            QCOMPARE(picker.Rows(), D("_2"));
        });
    }

    void aTextSetWithoutKeysRefillsToo() {
        Run([](Picker &picker) {
            picker.Filter().setText(D("альфа"));
            QCOMPARE(picker.Rows(), D("_2"));
            picker.Filter().clear();
            QCOMPARE(picker.Rows(), D("_1 _2 _3 _4 _5"));
        });
    }

    void enterIsOk_data() {
        QTest::addColumn<QString>("element");
        for (const char *name : {"theFilter", "theList", "theOK"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void enterIsOk() {
        QFETCH(QString, element);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            QCOMPARE(Chosen([&](ModalDriver &, Picker &picker) {
                         picker.ClickMark("_2");
                         picker.Window.findChild<QWidget *>(element)->setFocus();
                         picker.Press(key);
                         QVERIFY(!picker.Window.isVisible());
                     }),
                     D("_2"));
        }
    }

    void enterPressesTheButtonWithTheFocus_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("marked");
        QTest::newRow("theCheckAll") << "theCheckAll"
                                     << "_1 _2 _3 _4 _5";
        QTest::newRow("theUncheckAll") << "theUncheckAll"
                                       << "";
        QTest::newRow("theCheckSelected") << "theCheckSelected"
                                          << "_1 _2 _3";
        QTest::newRow("theUncheckSelected") << "theUncheckSelected"
                                            << "_1";
    }
    void enterPressesTheButtonWithTheFocus() {
        QFETCH(QString, button);
        QFETCH(QString, marked);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            Run([&](Picker &picker) {
                picker.ClickMark("_1");
                picker.ClickMark("_2");
                picker.ClickRow("_2");
                picker.ClickRow("_3", Qt::ControlModifier);
                while (picker.Window.focusWidget()->objectName() != button)
                    picker.Press(Qt::Key_Tab);
                picker.Press(key);
                QVERIFY(picker.Window.isVisible());
                QCOMPARE(picker.Marked(), marked);
            });
        }
    }

    /// The natural road: filter, take all that is left, mark it.
    void filterThenAllThenBlankMarksWhatIsLeft() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.Type(D("ооо"));
                     picker.Press(Qt::Key_A, Qt::ControlModifier);
                     picker.Press(Qt::Key_Space);
                     picker.Press(Qt::Key_Return);
                 }),
                 D("_1 _3 _4"));
    }

    void selectedRowsAreCopied() {
        Run([](Picker &picker) {
            picker.ClickRow("_2");
            picker.ClickRow("_4", Qt::ControlModifier);
            picker.Press(Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QGuiApplication::clipboard()->text(),
                     D("7702\t770102001\tАО Альфа\t\n7704\t990104001\tБета\tООО Гамма (7703)"));
            QCOMPARE(picker.Filter().text(), QString());
        });
    }

    void enterAfterAClickOnAButtonIsOk() {
        QCOMPARE(Chosen([](ModalDriver &, Picker &picker) {
                     picker.Click("theCheckAll");
                     picker.Press(Qt::Key_Return);
                     QVERIFY(!picker.Window.isVisible());
                 }),
                 D("_1 _2 _3 _4 _5"));
    }

    void enterOnCancelIsCancel() {
        Run([](Picker &picker) {
            picker.ClickMark("_2");
            picker.Button("theCancel").setFocus();
            picker.Press(Qt::Key_Return);
            QVERIFY(!picker.Window.isVisible());
        });
    }

    void escIsCancel_data() { typingGoesToTheFilterWhereverTheFocusIs_data(); }
    void escIsCancel() {
        QFETCH(QString, element);
        Run([&](Picker &picker) {
            picker.ClickMark("_2");
            picker.Type(D("7"));
            picker.Window.findChild<QWidget *>(element)->setFocus();
            picker.Press(Qt::Key_Escape);
            QVERIFY(!picker.Window.isVisible());
        });
    }

    void tabGoesRound() {
        Run([](Picker &picker) {
            picker.Filter().setFocus();
            QStringList names;
            for (int i = 0; i < 8; ++i) {
                picker.Press(Qt::Key_Tab);
                names << picker.Window.focusWidget()->objectName();
            }
            names.removeLast();
            QCOMPARE(names.join(u' '),
                     D("theList theCheckAll theUncheckAll theCheckSelected theUncheckSelected "
                       "theOK theCancel"));
            QCOMPARE(picker.Window.focusWidget(), &picker.Filter());
            QCOMPARE(picker.Filter().text(), QString());
        });
    }

    void ctrlWithADigitSortsAndIsNoFilter() {
        QString sorted;
        const QString chosen = Chosen([&](ModalDriver &, Picker &picker) {
            picker.Press(Qt::Key_4, Qt::ControlModifier);
            sorted = QStringLiteral("%1 %2 \"%3\"")
                         .arg(picker.List().IsSorted())
                         .arg(picker.List().SortKey())
                         .arg(picker.Filter().text());
            picker.Close();
        });
        QCOMPARE(chosen, QStringLiteral("nothing"));
        QCOMPARE(sorted, QStringLiteral("1 3 \"\""));
    }
};

VK_TEST_CLASS(TestPickerKeys);
#include "TestPickerKeys.moc"
