#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "controls/NumberBox.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

void Show(QWidget &aWidget) {
    aWidget.show();
    aWidget.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&aWidget));
}

double Number(const NumberBox &aBox) {
    return std::get<double>(aBox.Value());
}

}  // namespace

class TestNumberBox : public QObject {
    Q_OBJECT

private slots:
    void MayStayBlank() {
        NumberBox box;
        QVERIFY(IsEmpty(box.Value()));
        box.SetValue(5);
        QCOMPARE(Number(box), 5.0);
        box.SetValue(Null());
        QVERIFY(IsEmpty(box.Value()));
        box.SetValue(6.0);
        box.SetValue(Empty());
        QVERIFY(IsEmpty(box.Value()));
        QCOMPARE(box.text(), QString());
    }

    void Typing_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::newRow("digits") << "120"
                                << "120";
        QTest::newRow("minus") << "-15"
                               << "-15";
        QTest::newRow("minus inside") << "1-5"
                                      << "15";
        QTest::newRow("two minuses") << "--5"
                                     << "-5";
        QTest::newRow("letters") << "1a2b"
                                 << "12";
        QTest::newRow("point") << "1.5"
                               << "15";
        QTest::newRow("comma") << "1,5"
                               << "15";
        QTest::newRow("plus and exponent") << "+1e5"
                                           << "15";
        QTest::newRow("blank") << "1 2"
                               << "12";
        QTest::newRow("highest") << "99999999999999"
                                 << "99999999999999";
        QTest::newRow("above the highest") << "999999999999999"
                                           << "99999999999999";
        QTest::newRow("just above the highest") << "100000000000000"
                                                << "10000000000000";
        QTest::newRow("lowest") << "-999999999999999"
                                << "-999999999999999";
        QTest::newRow("below the lowest") << "-9999999999999991"
                                          << "-999999999999999";
    }

    void Typing() {
        QFETCH(QString, keys);
        QFETCH(QString, text);
        NumberBox box;
        box.SetBounds(-999999999999999.0, 99999999999999.0);
        Show(box);
        QTest::keyClicks(&box, keys);
        QCOMPARE(box.text(), text);
        QCOMPARE(Number(box), text.toDouble());
    }

    void PastingTakesNumbersOnly_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        QTest::newRow("number") << "42"
                                << "42";
        QTest::newRow("with blanks") << " 1 234\u00a0567 "
                                     << "1234567";
        QTest::newRow("narrow blanks") << QStringLiteral("1\u202f234\u2009567") << "1234567";
        QTest::newRow("cell of a table") << "42\r\n"
                                         << "42";
        QTest::newRow("number sign") << QStringLiteral("№ 15") << "15";
        QTest::newRow("number sign behind blanks") << QStringLiteral("\u00a0№15 ") << "15";
        QTest::newRow("number sign inside") << QStringLiteral("1№5") << "7";
        QTest::newRow("typographic minus") << QStringLiteral("\u22125") << "-5";
        QTest::newRow("dash for a minus") << QStringLiteral("\u2013 5") << "-5";
        QTest::newRow("typographic minus inside") << QStringLiteral("1\u22125") << "7";
        QTest::newRow("two numbers") << "12\n13"
                                     << "7";
        QTest::newRow("two cells") << "12\t13"
                                   << "7";
        QTest::newRow("too small") << QStringLiteral("\u22121 000 000 000 000 000") << "7";
        QTest::newRow("text") << "abc"
                              << "7";
        QTest::newRow("fraction") << "1.5"
                                  << "7";
        QTest::newRow("too great") << "100000000000000"
                                   << "7";
        QTest::newRow("other digits") << QString::fromUtf8("١٢") << "7";
    }

    void PastingTakesNumbersOnly() {
        QFETCH(QString, pasted);
        QFETCH(QString, text);
        NumberBox box;
        box.SetValue(7);
        Show(box);
        QGuiApplication::clipboard()->setText(pasted);
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(box.text(), text);
    }

    void MinusMeansNothingWhereNumbersBeginAtNought() {
        NumberBox box;
        box.SetBounds(0, 100);
        box.SetValue(7);
        Show(box);
        QGuiApplication::clipboard()->setText(QStringLiteral("\u22125"));
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(box.text(), QStringLiteral("7"));
    }

    void PastedNumberIsUndoneAndRedone() {
        NumberBox box;
        Show(box);
        QTest::keyClicks(&box, QStringLiteral("12"));
        QGuiApplication::clipboard()->setText(QStringLiteral(" 3 4 "));
        QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
        QTest::keyClicks(&box, QStringLiteral("5 6"));
        QCOMPARE(box.text(), QStringLiteral("123456"));
        for (const char *text : {"1234", "12", ""}) {
            QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
            QCOMPARE(box.text(), QString::fromLatin1(text));
        }
        for (const char *text : {"12", "1234", "123456"}) {
            QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(box.text(), QString::fromLatin1(text));
        }
    }

    void NumbersAreShownWithoutGrouping() {
        NumberBox box;
        box.SetValue(99999999999999.0);
        QCOMPARE(box.text(), QStringLiteral("99999999999999"));
        box.SetValue(QStringLiteral("-12"));
        QCOMPARE(box.text(), QStringLiteral("-12"));
        box.SetValue(2.5);
        QCOMPARE(box.text(), QStringLiteral("2"));
    }

    void NumbersOutOfBoundsAreRefused() {
        NumberBox box;
        box.SetBounds(0, 100);
        for (const LooseValue &value :
             {LooseValue(101.0), LooseValue(-1), LooseValue(QStringLiteral("abc"))}) {
            try {
                box.SetValue(value);
                QFAIL("nothing was raised");
            } catch (const Failure &failure) {
                QCOMPARE(failure.Number(), qint32(InvalidArgument));
                QCOMPARE(failure.Description(),
                         QStringLiteral("Недопустимое значение числового поля: \"%1\".")
                             .arg(ToText(value)));
            }
        }
        Show(box);
        QTest::keyClicks(&box, QStringLiteral("-5"));
        QCOMPARE(box.text(), QStringLiteral("5"));
    }

    void LeavingTidiesUp_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("text");
        QTest::newRow("zeros") << "007"
                               << "7";
        QTest::newRow("minus alone") << "-"
                                     << "";
        QTest::newRow("minus zero") << "-0"
                                    << "0";
        QTest::newRow("nothing") << ""
                                 << "";
    }

    void LeavingTidiesUp() {
        QFETCH(QString, keys);
        QFETCH(QString, text);
        QWidget window;
        auto *box = new NumberBox(&window);
        auto *other = new QLineEdit(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        box->setFocus();
        QTest::keyClicks(box, keys);
        other->setFocus();
        QCOMPARE(box->text(), text);
    }
};

VK_TEST_CLASS(TestNumberBox);

#include "TestNumberBox.moc"
