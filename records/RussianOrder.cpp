#include "RussianOrder.h"

#include <algorithm>
#include <array>

#include <QtEndian>

namespace Vk_Records {

namespace {

/// All that has a place of its own. "й" has, as it is no "и" with a sign on it; "ё" has none.
constexpr char16_t theOrder[] =
    u" _-‐–—,;:!?.'‘’\"“”„«»()[]{}§@*/\\&#%`^°+±<=>|~$€0123456789"
    u"абвгґдђеєжзѕиійјклљмнњопрстћуфхцчџшщъыьэюяabcdefghijklmnopqrstuvwxyz";
constexpr std::size_t theListed = 0x2100;
// What has no place of its own comes behind all that has, by its code in two further bytes.
constexpr quint8 theOther = 0xFF;
static_assert(std::size(theOrder) < theOther);

using Weights = std::array<quint8, theListed>;

const Weights &TheWeights() {
    static const Weights weights = [] {
        Weights made{};
        quint8 weight = 0;
        for (const char16_t *sign = theOrder; *sign != 0; ++sign) {
            ++weight;
            if (*sign < theListed) made[*sign] = weight;
            made[QChar(*sign).toUpper().unicode()] = weight;
        }
        return made;
    }();
    return weights;
}

/// What a key is made of.
class Key {
public:
    explicit Key(qsizetype aLength) { theNames.reserve(aLength); }

    void Add(QChar aSign) {
        static const Weights &weights = TheWeights();
        const char16_t code = aSign.unicode();
        const quint8 weight = code < theListed ? weights[code] : quint8(0);
        if (weight == 0) return AddUnlisted(aSign);
        theNames.append(static_cast<char>(weight));
        ++theSigns;
    }
    QByteArray Text() const {
        return theAccents.isEmpty() ? theNames : theNames + '\0' + theAccents;
    }

private:
    void AddUnlisted(QChar aSign) {
        if (aSign.isSpace()) return Add(u' ');
        if (aSign.isMark()) return AddAccent(aSign);
        if (!aSign.isPrint() && !aSign.isSurrogate()) return;
        const QString parts = aSign.decomposition();
        if (parts.isEmpty()) return AddOther(aSign);
        for (const QChar part : parts) Add(part);
    }
    static void Append(QByteArray &rTo, char16_t aCode) {
        rTo.append(static_cast<char>(aCode >> 8U));
        rTo.append(static_cast<char>(aCode & 0xFFU));
    }
    void AddAccent(QChar aSign) {
        while (theAccents.size() / 2 < theSigns - 1) Append(theAccents, 1);
        Append(theAccents, aSign.unicode());
    }
    void AddOther(QChar aSign) {
        theNames.append(static_cast<char>(theOther));
        Append(theNames, aSign.toCaseFolded().unicode());
        ++theSigns;
    }

    QByteArray theNames;
    qsizetype theSigns = 0;
    QByteArray theAccents;  // one for each sign up to the last that has any
};

}  // namespace

QByteArray RussianKey(const QString &aName) {
    Key key(aName.size());
    for (const QChar sign : aName) key.Add(sign);
    return key.Text();
}

void RussianOrder::Take(const QString &aName) {
    const qsizetype begin = theKeys.size();
    theKeys += RussianKey(aName);
    theEntries.push_back({0, begin, static_cast<quint32>(theKeys.size() - begin),
                          static_cast<quint32>(theEntries.size())});
}

/// Eight bytes are one number to compare; those who have them in common go on with the next eight.
void RussianOrder::Sort(Place aBegin, Place aEnd, quint32 aDone) {
    bool goesOn = false;
    for (Place entry = aBegin; entry != aEnd; ++entry) {
        const quint32 done = std::min(aDone, entry->Size);
        const quint32 size = std::min<quint32>(entry->Size - done, sizeof entry->Part);
        std::array<char, sizeof entry->Part> part{};
        std::copy_n(theKeys.cbegin() + entry->Begin + done, size, part.begin());
        entry->Part = qFromBigEndian<quint64>(part.data());
        goesOn = goesOn || entry->Size > aDone + part.size();
    }
    std::stable_sort(aBegin, aEnd,
                     [](const Entry &left, const Entry &right) { return left.Part < right.Part; });
    while (goesOn && aBegin != aEnd) {
        const Place end = std::find_if(
            aBegin, aEnd, [&](const Entry &entry) { return entry.Part != aBegin->Part; });
        if (end - aBegin > 1) Sort(aBegin, end, aDone + sizeof aBegin->Part);
        aBegin = end;
    }
}

std::vector<quint32> RussianOrder::Numbers() {
    Sort(theEntries.begin(), theEntries.end(), 0);
    std::vector<quint32> numbers;
    numbers.reserve(theEntries.size());
    for (const Entry &entry : theEntries) numbers.push_back(entry.Number);
    return numbers;
}

void InRussianOrder::Take(const QString &aName, std::shared_ptr<Vk_DocQuery::Record> aRecord) {
    theOrder.Take(aName);
    theRecords.push_back(std::move(aRecord));
}

std::shared_ptr<Vk_DocQuery::RecordCollection> InRussianOrder::Ordered() {
    auto records = std::make_shared<Vk_DocQuery::RecordCollection>();
    records->Reserve(static_cast<qsizetype>(theRecords.size()));
    for (const quint32 number : theOrder.Numbers()) {
        const double id = theRecords[number]->ID();
        records->Add(std::move(theRecords[number]), Vk_DocQuery::ObjectKey(id));
    }
    *this = InRussianOrder();
    return records;
}

}  // namespace Vk_Records
