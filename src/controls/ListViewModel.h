#pragma once

#include <QAbstractItemModel>

namespace Vk_DocQuery {

class ListView;

/// What the view of a ListView asks for, read from the rows themselves. The view is told of changes
/// by Refresh alone, once for any number of them; until then the number of rows stays the one it
/// was told.
class ListViewModel : public QAbstractItemModel {
    Q_OBJECT

public:
    explicit ListViewModel(ListView &aList);

    void ResetColumns();
    void Refresh(int aRowCount);

    QModelIndex index(int aRow, int aColumn,
                      const QModelIndex &aParent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &aIndex) const override;
    int rowCount(const QModelIndex &aParent = QModelIndex()) const override;
    int columnCount(const QModelIndex &aParent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &aParent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &aIndex) const override;
    QVariant data(const QModelIndex &aIndex, int aRole) const override;
    QVariant headerData(int aSection, Qt::Orientation aOrientation, int aRole) const override;

private:
    QString SpokenCell(int aRow, int aColumn) const;
    QString RowText(int aRow) const;

    ListView &theList;
    int theRowCount = 0;
};

}  // namespace Vk_DocQuery
