#include "controls/ListViewRows.h"

#include <algorithm>
#include <numeric>

#include <QCollator>

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

namespace {

const QString theNoText;

std::size_t Index(int aNumber) {
    return static_cast<std::size_t>(aNumber);
}

[[noreturn]] void RaiseOutOfRange(int aIndex) {
    throw Failure(SubscriptOutOfRange, QStringLiteral("ListView"),
                  QStringLiteral("Индекс вне допустимого диапазона: %1.").arg(aIndex));
}

/// Case does not count, and a number is a text like any other.
QCollator RussianCollator() {
    QCollator collator(QLocale(QLocale::Russian, QLocale::Russia));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(false);
    return collator;
}

}  // namespace

// ---- ListRow

ListRow::ListRow(ListViewRows &aRows, int aNumber) : theRows(aRows), theNumber(aNumber) {}

const QString &ListRow::Key() const {
    return theRows.KeyOf(theNumber);
}

const QString &ListRow::Text() const {
    return theText;
}

void ListRow::SetText(const QString &aText) {
    if (theText == aText) return;
    theText = aText;
    theRows.TextChanged(0);
}

const std::shared_ptr<Object> &ListRow::Tag() const {
    return theTag;
}

void ListRow::SetTag(std::shared_ptr<Object> aTag) {
    theTag = std::move(aTag);
}

void ListRow::SetIcon(const QString &aKey) {
    theIcon = theRows.IconNumber(aKey);
    theRows.Changed();
}

const QString &ListRow::Icon() const {
    return theRows.IconKey(theIcon);
}

void ListRow::SetCell(int aCell, const QString &aText, const QString &aIcon) {
    SetCellText(aCell, aText);
    if (theCellIcons || !aIcon.isEmpty()) SetCellIcon(aCell, aIcon);
}

inline void ListRow::MakeRoom(int aCell) {
    if (aCell < 1 || aCell > theCellRoom) GrowTo(aCell);
    if (aCell > theCellCount) theCellCount = static_cast<quint16>(aCell);
}

void ListRow::SetCellText(int aCell, const QString &aText) {
    MakeRoom(aCell);
    QString &text = theCells[Index(aCell - 1)];
    if (text == aText) return;
    text = QString(aText);  // a move, which is made in place
    theRows.TextChanged(aCell);
}

void ListRow::SetCellIcon(int aCell, const QString &aIcon) {
    const quint16 icon = theRows.IconNumber(aIcon);
    MakeRoom(aCell);
    if (!theCellIcons) {
        if (icon == 0) return;
        theCellIcons = std::make_unique<quint16[]>(theCellRoom);
    }
    theCellIcons[Index(aCell - 1)] = icon;
    theRows.Changed();
}

const QString &ListRow::CellText(int aCell) const {
    return aCell < 1 || aCell > theCellCount ? theNoText : theCells[Index(aCell - 1)];
}

const QString &ListRow::CellIcon(int aCell) const {
    if (aCell < 1 || aCell > theCellCount || !theCellIcons) return theNoText;
    return theRows.IconKey(theCellIcons[Index(aCell - 1)]);
}

int ListRow::CellCount() const {
    return theCellCount;
}

bool ListRow::IsChecked() const {
    return theRows.IsChecked(theNumber);
}

void ListRow::SetChecked(bool aChecked) {
    theRows.SetChecked(theNumber, aChecked);
}

bool ListRow::IsSelected() const {
    return theRows.IsSelected(theNumber);
}

void ListRow::SetSelected(bool aSelected) {
    theRows.SetSelected(theNumber, aSelected);
}

void ListRow::GrowTo(int aCell) {
    constexpr int theMostCells = 1000;
    if (aCell < 1 || aCell > theMostCells) RaiseOutOfRange(aCell);
    const auto room = static_cast<quint16>(std::max(aCell, theRows.ExpectedCells()));
    QString *cells = theRows.TakeCells(room);
    std::move(theCells, theCells + theCellCount, cells);
    theCells = cells;
    if (theCellIcons) {
        auto icons = std::make_unique<quint16[]>(room);
        std::copy_n(theCellIcons.get(), theCellCount, icons.get());
        theCellIcons = std::move(icons);
    }
    theCellRoom = room;
}

void ListRow::Forget() {
    theTag.reset();
    theText.clear();
    std::fill_n(theCells, theCellCount, QString());
    theCells = nullptr;
    theCellIcons.reset();
    theIcon = theCellCount = theCellRoom = 0;
}

// ---- What stands in the list

ListViewRows::ListViewRows(std::function<void()> aChanged) : theChanged(std::move(aChanged)) {}

ListRow *ListViewRows::Add(const QString &aKey, ListRow *aBefore) {
    // Asked before anything changes: a wrong neighbour must leave no half of a row behind.
    const int position = aBefore && !theSorted ? PlaceBefore(*aBefore) : -1;
    theKeys.Append(aKey);
    const int number = static_cast<int>(theRows.size());
    theRows.emplace_back(*this, number);
    theMarks.push_back(Present | Shown);
    theOrder.insert(position < 0 ? theOrder.end() : theOrder.begin() + position, number);
    ++theCount;
    if (!theRanks.empty()) theRanks.clear();
    OrderChanged();
    return &theRows.back();
}

