#include "panel/LastTemplates.h"

#include <Vk_DocQuery/KeyedCollection.h>

#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/Present.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "miDocQuery";

/// Versions under the keys of their classes; absent until it is asked for.
thread_local std::shared_ptr<RecordCollection> theLastTemplates;

/// A version without a start counts as older than all others.
QDate Start(const Record &aVersion) {
    return VarToDateDef(aVersion.BegDate(), ZeroDate());
}

void BuildLastTemplates() try {
    const auto newest = std::make_shared<RecordCollection>();
    const auto versions = GetBlankQueries().GetTemplates(Null(), Null(), false);
    for (const std::shared_ptr<Record> &version : Present(versions, "GetTemplates")) {
        const std::shared_ptr<VkTemplType> type = Present(version, "VkTemplate").TemplateType();
        const QString key = ObjectKey(Present(type, "VkTemplType").ID());
        if (newest->AddIfAbsent(version, key)) continue;
        if (Start(*version) <= Start(*newest->Fetch(key))) continue;
        newest->Remove(key);
        newest->Add(version, key);
    }
    // Only a whole collection is kept: after a failure the next call tries anew.
    theLastTemplates = newest;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace

std::shared_ptr<Record> GetLastTemplateByTemplType(double aTemplTypeID) try {
    if (!theLastTemplates) BuildLastTemplates();
    const auto *found = theLastTemplates->Find(ObjectKey(aTemplTypeID));
    return found ? *found : nullptr;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
