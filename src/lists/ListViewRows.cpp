#include "lists/ListViewRows.h"

#include <algorithm>
#include <numeric>

#include <QCollator>

#include <Vk_DocQuery/Failure.h>

#include "look/ImageList.h"

namespace Vk_DocQuery {

namespace {

std::size_t Index(int aNumber) {
    return static_cast<std::size_t>(aNumber);
}

/// Case does not count, and a number is a text like any other.
QCollator RussianCollator() {
    QCollator collator(QLocale(QLocale::Russian, QLocale::Russia));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(false);
    return collator;
}

}  // namespace

void RaiseOutOfRange(int aIndex) {
    throw Failure(SubscriptOutOfRange, QStringLiteral("ListView"),
                  QStringLiteral("Индекс вне допустимого диапазона: %1.").arg(aIndex));
}

ListViewRows::ListViewRows(std::function<void()> aOnChange) : theOnChange(std::move(aOnChange)) {}

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
    UnsettleOrder();
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
    UnsettleOrder();
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
    UnsettleOrder();
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
    UnsettleOrder();
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

void ListViewRows::UnsettleOrder() {
    theOrderSettled = thePositionsValid = false;
    const bool told = theChange.Rows;
    theChange.Rows = theChange.Selection = true;
    if (!told) theOnChange();
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
    UnsettleOrder();
}

void ListViewRows::SetSortKey(qint16 aColumn) {
    if (theSortKey == aColumn) return;
    if (theSorted) Order();  // equal rows keep the order of the sort before
    theSortKey = aColumn;
    UnsettleOrder();
}

void ListViewRows::SetSortOrder(qint32 aOrder) {
    if (theSortOrder == aOrder) return;
    theSortOrder = aOrder;
    UnsettleOrder();
}

void ListViewRows::ForgetRanks(int aColumn) {
    theRanks.erase(aColumn);
    if (theSorted && aColumn == theSortKey)
        UnsettleOrder();
    else
        RowHasChanged();
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
    theOnChange();
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
    theOnChange();
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
    theOnChange();
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
    theOnChange();
}

}  // namespace Vk_DocQuery
