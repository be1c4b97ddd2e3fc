#include "controls/ListView.h"

#include <algorithm>

#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>

#include <Vk_DocQuery/Failure.h>

#include "controls/ListViewModel.h"
#include "controls/ListViewRows.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "ListView";

/// Selected runs of rows that assistive programs are told of; the marks themselves have no limit.
constexpr int theMirroredRuns = 500;

}  // namespace

ListView::ListView(QWidget *aParent)
    : QTreeView(aParent),
      theRows(std::make_unique<ListViewRows>([this] { Changed(); })),
      theModel(new ListViewModel(*this)) {
    setModel(theModel);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setAutoScroll(false);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    // The marks are kept with the rows, where they survive sorting; the view must not set its own.
    setSelectionMode(NoSelection);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setMouseTracking(true);
    viewport()->setMouseTracking(true);
    PrepareHeader();
}

ListView::~ListView() = default;

// ---- Columns

void ListView::PrepareHeader() {
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(1);
    header()->setHighlightSections(false);
    connect(header(), &QHeaderView::sectionClicked, this, &ListView::HeaderClicked);
    connect(header(), &QHeaderView::sectionResized, this,
            [this](int aPosition, int /*aOld*/, int aNew) { HeaderResized(aPosition, aNew); });
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

ListColumn ListView::Column(int aPosition) const {
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
    header()->setSectionHidden(aPosition, pixels < 1);
    if (pixels > 0) header()->resizeSection(aPosition, pixels);
    theColumnsBeingSet = false;
}

void ListView::ApplyColumns() {
    theRows->SetExpectedCells(ColumnCount() - 1);
    theModel->ResetColumns();
    for (const ListColumn &column : theColumns) SetColumnWidth(column.Index - 1, column.Width);
    MirrorSelection();
    Changed();
}

void ListView::HeaderClicked(int aPosition) try {
    ShowSortState();  // the header has turned its arrow by itself
    emit ColumnClick(Column(aPosition));
    ShowSortState();
} catch (...) {
    ReportErrorToUser(theModule, "HeaderClicked");
}

void ListView::HeaderResized(int aPosition, int aPixels) {
    if (!theColumnsBeingSet && aPixels > 0 && aPosition < ColumnCount())
        theColumns[static_cast<std::size_t>(aPosition)].Width = TwipsFromPixels(aPixels);
}

void ListView::ShowSortState() {
    const bool shown = IsSorted() && SortKey() >= 0 && SortKey() < ColumnCount();
    header()->setSortIndicatorShown(shown);
    if (shown)
        header()->setSortIndicator(SortKey(),
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
    Changed();
}

void ListView::SetMultiSelect(bool aOn) {
    theMultiSelect = aOn;
    theRows->SetMultiSelect(aOn);
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
    const int across = horizontalScrollBar()->value();
    scrollTo(theModel->index(position, 0), QAbstractItemView::EnsureVisible);
    horizontalScrollBar()->setValue(across);
}

// ---- Places

ListRow *ListView::HitTest(QPoint aPoint) const {
    const_cast<ListView *>(this)->Flush();
    if (!viewport()->rect().contains(aPoint)) return nullptr;
    const QModelIndex index = indexAt(aPoint);
    return index.isValid() ? theRows->At(index.row()) : nullptr;
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
    return QRect(-horizontalScrollBar()->value(), top, header()->length(), height);
}

// ---- The way of a change to the screen

void ListView::Changed() {
    if (theFlushPosted) return;
    theFlushPosted = true;
    QMetaObject::invokeMethod(this, &ListView::Flush, Qt::QueuedConnection);
}

void ListView::Flush() try {
    if (!theFlushPosted) return;
    theFlushPosted = false;
    FlushRows();
    viewport()->update();
} catch (...) {
    ReportErrorToUser(theModule, "Flush");
}

void ListView::FlushRows() {
    const ListViewRows::Change change = theRows->TakeChange();
    if (change.Rows) {
        const int down = change.Refilled ? 0 : verticalScrollBar()->value();
        static_cast<void>(theRows->Order());
        ShowSortState();
        theModel->Refresh(RowCount());
        TellAssistivePrograms();
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(down);
    }
    if (change.Rows || change.Selection) MirrorSelection();
}

void ListView::TellAssistivePrograms() {
    if (!QAccessible::isActive()) return;
    QAccessibleTableModelChangeEvent event(this, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
}

/// The marks and the current row for assistive programs, which ask the selection model.
void ListView::MirrorSelection() {
    QItemSelection runs;
    if (theRows->SelectedCount() > 0) {
        const std::vector<int> &order = theRows->Order();
        const int count = static_cast<int>(order.size());
        const int lastColumn = std::max(0, ColumnCount() - 1);
        for (int from = 0; from < count && runs.size() < theMirroredRuns; ++from) {
            if (!theRows->IsSelected(order[static_cast<std::size_t>(from)])) continue;
            int to = from;
            while (to + 1 < count && theRows->IsSelected(order[static_cast<std::size_t>(to + 1)]))
                ++to;
            runs.append(
                QItemSelectionRange(theModel->index(from, 0), theModel->index(to, lastColumn)));
            from = to;
        }
    }
    selectionModel()->select(runs, QItemSelectionModel::ClearAndSelect);
    const int current = theRows->Current();
    const QModelIndex index =
        current < 0 ? QModelIndex() : theModel->index(theRows->PositionOf(current), 0);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

}  // namespace Vk_DocQuery
