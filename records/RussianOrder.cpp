#include "RussianOrder.h"

#include <array>

namespace Vk_Records {

namespace {

/// All that has a place of its own. "й" has, as it is no "и" with a sign on it; "ё" has none.
constexpr char16_t theOrder[] =
    u" _-‐–—,;:!?.'‘’\"“”„«»()[]{}§@*/\\&#%`^°+±<=>|~$€0123456789"
    u"абвгґдђеєжзѕиійјклљмнњопрстћуфхцчџшщъыьэюяabcdefghijklmnopqrstuvwxyz";
constexpr char16_t theOthersBegin = 0x200;
constexpr char16_t theLast = 0xFFFF;
constexpr std::size_t theListed = 0x2100;

using Weights = std::array<char16_t, theListed>;

const Weights &TheWeights() {
    static const Weights weights = [] {
        Weights made{};
        char16_t weight = 0;
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
        const char16_t code = aSign.unicode();
        const char16_t weight = code < theListed ? TheWeights()[code] : u'\0';
        if (weight == 0) return AddUnlisted(aSign);
        theNames.append(QChar(weight));
    }
    QString Text() const {
        return theAccents.isEmpty() ? theNames : theNames + QChar(0) + theAccents;
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
    void AddAccent(QChar aSign) {
        while (theAccents.size() < theNames.size() - 1) theAccents.append(QChar(1));
        theAccents.append(aSign);
    }
    void AddOther(QChar aSign) {
        const int weight = theOthersBegin + aSign.toCaseFolded().unicode();
        theNames.append(QChar(std::min<int>(weight, theLast)));
    }

    QString theNames;
    QString theAccents;  // one for each name's sign up to the last that has any
};

}  // namespace

QString RussianKey(const QString &aName) {
    Key key(aName.size());
    for (const QChar sign : aName) key.Add(sign);
    return key.Text();
}

}  // namespace Vk_Records
