#pragma once

#include <vector>

#include <QTreeWidget>

#include <Vk_DocQuery/KeyedCollection.h>

namespace VkBench {

/// What a list of taxpayers costs with an item for each row: the same columns, texts and pictures
/// in a QTreeWidget.
class PeerTree : public QTreeWidget {
public:
    explicit PeerTree(bool aCheckBoxes);

    /// In place of the rows that are there.
    void Fill(const Vk_DocQuery::RecordCollection &aPersons, const std::vector<int> &aNumbers);
    void CheckAll();
    std::vector<int> CheckedNumbers() const;
    /// Adds the rows, sorts by name, selects exactly the new ones and shows the last of them.
    void AddSelected(const Vk_DocQuery::RecordCollection &aPersons,
                     const std::vector<int> &aNumbers);

private:
    QList<QTreeWidgetItem *> Made(const Vk_DocQuery::RecordCollection &aPersons,
                                  const std::vector<int> &aNumbers) const;

    bool theCheckBoxes;
};

}  // namespace VkBench
