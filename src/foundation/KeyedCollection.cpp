#include <algorithm>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/KeyedCollection.h>

namespace Vk_DocQuery {

namespace {

constexpr std::size_t theFirstSlots = 16;
constexpr std::size_t theFew = 4;  // keys that are looked through, without slots
const QString theNoKey;

quint32 HashOf(const QString &aKey) {
    quint64 hash = 14695981039346656037U;
    for (const QChar character : aKey) {
        const char16_t unit = character.unicode();
        hash ^= unit < 0x80 ? static_cast<char16_t>(unit >= u'A' && unit <= u'Z' ? unit + 32 : unit)
                            : character.toCaseFolded().unicode();
        hash *= 1099511628211U;
    }
    return static_cast<quint32>(hash ^ (hash >> 32U));
}

bool SameKey(const QString &aLeft, const QString &aRight) {
    return aLeft.compare(aRight, Qt::CaseInsensitive) == 0;
}

}  // namespace

void RaiseKeyMissing(const QString &aKey) {
    throw Failure(InvalidArgument, QStringLiteral("KeyedCollection"),
                  QStringLiteral("В коллекции нет элемента с ключом \"%1\".").arg(aKey));
}

void RaiseSubscript(qsizetype aIndex) {
    throw Failure(SubscriptOutOfRange, QStringLiteral("KeyedCollection"),
                  QStringLiteral("Индекс вне допустимого диапазона: %1.").arg(aIndex));
}

KeyIndex::KeyIndex() = default;
KeyIndex::KeyIndex(const KeyIndex &) = default;
KeyIndex::KeyIndex(KeyIndex &&aOther) noexcept {
    Take(aOther);
}
KeyIndex &KeyIndex::operator=(const KeyIndex &) = default;
KeyIndex &KeyIndex::operator=(KeyIndex &&aOther) noexcept {
    if (this != &aOther) Take(aOther);
    return *this;
}
KeyIndex::~KeyIndex() = default;

/// What is left has no items, as the items of the collection that it belongs to have gone, too.
void KeyIndex::Take(KeyIndex &rOther) noexcept {
    theKeys = std::exchange(rOther.theKeys, {});
    theCount = std::exchange(rOther.theCount, 0);
    theReserved = std::exchange(rOther.theReserved, 0);
    theSlots = std::exchange(rOther.theSlots, {});
    theUsed = std::exchange(rOther.theUsed, 0);
    theSlotsValid = std::exchange(rOther.theSlotsValid, true);
}

qsizetype KeyIndex::Find(const QString &aKey) const {
    if (aKey.isEmpty()) return -1;
    if (theSlots.empty()) {
        const auto found = std::find_if(theKeys.begin(), theKeys.end(),
                                        [&](const QString &key) { return SameKey(key, aKey); });
        return found == theKeys.end() ? -1 : found - theKeys.begin();
    }
    if (!theSlotsValid) FillSlots();
    return static_cast<qsizetype>(theSlots[SlotOf(aKey, HashOf(aKey))].Position) - 1;
}

/// The slot that holds the key, or the free one where it belongs.
std::size_t KeyIndex::SlotOf(const QString &aKey, quint32 aHash) const {
    const std::size_t mask = theSlots.size() - 1;
    std::size_t slot = aHash & mask;
    while (theSlots[slot].Position != 0 &&
           (theSlots[slot].Hash != aHash || !SameKey(theKeys[theSlots[slot].Position - 1], aKey)))
        slot = (slot + 1) & mask;
    return slot;
}

void KeyIndex::Append(const QString &aKey) {
    if (AppendIfAbsent(aKey)) return;
    throw Failure(KeyAlreadyPresent, QStringLiteral("KeyedCollection"),
                  QStringLiteral("Ключ \"%1\" уже есть в коллекции.").arg(aKey));
}

bool KeyIndex::AppendIfAbsent(const QString &aKey) {
    if (aKey.isEmpty()) {
        ++theCount;
        return true;
    }
    if (theSlots.empty()) {
        if (Find(aKey) >= 0) return false;
        if (std::max(theCount + 1, theReserved) <= theFew) {
            theKeys.resize(theCount++);
            theKeys.push_back(aKey);
            return true;
        }
        Grow(std::max(theCount + 1, theReserved) * 4);
        theSlotsValid = false;
    }
    if (!theSlotsValid) FillSlots();
    // Room that was reserved is made by the first key; items without a key need none.
    if ((theUsed + 1) * 2 > theSlots.size()) Grow(std::max((theUsed + 1) * 2, theReserved) * 2);
    if (theReserved > theKeys.capacity()) theKeys.reserve(theReserved);
    const quint32 hash = HashOf(aKey);
    const std::size_t slot = SlotOf(aKey, hash);
    if (theSlots[slot].Position != 0) return false;
    theKeys.resize(theCount);
    theKeys.push_back(aKey);
    theSlots[slot] = {hash, static_cast<quint32>(++theCount)};
    ++theUsed;
    return true;
}

void KeyIndex::RemoveAt(qsizetype aPosition) {
    --theCount;
    if (static_cast<std::size_t>(aPosition) >= theKeys.size()) return;
    theKeys.erase(theKeys.begin() + aPosition);
    theSlotsValid = false;  // positions have moved; the next look-up files them anew
}

const QString &KeyIndex::KeyAt(qsizetype aPosition) const {
    const auto position = static_cast<std::size_t>(aPosition);
    return position < theKeys.size() ? theKeys[position] : theNoKey;
}

void KeyIndex::Forget(qsizetype aPosition) {
    if (static_cast<std::size_t>(aPosition) >= theKeys.size()) return;
    QString &key = theKeys[static_cast<std::size_t>(aPosition)];
    if (key.isEmpty()) return;
    if (theSlotsValid && !theSlots.empty()) {
        const std::size_t mask = theSlots.size() - 1;
        std::size_t hole = HashOf(key) & mask;
        while (theSlots[hole].Position != static_cast<quint32>(aPosition + 1))
            hole = (hole + 1) & mask;
        // Later keys of the same run move up, so that a look-up never meets a gap before its key.
        for (std::size_t slot = (hole + 1) & mask; theSlots[slot].Position != 0;
             slot = (slot + 1) & mask) {
            const std::size_t home = theSlots[slot].Hash & mask;
            if (((slot - home) & mask) < ((slot - hole) & mask)) continue;
            theSlots[hole] = theSlots[slot];
            hole = slot;
        }
        theSlots[hole] = Slot();
        --theUsed;
    }
    key.clear();
}

void KeyIndex::Clear() {
    theKeys.clear();
    theSlots.clear();
    theCount = theUsed = theReserved = 0;
    theSlotsValid = true;
}

void KeyIndex::Reserve(qsizetype aCount) {
    theReserved = static_cast<std::size_t>(std::max<qsizetype>(aCount, 0));
}

void KeyIndex::Grow(std::size_t aSlots) const {
    std::size_t count = theFirstSlots;
    while (count < aSlots) count *= 2;
    std::vector<Slot> grown(count);
    const std::size_t mask = count - 1;
    for (const Slot &slot : theSlots) {
        if (slot.Position == 0) continue;
        std::size_t place = slot.Hash & mask;
        while (grown[place].Position != 0) place = (place + 1) & mask;
        grown[place] = slot;
    }
    theSlots = std::move(grown);
}

void KeyIndex::FillSlots() const {
    std::fill(theSlots.begin(), theSlots.end(), Slot());
    theUsed = 0;
    const std::size_t mask = theSlots.size() - 1;
    for (std::size_t position = 0; position < theKeys.size(); ++position) {
        if (theKeys[position].isEmpty()) continue;
        const quint32 hash = HashOf(theKeys[position]);
        std::size_t slot = hash & mask;
        while (theSlots[slot].Position != 0) slot = (slot + 1) & mask;
        theSlots[slot] = {hash, static_cast<quint32>(position + 1)};
        ++theUsed;
    }
    theSlotsValid = true;
}

}  // namespace Vk_DocQuery
