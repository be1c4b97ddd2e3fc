#include "lists/SearchTexts.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace Vk_DocQuery {

namespace {

constexpr char16_t theSeparator = u'|';
constexpr std::size_t theNowhere = std::u16string::npos;

/// Upper-case units of Latin, Greek and Cyrillic letters; 0 where the upper-case form is not one
/// unit.
using UpperUnits = std::array<char16_t, 0x530>;

UpperUnits MakeUpperUnits() {
    UpperUnits units{};
    for (std::size_t unit = 0; unit < units.size(); ++unit) {
        const QString upper = QString(QChar(static_cast<char16_t>(unit))).toUpper();
        units[unit] = upper.size() == 1 ? upper.front().unicode() : char16_t(0);
    }
    return units;
}

/// Where aNeedle next occurs, or theNowhere. Most places fall out by the first and the last unit
/// alone, which the processor compares for many places at a time.
std::size_t FindFrom(const std::u16string &aText, std::size_t aFrom, std::u16string_view aNeedle) {
    constexpr std::size_t theBlock = 64;
    if (aText.size() < aNeedle.size()) return theNowhere;
    const std::size_t end = aText.size() - aNeedle.size() + 1;  // behind the last possible place
    const char16_t first = aNeedle.front();
    const char16_t last = aNeedle.back();
    const char16_t *heads = aText.data();
    const char16_t *tails = heads + aNeedle.size() - 1;
    while (aFrom < end) {
        const std::size_t count = std::min(theBlock, end - aFrom);
        if (count == theBlock) {
            quint16 hits = 0;
            for (std::size_t i = 0; i < theBlock; ++i)
                hits = static_cast<quint16>(
                    hits | ((heads[aFrom + i] == first) & (tails[aFrom + i] == last)));
            if (hits == 0) {
                aFrom += theBlock;
                continue;
            }
        }
        for (std::size_t i = aFrom; i < aFrom + count; ++i) {
            if (heads[i] == first && tails[i] == last &&
                std::u16string_view(heads + i, aNeedle.size()) == aNeedle)
                return i;
        }
        aFrom += count;
    }
    return theNowhere;
}

}  // namespace

void SearchTexts::Clear() {
    theText.clear();
    theEnds.clear();
}

void SearchTexts::Reserve(int aCount) {
    constexpr std::size_t theUsualLength = 64;
    theText.reserve(static_cast<std::size_t>(aCount) * theUsualLength);
    theEnds.reserve(static_cast<std::size_t>(aCount));
}

void SearchTexts::Begin() {
    theEnds.push_back(theText.size());
    theFieldIsFirst = true;
}

void SearchTexts::AddField(const QString &aField) {
    if (!theFieldIsFirst) theText.push_back(theSeparator);
    theFieldIsFirst = false;
    AppendUpper(aField);
    theEnds.back() = theText.size();
}

void SearchTexts::Squeeze() {
    theText.shrink_to_fit();
}

QString SearchTexts::Text(int aNumber) const {
    const auto number = static_cast<std::size_t>(aNumber);
    const std::size_t begin = BeginOf(number);
    return QString(reinterpret_cast<const QChar *>(theText.data() + begin),
                   static_cast<qsizetype>(theEnds[number] - begin));
}

QString SearchTexts::NeedleOf(const QString &aFilter) {
    const QString upper = aFilter.toUpper();
    QStringView needle(upper);
    while (needle.startsWith(u' ')) needle = needle.sliced(1);
    while (needle.endsWith(u' ')) needle.chop(1);
    return needle.toString();
}

std::vector<int> SearchTexts::Matching(const QString &aFilter) const {
    std::vector<int> found;
    if (aFilter.isEmpty()) {
        found.resize(theEnds.size());
        std::iota(found.begin(), found.end(), 0);
        return found;
    }
    const std::u16string_view needle(reinterpret_cast<const char16_t *>(aFilter.utf16()),
                                     static_cast<std::size_t>(aFilter.size()));
    std::size_t number = 0;
    std::size_t place = FindFrom(theText, 0, needle);
    while (place != theNowhere) {
        while (theEnds[number] <= place) ++number;
        // A find that reaches into the next text is none, and none behind it in this text is.
        if (place + needle.size() <= theEnds[number]) found.push_back(static_cast<int>(number));
        place = FindFrom(theText, theEnds[number], needle);
    }
    return found;
}

/// The upper-case form as QString::toUpper makes it; nearly all texts are of letters whose form is
/// one unit and go the short way.
void SearchTexts::AppendUpper(const QString &aField) {
    static const UpperUnits units = MakeUpperUnits();
    const std::size_t begin = theText.size();
    theText.resize(begin + static_cast<std::size_t>(aField.size()));
    char16_t *out = theText.data() + begin;
    for (const QChar character : aField) {
        const char16_t unit = character.unicode();
        const char16_t upper = unit < units.size() ? units[unit] : char16_t(0);
        if (upper == 0) {
            theText.resize(begin);
            theText += aField.toUpper().toStdU16String();
            return;
        }
        *out++ = upper;
    }
}

}  // namespace Vk_DocQuery
