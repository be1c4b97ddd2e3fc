#include "lists/ListRow.h"

#include <algorithm>

#include "lists/ListViewRows.h"

namespace Vk_DocQuery {

namespace {

const QString theNoText;

std::size_t Index(int aCell) {
    return static_cast<std::size_t>(aCell);
}

}  // namespace

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
    theRows.TextHasChanged(0);
}

const std::shared_ptr<Object> &ListRow::Tag() const {
    return theTag;
}

void ListRow::SetTag(std::shared_ptr<Object> aTag) {
    theTag = std::move(aTag);
}

void ListRow::SetIcon(const QString &aKey) {
    theIcon = theRows.IconNumber(aKey);
    theRows.RowHasChanged();
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
    theRows.TextHasChanged(aCell);
}

void ListRow::SetCellIcon(int aCell, const QString &aIcon) {
    const quint16 icon = theRows.IconNumber(aIcon);
    MakeRoom(aCell);
    if (!theCellIcons) {
        if (icon == 0) return;
        theCellIcons = std::make_unique<quint16[]>(theCellRoom);
    }
    theCellIcons[Index(aCell - 1)] = icon;
    theRows.RowHasChanged();
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

}  // namespace Vk_DocQuery
