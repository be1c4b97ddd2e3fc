#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <QString>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// The keys of a KeyedCollection: unique, compared without regard to case. Kept apart from the
/// items so that the class template stays small.
class VK_DOCQUERY_EXPORT KeyIndex {
public:
    /// Empty.
    KeyIndex();
    /// Copies and moves as values do; what was moved from is empty.
    KeyIndex(const KeyIndex &);
    /// See the copy.
    KeyIndex(KeyIndex &&) noexcept;
    /// See the copy.
    KeyIndex &operator=(const KeyIndex &);
    /// See the copy.
    KeyIndex &operator=(KeyIndex &&) noexcept;
    /// Empty.
    ~KeyIndex();

    /// Position of the key, or -1.
    qsizetype Find(const QString &aKey) const;
    /// Adds the key of the item at the end; an empty key stands for no key. Raises
    /// KeyAlreadyPresent.
    void Append(const QString &aKey);
    /// The same without the failure; says whether it added.
    bool AppendIfAbsent(const QString &aKey);
    /// Takes out the item at the position; those behind it move up. The position must be there.
    void RemoveAt(qsizetype aPosition);
    /// Takes the key away and leaves its position to an item without a key.
    void Forget(qsizetype aPosition);
    /// Takes out everything.
    void Clear();
    /// Makes room for as many items in all.
    void Reserve(qsizetype aCount);
    /// An empty text for an item without a key.
    const QString &KeyAt(qsizetype aPosition) const;

private:
    struct Slot {
        quint32 Hash = 0;
        quint32 Position = 0;  // counted from 1; 0 is free
    };
    void Take(KeyIndex &rOther) noexcept;
    std::size_t SlotOf(const QString &aKey, quint32 aHash) const;
    void Grow(std::size_t aSlots) const;
    void FillSlots() const;

    std::vector<QString> theKeys;  // up to the last item that has one
    std::size_t theCount = 0;      // of items
    std::size_t theReserved = 0;
    mutable std::vector<Slot> theSlots;  // open addressing
    mutable std::size_t theUsed = 0;
    mutable bool theSlotsValid = true;
};

/// Raises InvalidArgument with a text that names the key.
[[noreturn]] VK_DOCQUERY_EXPORT void RaiseKeyMissing(const QString &aKey);
/// Raises SubscriptOutOfRange with a text that names the index.
[[noreturn]] VK_DOCQUERY_EXPORT void RaiseSubscript(qsizetype aIndex);

/// An ordered collection with optional unique text keys. Order is the order of adding.
template <class Item>
class KeyedCollection {
public:
    /// How many items there are.
    qsizetype Count() const noexcept { return static_cast<qsizetype>(theItems.size()); }
    /// Whether there are none.
    bool IsEmpty() const noexcept { return theItems.empty(); }

    /// Adds behind the last item. An empty key adds without a key. Raises KeyAlreadyPresent.
    void Add(Item aItem, const QString &aKey = QString()) {
        theIndex.Append(aKey);
        theItems.push_back(std::move(aItem));
    }
    /// Adds unless the key is there already; says whether it added.
    bool AddIfAbsent(Item aItem, const QString &aKey) {
        if (!theIndex.AppendIfAbsent(aKey)) return false;
        theItems.push_back(std::move(aItem));
        return true;
    }

    /// Raises SubscriptOutOfRange. aIndex counts from 0.
    const Item &At(qsizetype aIndex) const {
        if (aIndex < 0 || aIndex >= Count()) RaiseSubscript(aIndex);
        return theItems[static_cast<std::size_t>(aIndex)];
    }
    /// Raises InvalidArgument if the key is missing.
    const Item &Fetch(const QString &aKey) const {
        const Item *found = Find(aKey);
        if (!found) RaiseKeyMissing(aKey);
        return *found;
    }
    /// The item, or a null pointer.
    const Item *Find(const QString &aKey) const {
        const qsizetype position = theIndex.Find(aKey);
        return position < 0 ? nullptr : &theItems[static_cast<std::size_t>(position)];
    }
    /// Whether an item has the key.
    bool Contains(const QString &aKey) const { return theIndex.Find(aKey) >= 0; }
    /// The key of the item, empty if it has none. Raises SubscriptOutOfRange.
    const QString &KeyAt(qsizetype aIndex) const {
        if (aIndex < 0 || aIndex >= Count()) RaiseSubscript(aIndex);
        return theIndex.KeyAt(aIndex);
    }

    /// Raises InvalidArgument if the key is missing.
    void Remove(const QString &aKey) {
        const qsizetype position = theIndex.Find(aKey);
        if (position < 0) RaiseKeyMissing(aKey);
        RemoveAt(position);
    }
    /// Raises SubscriptOutOfRange.
    void RemoveAt(qsizetype aIndex) {
        if (aIndex < 0 || aIndex >= Count()) RaiseSubscript(aIndex);
        theIndex.RemoveAt(aIndex);
        theItems.erase(theItems.begin() + aIndex);
    }
    /// Takes out everything.
    void Clear() {
        theIndex.Clear();
        theItems.clear();
    }
    /// Makes room for as many items in all.
    void Reserve(qsizetype aCount) {
        theIndex.Reserve(aCount);
        theItems.reserve(static_cast<std::size_t>(aCount));
    }

    /// The first item, for loops. Good until the collection changes.
    auto begin() const noexcept { return theItems.cbegin(); }
    /// Behind the last item.
    auto end() const noexcept { return theItems.cend(); }

private:
    std::vector<Item> theItems;
    KeyIndex theIndex;
};

class Record;
/// What suppliers hand out and the lists of a search hold; shares its records.
using RecordCollection = KeyedCollection<std::shared_ptr<Record>>;

}  // namespace Vk_DocQuery
