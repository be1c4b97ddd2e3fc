#pragma once

#include <memory>

#include <QString>

#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

class ListViewRows;

/// A row of a ListView. The list owns its rows; a pointer stays good until the row is removed or
/// the list is cleared.
class ListRow {
public:
    const QString &Key() const;
    const QString &Text() const;
    void SetText(const QString &aText);
    /// The record or other object that the row shows.
    const std::shared_ptr<Object> &Tag() const;
    void SetTag(std::shared_ptr<Object> aTag);

    /// Key of the picture in the list's small pictures; an empty text is no picture. Raises
    /// InvalidArgument if pictures are attached to the list and the key is not among them.
    void SetIcon(const QString &aKey);
    const QString &Icon() const;

    /// Cells are numbered as their columns, from 1. Writing a cell that is not there yet adds it.
    void SetCell(int aCell, const QString &aText, const QString &aIcon = QString());
    void SetCellText(int aCell, const QString &aText);
    void SetCellIcon(int aCell, const QString &aIcon);
    const QString &CellText(int aCell) const;
    const QString &CellIcon(int aCell) const;
    int CellCount() const;

    bool IsChecked() const;
    void SetChecked(bool aChecked);
    bool IsSelected() const;
    void SetSelected(bool aSelected);

    /// How many rows were added before this one since the list was cleared.
    int Number() const { return theNumber; }

    ListRow(ListViewRows &aRows, int aNumber);
    Q_DISABLE_COPY_MOVE(ListRow)

private:
    friend class ListViewRows;
    void MakeRoom(int aCell);
    void GrowTo(int aCell);
    void Forget();

    ListViewRows &theRows;
    std::shared_ptr<Object> theTag;
    QString theText;
    QString *theCells = nullptr;              // lie in a block of the list
    std::unique_ptr<quint16[]> theCellIcons;  // made for the first picture in a cell
    int theNumber;
    quint16 theIcon = 0;
    quint16 theCellCount = 0;
    quint16 theCellRoom = 0;
};

}  // namespace Vk_DocQuery
