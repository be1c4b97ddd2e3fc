#include <limits>

#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Records.h>

#include "foundation/CheckedArithmetic.h"
#include "foundation/mVkCommonCalc.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

const QDate theDay(2021, 3, 5);

/// Number of the failure that the body raises, 0 if none.
template <class Body>
qint32 NumberRaised(Body aBody) {
    try {
        aBody();
    } catch (const Failure &failure) {
        return failure.Number();
    }
    return 0;
}

}  // namespace

Q_DECLARE_METATYPE(Vk_DocQuery::LooseValue)

class TestConversions : public QObject {
    Q_OBJECT

private slots:
    void TextWithFallback_data() {
        QTest::addColumn<LooseValue>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty gives empty, not the default") << LooseValue() << QString();
        QTest::newRow("null gives the default") << LooseValue(Null()) << QStringLiteral("default");
        QTest::newRow("date") << LooseValue(theDay) << QStringLiteral("05.03.2021");
        QTest::newRow("early date") << LooseValue(QDate(107, 1, 2)) << QStringLiteral("02.01.0107");
        QTest::newRow("invalid date") << LooseValue(QDate()) << QString();
        QTest::newRow("whole number") << LooseValue(1234) << QStringLiteral("1234");
        QTest::newRow("whole double") << LooseValue(1234567.0) << QStringLiteral("1234567");
        QTest::newRow("fraction") << LooseValue(-0.5) << QStringLiteral("-0.5");
        QTest::newRow("big") << LooseValue(1e20) << QStringLiteral("1E+20");
        QTest::newRow("true") << LooseValue(true) << QStringLiteral("True");
        QTest::newRow("false") << LooseValue(false) << QStringLiteral("False");
        QTest::newRow("text") << LooseValue(QStringLiteral(" a ")) << QStringLiteral(" a ");
    }
    void TextWithFallback() {
        QFETCH(LooseValue, value);
        QFETCH(QString, text);
        QCOMPARE(VarToStrDef(value, QStringLiteral("default")), text);
    }

    void NullWithAnEmptyDefaultGivesAnEmptyText() {
        QCOMPARE(VarToStrDef(Null(), QString()), QString());
    }

    void LongWithFallback_data() {
        QTest::addColumn<LooseValue>("value");
        QTest::addColumn<int>("number");
        const int fallback = -77;
        QTest::newRow("empty") << LooseValue() << 0;
        QTest::newRow("null") << LooseValue(Null()) << fallback;
        QTest::newRow("text") << LooseValue(QStringLiteral("12")) << 12;
        QTest::newRow("text with blanks") << LooseValue(QStringLiteral(" 12 ")) << 12;
        QTest::newRow("negative text") << LooseValue(QStringLiteral("-12")) << -12;
        QTest::newRow("text with a fraction") << LooseValue(QStringLiteral("12.5")) << 12;
        QTest::newRow("empty text") << LooseValue(QString()) << fallback;
        QTest::newRow("no number") << LooseValue(QStringLiteral("abc")) << fallback;
        QTest::newRow("number and more") << LooseValue(QStringLiteral("12a")) << fallback;
        QTest::newRow("infinity") << LooseValue(QStringLiteral("inf")) << fallback;
        QTest::newRow("half to even below") << LooseValue(2.5) << 2;
        QTest::newRow("half to even above") << LooseValue(3.5) << 4;
        QTest::newRow("negative half") << LooseValue(-2.5) << -2;
        QTest::newRow("nearest") << LooseValue(2.51) << 3;
        QTest::newRow("highest") << LooseValue(2147483647.0) << 2147483647;
        QTest::newRow("too high") << LooseValue(2147483648.0) << fallback;
        QTest::newRow("lowest") << LooseValue(-2147483648.0) << std::numeric_limits<int>::min();
        QTest::newRow("too low") << LooseValue(-2147483649.0) << fallback;
        QTest::newRow("not a number")
            << LooseValue(std::numeric_limits<double>::quiet_NaN()) << fallback;
        QTest::newRow("true") << LooseValue(true) << -1;
        QTest::newRow("false") << LooseValue(false) << 0;
        QTest::newRow("date") << LooseValue(QDate(1900, 1, 1)) << 2;
        QTest::newRow("invalid date") << LooseValue(QDate()) << 0;
    }
    void LongWithFallback() {
        QFETCH(LooseValue, value);
        QFETCH(int, number);
        QCOMPARE(VarToLongDef(value, -77), number);
    }

