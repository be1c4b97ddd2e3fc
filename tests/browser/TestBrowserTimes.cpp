#include <QHeaderView>
#include <QTest>

#include "foundation/Clock.h"
#include "OpenBrowser.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// What a row of the periods shows: "text:picture" of the first cell, and "position:picture" of
/// every other cell that has one.
QString Shown(const ListRow &aRow) {
    QString shown = aRow.CellText(1) + u':' + aRow.CellIcon(1);
    for (int cell = 2; cell <= aRow.CellCount(); ++cell) {
        if (!aRow.CellText(cell).isEmpty()) shown += QStringLiteral(" text!");
        if (!aRow.CellIcon(cell).isEmpty())
            shown += QStringLiteral(" %1:%2").arg(cell).arg(aRow.CellIcon(cell));
    }
    return shown;
}

QStringList Shown(const ListView &aList) {
    QStringList rows;
    for (int i = 0; i < aList.RowCount(); ++i) rows << Shown(*aList.Row(i));
    return rows;
}

/// The eight years from 2026 down, with pictures in some of them.
QStringList Years(const std::map<int, QString> &aPictures = {}) {
    QStringList rows;
    for (int year = 2026; year >= 2019; --year) {
        const auto found = aPictures.find(year);
        rows << QStringLiteral("%1:year").arg(year) +
                    (found == aPictures.end() ? QString() : u' ' + found->second);
    }
    return rows;
}

const QString theOther = QStringLiteral("Прочее:otherdocs 2:galka_green");

}  // namespace

Q_DECLARE_METATYPE(Rows)

class TestBrowserTimes : public QObject {
    Q_OBJECT

private slots:
    void init() {
        EmptyOffice();
        AddForm(1, QStringLiteral("1151001"), QStringLiteral("НДС"));
        SetTodayForTests(QDate(2026, 11, 21));
    }
    void cleanup() { SetTodayForTests(QDate()); }

