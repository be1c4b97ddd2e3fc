#pragma once

#include <deque>
#include <functional>
#include <map>
#include <vector>

#include <Vk_DocQuery/KeyedCollection.h>

#include "lists/ListRow.h"

class QIcon;

namespace Vk_DocQuery {

class ImageList;

[[noreturn]] void RaiseOutOfRange(int aIndex);

/// The rows of a ListView without the widget: what they hold, which of them stand in the list and
/// in what order, and their marks. A row is known by its number in the order of adding; numbers
/// start anew after Clear.
class ListViewRows {
public:
    /// aOnChange is called after every change that the list must show.
    explicit ListViewRows(std::function<void()> aOnChange);

    ListRow *Add(const QString &aKey, ListRow *aBefore);
    void Remove(const QString &aKey);
    void Clear();
    void Reserve(int aCount);
    void ShowOnly(const std::vector<int> &aNumbers);

    int Count() const { return theCount; }
    /// Numbers of the standing rows, in order.
    const std::vector<int> &Order();
    ListRow *At(int aPosition);
    ListRow *ByNumber(int aNumber) { return &theRows[static_cast<std::size_t>(aNumber)]; }
    ListRow *ByKey(const QString &aKey);
    int PositionOf(int aNumber);
    const QString &KeyOf(int aNumber) const { return theKeys.KeyAt(aNumber); }
    bool Stands(int aNumber) const;

    bool IsSorted() const { return theSorted; }
    void SetSorted(bool aSorted);
    qint16 SortKey() const { return theSortKey; }
    void SetSortKey(qint16 aColumn);
    qint32 SortOrder() const { return theSortOrder; }
    void SetSortOrder(qint32 aOrder);
    /// Says nothing new while a list is filled, which is most of the time.
    void TextHasChanged(int aColumn) {
        if (!theRanks.empty() || !theChange.Rows || theOrderSettled) ForgetRanks(aColumn);
    }

    bool IsChecked(int aNumber) const { return Has(aNumber, Checked); }
    void SetChecked(int aNumber, bool aOn) { SetMark(aNumber, Checked, aOn); }
    bool IsSelected(int aNumber) const { return Has(aNumber, Selected); }
    void SetSelected(int aNumber, bool aOn);
    void UnselectAll();
    int SelectedCount() const { return theSelectedCount; }
    void SetMultiSelect(bool aOn);

    /// Number of the current row, -1: none.
    int Current() const { return theCurrent; }
    void SetCurrent(int aNumber);
    /// The row from which a range is selected, -1: none.
    int Anchor() const { return theAnchor; }
    void SetAnchor(int aNumber) { theAnchor = aNumber; }

    /// Pictures are kept as numbers of their keys; 0 is no picture.
    quint16 IconNumber(const QString &aKey);
    const QString &IconKey(quint16 aIcon) const { return theIconKeys[aIcon]; }
    /// Null if there is no such picture.
    const QIcon *Picture(const QString &aKey) const;
    void SetPictures(const ImageList *aPictures);

    /// Room for the texts of a row, good until Clear: one block serves many rows.
    QString *TakeCells(int aCount);
    int ExpectedCells() const { return theExpectedCells; }
    void SetExpectedCells(int aCount) { theExpectedCells = aCount; }

    /// Rows that changed have told already, which matters when a list is filled.
    void RowHasChanged() {
        if (!theChange.Rows) theOnChange();
    }
    /// Says whether rows or their order changed since the last call, and whether the list was
    /// refilled.
    struct Change {
        bool Rows = false;
        bool Refilled = false;
        bool Selection = false;
    };
    Change TakeChange();

private:
    enum Mark : quint8 { Present = 1, Shown = 2, Checked = 4, Selected = 8 };

    bool Has(int aNumber, quint8 aMark) const {
        return (theMarks[static_cast<std::size_t>(aNumber)] & aMark) != 0;
    }
    void SetMark(int aNumber, quint8 aMark, bool aOn);
    int PlaceBefore(const ListRow &aRow);
    void UnsettleOrder();
    void ForgetRanks(int aColumn);
    void DropRemoved();
    void Sort();
    const std::vector<int> &RanksOf(int aColumn);

    std::function<void()> theOnChange;
    std::vector<std::unique_ptr<QString[]>> theBlocks;
    int theRoomInBlock = 0;
    int theBlockUsed = 0;
    std::deque<ListRow> theRows;   // by number; removed rows stay as empty shells until Clear
    std::vector<quint8> theMarks;  // by number
    KeyIndex theKeys;              // by number
    std::vector<int> theOrder;
    std::vector<int> thePositions;  // by number, while thePositionsValid
    std::map<int, std::vector<int>> theRanks;
    std::vector<QString> theIconKeys{QString()};
    const ImageList *thePictures = nullptr;
    Change theChange;
    int theCount = 0;
    int theSelectedCount = 0;
    int theCurrent = -1;
    int theAnchor = -1;
    int theExpectedCells = 0;
    quint16 theLastIcon = 0;
    qint16 theSortKey = 0;
    qint32 theSortOrder = 0;
    bool theSorted = false;
    bool theMultiSelect = false;
    bool theOrderSettled = true;
    bool thePositionsValid = true;
    bool theSomeRemoved = false;
};

}  // namespace Vk_DocQuery
