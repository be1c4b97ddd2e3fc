#pragma once

#include <Vk_DocQuery/VkDocQueryData.h>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/OptionButton.h"
#include "controls/TabControl.h"
#include "lists/ListView.h"
#include "panel/VkDocQueryCriteries.h"
#include "support/MemoryRecords.h"

namespace VkTests {

using namespace Vk_DocQuery;

/// A panel whose inner operations can be called, with a count of its refreshes.
class OpenPanel : public VkDocQueryCriteries {
public:
    OpenPanel() {
        connect(this, &VkDocQueryCriteries::Refreshed, this, [this] { ++Refreshes; });
        Init();
    }

    using VkDocQueryCriteries::AddItemToAccStreamsList;
    using VkDocQueryCriteries::AddItemToTaxpayersList;
    using VkDocQueryCriteries::AddItemToTemplatesList;
    using VkDocQueryCriteries::ConvertTaxpayersType;
    using VkDocQueryCriteries::ConvertTemplatesMode;
    using VkDocQueryCriteries::FillAccStreamsList;
    using VkDocQueryCriteries::FillTaxpayersList;
    using VkDocQueryCriteries::FillTemplatesList;
    using VkDocQueryCriteries::GetAccStreamOpeness;
    using VkDocQueryCriteries::GetContoraJoining;
    using VkDocQueryCriteries::GetCurrentTab;
    using VkDocQueryCriteries::GetPeriodCriterion;
    using VkDocQueryCriteries::GetTaxpayersType;
    using VkDocQueryCriteries::GetTemplatesMode;
    using VkDocQueryCriteries::LockUpdate;
    using VkDocQueryCriteries::RefreshControls;
    using VkDocQueryCriteries::SetAccStreamOpeness;
    using VkDocQueryCriteries::SetContoraJoining;
    using VkDocQueryCriteries::SetCurrentTab;
    using VkDocQueryCriteries::SetPeriodCriterion;
    using VkDocQueryCriteries::SetTabUsing;
    using VkDocQueryCriteries::SetTaxpayersType;
    using VkDocQueryCriteries::SetTaxpayersTypeInList;
    using VkDocQueryCriteries::SetTemplatesMode;
    using VkDocQueryCriteries::SetTemplatesModeInList;
    using VkDocQueryCriteries::theCurTaxpayersType;
    using VkDocQueryCriteries::theCurTemplatesMode;
    using VkDocQueryCriteries::theLockCount;
    using VkDocQueryCriteries::theRefreshDisabled;
    using VkDocQueryCriteries::theRefreshPending;
    using VkDocQueryCriteries::UnlockUpdate;
    using VkDocQueryCriteries::UserSetTaxpayersType;
    using VkDocQueryCriteries::UserSetTemplatesMode;

    /// The element of that object name; the test ends if there is none.
    template <class Kind = QWidget>
    Kind &Get(const char *aName) const {
        auto *element = findChild<Kind *>(QString::fromLatin1(aName));
        if (!element) qFatal("no element %s", aName);
        return *element;
    }
    CheckBox &Check(const char *aName) const { return Get<CheckBox>(aName); }
    OptionButton &Option(const char *aName) const { return Get<OptionButton>(aName); }
    ComboBox &Combo(const char *aName) const { return Get<ComboBox>(aName); }
    ListView &List(const char *aName) const { return Get<ListView>(aName); }
    TabControl &Tabs() const { return Get<TabControl>("theTabs"); }

    int Refreshes = 0;
};

/// Keys of the rows, from the first to the last, parted by blanks.
inline QString Keys(const ListView &aList) {
    QStringList keys;
    for (int i = 0; i < aList.RowCount(); ++i) keys << aList.Row(i)->Key();
    return keys.join(u' ');
}

inline std::shared_ptr<RecordCollection> Records(
    const std::vector<std::shared_ptr<Record>> &aRecords) {
    auto collection = std::make_shared<RecordCollection>();
    for (const auto &record : aRecords) collection->Add(record);
    return collection;
}

/// The identities of the records, in their order.
inline QString Ids(const RecordCollection &aRecords) {
    QStringList ids;
    for (const auto &record : aRecords) ids << GeneralNumberText(record->ID());
    return ids.join(u' ');
}

}  // namespace VkTests
