#pragma once

#include <memory>
#include <vector>

#include <QByteArray>

#include <Vk_DocQuery/Providers.h>

namespace Vk_Records {

/// Keys that compare, byte by byte, as names do in a Russian list: signs, digits, Cyrillic, Latin;
/// case has no weight, an accent (the dots of "ё" above all) only between names that are else the
/// same. It depends neither on a server's collation nor on how Qt was built.
QByteArray RussianKey(const QString &aName);

/// Records in the order of their names; where names are alike, as they were taken.
class InRussianOrder {
public:
    void Take(const QString &aName, std::shared_ptr<Vk_DocQuery::Record> aRecord);
    /// The records, which are gone here then.
    std::shared_ptr<Vk_DocQuery::RecordCollection> Ordered();

private:
    struct Entry {
        quint64 Part = 0;     // the eight bytes of the key that are compared
        qsizetype Begin = 0;  // of the key, among all keys
        quint32 Size = 0;
        std::shared_ptr<Vk_DocQuery::Record> Object;
    };
    using Place = std::vector<Entry>::iterator;
    void Sort(Place aBegin, Place aEnd, quint32 aDone);

    std::vector<Entry> theEntries;
    QByteArray theKeys;
};

}  // namespace Vk_Records
