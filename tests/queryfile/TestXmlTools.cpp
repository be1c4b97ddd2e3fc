#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/RussDate.h"
#include "queryfile/mVkXmlToolsErr.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// An element with one attribute "a" of that value.
struct Sample {
    explicit Sample(const QString &aValue)
        : Good(Document.LoadBytes(
              (QStringLiteral("<n a=\"") + aValue + QStringLiteral("\"/>")).toUtf8())),
          Node(Document.Node().SelectSingleNode("n")) {}
    XmlDocument Document;
    bool Good;
    XmlNode Node;
};

QString Kind(const LooseValue &aValue) {
    if (IsEmpty(aValue)) return QStringLiteral("empty");
    if (IsNull(aValue)) return QStringLiteral("null");
    return ToText(aValue);
}

}  // namespace

Q_DECLARE_METATYPE(Vk_DocQuery::LooseValue)

class TestXmlTools : public QObject {
    Q_OBJECT

private slots:
    void Strings() {
        const Sample sample(QStringLiteral("a&amp;b&#1046; ж"));
        QVERIFY(sample.Good);
        QCOMPARE(XmlGetStringAttributeDef(sample.Node, "a", QStringLiteral("d")),
                 QStringLiteral("a&bЖ ж"));
        QCOMPARE(XmlGetStringAttributeDef(sample.Node, "A", QStringLiteral("d")),
                 QStringLiteral("d"));
        QCOMPARE(XmlGetStringAttributeDef(XmlNode(), "a", QStringLiteral("d")),
                 QStringLiteral("d"));
        QCOMPARE(XmlGetStringAttributeDef(sample.Document.Node(), "a", QStringLiteral("d")),
                 QStringLiteral("d"));
        const Sample empty((QString()));
        QCOMPARE(XmlGetStringAttributeDef(empty.Node, "a", QStringLiteral("d")), QString());
    }

    /// Only at the start of a file is it a byte order mark.
    void MarkInAValue() {
        const Sample sample(QStringLiteral("\uFEFF\uFEFFa\uFEFF"));
        QCOMPARE(XmlGetStringAttributeDef(sample.Node, "a", QString()),
                 QStringLiteral("\uFEFF\uFEFFa\uFEFF"));
        const Sample number(QStringLiteral("\uFEFF12"));
        QCOMPARE(XmlGetLongAttributeDef(number.Node, "a", 99), 99);
    }

    void FieldsOfDates_data() {
        QTest::addColumn<LooseValue>("field");
        QTest::addColumn<QString>("date");
        const auto row = [](const char *aName, const LooseValue &aField, const char *aDate) {
            QTest::newRow(aName) << aField << QString::fromLatin1(aDate);
        };
        row("date", QDate(2024, 3, 5), "05.03.2024");
        row("invalid date", QDate(), "empty");
        row("empty", Empty(), "empty");
        row("null", Null(), "null");
        row("text", QStringLiteral(" 5.3.24"), "05.03.2024");
        row("text of a day too many", QStringLiteral("31.2.2021"), "03.03.2021");
        row("empty text", QString(), "empty");
        row("masked text", QStringLiteral("  .  ."), "empty");
        row("text that is no date", QStringLiteral("вчера"), "empty");
        row("text of no day", QStringLiteral("0.3.2024"), "empty");
        row("day number", 44260, "44260");
    }
    void FieldsOfDates() {
        QFETCH(LooseValue, field);
        QFETCH(QString, date);
        QCOMPARE(Kind(DateOfField(field)), date);
    }

