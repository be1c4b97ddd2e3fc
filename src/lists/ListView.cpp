#include "lists/ListView.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QAccessible>
#include <QHeaderView>
#include <QMetaMethod>
#include <QPointer>
#include <QScrollBar>

#include <Vk_DocQuery/Failure.h>

#include "lists/ListViewHeader.h"
#include "lists/ListViewInterface.h"
#include "lists/ListViewRows.h"
#include "windows/ErrorReport.h"
#include "windows/mVkGraphLight.h"
#include "windows/TouchScrolling.h"
#include "windows/WheelLatch.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "ListView";
constexpr std::size_t theMostTold = 100;  // rows; more than a screen reader could say

}  // namespace

ListView::ListView(QWidget *aParent)
    : QAbstractScrollArea(aParent),
      theRows(std::make_unique<ListViewRows>([this] { FlushLater(); })),
      theHeader(new ListViewHeader(*this)) {
    ListViewInterface::EnterFactory();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    PrepareHeader();
    PlaceHeader();
    ScrollByTouch(*this, [this] { return RowHeight(); });
    KeepWheel(*this);
}

/// The header asks for the columns as long as it is there.
ListView::~ListView() {
    delete theHeader;
}

// ---- Columns

void ListView::PrepareHeader() {
    connect(theHeader, &QHeaderView::sectionClicked, this, &ListView::ClickHeader);
    connect(theHeader, &QHeaderView::sectionHandleDoubleClicked, this, &ListView::FitColumn);
    connect(theHeader, &QHeaderView::geometriesChanged, this, &ListView::PlaceHeader);
    connect(theHeader, &QHeaderView::sectionResized, this,
            [this](int aPosition, int /*aOld*/, int aNew) { HeaderResized(aPosition, aNew); });
}

QHeaderView *ListView::header() const {
    return theHeader;
}

QString ListView::HeaderTip(int aPosition) const {
    QStringList tips;
    if (theHeader->CutsCaption(aPosition)) tips << Column(aPosition).Caption;
    if (isSignalConnected(QMetaMethod::fromSignal(&ListView::ColumnClick))) {
        const std::vector<int> shown = ShownColumns();
        const auto place = std::find(shown.begin(), shown.end(), aPosition) - shown.begin();
        constexpr int theKeys = 9;
        tips << (place < theKeys ? QStringLiteral("Сортировка: щелчок или Ctrl+%1").arg(place + 1)
                                 : QStringLiteral("Сортировка: щелчок"));
    }
    return tips.join(u'\n');
}

void ListView::ClearColumns() {
    theColumns.clear();
    ApplyColumns();
}

void ListView::AddColumn(const QString &aCaption, int aWidthTwips, const QString &aKey,
                         Qt::Alignment aAlignment) {
    theColumns.push_back({ColumnCount() + 1, aCaption, aWidthTwips, aKey, aAlignment});
    ApplyColumns();
}

int ListView::ColumnCount() const {
    return static_cast<int>(theColumns.size());
}

const ListColumn &ListView::Column(int aPosition) const {
    if (aPosition < 0 || aPosition >= ColumnCount()) {
        throw Failure(SubscriptOutOfRange, QStringLiteral("ListView"),
                      QStringLiteral("Индекс вне допустимого диапазона: %1.").arg(aPosition));
    }
    return theColumns[static_cast<std::size_t>(aPosition)];
}

int ListView::ColumnPosition(const QString &aKey) const {
    const auto found =
        std::find_if(theColumns.begin(), theColumns.end(), [&](const ListColumn &aColumn) {
            return !aKey.isEmpty() && aColumn.Key.compare(aKey, Qt::CaseInsensitive) == 0;
        });
    if (found == theColumns.end()) {
        throw Failure(InvalidArgument, QStringLiteral("ListView"),
                      QStringLiteral("В списке нет столбца с ключом \"%1\".").arg(aKey));
    }
    return static_cast<int>(found - theColumns.begin());
}

void ListView::SetColumnWidth(int aPosition, int aWidthTwips) {
    static_cast<void>(Column(aPosition));
    theColumns[static_cast<std::size_t>(aPosition)].Width = aWidthTwips;
    theColumnsBeingSet = true;
    const int pixels = PixelsFromTwips(aWidthTwips);
    theHeader->setSectionHidden(aPosition, pixels < 1);
    if (pixels > 0) theHeader->resizeSection(aPosition, pixels);
    theColumnsBeingSet = false;
}

