#include "KeptRows.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <utility>

namespace Vk_Records {

namespace {

constexpr std::size_t theFirstBlock = 1024;
constexpr std::size_t theLargestBlock = std::size_t{256} * 1024;

}  // namespace

KeptRow KeptRows::Take(const Row &aRow) {
    aRow.CopyTo(theRow);
    const std::vector<char> &bytes = theRow.Bytes();
    char *const kept = Room(bytes.size());
    std::copy(bytes.begin(), bytes.end(), kept);
    return KeptRow(kept);
}

/// Rows begin where numbers may lie.
char *KeptRows::Room(std::size_t aSize) {
    constexpr std::size_t step = alignof(qint64);
    const std::size_t size = (aSize + step - 1) / step * step;
    if (theBlockSize - theUsed < size) {
        const std::size_t next = std::clamp(theBlockSize * 2, theFirstBlock, theLargestBlock);
        theBlockSize = std::max(next, size);
        theBlocks.push_back(std::make_unique_for_overwrite<char[]>(theBlockSize));
        theUsed = 0;
    }
    return theBlocks.back().get() + std::exchange(theUsed, theUsed + size);
}

KeptByID::KeptByID(Connection &aConnection, const ManySql &aSql, const std::vector<double> &aIDs,
                   int aIDColumn) {
    Ask(aIDs);
    if (theEntries.empty()) return;
    const bool isServer = aConnection.Where().IsServer;
    theRows.reserve(theEntries.size());
    Place likely = theEntries.begin();
    aConnection.Read(isServer ? aSql.Server : aSql.File, {List(isServer)},
                     [&](const Row &row) { likely = Take(row, aIDColumn, likely); });
}

void KeptByID::Ask(const std::vector<double> &aIDs) {
    theEntries.reserve(aIDs.size());
    for (const double id : aIDs) {
        const auto listed = static_cast<quint32>(theEntries.size());
        if (const auto stored = StoredID(id)) theEntries.push_back({*stored, listed});
    }
    theOrder.resize(theEntries.size());
    std::sort(theEntries.begin(), theEntries.end(),
              [](const Entry &left, const Entry &right) { return left.ID < right.ID; });
    std::size_t count = 0;  // of those that differ
    for (const Entry &entry : theEntries) {
        const bool isNew = count == 0 || theEntries[count - 1].ID != entry.ID;
        theOrder[entry.Listed] = static_cast<quint32>(isNew ? count : count - 1);
        if (isNew)
            theEntries[count++] = entry;
        else
            theEntries[count - 1].IsRepeated = true;
    }
    theEntries.resize(count);
}

/// As the database takes it.
QString KeptByID::List(bool aIsForServer) const {
    std::string text;
    text.reserve(theEntries.size() * 11 + 2);
    std::array<char, 24> digits{};
    for (const Entry &entry : theEntries) {
        text += text.empty() ? (aIsForServer ? '{' : '[') : ',';
        text.append(digits.data(),
                    std::to_chars(digits.data(), digits.data() + digits.size(), entry.ID).ptr);
    }
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())) +
           (aIsForServer ? u'}' : u']');
}

KeptByID::Place KeptByID::Take(const Row &aRow, int aIDColumn, Place aLikely) {
    const auto isBefore = [](const Entry &entry, qint64 id) { return entry.ID < id; };
    const qint64 id = aRow.Integer(aIDColumn);
    Place place = aLikely;
    if (place != theEntries.end() && place->ID < id) ++place;
    if (place == theEntries.end() || place->ID != id)
        place = std::lower_bound(theEntries.begin(), theEntries.end(), id, isBefore);
    if (place == theEntries.end() || place->ID != id) return aLikely;
    if (place->Count++ == 0) place->Begin = static_cast<quint32>(theRows.size());
    theRows.push_back(theMemory.Take(aRow));
    return place;
}

KeptByID::Answer KeptByID::Find(qint64 aID) {
    const Entry *entry = nullptr;
    if (theNext < theOrder.size() && theEntries[theOrder[theNext]].ID == aID) {
        entry = &theEntries[theOrder[theNext++]];
    } else {
        const auto isBefore = [](const Entry &known, qint64 id) { return known.ID < id; };
        const auto found = std::lower_bound(theEntries.begin(), theEntries.end(), aID, isBefore);
        if (found == theEntries.end() || found->ID != aID) return {};
        entry = &*found;
        theNext = entry->Listed + std::size_t{1};
    }
    return {std::span(theRows).subspan(entry->Begin, entry->Count), true, entry->IsRepeated};
}

}  // namespace Vk_Records
