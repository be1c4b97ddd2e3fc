#include "foundation/mVkDBProvider.h"

#include "foundation/Accessor.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "mVkDBProvider";
}

BlankQueries &GetBlankQueries() try {
    thread_local std::shared_ptr<BlankQueries> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.BlankQueries"));
} catch (...) {
    RaiseErrorUp(theModule, "GetBlankQueries");
}

DBQAccStream &GetDBQAccStream() try {
    thread_local std::shared_ptr<DBQAccStream> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.DBQAccStream"));
} catch (...) {
    RaiseErrorUp(theModule, "GetDBQAccStream");
}

PersonQueries &GetPersonQueries() try {
    thread_local std::shared_ptr<PersonQueries> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.PersonQueries"));
} catch (...) {
    RaiseErrorUp(theModule, "GetPersonQueries");
}

}  // namespace Vk_DocQuery
