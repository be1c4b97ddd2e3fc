#pragma once

#include <memory>
#include <vector>

#include <QString>

namespace Vk_DocQuery {

/// While it lives, suppliers of records have a place for notes on this thread. One inside another,
/// as when a supplier reads a file itself, has notes of its own.
class OpenNotes {
public:
    OpenNotes();
    ~OpenNotes();
    OpenNotes(const OpenNotes &) = delete;
    OpenNotes &operator=(const OpenNotes &) = delete;

    std::shared_ptr<void> &Under(QStringView aName);

private:
    struct Note {
        QString Name;
        std::shared_ptr<void> What;
    };
    std::vector<Note> theNotes;  // one for each class of records: a handful
    OpenNotes *theOuter;
};

}  // namespace Vk_DocQuery
