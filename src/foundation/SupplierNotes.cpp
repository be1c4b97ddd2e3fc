#include <Vk_DocQuery/SupplierNotes.h>

#include "foundation/OpenNotes.h"

namespace Vk_DocQuery {

namespace {
thread_local OpenNotes *theInnermost = nullptr;
}

OpenNotes::OpenNotes() : theOuter(theInnermost) {
    theInnermost = this;
}

OpenNotes::~OpenNotes() {
    theInnermost = theOuter;
}

std::shared_ptr<void> &OpenNotes::Under(QStringView aName) {
    for (Note &note : theNotes) {
        if (note.Name == aName) return note.What;
    }
    theNotes.push_back({aName.toString(), nullptr});
    return theNotes.back().What;
}

std::shared_ptr<void> *SupplierNotes(QStringView aName) {
    return theInnermost ? &theInnermost->Under(aName) : nullptr;
}

}  // namespace Vk_DocQuery