/// A row of another list may bear a number that is known here, too.
int ListViewRows::PlaceBefore(const ListRow &aRow) {
    const int position = &aRow.theRows == this ? PositionOf(aRow.Number()) : -1;
    if (position < 0) {
        throw Failure(InvalidArgument, QStringLiteral("ListView"),
                      QStringLiteral("В списке нет строки, перед которой добавляется новая."));
    }
    return position;
}

void ListViewRows::Remove(const QString &aKey) {
    const int number = static_cast<int>(theKeys.Find(aKey));
    if (number < 0 || !Stands(number)) {
        throw Failure(InvalidArgument, QStringLiteral("ListView"),
                      QStringLiteral("В списке нет строки с ключом \"%1\".").arg(aKey));
    }
    SetSelected(number, false);
    if (theCurrent == number) theCurrent = -1;
    if (theAnchor == number) theAnchor = -1;
    theMarks[Index(number)] = 0;
    theKeys.Forget(number);
    theRows[Index(number)].Forget();
    --theCount;
    theSomeRemoved = true;  // many removals cost one walk over the order
    OrderChanged();
}

void ListViewRows::Clear() {
    theOrder.clear();
    theMarks.clear();
    theKeys.Clear();
    theRows.clear();
    theBlocks.clear();
    theRoomInBlock = 0;
    theRanks.clear();
    theCount = theSelectedCount = 0;
    theCurrent = theAnchor = -1;
    theSomeRemoved = false;
    theChange.Refilled = true;
    OrderChanged();
}

QString *ListViewRows::TakeCells(int aCount) {
    constexpr int theBlockSize = 2048;
    if (aCount > theRoomInBlock) {
        theRoomInBlock = std::max(aCount, theBlockSize);
        theBlocks.push_back(std::make_unique<QString[]>(Index(theRoomInBlock)));
        theBlockUsed = 0;
    }
    QString *cells = theBlocks.back().get() + theBlockUsed;
    theBlockUsed += aCount;
    theRoomInBlock -= aCount;
    return cells;
}

void ListViewRows::Reserve(int aCount) {
    theMarks.reserve(Index(aCount));
    theOrder.reserve(Index(aCount));
    theKeys.Reserve(aCount);
}

void ListViewRows::ShowOnly(const std::vector<int> &aNumbers) {
    UnselectAll();
    theCurrent = theAnchor = -1;
    for (quint8 &mark : theMarks) mark = static_cast<quint8>(mark & ~Shown);
    theOrder.resize(aNumbers.size());
    int *next = theOrder.data();
    const auto count = theMarks.size();
    for (const int number : aNumbers) {
        if (number < 0 || Index(number) >= count) RaiseOutOfRange(number);
        quint8 &mark = theMarks[Index(number)];
        if ((mark & (Present | Shown)) != Present) continue;
        mark |= Shown;
        *next++ = number;
    }
    theOrder.resize(static_cast<std::size_t>(next - theOrder.data()));
    for (quint8 &mark : theMarks)
        if ((mark & Shown) == 0) mark = static_cast<quint8>(mark & ~Checked);
    theCount = static_cast<int>(theOrder.size());
    theSomeRemoved = false;
    theChange.Refilled = true;
    OrderChanged();
}

const std::vector<int> &ListViewRows::Order() {
    if (!theOrderSettled) {
        DropRemoved();
        if (theSorted) Sort();
        theOrderSettled = true;
    }
    return theOrder;
}

ListRow *ListViewRows::At(int aPosition) {
    if (aPosition < 0 || aPosition >= theCount) RaiseOutOfRange(aPosition);
    return ByNumber(Order()[Index(aPosition)]);
}

ListRow *ListViewRows::ByKey(const QString &aKey) {
    const int number = static_cast<int>(theKeys.Find(aKey));
    return number < 0 || !Stands(number) ? nullptr : ByNumber(number);
}