    void Longs_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        const auto row = [](const char16_t *aText, int aNumber) {
            const QString text = QString::fromUtf16(aText);
            QTest::newRow(qPrintable(text)) << text << aNumber;
        };
        row(u"12", 12);
        row(u"-3", -3);
        row(u"+3", 3);
        row(u" 12 ", 12);
        row(u"007", 7);
        row(u"2147483647", 2147483647);
        row(u"-2147483648", -2147483647 - 1);
        row(u"2147483648", 99);
        row(u"99999999999", 99);
        row(u"2.5", 2);
        row(u"3.5", 4);
        row(u"1E2", 100);
        row(u"1E99", 99);
        row(u"", 99);
        row(u" ", 99);
        row(u"abc", 99);
        row(u"12x", 99);
        row(u"0x10", 99);
        row(u"1 000", 99);
        row(u"nan", 99);
        row(u"inf", 99);
    }
    void Longs() {
        QFETCH(QString, text);
        QFETCH(int, number);
        const Sample sample(text);
        QCOMPARE(XmlGetLongAttributeDef(sample.Node, "a", 99), number);
        QCOMPARE(XmlGetLongAttributeDef(sample.Node, "b", 98), 98);
    }

    void Booleans_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");  // -1: the default
        for (const char16_t *text : {u"1", u"yes", u"true", u" YES ", u"True", u"yEs "})
            QTest::newRow(qPrintable(QString::fromUtf16(text))) << QString::fromUtf16(text) << 1;
        for (const char16_t *text : {u"0", u"no", u"false", u" NO", u"FALSE", u" 0 "})
            QTest::newRow(qPrintable(QString::fromUtf16(text))) << QString::fromUtf16(text) << 0;
        for (const char16_t *text : {u"2", u"", u"on", u"-1", u"да", u"y", u"1.0"})
            QTest::newRow(qPrintable(QString::fromUtf16(text))) << QString::fromUtf16(text) << -1;
    }
    void Booleans() {
        QFETCH(QString, text);
        QFETCH(int, expected);
        const Sample sample(text);
        QCOMPARE(XmlGetBooleanAttributeDef(sample.Node, "a", true), expected != 0);
        QCOMPARE(XmlGetBooleanAttributeDef(sample.Node, "a", false), expected == 1);
        QCOMPARE(XmlGetBooleanAttributeDef(sample.Node, "b", true), true);
        QCOMPARE(XmlGetBooleanAttributeDef(sample.Node, "b", false), false);
    }

    void RussianDates_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");  // "D": the default
        QTest::addColumn<bool>("failed");
        const auto row = [](const char16_t *aText, const char *aResult, bool aFailed) {
            const QString text = QString::fromUtf16(aText);
            QTest::newRow(qPrintable(QStringLiteral("\"%1\"").arg(text)))
                << text << QString::fromLatin1(aResult) << aFailed;
        };
        row(u"1.2.99", "01.02.1999", false);
        row(u"1.2.29", "01.02.2029", false);
        row(u"1.2.30", "01.02.1930", false);
        row(u"1.2.0", "01.02.2000", false);
        row(u"1.2.-5", "01.02.1995", false);
        row(u"1.2.100", "01.02.0100", false);
        row(u" 05.03.2024 ", "05.03.2024", false);
        row(u"5. 3 .2024", "05.03.2024", false);
        row(u"31.2.2021", "03.03.2021", false);
        row(u"32.1.2021", "01.02.2021", false);
        row(u"1.13.2020", "01.01.2021", false);
        row(u"31.12.9999", "31.12.9999", false);
        row(u"29.2.2024", "29.02.2024", false);
        row(u"29.2.2023", "01.03.2023", false);
        row(u"0.5.2020", "D", false);
        row(u"5.0.2020", "D", false);
        row(u"-1.5.2020", "D", false);
        row(u"0.5.99999", "D", false);
        row(u"", "D", false);
        row(u"   ", "D", false);
        row(u".  .", "D", false);
        row(u".  .   0", "D", false);
        row(u".  . 0", "D", false);
        row(u" .  . ", "D", false);
        row(u"5/3/2020", "D", true);
        row(u"5.3", "D", true);
        row(u"..", "D", true);
        row(u"5.3.", "D", true);
        row(u"a.3.2020", "D", true);
        row(u"5.3.2020 г.", "D", true);
        row(u"1.1.40000", "D", true);
        row(u"40000.1.2020", "D", true);
        row(u"1.1.10000", "D", true);
        row(u"1.1.-1950", "D", true);
        row(u"1.1.99999999999", "D", true);
        row(u"32.12.9999", "D", true);
    }
    void RussianDates() {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QFETCH(bool, failed);
        const LooseValue defaults[] = {Null(), Empty(), QDate(1950, 1, 1)};
        for (const LooseValue &standard : defaults) {
            bool flag = !failed;
            const LooseValue date = RussStringToDate(text, standard, flag);
            QCOMPARE(Kind(date), result == QStringLiteral("D") ? Kind(standard) : result);
            QCOMPARE(flag, failed);
        }
    }

    void DateAttributes_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        QTest::newRow("date") << QStringLiteral("01.02.2023") << QStringLiteral("01.02.2023");
        QTest::newRow("empty") << QString() << QStringLiteral("null");
        QTest::newRow("blank") << QStringLiteral(" ") << QStringLiteral("D");
        QTest::newRow("unreadable") << QStringLiteral("5/3/2020") << QStringLiteral("D");
        QTest::newRow("day nought") << QStringLiteral("0.3.2020") << QStringLiteral("D");
    }
    void DateAttributes() {
        QFETCH(QString, text);
        QFETCH(QString, result);
        const Sample sample(text);
        const LooseValue defaults[] = {Null(), Empty(), QDate(1950, 1, 1)};
        for (const LooseValue &standard : defaults) {
            QCOMPARE(Kind(XmlGetRussDateAttributeDef(sample.Node, "a", standard)),
                     result == QStringLiteral("D") ? Kind(standard) : result);
            QCOMPARE(Kind(XmlGetRussDateAttributeDef(sample.Node, "b", standard)), Kind(standard));
        }
    }

    void ParseErrorIsTheFirstOne() {
        XmlDocument document;
        QVERIFY(!document.LoadBytes("<a>\r\n  <b>\r\n  </c>\r\n</a>\r\n<d/>"));
        QVERIFY(!document.Node());
        QCOMPARE(XmlExplainParseError(document),
                 QStringLiteral("   Reason: Opening and ending tag mismatch: b line 2 and c\r\n"
                                "   Source: </c>\r\n"
                                "   Line: 3"));
        QVERIFY(document.LoadBytes("<a/>"));
        QCOMPARE(XmlExplainParseError(document),
                 QStringLiteral("   Reason: \r\n   Source: \r\n   Line: 0"));
    }

    void ChildrenAreFoundByExactName() {
        XmlDocument document;
        QVERIFY(document.LoadBytes("<r xmlns:p='u'><p:x/><X/>t<x n='1'/><y/><x n='2'/></r>"));
        QVERIFY(!document.Node().SelectSingleNode("x"));
        const XmlNode root = document.Node().SelectSingleNode("r");
        QVERIFY(root.IsElement() && !root.IsDocument());
        QVERIFY(document.Node().IsDocument() && !document.Node().IsElement());
        const XmlNode first = root.SelectSingleNode("x");
        QCOMPARE(XmlGetLongAttributeDef(first, "n", 0), 1);
        QCOMPARE(XmlGetLongAttributeDef(first.NextNode("x"), "n", 0), 2);
        QVERIFY(!first.NextNode("x").NextNode("x"));
        QVERIFY(!XmlNode().SelectSingleNode("x"));
    }

    /// An attribute with a prefix is another one, whether the prefix is declared or not.
    void AttributesOfANamespace_data() {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<QString>("read");
        QTest::newRow("declared") << QByteArray("<r xmlns:p='u' p:n='1'/>")
                                  << QStringLiteral("none");
        QTest::newRow("not declared") << QByteArray("<r p:n='1'/>") << QStringLiteral("none");
        QTest::newRow("of XML") << QByteArray("<r xml:n='1'/>") << QStringLiteral("none");
        QTest::newRow("in front") << QByteArray("<r xmlns:p='u' p:n='1' n='2'/>")
                                  << QStringLiteral("2");
        QTest::newRow("behind") << QByteArray("<r xmlns:p='u' n='2' p:n='1'/>")
                                << QStringLiteral("2");
    }
    void AttributesOfANamespace() {
        QFETCH(QByteArray, element);
        QFETCH(QString, read);
        XmlDocument document;
        QVERIFY(document.LoadBytes(element));
        const XmlNode root = document.Node().SelectSingleNode("r");
        QCOMPARE(XmlGetStringAttributeDef(root, "n", QStringLiteral("none")), read);
        QCOMPARE(XmlGetStringAttributeDef(root, "p:n", QStringLiteral("none")),
                 QStringLiteral("none"));
    }
};

VK_TEST_CLASS(TestXmlTools);

#include "TestXmlTools.moc"
