#pragma once

#include <vector>

#include <QString>

namespace Vk_DocQuery {

/// Texts in which the typed letters are looked for, upper-cased once. They stand in one piece of
/// memory, through which a search runs without a jump per text.
class SearchTexts {
public:
    void Clear();
    /// Adds a text; it is known by its number, counted from 0.
    void Add(const QString &aText);
    /// Numbers of the texts that hold the upper-cased needle, in order; an empty one is in all.
    std::vector<int> Holding(const QString &aNeedle) const;

private:
    QString theTexts;
    std::vector<qsizetype> theEnds;
};

}  // namespace Vk_DocQuery
