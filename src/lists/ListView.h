#pragma once

#include <memory>
#include <vector>

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QElapsedTimer>
#include <QHeaderView>

#include "lists/ListRow.h"
#include "look/ImageList.h"

namespace Vk_DocQuery {

class ListViewHeader;
class ListViewRows;

/// A column of a ListView. Column 0 is the first and shows the row's main text, picture and check
/// mark; the columns behind it show the row's cells.
struct ListColumn {
    int Index = 1;  ///< counted from 1, as headers count
    QString Caption;
    int Width = 0;  ///< twips; 0 hides the column
    QString Key;    ///< empty: none
    Qt::Alignment Alignment = Qt::AlignLeft;
};

/// The list of all windows: rows with a key, a tag, a picture, cells, a check mark and a selected
/// mark; a current row; sorting by a column; pictures by key; hit test.
///
/// A row is a line in a table and nothing more: a fill makes no widget, no model item and no place
/// per row, for all rows have one height; texts are shared with whoever gave them; sort keys are
/// made once per fill and column. Sorting is put off until somebody asks for the order or the list
/// is painted, so that any number of changes costs one sort.
///
/// ListView.cpp has columns, places and the way of a change to the screen, ListViewInput.cpp mouse
/// and keys, ListViewText.cpp what is copied and what letters jump to, ListViewPaint.cpp painting
/// and tips; ListViewHeader.h is the head, ListViewRows.h the rows without the widget, and
/// ListViewInterface.h what assistive programs see.
class ListView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit ListView(QWidget *aParent = nullptr);
    ~ListView() override;

    // Columns.
    void ClearColumns();
    void AddColumn(const QString &aCaption, int aWidthTwips, const QString &aKey = QString(),
                   Qt::Alignment aAlignment = Qt::AlignLeft);
    int ColumnCount() const;
    /// aPosition counts from 0.
    const ListColumn &Column(int aPosition) const;
    /// Raises InvalidArgument if no column has the key.
    int ColumnPosition(const QString &aKey) const;
    void SetColumnWidth(int aPosition, int aWidthTwips);
    /// As wide as the caption and the widest text in sight ask for, which is what two quick clicks
    /// on the right edge of a header do.
    void FitColumn(int aPosition);
    QHeaderView *header() const;
    /// The caption where the header cuts it, and by what key the column is sorted in a list that
    /// somebody sorts.
    QString HeaderTip(int aPosition) const;

    // Rows, in the order in which they stand at that moment.
    int RowCount() const;
    /// Raises SubscriptOutOfRange. aPosition counts from 0.
    ListRow *Row(int aPosition) const;
    /// Null if there is none.
    ListRow *RowByKey(const QString &aKey) const;
    /// Adds at the end or before aBefore; while the list is sorted the row goes where the order
    /// puts it. Raises KeyAlreadyPresent, and InvalidArgument if aBefore does not stand in the
    /// list; an empty key is no key.
    ListRow *AddRow(const QString &aKey, ListRow *aBefore = nullptr);
    /// Raises InvalidArgument if no row has the key.
    void RemoveRow(const QString &aKey);
    void ClearRows();
    /// Room for that many rows, for a fill whose size is known.
    void ReserveRows(int aCount);
    /// -1 if the row does not stand in the list.
    int PositionOf(const ListRow *aRow) const;
    /// Shows exactly these rows, given by their numbers and in that order, or sorted while the list
    /// is: a quick refill from the rows that are there. A row that stays keeps its check mark; a
    /// row that goes loses it, is neither counted nor found, and waits to be shown again. The
    /// selection goes.
    void ShowOnly(const std::vector<int> &aNumbers);

    // The sort state. Cells sort as texts by a Russian collator without regard to case; equal rows
    // keep the order in which they stood.
    bool IsSorted() const;
    void SetSorted(bool aSorted);
    qint16 SortKey() const;
    void SetSortKey(qint16 aColumn);
    /// 0 ascending, 1 descending.
    qint32 SortOrder() const;
    void SetSortOrder(qint32 aOrder);

    // Behaviour.
    /// Null shows no pictures. The list keeps the reference.
    void SetSmallIcons(std::shared_ptr<const ImageList> aPictures);
    void SetCheckBoxes(bool aOn);
    bool HasCheckBoxes() const { return theCheckBoxes; }
    void SetMultiSelect(bool aOn);
    bool HasMultiSelect() const { return theMultiSelect; }

    // Current row and selection. The current row is what the focus frame stands on; setting it by
    // SetSelectedItem also gives it the selected mark.
    ListRow *SelectedItem() const;
    /// Null takes the current row away.
    void SetSelectedItem(ListRow *aRow);
    /// Makes the row the current one, in sight, and leaves all selected marks as they are.
    void SetCurrent(ListRow *aRow);
    /// Rows with the selected mark, in row order.
    std::vector<ListRow *> SelectedRows() const;
    void UnselectAll();
    void EnsureVisible(ListRow *aRow);
    /// What Ctrl+C copies: the selected rows in row order, parted by line ends, their cells as far
    /// as they are shown parted by tabs. A picture that stands alone is told by its column; the
    /// first column counts only where it has texts.
    QString SelectedText() const;

    // Places, in pixels of the viewport.
    ListRow *HitTest(QPoint aPoint) const;
    ListRow *FirstVisible() const;
    QRect RowRect(const ListRow *aRow) const;
    /// The position of the column at that distance from the left edge; -1: none.
    int ColumnAt(int aX) const;
    QRect CellRect(const ListRow *aRow, int aColumn) const;

