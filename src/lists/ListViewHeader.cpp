#include "lists/ListViewHeader.h"

#include <QStyleOptionHeader>

#include "lists/ListView.h"

namespace Vk_DocQuery {

ListViewHeaderModel::ListViewHeaderModel(const ListView &aList) : theList(aList) {}

void ListViewHeaderModel::Reset() {
    beginResetModel();
    theColumnCount = theList.ColumnCount();
    endResetModel();
}

int ListViewHeaderModel::rowCount(const QModelIndex & /*aParent*/) const {
    return 0;
}

int ListViewHeaderModel::columnCount(const QModelIndex &aParent) const {
    return aParent.isValid() ? 0 : theColumnCount;
}

QVariant ListViewHeaderModel::data(const QModelIndex & /*aIndex*/, int /*aRole*/) const {
    return QVariant();
}

QVariant ListViewHeaderModel::headerData(int aSection, Qt::Orientation aOrientation,
                                         int aRole) const {
    if (aOrientation != Qt::Horizontal || aSection < 0 || aSection >= theList.ColumnCount())
        return QVariant();
    const ListColumn &column = theList.Column(aSection);
    if (aRole == Qt::DisplayRole) return column.Caption;
    if (aRole == Qt::TextAlignmentRole)
        return QVariant::fromValue(column.Alignment | Qt::AlignVCenter);
    if (aRole == Qt::ToolTipRole) return theList.HeaderTip(aSection);
    return QVariant();
}

ListViewHeader::ListViewHeader(ListView &aList)
    : QHeaderView(Qt::Horizontal, &aList), theModel(new ListViewHeaderModel(aList)) {
    theModel->setParent(this);
    setModel(theModel);
    setFocusPolicy(Qt::NoFocus);
    setSectionsClickable(true);
    setSectionsMovable(false);
    setStretchLastSection(false);
    setMinimumSectionSize(1);
    setHighlightSections(false);
}

/// The arrow of the sorting takes a part of the room.
bool ListViewHeader::CutsCaption(int aSection) const {
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = QRect(0, 0, sectionSize(aSection), height());
    if (isSortIndicatorShown() && sortIndicatorSection() == aSection)
        option.sortIndicator = QStyleOptionHeader::SortDown;
    const QRect label = style()->subElementRect(QStyle::SE_HeaderLabel, &option, this);
    const QString caption =
        theModel->headerData(aSection, orientation(), Qt::DisplayRole).toString();
    return fontMetrics().horizontalAdvance(caption) > label.width();
}

}  // namespace Vk_DocQuery
