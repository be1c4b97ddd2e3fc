#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "lists/mListView.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// A list with a picture column and two columns of text.
void Prepare(ListView &aList) {
    aList.AddColumn(QStringLiteral("*"), 300);
    aList.AddColumn(QStringLiteral("Название"), 3000);
    aList.AddColumn(QStringLiteral("Код"), 1500);
}

ListRow *Add(ListView &aList, const QString &aKey, const QString &aName,
             const QString &aCode = QString()) {
    ListRow *row = aList.AddRow(aKey);
    row->SetCell(1, aName);
    row->SetCell(2, aCode);
    return row;
}

void Fill(ListView &aList, const QStringList &aNames) {
    int number = 0;
    for (const QString &name : aNames) Add(aList, QStringLiteral("_%1").arg(++number), name);
}

QStringList Names(const ListView &aList) {
    QStringList names;
    for (int i = 0; i < aList.RowCount(); ++i) names << aList.Row(i)->CellText(1);
    return names;
}

QStringList Keys(const ListView &aList) {
    QStringList keys;
    for (int i = 0; i < aList.RowCount(); ++i) keys << aList.Row(i)->Key();
    return keys;
}

void ClickHeader(ListView &aList, int aColumn) {
    const QHeaderView *header = aList.header();
    const QPoint point(header->sectionViewportPosition(aColumn) + header->sectionSize(aColumn) / 2,
                       header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, point);
}

}  // namespace

