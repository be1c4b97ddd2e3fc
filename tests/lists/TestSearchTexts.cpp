#include <algorithm>
#include <random>

#include <QTest>

#include "lists/SearchTexts.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

SearchTexts Made(const std::vector<QStringList> &aObjects) {
    SearchTexts texts;
    for (const QStringList &fields : aObjects) {
        texts.Begin();
        for (const QString &field : fields) texts.AddField(field);
    }
    texts.Squeeze();
    return texts;
}

}  // namespace

class TestSearchTexts : public QObject {
    Q_OBJECT

private slots:
    void joinsFieldsInUpperCase() {
        const SearchTexts texts = Made({{QStringLiteral("7701"), QStringLiteral("ООО Ромашка ё")},
                                        {QString(), QStringLiteral("b"), QString()},
                                        {QString()}});
        QCOMPARE(texts.Count(), 3);
        QCOMPARE(texts.Text(0), QStringLiteral("7701|ООО РОМАШКА Ё"));
        QCOMPARE(texts.Text(1), QStringLiteral("|B|"));
        QCOMPARE(texts.Text(2), QString());
    }

    void upperCaseIsThatOfTexts_data() {
        QTest::addColumn<QString>("field");
        QTest::newRow("a letter of two upper-case units") << QStringLiteral("Straße 5 ŉ");
        QTest::newRow("beyond the first plane") << QStringLiteral("𐐨 😀 абв");
        QTest::newRow("signs") << QStringLiteral("«Ёлка» № 5 — ﬁ");
        QTest::newRow("a zero unit") << QStringLiteral("а") + QChar(0) + QStringLiteral("б");
        QTest::newRow("small letters with a far capital") << QStringLiteral("ÿµıſ ꙁ ა");
    }
    void upperCaseIsThatOfTexts() {
        QFETCH(QString, field);
        QCOMPARE(Made({{field}}).Text(0), field.toUpper());
    }

    void repeatedLettersAcrossTexts() {
        const SearchTexts texts = Made({{QStringLiteral("аа")},
                                        {QStringLiteral("ааа")},
                                        {},
                                        {QStringLiteral("аБ")},
                                        {QStringLiteral("баааа")}});
        const auto matching = [&](const char16_t *aFilter) {
            return texts.Matching(QString::fromUtf16(aFilter));
        };
        QCOMPARE(matching(u""), (std::vector<int>{0, 1, 2, 3, 4}));
        QCOMPARE(matching(u"А"), (std::vector<int>{0, 1, 3, 4}));
        QCOMPARE(matching(u"ААА"), (std::vector<int>{1, 4}));
        QCOMPARE(matching(u"АБ"), (std::vector<int>{3}));
        QCOMPARE(matching(u"БА"), (std::vector<int>{4}));
        QCOMPARE(matching(u"ББ"), (std::vector<int>{}));
        QCOMPARE(matching(u"ААААА"), (std::vector<int>{}));
        QVERIFY(SearchTexts().Matching(QStringLiteral("А")).empty());
    }

    void findsInOneTextOnly() {
        const SearchTexts texts = Made({{QStringLiteral("ab"), QStringLiteral("cd")},
                                        {QStringLiteral("ef")},
                                        {QStringLiteral("cde")}});
        QCOMPARE(texts.Matching(QStringLiteral("BC")), std::vector<int>());
        QCOMPARE(texts.Matching(QStringLiteral("B|C")), std::vector<int>{0});
        QCOMPARE(texts.Matching(QStringLiteral("DE")), std::vector<int>{2});
        QCOMPARE(texts.Matching(QStringLiteral("CD")), (std::vector<int>{0, 2}));
        QCOMPARE(texts.Matching(QStringLiteral("F")), std::vector<int>{1});
        QCOMPARE(texts.Matching(QStringLiteral("cd")), std::vector<int>());
        QCOMPARE(texts.Matching(QString()), (std::vector<int>{0, 1, 2}));
        QCOMPARE(texts.Matching(QString(500, u'A')), std::vector<int>());
    }

    void findsNothingInNothing() {
        const SearchTexts texts;
        QCOMPARE(texts.Matching(QString()), std::vector<int>());
        QCOMPARE(texts.Matching(QStringLiteral("A")), std::vector<int>());
    }

    void needleIsTheFilterWithoutTheBlanksAroundIt() {
        QCOMPARE(SearchTexts::NeedleOf(QStringLiteral("  ооо  ромашка ")),
                 QStringLiteral("ООО  РОМАШКА"));
        QCOMPARE(SearchTexts::NeedleOf(QStringLiteral("   ")), QString());
        // A tab and a blank that does not break are no blanks.
        QCOMPARE(SearchTexts::NeedleOf(QStringLiteral(" \tа\u00A0 ")), QStringLiteral("\tА\u00A0"));
    }

    void isClearedWhole() {
        SearchTexts texts = Made({{QStringLiteral("one")}});
        texts.Clear();
        QCOMPARE(texts.Count(), 0);
        QCOMPARE(texts.Matching(QStringLiteral("ONE")), std::vector<int>());
        texts.Begin();
        texts.AddField(QStringLiteral("two"));
        QCOMPARE(texts.Text(0), QStringLiteral("TWO"));
    }

    /// Beside the plain search, over texts of few letters, where half-finds abound.
    void findsWhatThePlainSearchFinds() {
        std::mt19937 random(20260101);
        std::vector<QStringList> objects;
        const QString letters = QStringLiteral("аб1|");
        const auto word = [&](std::mt19937::result_type aLongest) {
            QString text;
            for (auto length = random() % (aLongest + 1); length > 0; --length)
                text += letters[qsizetype(random() % 4)];
            return text;
        };
        objects.reserve(300);
        for (int i = 0; i < 300; ++i) objects.push_back({word(40), word(40), word(100)});
        const SearchTexts texts = Made(objects);
        int finds = 0;
        for (int round = 0; round < 300; ++round) {
            const QString filter = word(9).toUpper();
            std::vector<int> expected;
            for (int i = 0; i < 300; ++i) {
                const QString text = objects[std::size_t(i)].join(u'|').toUpper();
                if (text.contains(filter)) expected.push_back(i);
            }
            QCOMPARE(texts.Matching(filter), expected);
            finds += int(expected.size());
        }
        QVERIFY(finds > 1000);
    }
};

VK_TEST_CLASS(TestSearchTexts);
#include "TestSearchTexts.moc"
