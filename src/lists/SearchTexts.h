#pragma once

#include <string>
#include <vector>

#include <QString>

namespace Vk_DocQuery {

/// One upper-case text for each object of a list, by which a filter finds it. The texts are made
/// once and lie one behind the other, so that a key press costs one pass over plain memory.
class SearchTexts {
public:
    void Clear();
    void Reserve(int aCount);
    /// Starts the text of the next object.
    void Begin();
    /// Adds a field to the text last begun; '|' parts the fields.
    void AddField(const QString &aField);
    /// Gives back the room that was kept for growing.
    void Squeeze();

    int Count() const { return static_cast<int>(theEnds.size()); }
    /// aNumber counts from 0.
    QString Text(int aNumber) const;

    /// What a filter looks for: its text in upper case without the blanks around it. Other white
    /// space belongs to it.
    static QString NeedleOf(const QString &aFilter);
    /// Numbers of the objects in whose text the filter occurs, ascending. The comparison is exact,
    /// so that the filter has to be upper-case; an empty filter finds all.
    std::vector<int> Matching(const QString &aFilter) const;

private:
    std::size_t BeginOf(std::size_t aNumber) const {
        return aNumber == 0 ? 0 : theEnds[aNumber - 1];
    }
    void AppendUpper(const QString &aField);

    std::u16string theText;
    std::vector<std::size_t> theEnds;
    bool theFieldIsFirst = true;
};

}  // namespace Vk_DocQuery
