#include "foundation/mVkDBProvider.h"

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/RecordAnnouncements.h>

#include "foundation/Accessor.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "mVkDBProvider";
const QString theAnnouncements = QStringLiteral("Vk_DBProvider.RecordAnnouncements");

template <class Tell>
void Announce(Tell aTell) noexcept {
    IgnoringFailures([&] {
        if (ClassRegistry::IsRegistered(theAnnouncements))
            aTell(*CreateObjectAs<RecordAnnouncements>(theAnnouncements));
    });
}

}  // namespace

RecordAnnouncements::~RecordAnnouncements() = default;
void RecordAnnouncements::AnnounceRecords(const QString &, const std::vector<double> &) {}
void RecordAnnouncements::AnnounceFormNames(const std::vector<double> &) {}

BlankQueries &GetBlankQueries() try {
    thread_local std::shared_ptr<BlankQueries> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.BlankQueries"));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DBQAccStream &GetDBQAccStream() try {
    thread_local std::shared_ptr<DBQAccStream> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.DBQAccStream"));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

PersonQueries &GetPersonQueries() try {
    thread_local std::shared_ptr<PersonQueries> slot;
    return Accessed(slot, QStringLiteral("Vk_DBProvider.PersonQueries"));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs) noexcept {
    Announce([&](RecordAnnouncements &supplier) { supplier.AnnounceRecords(aClass, aIDs); });
}

void AnnounceFormNames(const std::vector<double> &aIDs) noexcept {
    Announce([&](RecordAnnouncements &supplier) { supplier.AnnounceFormNames(aIDs); });
}

}  // namespace Vk_DocQuery
