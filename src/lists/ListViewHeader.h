#pragma once

#include <QAbstractTableModel>
#include <QHeaderView>

namespace Vk_DocQuery {

class ListView;

/// What the header of a ListView asks for: captions and alignments. The rows are no part of it.
class ListViewHeaderModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit ListViewHeaderModel(const ListView &aList);

    /// The columns have come or gone.
    void Reset();

    int rowCount(const QModelIndex &aParent = QModelIndex()) const override;
    int columnCount(const QModelIndex &aParent = QModelIndex()) const override;
    QVariant data(const QModelIndex &aIndex, int aRole) const override;
    QVariant headerData(int aSection, Qt::Orientation aOrientation, int aRole) const override;

private:
    const ListView &theList;
    int theColumnCount = 0;
};

/// The header of a ListView: sections of fixed order that can be clicked and widened.
class ListViewHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit ListViewHeader(ListView &aList);

    void ResetColumns() { theModel->Reset(); }
    /// The section is too narrow for its caption.
    bool CutsCaption(int aSection) const;

private:
    ListViewHeaderModel *theModel;
};

}  // namespace Vk_DocQuery