    void Columns_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("alignment");
        const auto row = [](int aPosition, const char *aKey, const char *aCaption, int aWidth,
                            Qt::AlignmentFlag aAlignment) {
            QTest::newRow(qPrintable(QString::number(aPosition)))
                << aPosition << QString::fromUtf8(aKey) << QString::fromUtf8(aCaption) << aWidth
                << int(aAlignment);
        };
        row(0, "", "*", 15, Qt::AlignLeft);
        row(1, "year", "Год", 1080, Qt::AlignRight);
        row(2, "m1", "Янв", 540, Qt::AlignHCenter);
        row(3, "m2", "Фев", 540, Qt::AlignHCenter);
        row(4, "m3", "Мар", 540, Qt::AlignHCenter);
        row(5, "q1", "1 кв", 540, Qt::AlignHCenter);
        row(6, "m4", "Апр", 540, Qt::AlignHCenter);
        row(7, "m5", "Май", 540, Qt::AlignHCenter);
        row(8, "m6", "Июн", 540, Qt::AlignHCenter);
        row(9, "q2", "2 кв", 540, Qt::AlignHCenter);
        row(10, "m7", "Июл", 540, Qt::AlignHCenter);
        row(11, "m8", "Авг", 540, Qt::AlignHCenter);
        row(12, "m9", "Сен", 540, Qt::AlignHCenter);
        row(13, "q3", "3 кв", 540, Qt::AlignHCenter);
        row(14, "m10", "Окт", 540, Qt::AlignHCenter);
        row(15, "m11", "Ноя", 540, Qt::AlignHCenter);
        row(16, "m12", "Дек", 540, Qt::AlignHCenter);
        row(17, "q4", "4 кв", 540, Qt::AlignHCenter);
        row(18, "etc", "Иное", 600, Qt::AlignHCenter);
        row(19, "hyear", "П/г", 600, Qt::AlignHCenter);
        row(20, "fyear", "Год", 600, Qt::AlignHCenter);
        row(21, "doc", "Док", 600, Qt::AlignHCenter);
        row(22, "lett", "Запр", 600, Qt::AlignHCenter);
    }
    void Columns() {
        QFETCH(int, position);
        QFETCH(QString, key);
        QFETCH(QString, caption);
        QFETCH(int, width);
        QFETCH(int, alignment);
        const OpenBrowser browser;
        QCOMPARE(browser.Times.ColumnCount(), 23);
        const ListColumn column = browser.Times.Column(position);
        QCOMPARE(column.Key, key);
        QCOMPARE(column.Caption, caption);
        QCOMPARE(column.Width, width);
        QCOMPARE(int(column.Alignment), alignment);
    }

    void OpeningTwiceMakesAllAnew() {
        AddForm(31, QStringLiteral("1"), QStringLiteral("Прежняя"));
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("пр"));
        EmptyOffice();
        AddForm(32, QStringLiteral("2"), QStringLiteral("Новая"));
        browser.Form.Prepare();
        QCOMPARE(browser.Times.ColumnCount(), 23);
        QCOMPARE(browser.Filter.text(), QString());
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_32")});
    }

    void PicturesByPeriodCode_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("picture");
        const auto row = [](int aCode, const char *aPicture) {
            QTest::newRow(qPrintable(QString::number(aCode)))
                << aCode << QString::fromLatin1(aPicture);
        };
        row(1, "2:period");
        row(2, "3:period");
        row(3, "4:period");
        row(4, "6:period");
        row(5, "7:period");
        row(6, "8:period");
        row(7, "10:period");
        row(8, "11:period");
        row(9, "12:period");
        row(10, "14:period");
        row(11, "15:period");
        row(12, "16:period");
        row(13, "5:quartal");
        row(14, "9:quartal");
        row(15, "13:quartal");
        row(16, "17:quartal");
        row(17, "18:period_other");
        row(19, "");  // the half year and the full year have columns that stay blank
        row(20, "");
        row(21, "22:period_letter");
        row(22, "");
        row(23, "");
        row(24, "21:perreg");
        for (int code = 25; code <= 30; ++code) row(code, "");
        row(0, "");
        row(31, "");
        row(-5, "");
    }
    void PicturesByPeriodCode() {
        QFETCH(int, code);
        QFETCH(QString, picture);
        MemoryOffice::The().Times[1] = {TimeRow(2024, code)};
        OpenBrowser browser;
        browser.ClickForm(1);
        QCOMPARE(Shown(browser.Times), picture.isEmpty() ? Years() : Years({{2024, picture}}));
        for (int i = 0; i < browser.Times.RowCount(); ++i)
            QCOMPARE(browser.Times.Row(i)->CellCount(), 22);
    }

    void DrawnRows_data() {
        QTest::addColumn<Rows>("times");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("no rows") << Rows{} << Years();
        QTest::newRow("several years")
            << Rows{TimeRow(2026, 1), TimeRow(2019, 16), TimeRow(2023, 24), TimeRow(2023, 21),
                    TimeRow(2023, 24)}
            << Years({{2026, QStringLiteral("2:period")},
                      {2019, QStringLiteral("17:quartal")},
                      {2023, QStringLiteral("21:perreg 22:period_letter")}});
        QTest::newRow("too early and too late")
            << Rows{TimeRow(1990, 5), TimeRow(2018, 5), TimeRow(2027, 5)} << Years();
        QTest::newRow("far out of range")
            << Rows{TimeRow(2147483647, 5), TimeRow(qint32(-2147483647 - 1), 5),
                    TimeRow(2026, 2147483647)}
            << Years();
        QTest::newRow("nulls") << Rows{TimeRow(Null(), 5), TimeRow(2026, Null()),
                                       TimeRow(Null(), Null())}
                               << Years();
        QTest::newRow("texts and fractions")
            << Rows{TimeRow(QStringLiteral("2025"), QStringLiteral("3")), TimeRow(2024.4, 4.6),
                    TimeRow(QStringLiteral("год"), 5)}
            << Years({{2025, QStringLiteral("4:period")}, {2024, QStringLiteral("7:period")}});
        QTest::newRow("other documents alone")
            << Rows{TimeRow(2026, 18)} << (QStringList{theOther} + Years());
        QTest::newRow("other documents of a far year")
            << Rows{TimeRow(1812, 18)} << (QStringList{theOther} + Years());
        QTest::newRow("other documents of no year")
            << Rows{TimeRow(Null(), 18)} << (QStringList{theOther} + Years());
        QTest::newRow("other documents and a period")
            << Rows{TimeRow(2026, 18), TimeRow(2020, 3)} << QStringList{theOther};
        QTest::newRow("a period and other documents")
            << Rows{TimeRow(2020, 3), TimeRow(2026, 18)} << QStringList{theOther};
        QTest::newRow("other documents and a code without a column")
            << Rows{TimeRow(2020, 22), TimeRow(2026, 18)} << QStringList{theOther};
        QTest::newRow("other documents, and the last code in the oldest year")
            << Rows{TimeRow(2019, 30), TimeRow(2026, 18)} << QStringList{theOther};
        QTest::newRow("other documents, and the first code in the newest year")
            << Rows{TimeRow(2026, 1), TimeRow(2026, 18)} << QStringList{theOther};
        QTest::newRow("other documents and a code without a picture")
            << Rows{TimeRow(2019, 19), TimeRow(2026, 18)} << QStringList{theOther};
        QTest::newRow("other documents and a period out of sight")
            << Rows{TimeRow(2018, 3), TimeRow(2026, 18), TimeRow(2026, 31), TimeRow(2026, 0)}
            << (QStringList{theOther} + Years());
        QTest::newRow("half year and year")
            << Rows{TimeRow(2026, 19), TimeRow(2025, 20)} << Years();
    }
    void DrawnRows() {
        QFETCH(Rows, times);
        QFETCH(QStringList, shown);
        MemoryOffice::The().Times[1] = times;
        OpenBrowser browser;
        browser.ClickForm(1);
        QCOMPARE(Shown(browser.Times), shown);
        for (int i = 0; i < browser.Times.RowCount(); ++i) {
            QCOMPARE(browser.Times.Row(i)->Key(), QString());
            QCOMPARE(browser.Times.Row(i)->Text(), QString());
            QCOMPARE(browser.Times.Row(i)->Icon(), QString());
        }
    }

    void YearsMoveOnOnNewYearsDay_data() {
        QTest::addColumn<QDate>("today");
        QTest::addColumn<int>("newest");
        QTest::newRow("eve") << QDate(2023, 12, 31) << 2023;
        QTest::newRow("new year") << QDate(2024, 1, 1) << 2024;
        QTest::newRow("leap day") << QDate(2024, 2, 29) << 2024;
        QTest::newRow("leap year's end") << QDate(2024, 12, 31) << 2024;
        QTest::newRow("next new year") << QDate(2025, 1, 1) << 2025;
    }
    void YearsMoveOnOnNewYearsDay() {
        QFETCH(QDate, today);
        QFETCH(int, newest);
        SetTodayForTests(today);
        for (int year = 2010; year <= 2030; ++year)
            MemoryOffice::The().Times[1].push_back(TimeRow(year, 13));
        OpenBrowser browser;
        browser.ClickForm(1);
        QStringList expected;
        for (int year = newest; year > newest - 8; --year)
            expected << QStringLiteral("%1:year 5:quartal").arg(year);
        QCOMPARE(Shown(browser.Times), expected);
    }

    void AnAbsentRecordsetDrawsNothing() {
        MemoryOffice::The().TimesAbsent = true;
        MemoryOffice::The().Categories[1] = {CategoryRow(6, 1, 0, 0)};
        OpenBrowser browser;
        browser.ClickForm(1);
        QCOMPARE(browser.Times.RowCount(), 0);
        QVERIFY(!browser.Cats.Text().isEmpty());
    }

    /// The picture of a quarter stands in the middle of its narrow column.
    void PicturesAreCentred() {
        MemoryOffice::The().Times[1] = {TimeRow(2026, 13)};
        OpenBrowser browser;
        browser.ClickForm(1);
        browser.Times.setFocusPolicy(Qt::NoFocus);
        const QImage image = browser.Times.viewport()->grab().toImage();
        const QRect row = browser.Times.RowRect(browser.Times.Row(0));
        const int left = browser.Times.header()->sectionViewportPosition(5);
        const int width = browser.Times.header()->sectionSize(5);
        const QRgb ground = image.pixel(left + 1, row.center().y());
        int first = -1;
        int last = -1;
        for (int x = left + 1; x < left + width - 1; ++x) {
            for (int y = row.top() + 1; y < row.bottom(); ++y) {
                if (image.pixel(x, y) == ground) continue;
                if (first < 0) first = x;
                last = x;
            }
        }
        QVERIFY(first > 0);
        const double middle = (first + last) / 2.0;
        QVERIFY2(
            std::abs(middle - (left + (width - 1) / 2.0)) <= 2.0,
            qPrintable(
                QStringLiteral("%1 to %2 in %3, %4").arg(first).arg(last).arg(left).arg(width)));
    }
};

VK_TEST_CLASS(TestBrowserTimes);
#include "TestBrowserTimes.moc"