void ListView::ApplyColumns() {
    theRows->SetExpectedCells(ColumnCount() - 1);
    theHeader->ResetColumns();
    for (const ListColumn &column : theColumns) SetColumnWidth(column.Index - 1, column.Width);
    MeasureScrolling();
    TellOfRows();
    FlushLater();
}

void ListView::ClickHeader(int aPosition) try {
    ShowSortState();                              // the header has turned its arrow by itself
    const ListColumn column = Column(aPosition);  // whoever hears of it may change the columns
    const QPointer<ListView> self(this);
    emit ColumnClick(column);
    if (self) ShowSortState();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

std::vector<int> ListView::ShownColumns() const {
    std::vector<int> shown;
    for (int column = 0; column < ColumnCount(); ++column)
        if (!theHeader->isSectionHidden(column)) shown.push_back(column);
    return shown;
}

void ListView::HeaderResized(int aPosition, int aPixels) {
    if (!theColumnsBeingSet && aPixels > 0 && aPosition < ColumnCount())
        theColumns[static_cast<std::size_t>(aPosition)].Width = TwipsFromPixels(aPixels);
    MeasureScrolling();
    viewport()->update();
}

void ListView::ShowSortState() {
    const bool shown = IsSorted() && SortKey() >= 0 && SortKey() < ColumnCount();
    theHeader->setSortIndicatorShown(shown);
    if (shown)
        theHeader->setSortIndicator(SortKey(),
                                    SortOrder() == 1 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// ---- Rows

int ListView::RowCount() const {
    return theRows->Count();
}

ListRow *ListView::Row(int aPosition) const {
    return theRows->At(aPosition);
}

ListRow *ListView::RowByKey(const QString &aKey) const {
    return theRows->ByKey(aKey);
}

ListRow *ListView::AddRow(const QString &aKey, ListRow *aBefore) {
    return theRows->Add(aKey, aBefore);
}

void ListView::RemoveRow(const QString &aKey) {
    theRows->Remove(aKey);
}

void ListView::ClearRows() {
    theRows->Clear();
}

void ListView::ReserveRows(int aCount) {
    theRows->Reserve(aCount);
}

int ListView::PositionOf(const ListRow *aRow) const {
    return aRow ? theRows->PositionOf(aRow->Number()) : -1;
}

void ListView::ShowOnly(const std::vector<int> &aNumbers) {
    theRows->ShowOnly(aNumbers);
}

bool ListView::IsSorted() const {
    return theRows->IsSorted();
}

void ListView::SetSorted(bool aSorted) {
    theRows->SetSorted(aSorted);
}

qint16 ListView::SortKey() const {
    return theRows->SortKey();
}

void ListView::SetSortKey(qint16 aColumn) {
    theRows->SetSortKey(aColumn);
}

qint32 ListView::SortOrder() const {
    return theRows->SortOrder();
}

void ListView::SetSortOrder(qint32 aOrder) {
    theRows->SetSortOrder(aOrder);
}

// ---- Behaviour, current row, selection

void ListView::SetSmallIcons(std::shared_ptr<const ImageList> aPictures) {
    thePictures = std::move(aPictures);
    theRows->SetPictures(thePictures.get());
}

void ListView::SetCheckBoxes(bool aOn) {
    theCheckBoxes = aOn;
    FlushLater();
}

void ListView::SetMultiSelect(bool aOn) {
    theMultiSelect = aOn;
    theRows->SetMultiSelect(aOn);
}

void ListView::CheckRows(const std::vector<ListRow *> &aRows, bool aChecked) {
    for (ListRow *row : aRows) row->SetChecked(aChecked);
    TellOfMarks(aRows);
}

ListRow *ListView::SelectedItem() const {
    return theRows->Current() < 0 ? nullptr : theRows->ByNumber(theRows->Current());
}

void ListView::SetSelectedItem(ListRow *aRow) {
    if (!aRow) {
        theRows->SetCurrent(-1);
        theRows->SetAnchor(-1);
        if (!theMultiSelect) theRows->UnselectAll();
        return;
    }
    theRows->SetSelected(aRow->Number(), true);
    theRows->SetCurrent(aRow->Number());
    theRows->SetAnchor(aRow->Number());
}

void ListView::SetCurrent(ListRow *aRow) {
    theRows->SetCurrent(aRow->Number());
    theRows->SetAnchor(-1);
    EnsureVisible(aRow);
}

std::vector<ListRow *> ListView::SelectedRows() const {
    std::vector<ListRow *> rows;
    if (theRows->SelectedCount() == 0) return rows;
    rows.reserve(static_cast<std::size_t>(theRows->SelectedCount()));
    for (const int number : theRows->Order())
        if (theRows->IsSelected(number)) rows.push_back(theRows->ByNumber(number));
    return rows;
}

void ListView::UnselectAll() {
    theRows->UnselectAll();
}

void ListView::EnsureVisible(ListRow *aRow) {
    const int position = PositionOf(aRow);
    if (position < 0) return;
    Flush();
    const int first = verticalScrollBar()->value();
    const int whole = std::max(1, WholeRowsInSight());
    if (position < first)
        verticalScrollBar()->setValue(position);
    else if (position >= first + whole)
        verticalScrollBar()->setValue(position - whole + 1);
}

// ---- Places

ListRow *ListView::HitTest(QPoint aPoint) const {
    const_cast<ListView *>(this)->Flush();
    if (!viewport()->rect().contains(aPoint) || ColumnAt(aPoint.x()) < 0) return nullptr;
    const int position = verticalScrollBar()->value() + aPoint.y() / RowHeight();
    return position < RowCount() ? theRows->At(position) : nullptr;
}

ListRow *ListView::FirstVisible() const {
    const_cast<ListView *>(this)->Flush();
    const int first = verticalScrollBar()->value();  // counts rows
    return first < RowCount() ? theRows->At(first) : nullptr;
}

QRect ListView::RowRect(const ListRow *aRow) const {
    const int position = PositionOf(aRow);
    if (position < 0) return QRect();
    const_cast<ListView *>(this)->Flush();
    const int height = RowHeight();
    const int top = (position - verticalScrollBar()->value()) * height;
    return QRect(-horizontalScrollBar()->value(), top, theHeader->length(), height);
}

int ListView::ColumnAt(int aX) const {
    return theHeader->logicalIndexAt(aX);
}

QRect ListView::CellRect(const ListRow *aRow, int aColumn) const {
    const QRect row = RowRect(aRow);
    if (row.isNull() || aColumn < 0 || aColumn >= ColumnCount() ||
        theHeader->isSectionHidden(aColumn))
        return QRect();
    return QRect(theHeader->sectionViewportPosition(aColumn), row.top(),
                 theHeader->sectionSize(aColumn), row.height());
}

int ListView::WholeRowsInSight() const {
    return viewport()->height() / RowHeight();
}

/// The header stands above the rows and as wide as they.
void ListView::PlaceHeader() {
    if (theHeaderBeingPlaced) return;
    theHeaderBeingPlaced = true;
    const int height = theHeader->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    // A bar that comes or goes changes the room, which may bring or take the other one.
    constexpr int theMostPasses = 3;
    QSize room;
    for (int pass = 0; pass < theMostPasses && room != viewport()->size(); ++pass) {
        const QRect rows = viewport()->geometry();
        room = rows.size();
        theHeader->setGeometry(rows.left(), rows.top() - height, rows.width(), height);
        MeasureScrolling();
    }
    theHeaderBeingPlaced = false;
}

/// The vertical bar counts rows, the horizontal one pixels.
void ListView::MeasureScrolling() {
    constexpr int theStepTwips = 300;
    const int rows = WholeRowsInSight();
    verticalScrollBar()->setPageStep(std::max(1, rows));
    verticalScrollBar()->setRange(0, std::max(0, RowCount() - rows));
    const int width = viewport()->width();
    horizontalScrollBar()->setSingleStep(PixelsFromTwips(theStepTwips));
    horizontalScrollBar()->setPageStep(width);
    horizontalScrollBar()->setRange(0, std::max(0, theHeader->length() - width));
    theHeader->setOffset(horizontalScrollBar()->value());
}

void ListView::resizeEvent(QResizeEvent *aEvent) {
    Flush();
    QAbstractScrollArea::resizeEvent(aEvent);
    PlaceHeader();
}

void ListView::changeEvent(QEvent *aEvent) {
    QAbstractScrollArea::changeEvent(aEvent);
    if (aEvent->type() == QEvent::FontChange || aEvent->type() == QEvent::StyleChange)
        PlaceHeader();
}

void ListView::scrollContentsBy(int /*aAcross*/, int /*aDown*/) {
    theHeader->setOffset(horizontalScrollBar()->value());
    viewport()->update();
}

// ---- The way of a change to the screen

void ListView::FlushLater() {
    if (theIsDirty) return;
    theIsDirty = true;
    QMetaObject::invokeMethod(this, &ListView::Flush, Qt::QueuedConnection);
}

void ListView::Flush() try {
    if (ShowChanges()) viewport()->update();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

/// Brings order and scroll bars up to what the rows have become; false: nothing has changed.
bool ListView::ShowChanges() {
    if (!theIsDirty) return false;
    theIsDirty = false;
    const ListViewRows::Change change = theRows->TakeChange();
    if (change.Rows) {
        const int down = change.Refilled ? 0 : verticalScrollBar()->value();
        static_cast<void>(theRows->Order());
        ShowSortState();
        MeasureScrolling();
        verticalScrollBar()->setValue(down);
        TellOfRows();
        if (change.Refilled) theToldSelection.clear();
        TellOfSorting();
    }
    if (change.Rows || change.Selection) TellOfSelection();
    return true;
}

void ListView::TellOfRows() {
    if (!QAccessible::isActive()) return;
    QAccessibleTableModelChangeEvent event(this, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
}

/// Of the list's order, and of the headers that have got or lost their arrow.
void ListView::TellOfSorting() {
    const QString sorting = SpokenSorting();
    if (theToldSorting == sorting) return;
    const int now = sorting.isEmpty() ? -1 : SortKey();
    const int before = std::exchange(theToldSortKey, now);
    theToldSorting = sorting;
    if (!QAccessible::isActive()) return;
    QAccessibleEvent list(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&list);
    for (const int column : {before, now}) {
        if (column < 0 || column >= ColumnCount()) continue;
        QAccessibleEvent header(this, QAccessible::DescriptionChanged);
        header.setChild(column);
        QAccessible::updateAccessibility(&header);
        if (before == now) break;
    }
}

/// Of the rows that were selected or let go, and of the current row while the list has the focus.
void ListView::TellOfSelection() {
    if (!QAccessible::isActive()) return;
    std::vector<int> selected;
    for (const ListRow *row : SelectedRows()) selected.push_back(row->Number());
    std::ranges::sort(selected);
    const std::vector<int> told = std::exchange(theToldSelection, selected);
    std::vector<int> changed;
    std::ranges::set_symmetric_difference(selected, told, std::back_inserter(changed));
    if (changed.size() <= theMostTold)
        for (const int number : changed)
            TellOfSelected(number, std::ranges::binary_search(selected, number));
    QAccessibleEvent selection(this, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&selection);
    if (theRows->Current() < 0 || !hasFocus()) return;
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(ListViewInterface::ChildOf(*this, theRows->PositionOf(theRows->Current()), 0));
    QAccessible::updateAccessibility(&focus);
}

void ListView::TellOfSelected(int aNumber, bool aSelected) {
    const int position = theRows->PositionOf(aNumber);
    if (position < 0) return;
    QAccessibleEvent event(this,
                           aSelected ? QAccessible::SelectionAdd : QAccessible::SelectionRemove);
    event.setChild(ListViewInterface::ChildOf(*this, position, 0));
    QAccessible::updateAccessibility(&event);
}

/// Of more rows than a screen reader could say it is told that the list has changed.
void ListView::TellOfMarks(const std::vector<ListRow *> &aRows) {
    if (!QAccessible::isActive() || !theCheckBoxes) return;
    if (aRows.size() > theMostTold) return TellOfRows();
    QAccessible::State checked;
    checked.checked = true;
    for (const ListRow *row : aRows) {
        const int position = PositionOf(row);
        if (position < 0) continue;
        QAccessibleStateChangeEvent event(this, checked);
        event.setChild(ListViewInterface::ChildOf(*this, position, 0));
        QAccessible::updateAccessibility(&event);
    }
}

QString ListView::SpokenSorting() const {
    if (!IsSorted() || SortKey() < 0 || SortKey() >= ColumnCount()) return QString();
    return QStringLiteral("Сортировка: %1, %2")
        .arg(Column(SortKey()).Caption,
             SortOrder() == 1 ? QStringLiteral("по убыванию") : QStringLiteral("по возрастанию"));
}

QString ListView::SpokenText(const ListRow *aRow, int aColumn) const {
    if (aColumn > 0) {
        const QString &text = aRow->CellText(aColumn);
        return text.isEmpty() && !aRow->CellIcon(aColumn).isEmpty() ? Column(aColumn).Caption
                                                                    : text;
    }
    QStringList texts{aRow->Text()};
    for (int column = 1; column < ColumnCount(); ++column)
        if (Column(column).Width > 0) texts << SpokenText(aRow, column);
    texts.removeAll(QString());
    return texts.join(QStringLiteral("; "));
}

}  // namespace Vk_DocQuery
