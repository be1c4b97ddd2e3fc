#include "browser/SearchTexts.h"

#include <algorithm>
#include <numeric>

#include <QStringMatcher>

namespace Vk_DocQuery {

void SearchTexts::Clear() {
    theTexts.clear();
    theEnds.clear();
}

void SearchTexts::Add(const QString &aText) {
    theTexts += aText.toUpper();
    theEnds.push_back(theTexts.size());
}

std::vector<int> SearchTexts::Holding(const QString &aNeedle) const {
    if (aNeedle.isEmpty()) {
        std::vector<int> all(theEnds.size());
        std::iota(all.begin(), all.end(), 0);
        return all;
    }
    std::vector<int> found;
    const QStringMatcher matcher(aNeedle);
    auto end = theEnds.begin();
    qsizetype place = matcher.indexIn(theTexts);
    while (place >= 0) {
        if (place >= *end) end = std::upper_bound(end, theEnds.end(), place);
        const bool runsOver = place + aNeedle.size() > *end;
        if (!runsOver) found.push_back(static_cast<int>(end - theEnds.begin()));
        // The first place in a text is enough; one across two texts is none.
        place = matcher.indexIn(theTexts, runsOver ? place + 1 : *end);
        if (!runsOver && place >= 0) ++end;
    }
    return found;
}

}  // namespace Vk_DocQuery
