#include "PeerTree.h"

#include <QHeaderView>

#include <Vk_DocQuery/Records.h>

#include "look/Fonts.h"
#include "look/Pictures.h"

namespace VkBench {

using namespace Vk_DocQuery;

namespace {
constexpr int theNameColumn = 3;
}

PeerTree::PeerTree(bool aCheckBoxes) : theCheckBoxes(aCheckBoxes) {
    setFont(WindowFont());
    setHeaderLabels({QStringLiteral("*"), QStringLiteral("ИНН"), QStringLiteral("КПП"),
                     QStringLiteral("Наименование/ФИО"), QStringLiteral("Головная организация")});
    const int widths[] = {40, 100, 80, 400, 400};
    for (int i = 0; i < 5; ++i) setColumnWidth(i, widths[i]);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    resize(861, 493);
}

QList<QTreeWidgetItem *> PeerTree::Made(const RecordCollection &aPersons,
                                        const std::vector<int> &aNumbers) const {
    const auto pictures = PickerImages();
    QList<QTreeWidgetItem *> items;
    items.reserve(static_cast<qsizetype>(aNumbers.size()));
    for (const int number : aNumbers) {
        const Record &person = *aPersons.At(number);
        auto *item = new QTreeWidgetItem;
        item->setIcon(0, pictures->Picture(person.GetIconKeyAsAccPerson()));
        if (theCheckBoxes) item->setCheckState(0, Qt::Unchecked);
        item->setData(0, Qt::UserRole, number);
        item->setText(1, person.Inn());
        item->setText(2, person.Kpp());
        item->setText(theNameColumn, person.GetDisplayName());
        const auto parent = person.GetParentOrganization();
        if (parent->ID() != 0) {
            item->setText(4, parent->GetDisplayNameAsAccPerson());
            item->setIcon(4, pictures->Picture(parent->GetIconKeyAsAccPerson()));
        }
        items << item;
    }
    return items;
}

void PeerTree::Fill(const RecordCollection &aPersons, const std::vector<int> &aNumbers) {
    clear();
    addTopLevelItems(Made(aPersons, aNumbers));
}

void PeerTree::CheckAll() {
    for (int i = 0; i < topLevelItemCount(); ++i) topLevelItem(i)->setCheckState(0, Qt::Checked);
}

std::vector<int> PeerTree::CheckedNumbers() const {
    std::vector<int> numbers;
    for (int i = 0; i < topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            numbers.push_back(item->data(0, Qt::UserRole).toInt());
    }
    return numbers;
}

void PeerTree::AddSelected(const RecordCollection &aPersons, const std::vector<int> &aNumbers) {
    clearSelection();
    const QList<QTreeWidgetItem *> items = Made(aPersons, aNumbers);
    addTopLevelItems(items);
    sortItems(theNameColumn, Qt::AscendingOrder);
    // One run for all: the list was empty. Item by item it would take minutes.
    const QModelIndex first = indexFromItem(topLevelItem(0));
    const QModelIndex last = indexFromItem(topLevelItem(topLevelItemCount() - 1), 4);
    selectionModel()->select({first, last}, QItemSelectionModel::ClearAndSelect);
    setCurrentItem(items.last(), 0, QItemSelectionModel::NoUpdate);
    scrollToItem(items.last());
}

}  // namespace VkBench
