#include <algorithm>
#include <limits>

#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "queryfile/StringAccumulator.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

class TestStringAccumulator : public QObject {
    Q_OBJECT

private slots:
    void BeginsWithNothing() {
        const StringAccumulator text;
        QCOMPARE(text.ALength(), 0);
        QCOMPARE(text.Capacity(), 0);
        QCOMPARE(text.CurrentString(), QString());
    }

    void EmptyTextAddsNothing() {
        StringAccumulator text;
        text.Add(QString());
        QCOMPARE(text.Capacity(), 0);
        text.AddLine(QString());
        QCOMPARE(text.CurrentString(), QStringLiteral("\r\n"));
        QCOMPARE(text.Capacity(), 1024);
    }

    void CapacityDoubles_data() {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::addColumn<int>("capacity");
        QTest::newRow("one") << 1 << 0 << 1024;
        QTest::newRow("just full") << 1024 << 0 << 1024;
        QTest::newRow("one over") << 1024 << 1 << 2048;
        QTest::newRow("1000 and 100") << 1000 << 100 << 2048;
        QTest::newRow("at once beyond") << 5000 << 0 << 8192;
        QTest::newRow("beyond twice") << 1000 << 3097 << 8192;
    }
    void CapacityDoubles() {
        QFETCH(int, first);
        QFETCH(int, second);
        QFETCH(int, capacity);
        StringAccumulator text;
        const QString head(first, u'ж');
        const QString tail(second, u'z');
        text.Add(head);
        text.Add(tail);
        QCOMPARE(text.ALength(), first + second);
        QCOMPARE(text.Capacity(), capacity);
        QCOMPARE(text.CurrentString(), head + tail);
    }

    void AddLineEndsInCrLf() {
        StringAccumulator text;
        text.AddLine(u"a ");
        text.AddLine(u"b");
        QCOMPARE(text.CurrentString(), QStringLiteral("a \r\nb\r\n"));
        QCOMPARE(text.ALength(), 7);
    }

    void ClearGivesTheMemoryBack() {
        StringAccumulator text;
        text.Add(QString(3000, u'x'));
        QCOMPARE(text.Capacity(), 4096);
        text.Clear();
        QCOMPARE(text.ALength(), 0);
        QCOMPARE(text.Capacity(), 0);
        text.Add(u"y");
        QCOMPARE(text.Capacity(), 1024);
        QCOMPARE(text.CurrentString(), QStringLiteral("y"));
    }

    void TrimLength_data() {
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("left");
        QTest::newRow("negative") << -1 << QStringLiteral("abcd");
        QTest::newRow("nought") << 0 << QString();
        QTest::newRow("shorter") << 3 << QStringLiteral("abc");
        QTest::newRow("equal") << 4 << QStringLiteral("abcd");
        QTest::newRow("longer") << 5 << QStringLiteral("abcd");
    }
    void TrimLength() {
        QFETCH(int, length);
        QFETCH(QString, left);
        StringAccumulator text;
        text.Add(u"abcd");
        text.TrimLength(length);
        QCOMPARE(text.CurrentString(), left);
        QCOMPARE(text.Capacity(), 1024);
        text.Add(u"!");
        QCOMPARE(text.CurrentString(), left + u'!');
    }

    void Delete_data() {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("left");
        QTest::newRow("2, 3 cuts") << 2 << 3 << QStringLiteral("a");
        QTest::newRow("1, 3 moves") << 1 << 3 << QStringLiteral("d");
        QTest::newRow("1, 1") << 1 << 1 << QStringLiteral("bcd");
        QTest::newRow("2, 2") << 2 << 2 << QStringLiteral("ad");
        QTest::newRow("1, 4 all") << 1 << 4 << QString();
        QTest::newRow("1, 100 all") << 1 << 100 << QString();
        QTest::newRow("4, 1 last") << 4 << 1 << QStringLiteral("abc");
        QTest::newRow("start 0") << 0 << 2 << QStringLiteral("abcd");
        QTest::newRow("start 5") << 5 << 1 << QStringLiteral("abcd");
        QTest::newRow("count 0") << 2 << 0 << QStringLiteral("abcd");
        QTest::newRow("count -1") << 2 << -1 << QStringLiteral("abcd");
    }
    void Delete() {
        QFETCH(int, start);
        QFETCH(int, count);
        QFETCH(QString, left);
        StringAccumulator text;
        text.Add(u"abcd");
        text.Delete(start, count);
        QCOMPARE(text.CurrentString(), left);
        QCOMPARE(text.ALength(), qint32(left.size()));
    }

    void DeleteOfNothing() {
        StringAccumulator text;
        text.Delete(1, 1);
        QCOMPARE(text.ALength(), 0);
    }

    void DeleteBeyondTheRangeOfNumbersIsRaised() {
        StringAccumulator text;
        text.Add(u"abcd");
        QVERIFY_THROWS_EXCEPTION(Failure, text.Delete(2, std::numeric_limits<qint32>::max()));
        QCOMPARE(text.CurrentString(), QStringLiteral("abcd"));
    }

    void TextIsPutInPlace() {
        StringAccumulator text;
        text.Add(QString(1023, u'a'));
        char16_t *room = text.Room(3);
        QCOMPARE(text.Capacity(), 2048);
        QCOMPARE(text.ALength(), 1023);
        std::copy_n(u"bcd", 3, room);
        text.AddRoom(2);
        QCOMPARE(text.CurrentString(), QString(1023, u'a') + QStringLiteral("bc"));
        text.Add(u"!");
        QCOMPARE(text.CurrentString().right(3), QStringLiteral("bc!"));
    }

    void RoomBeyondTheRangeOfNumbersIsRaised() {
        StringAccumulator text;
        text.Add(u"abcd");
        QVERIFY_THROWS_EXCEPTION(Failure, text.Room(std::numeric_limits<qint32>::max()));
        QCOMPARE(text.CurrentString(), QStringLiteral("abcd"));
    }

    void TakenTextIsTheUsedPart() {
        StringAccumulator text;
        text.Add(u"abcd");
        text.TrimLength(2);
        QCOMPARE(std::move(text).CurrentString(), QStringLiteral("ab"));
    }
};

VK_TEST_CLASS(TestStringAccumulator);

#include "TestStringAccumulator.moc"