    // For those who neither see the list nor have a mouse.
    /// Gives the rows that mark without asking anybody. Who listens for the user's changes hears
    /// nothing.
    void CheckRows(const std::vector<ListRow *> &aRows, bool aChecked);
    /// Does what a click on the row does.
    void ClickRow(ListRow *aRow);
    /// Does what a click with Ctrl does on a row that is not selected.
    void AddToSelection(ListRow *aRow);
    /// Does what a click on the check box of the row does.
    void ToggleRow(ListRow *aRow);
    /// Makes the row the current one and gives the list the focus.
    void FocusRow(ListRow *aRow);
    /// Does what a click on the header of a column does.
    void ClickHeader(int aPosition);
    /// What a screen reader says of a cell: its text, or the name of the column if a picture stands
    /// there alone. The first column, which often shows a picture alone, says the whole row.
    QString SpokenText(const ListRow *aRow, int aColumn) const;
    /// What a screen reader says of the list's order: by which column and how; nothing if unsorted.
    QString SpokenSorting() const;

signals:
    /// A header was clicked.
    void ColumnClick(const Vk_DocQuery::ListColumn &aColumn);
    /// A row was clicked, or the current row was changed by key.
    void ItemClick(Vk_DocQuery::ListRow *aRow);
    /// The list was clicked, on a row or beside the rows; comes after ItemClick.
    void Click();
    /// The pointer moved over the rows, in pixels of the viewport.
    void MouseMove(QPoint aPoint);
    void DblClick();
    /// The user changed a check mark.
    void ItemCheck(Vk_DocQuery::ListRow *aRow);

protected:
    bool event(QEvent *aEvent) override;
    void keyPressEvent(QKeyEvent *aEvent) override;
    void mousePressEvent(QMouseEvent *aEvent) override;
    void mouseMoveEvent(QMouseEvent *aEvent) override;
    void mouseReleaseEvent(QMouseEvent *aEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *aEvent) override;
    void focusInEvent(QFocusEvent *aEvent) override;
    void focusOutEvent(QFocusEvent *aEvent) override;
    void paintEvent(QPaintEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;
    void changeEvent(QEvent *aEvent) override;
    bool viewportEvent(QEvent *aEvent) override;
    void scrollContentsBy(int aAcross, int aDown) override;
    void timerEvent(QTimerEvent *aEvent) override;

private:
    void PrepareHeader();
    void PlaceHeader();
    void MeasureScrolling();
    void ApplyColumns();
    std::vector<int> ShownColumns() const;
    void ShowSortState();
    void HeaderResized(int aPosition, int aPixels);

    void FlushLater();
    void Flush();
    bool ShowChanges();
    void TellOfRows();
    void TellOfSorting();
    void TellOfSelection();
    void TellOfSelected(int aNumber, bool aSelected);
    void TellOfMarks(const std::vector<ListRow *> &aRows);

    void MoveCurrent(int aPosition, Qt::KeyboardModifiers aModifiers);
    void SelectByUser(int aPosition, Qt::KeyboardModifiers aModifiers);
    void SelectRange(int aFrom, int aTo);
    void ToggleByKey();
    void ToggleCheck(const std::vector<int> &aNumbers, bool aChecked);
    bool MoveByKey(const QKeyEvent &aEvent);
    bool ActOnColumnByKey(const QKeyEvent &aEvent);
    bool JumpByKey(const QKeyEvent &aEvent);
    int JumpColumn() const;
    int JumpTarget(int aColumn) const;
    void CopySelected() const;
    void PressBeside(const QMouseEvent &aEvent);
    void StartDrag(const QMouseEvent &aEvent, ListRow *aRow);
    void DragTo(QPoint aPoint);
    void SelectDragged();
    void StopDrag();
    void TellClick(ListRow *aRow);
    bool IsOnCheckBox(QPoint aPoint) const;
    void ShowTip(QPoint aPoint, QPoint aGlobal);

    int RowHeight() const;
    int WholeRowsInSight() const;
    QRect CheckRect(const QRect &aCell) const;
    QRect TextRect(const QRect &aCell, int aColumn, bool aHasPicture) const;
    void DrawFocusOnAll(QPainter &aPainter) const;
    void DrawRow(QPainter &aPainter, const QStyleOptionViewItem &aOption,
                 const ListRow &aRow) const;
    void DrawCell(QPainter &aPainter, const QStyleOptionViewItem &aOption, const ListRow &aRow,
                  int aColumn) const;

    std::unique_ptr<ListViewRows> theRows;
    ListViewHeader *theHeader;
    std::vector<ListColumn> theColumns;
    std::shared_ptr<const ImageList> thePictures;
    int theToldSortKey = -1;  // what assistive programs know
    QString theToldSorting;
    std::vector<int> theToldSelection;  // numbers of rows, sorted
    bool theCheckBoxes = false;
    bool theMultiSelect = false;
    bool theColumnsBeingSet = false;
    bool theHeaderBeingPlaced = false;
    bool theIsDirty = false;
    bool thePressed = false;
    bool thePressedBeside = false;

    // Rows are selected by dragging from a row, known by its number, to a position; -1: none yet.
    int theDragFrom = -1;
    int theDragEnd = -1;
    QPoint theDragPoint;
    std::vector<int> theKeptByDrag;  // numbers of the rows that were selected before, with Ctrl
    QBasicTimer theDragTimer;        // scrolls while the pointer is above or below the rows

    QString theTyped;
    QElapsedTimer theTypedAt;
};

}  // namespace Vk_DocQuery