class TestListViewSorting : public QObject {
    Q_OBJECT

private slots:
    void HeaderClickSortsAndTurns() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("В"), QStringLiteral("А")});
        list.resize(600, 200);
        connect(&list, &ListView::ColumnClick, &list,
                [&](const ListColumn &aColumn) { OnListViewColumnClick(list, aColumn); });
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));

        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б В А"));
        QVERIFY(!list.header()->isSortIndicatorShown());
        ClickHeader(list, 1);
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(1));
        QCOMPARE(list.SortOrder(), 0);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б В"));
        QVERIFY(list.header()->isSortIndicatorShown());
        QCOMPARE(list.header()->sortIndicatorSection(), 1);
        QCOMPARE(list.header()->sortIndicatorOrder(), Qt::AscendingOrder);
        ClickHeader(list, 1);
        QCOMPARE(list.SortOrder(), 1);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("В Б А"));
        QCOMPARE(list.header()->sortIndicatorOrder(), Qt::DescendingOrder);
        ClickHeader(list, 1);
        QCOMPARE(list.SortOrder(), 0);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б В"));
        QCOMPARE(list.header()->sortIndicatorOrder(), Qt::AscendingOrder);
    }

    void ClickOnAnotherHeaderStartsAscending() {
        ListView list;
        Prepare(list);
        Add(list, QStringLiteral("_1"), QStringLiteral("А"), QStringLiteral("2"));
        Add(list, QStringLiteral("_2"), QStringLiteral("Б"), QStringLiteral("1"));
        list.SetSortKey(1);
        list.SetSortOrder(1);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б А"));
        OnListViewColumnClick(list, list.Column(2));
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(2));
        QCOMPARE(list.SortOrder(), 0);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б А"));
    }

    /// An unsorted list that had been sorted by this column: direction and column are left over.
    void ClickOnUnsortedListSortsAscending() {
        ListView list;
        Prepare(list);
        list.SetSortKey(1);
        list.SetSortOrder(1);
        OnListViewColumnClick(list, list.Column(1));
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortOrder(), 0);
    }

    void ClickOnTheFirstColumnSortsByTheMainText() {
        ListView list;
        Prepare(list);
        Add(list, QStringLiteral("_1"), QStringLiteral("А"))->SetText(QStringLiteral("я"));
        Add(list, QStringLiteral("_2"), QStringLiteral("Б"))->SetText(QStringLiteral("ю"));
        OnListViewColumnClick(list, list.Column(0));
        QCOMPARE(list.SortKey(), qint16(0));
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б А"));
    }

    void RestoreAfterARefillSortsTheNewRows() {
        ListView list;
        Prepare(list);
        list.SetSortKey(1);
        list.SetSortOrder(1);
        list.SetSorted(true);
        const StoredSorting stored = StoreListViewSorting(list);
        list.SetSorted(false);
        list.SetSortKey(0);
        list.SetSortOrder(0);
        list.ClearRows();
        Fill(list, {QStringLiteral("Б"), QStringLiteral("В"), QStringLiteral("А")});
        RestoreListViewSorting(list, stored);
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(1));
        QCOMPARE(list.SortOrder(), 1);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("В Б А"));
    }

    void RestoreOfAnUnsortedStateChangesNothing() {
        ListView list;
        Prepare(list);
        list.SetSortKey(2);
        const StoredSorting unsorted = StoreListViewSorting(list);
        RestoreListViewSorting(list, unsorted);
        QVERIFY(!list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(2));

        list.SetSortKey(1);
        list.SetSortOrder(1);
        list.SetSorted(true);
        RestoreListViewSorting(list, unsorted);
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(1));
        QCOMPARE(list.SortOrder(), 1);
    }

    void RestoreOfAnEmptyValueChangesNothing() {
        ListView list;
        Prepare(list);
        list.SetSortKey(1);
        list.SetSorted(true);
        RestoreListViewSorting(list, StoredSorting());
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(1));
        RestoreListViewSorting(list, StoredSorting(5));
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(1));
    }

    void UnselectTakesMarksAndCurrentRowAway() {
        ListView list;
        Prepare(list);
        list.SetMultiSelect(true);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("В"), QStringLiteral("А")});
        list.Row(0)->SetSelected(true);
        list.SetSelectedItem(list.Row(2));
        QCOMPARE(list.SelectedRows().size(), std::size_t(2));
        UnselectAllListItems(list);
        QVERIFY(!list.SelectedItem());
        QVERIFY(list.SelectedRows().empty());
        for (int i = 0; i < 3; ++i) QVERIFY(!list.Row(i)->IsSelected());
    }

    void OrderIsRussianWithoutRegardToCase() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("яблоко"), QStringLiteral("Ёлка"), QStringLiteral("Жук"),
                    QStringLiteral("елка 2"), QStringLiteral("ЕЛЬ"), QStringLiteral("арбуз"),
                    QStringLiteral("Банк")});
        list.SetSortKey(1);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u','), QStringLiteral("арбуз,Банк,Ёлка,елка 2,ЕЛЬ,Жук,яблоко"));
    }

    void NumbersAndDatesSortAsTexts() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("10"), QStringLiteral("9"), QStringLiteral("100"),
                    QStringLiteral("02.01.2024"), QStringLiteral("01.02.2025")});
        list.SetSortKey(1);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("01.02.2025 02.01.2024 10 100 9"));
    }

    void EqualRowsKeepTheirOrderBothWays() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("а"), QStringLiteral("б"),
                    QStringLiteral("А"), QStringLiteral("Б")});
        list.SetSortKey(1);
        list.SetSorted(true);
        QCOMPARE(Keys(list).join(u' '), QStringLiteral("_2 _4 _1 _3 _5"));
        list.SetSortOrder(1);
        QCOMPARE(Keys(list).join(u' '), QStringLiteral("_1 _3 _5 _2 _4"));
        list.SetSortOrder(0);
        QCOMPARE(Keys(list).join(u' '), QStringLiteral("_2 _4 _1 _3 _5"));
        list.SetSortKey(2);  // all equal: nothing moves
        QCOMPARE(Keys(list).join(u' '), QStringLiteral("_2 _4 _1 _3 _5"));
    }

    void RowsAddedLandWhereTheOrderPutsThem() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("Г"), QStringLiteral("А")});
        list.SetSortKey(1);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б Г"));
        Add(list, QStringLiteral("_9"), QStringLiteral("В"));
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б В Г"));
        Add(list, QStringLiteral("_10"), QStringLiteral("0"));
        QCOMPARE(Names(list).join(u' '), QStringLiteral("0 А Б В Г"));
        QCOMPARE(list.PositionOf(list.RowByKey(QStringLiteral("_9"))), 3);
    }

    void ChangedTextMovesTheRow() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("А"), QStringLiteral("Б"), QStringLiteral("В")});
        list.SetSortKey(1);
        list.SetSorted(true);
        list.Row(0)->SetCellText(1, QStringLiteral("Я"));
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б В Я"));
    }

    void SwitchingOffLeavesTheRowsAsTheyStand() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("В"), QStringLiteral("А")});
        list.SetSortKey(1);
        list.SetSorted(true);
        list.SetSorted(false);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б В"));
        Add(list, QString(), QStringLiteral("0"));
        QCOMPARE(Names(list).join(u' '), QStringLiteral("А Б В 0"));
    }

    void MarksAndCurrentRowSurviveSorting() {
        ListView list;
        Prepare(list);
        list.SetMultiSelect(true);
        list.SetCheckBoxes(true);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("В"), QStringLiteral("А")});
        ListRow *b = list.Row(0);
        ListRow *c = list.Row(1);
        b->SetChecked(true);
        c->SetSelected(true);
        list.SetSelectedItem(b);
        list.SetSortKey(1);
        list.SetSortOrder(1);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("В Б А"));
        QCOMPARE(list.SelectedItem(), b);
        QVERIFY(b->IsChecked());
        QVERIFY(!c->IsChecked());
        QCOMPARE(list.SelectedRows(), (std::vector<ListRow *>{c, b}));
        QCOMPARE(list.Row(1), b);
        QCOMPARE(b->Key(), QStringLiteral("_1"));
    }

    void ManyRowsSortRightBothWays() {
        ListView list;
        Prepare(list);
        for (int i = 0; i < 2000; ++i)
            Add(list, QString(),
                QStringLiteral("%1").arg((i * 7919) % 1000, 4, 10, QLatin1Char('0')));
        list.SetSortKey(1);
        list.SetSorted(true);
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(list.Row(i)->CellText(1),
                     QStringLiteral("%1").arg(i / 2, 4, 10, QLatin1Char('0')));
        list.SetSortOrder(1);
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(list.Row(i)->CellText(1),
                     QStringLiteral("%1").arg(999 - i / 2, 4, 10, QLatin1Char('0')));
    }

    void SortKeyOutsideTheColumnsMovesNothing() {
        ListView list;
        Prepare(list);
        Fill(list, {QStringLiteral("Б"), QStringLiteral("А")});
        list.SetSortKey(17);
        list.SetSorted(true);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б А"));
        list.SetSortKey(-1);
        QCOMPARE(Names(list).join(u' '), QStringLiteral("Б А"));
    }
};

VK_TEST_CLASS(TestListViewSorting);

#include "TestListViewSorting.moc"
