#include "controls/ListViewModel.h"

#include "controls/ListView.h"
#include "controls/ListViewRows.h"

namespace Vk_DocQuery {

ListViewModel::ListViewModel(ListView &aList) : QAbstractItemModel(&aList), theList(aList) {}

void ListViewModel::ResetColumns() {
    beginResetModel();
    endResetModel();
}

/// Whatever rows they are, they come and go at the end: header and scroll bars stay as they are,
/// and a refill of the same size costs the view nothing but the repaint of its rows.
void ListViewModel::Refresh(int aRowCount) {
    if (aRowCount > theRowCount) {
        beginInsertRows(QModelIndex(), theRowCount, aRowCount - 1);
        theRowCount = aRowCount;
        endInsertRows();
    } else if (aRowCount < theRowCount) {
        beginRemoveRows(QModelIndex(), aRowCount, theRowCount - 1);
        theRowCount = aRowCount;
        endRemoveRows();
    }
}

QModelIndex ListViewModel::index(int aRow, int aColumn, const QModelIndex &aParent) const {
    if (aParent.isValid() || aRow < 0 || aRow >= theRowCount || aColumn < 0 ||
        aColumn >= theList.ColumnCount())
        return QModelIndex();
    return createIndex(aRow, aColumn);
}

QModelIndex ListViewModel::parent(const QModelIndex & /*aIndex*/) const {
    return QModelIndex();
}

int ListViewModel::rowCount(const QModelIndex &aParent) const {
    return aParent.isValid() ? 0 : theRowCount;
}

int ListViewModel::columnCount(const QModelIndex &aParent) const {
    return aParent.isValid() ? 0 : theList.ColumnCount();
}

bool ListViewModel::hasChildren(const QModelIndex &aParent) const {
    return !aParent.isValid() && theRowCount > 0;
}

Qt::ItemFlags ListViewModel::flags(const QModelIndex &aIndex) const {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    if (theList.theCheckBoxes && aIndex.column() == 0) flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QVariant ListViewModel::data(const QModelIndex &aIndex, int aRole) const {
    // A row that was removed is asked for until the view has heard of it.
    if (!aIndex.isValid() || aIndex.row() >= theList.RowCount()) return QVariant();
    const int column = aIndex.column();
    const ListRow *row = theList.theRows->At(aIndex.row());
    switch (aRole) {
        case Qt::DisplayRole:
            return column == 0 ? row->Text() : row->CellText(column);
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(theList.Column(column).Alignment | Qt::AlignVCenter);
        case Qt::CheckStateRole:
            if (column != 0 || !theList.theCheckBoxes) return QVariant();
            return row->IsChecked() ? Qt::Checked : Qt::Unchecked;
        case Qt::AccessibleTextRole:
            return column == 0 ? RowText(aIndex.row()) : SpokenCell(aIndex.row(), column);
        case Qt::SizeHintRole:
            return QSize(0, theList.RowHeight());
        default:
            return QVariant();
    }
}

QVariant ListViewModel::headerData(int aSection, Qt::Orientation aOrientation, int aRole) const {
    if (aOrientation != Qt::Horizontal || aSection < 0 || aSection >= theList.ColumnCount())
        return QVariant();
    const ListColumn column = theList.Column(aSection);
    if (aRole == Qt::DisplayRole) return column.Caption;
    if (aRole == Qt::TextAlignmentRole)
        return QVariant::fromValue(column.Alignment | Qt::AlignVCenter);
    return QVariant();
}

/// A cell that shows a picture alone says which column has it.
QString ListViewModel::SpokenCell(int aRow, int aColumn) const {
    const ListRow *row = theList.theRows->At(aRow);
    const QString &text = row->CellText(aColumn);
    return text.isEmpty() && !row->CellIcon(aColumn).isEmpty() ? theList.Column(aColumn).Caption
                                                               : text;
}

/// The first column often shows a picture alone, so that its accessible text tells the whole row.
QString ListViewModel::RowText(int aRow) const {
    const ListRow *row = theList.theRows->At(aRow);
    QStringList texts;
    if (!row->Text().isEmpty()) texts << row->Text();
    for (int column = 1; column < theList.ColumnCount(); ++column)
        if (theList.Column(column).Width > 0) texts << SpokenCell(aRow, column);
    texts.removeAll(QString());
    return texts.join(QStringLiteral("; "));
}

}  // namespace Vk_DocQuery
