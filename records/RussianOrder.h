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

/// The order of names; where they are alike, that in which they were taken.
class RussianOrder {
public:
    void Take(const QString &aName);
    /// The numbers of the names, counted from 0 as they were taken.
    std::vector<quint32> Numbers();

private:
    struct Entry {
        quint64 Part = 0;     // the eight bytes of the key that are compared
        qsizetype Begin = 0;  // of the key, among all keys
        quint32 Size = 0;
        quint32 Number = 0;
    };
    using Place = std::vector<Entry>::iterator;
    void Sort(Place aBegin, Place aEnd, quint32 aDone);

    std::vector<Entry> theEntries;
    QByteArray theKeys;
};

/// Records in the order of their names.
class InRussianOrder {
public:
    void Take(const QString &aName, std::shared_ptr<Vk_DocQuery::Record> aRecord);
    /// The records, which are gone here then.
    std::shared_ptr<Vk_DocQuery::RecordCollection> Ordered();

private:
    RussianOrder theOrder;
    std::vector<std::shared_ptr<Vk_DocQuery::Record>> theRecords;
};

}  // namespace Vk_Records
