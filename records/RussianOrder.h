#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include <Vk_DocQuery/Providers.h>

namespace Vk_Records {

/// Keys that compare, code unit by code unit, as names do in a Russian list: signs, digits,
/// Cyrillic, Latin; case has no weight, an accent (the dots of "ё" above all) only between names
/// that are else the same. It depends neither on a server's collation nor on how Qt was built.
QString RussianKey(const QString &aName);

/// Records in the order of their names; where names are alike, as they were taken.
class InRussianOrder {
public:
    void Take(const QString &aName, std::shared_ptr<Vk_DocQuery::Record> aRecord) {
        theEntries.push_back({RussianKey(aName), std::move(aRecord)});
    }
    /// Adds them to the collection, which are gone here then.
    void MoveTo(Vk_DocQuery::RecordCollection &rRecords) {
        std::stable_sort(
            theEntries.begin(), theEntries.end(),
            [](const Entry &left, const Entry &right) { return left.Key < right.Key; });
        for (Entry &entry : theEntries) {
            const double id = entry.Object->ID();
            rRecords.Add(std::move(entry.Object), Vk_DocQuery::ObjectKey(id));
        }
        theEntries.clear();
    }

private:
    struct Entry {
        QString Key;
        std::shared_ptr<Vk_DocQuery::Record> Object;
    };
    std::vector<Entry> theEntries;
};

}  // namespace Vk_Records