int ListViewRows::PositionOf(int aNumber) {
    if (!Stands(aNumber)) return -1;
    const std::vector<int> &order = Order();
    if (!thePositionsValid) {
        thePositions.resize(theRows.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            thePositions[Index(order[i])] = static_cast<int>(i);
        thePositionsValid = true;
    }
    return thePositions[Index(aNumber)];
}

bool ListViewRows::Stands(int aNumber) const {
    return aNumber >= 0 && aNumber < static_cast<int>(theRows.size()) && Has(aNumber, Shown);
}

void ListViewRows::OrderChanged() {
    theOrderSettled = thePositionsValid = false;
    const bool told = theChange.Rows;
    theChange.Rows = theChange.Selection = true;
    if (!told) theChanged();
}

void ListViewRows::DropRemoved() {
    if (!theSomeRemoved) return;
    theOrder.erase(std::remove_if(theOrder.begin(), theOrder.end(),
                                  [this](int aNumber) { return !Has(aNumber, Present); }),
                   theOrder.end());
    theSomeRemoved = false;
}

ListViewRows::Change ListViewRows::TakeChange() {
    return std::exchange(theChange, Change());
}

// ---- Sorting

void ListViewRows::SetSorted(bool aSorted) {
    if (theSorted == aSorted) return;
    if (!aSorted) Order();  // the rows stay where the sort has put them
    theSorted = aSorted;
    OrderChanged();
}

void ListViewRows::SetSortKey(qint16 aColumn) {
    if (theSortKey == aColumn) return;
    if (theSorted) Order();  // equal rows keep the order of the sort before
    theSortKey = aColumn;
    OrderChanged();
}

void ListViewRows::SetSortOrder(qint32 aOrder) {
    if (theSortOrder == aOrder) return;
    theSortOrder = aOrder;
    OrderChanged();
}

void ListViewRows::ForgetRanks(int aColumn) {
    theRanks.erase(aColumn);
    if (theSorted && aColumn == theSortKey)
        OrderChanged();
    else
        Changed();
}

/// Distributes the rows by rank, which takes no comparisons and keeps the order of equal rows.
void ListViewRows::Sort() {
    const std::vector<int> &ranks = RanksOf(theSortKey);
    if (ranks.empty()) return;
    const int highest = *std::max_element(ranks.begin(), ranks.end());
    const auto slot = [&](int aNumber) {
        const int rank = ranks[Index(aNumber)];
        return Index(theSortOrder == 1 ? highest - rank : rank);
    };
    std::vector<int> starts(Index(highest) + 2, 0);
    for (const int number : theOrder) ++starts[slot(number) + 1];
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<int> sorted(theOrder.size());
    for (const int number : theOrder) sorted[Index(starts[slot(number)]++)] = number;
    theOrder = std::move(sorted);
}

/// The place of every row, by number, among the texts of the column; equal texts have one rank.
/// Sort keys are made once; ranks stay until a text of the column changes or a row comes.
const std::vector<int> &ListViewRows::RanksOf(int aColumn) {
    const auto known = theRanks.find(aColumn);
    if (known != theRanks.end()) return known->second;

    const QCollator collator = RussianCollator();
    std::vector<QCollatorSortKey> keys;
    keys.reserve(theRows.size());
    for (const ListRow &row : theRows)
        keys.push_back(collator.sortKey(aColumn == 0 ? row.Text() : row.CellText(aColumn)));

    std::vector<int> numbers(theRows.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    const auto compare = [&](int aLeft, int aRight) {
        return keys[Index(aLeft)].compare(keys[Index(aRight)]);
    };
    std::sort(numbers.begin(), numbers.end(),
              [&](int aLeft, int aRight) { return compare(aLeft, aRight) < 0; });

    std::vector<int> ranks(theRows.size());
    int rank = 0;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0 && compare(numbers[i - 1], numbers[i]) != 0) ++rank;
        ranks[Index(numbers[i])] = rank;
    }
    return theRanks[aColumn] = std::move(ranks);
}

// ---- Marks and the current row

void ListViewRows::SetMark(int aNumber, quint8 aMark, bool aOn) {
    quint8 &mark = theMarks[Index(aNumber)];
    mark = static_cast<quint8>(aOn ? mark | aMark : mark & ~aMark);
    theChanged();
}

void ListViewRows::SetSelected(int aNumber, bool aOn) {
    if (Has(aNumber, Selected) == aOn) return;
    if (aOn && !theMultiSelect) UnselectAll();
    theSelectedCount += aOn ? 1 : -1;
    theChange.Selection = true;
    SetMark(aNumber, Selected, aOn);
}

void ListViewRows::UnselectAll() {
    if (theSelectedCount == 0) return;
    for (quint8 &mark : theMarks) mark = static_cast<quint8>(mark & ~Selected);
    theSelectedCount = 0;
    theChange.Selection = true;
    theChanged();
}

void ListViewRows::SetMultiSelect(bool aOn) {
    theMultiSelect = aOn;
    if (aOn || theSelectedCount < 2) return;
    UnselectAll();
    if (theCurrent >= 0) SetSelected(theCurrent, true);
}

void ListViewRows::SetCurrent(int aNumber) {
    if (theCurrent == aNumber) return;
    theCurrent = aNumber;
    theChange.Selection = true;
    theChanged();
}

// ---- Pictures

quint16 ListViewRows::IconNumber(const QString &aKey) {
    if (aKey.isEmpty()) return 0;
    if (thePictures) static_cast<void>(thePictures->Picture(aKey));  // raises for an unknown key
    if (theIconKeys[theLastIcon] == aKey) return theLastIcon;
    const auto known = std::find(theIconKeys.begin(), theIconKeys.end(), aKey);
    theLastIcon = static_cast<quint16>(known - theIconKeys.begin());
    if (known == theIconKeys.end()) theIconKeys.push_back(aKey);
    return theLastIcon;
}

const QIcon *ListViewRows::Picture(const QString &aKey) const {
    return thePictures && thePictures->Contains(aKey) ? &thePictures->Picture(aKey) : nullptr;
}

void ListViewRows::SetPictures(const ImageList *aPictures) {
    thePictures = aPictures;
    theChanged();
}

}  // namespace Vk_DocQuery