    void DateWithFallback_data() {
        QTest::addColumn<LooseValue>("value");
        QTest::addColumn<QDate>("date");
        const QDate zero(1899, 12, 30);
        QTest::newRow("empty") << LooseValue() << zero;
        QTest::newRow("null") << LooseValue(Null()) << zero;
        QTest::newRow("invalid date") << LooseValue(QDate()) << zero;
        QTest::newRow("text that is no date") << LooseValue(QStringLiteral("abc")) << zero;
        QTest::newRow("empty text") << LooseValue(QString()) << zero;
        QTest::newRow("date") << LooseValue(theDay) << theDay;
        QTest::newRow("text") << LooseValue(QStringLiteral("05.03.2021")) << theDay;
        QTest::newRow("day number") << LooseValue(44260) << theDay;
        QTest::newRow("day number with a time") << LooseValue(44260.75) << theDay;
        QTest::newRow("before the first date") << LooseValue(-657435.0) << zero;
        QTest::newRow("behind the last date") << LooseValue(2958466) << zero;
    }
    void DateWithFallback() {
        QFETCH(LooseValue, value);
        QFETCH(QDate, date);
        QCOMPARE(VarToDateDef(value, QDate(2000, 1, 1)), date);
    }

    void GeneralConversionsRaise() {
        QCOMPARE(NumberRaised([] { ToText(Null()); }), qint32(TypeMismatch));
        QCOMPARE(NumberRaised([] { ToLong(Null()); }), qint32(TypeMismatch));
        QCOMPARE(NumberRaised([] { ToLong(3e9); }), qint32(ArithmeticOverflow));
        QCOMPARE(NumberRaised([] { ToDate(QStringLiteral("31.02.2021")); }), qint32(TypeMismatch));
    }

    /// It is what Qt has for no date.
    void InvalidDateIsEmpty() {
        const LooseValue none = QDate();
        QVERIFY(IsEmpty(none) && !IsDate(none) && !IsNull(none));
        QVERIFY(IsEmpty(Empty()) && !IsEmpty(Null()) && !IsEmpty(theDay) && IsDate(theDay));
        QCOMPARE(ToText(none), QString());
        QCOMPARE(ToLong(none), 0);
        QCOMPARE(ToDate(none), ZeroDate());
    }

    void ObjectKeys_data() {
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("key");
        QTest::newRow("plain") << 1234.0 << QStringLiteral("_1234");
        QTest::newRow("million") << 1000000.0 << QStringLiteral("_1000000");
        QTest::newRow("zero") << 0.0 << QStringLiteral("_0");
        QTest::newRow("negative") << -7.0 << QStringLiteral("_-7");
        QTest::newRow("long") << 123456789012345.0 << QStringLiteral("_123456789012345");
        QTest::newRow("very long") << 2e15 << QStringLiteral("_2E+15");
        QTest::newRow("fraction") << 0.25 << QStringLiteral("_0.25");
        QTest::newRow("small") << 0.00001 << QStringLiteral("_1E-05");
    }
    void ObjectKeys() {
        QFETCH(double, id);
        QFETCH(QString, key);
        QCOMPARE(ObjectKey(id), key);
    }

    void CheckedArithmeticRaisesNumberSix() {
        const qint32 highest = std::numeric_limits<qint32>::max();
        const qint32 lowest = std::numeric_limits<qint32>::min();
        QCOMPARE(CheckedAdd(highest, 0), highest);
        QCOMPARE(CheckedMultiply(-1, highest), lowest + 1);
        QCOMPARE(CheckedSubtract(lowest, 0), lowest);
        QCOMPARE(NumberRaised([=] { CheckedAdd(highest, 1); }), 6);
        QCOMPARE(NumberRaised([=] { CheckedSubtract(lowest, 1); }), 6);
        QCOMPARE(NumberRaised([=] { CheckedMultiply(highest, 100); }), 6);
    }
};

VK_TEST_CLASS(TestConversions);

#include "TestConversions.moc"
