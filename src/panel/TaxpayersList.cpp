#include "controls/OptionButton.h"
#include "lists/mListView.h"
#include "lists/RecordIcons.h"
#include "panel/Tags.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

constexpr int theMainOrgWidth = 6000;
constexpr int theInnCell = 1;
constexpr int theKppCell = 2;
constexpr int theNameCell = 3;
constexpr int theMainOrgCell = 4;

/// This is not the picker's rule for head organisations; the two may disagree about a person.
bool MayBeMainOrg(const VkPerson &aPerson) {
    return aPerson.IsOrganization() && !aPerson.IsBranch();
}

}  // namespace

void VkDocQueryCriteries::SetTaxpayersTypeInList(DocQueryTaxpayersType aType, bool aForce,
                                                 bool aConvert) try {
    if (aType == theCurTaxpayersType && !aForce) return;
    auto &list = The<ListView>("theTaxpayersList");
    const int mainOrg = list.ColumnPosition(QStringLiteral("mainorg"));
    if (aType == Taxpayers) list.SetColumnWidth(mainOrg, theMainOrgWidth);
    if (aType == MainOrgs) list.SetColumnWidth(mainOrg, 0);
    if (aConvert)
        ConvertTaxpayersType(theCurTaxpayersType, aType);
    else
        theCurTaxpayersType = aType;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::ConvertTaxpayersType(DocQueryTaxpayersType aOldType,
                                               DocQueryTaxpayersType aNewType) try {
    if (aOldType == aNewType) return;
    const auto &list = The<ListView>("theTaxpayersList");
    const bool narrows = aOldType == Taxpayers && aNewType == MainOrgs;
    const bool widens = aOldType == MainOrgs && aNewType == Taxpayers;
    RecordCollection taxpayers;
    for (int i = 0; (narrows || widens) && i < list.RowCount(); ++i) {
        const auto person = TagAs<VkPerson>(*list.Row(i), "VkPerson");
        if (narrows && !MayBeMainOrg(*person)) continue;
        IgnoringFailures([&] { taxpayers.AddIfAbsent(person, ObjectKey(person->ID())); });
    }
    theCurTaxpayersType = aNewType;
    FillTaxpayersList(SortTaxpayers(taxpayers), false);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

// The place of an order of one's own; the list's order is all there is.
const RecordCollection &VkDocQueryCriteries::SortTaxpayers(
    const RecordCollection &aTaxpayers) const {
    return aTaxpayers;
}

void VkDocQueryCriteries::FillTaxpayersList(const RecordCollection &aTaxpayers, bool aSort) try {
    auto &list = The<ListView>("theTaxpayersList");
    const auto sorting = StoreListViewSorting(list);
    list.ClearRows();
    const RecordCollection &taxpayers = aSort ? SortTaxpayers(aTaxpayers) : aTaxpayers;
    list.ReserveRows(int(taxpayers.Count()));
    for (const std::shared_ptr<Record> &person : taxpayers) AddItemToTaxpayersList(person, nullptr);
    RestoreListViewSorting(list, sorting);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

ListRow *VkDocQueryCriteries::AddItemToTaxpayersList(const std::shared_ptr<Record> &aObject,
                                                     ListRow *aBefore) try {
    const QString key = ObjectKey(Present(aObject, "Record").ID());
    ListRow *row = The<ListView>("theTaxpayersList").AddRow(key, aBefore);
    row->SetTag(aObject);
    row->SetCellText(theMainOrgCell, QString());  // with those before it
    RefreshItemInTaxpayersList(*row);
    return row;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::RefreshItemInTaxpayersList(ListRow &aItem) try {
    const auto person = TagAs<VkPerson>(aItem, "VkPerson");
    SetRecordIcon(aItem, *person, person->GetIconKeyAsAccPerson());
    aItem.SetCellText(theInnCell, person->Inn());
    aItem.SetCellText(theKppCell, person->Kpp());
    aItem.SetCellText(theNameCell, person->GetDisplayName());
    if (!person->IsBranch()) return;
    const std::shared_ptr<VkPerson> parent = person->GetParentOrganization();
    aItem.SetCellText(theMainOrgCell, Present(parent, "VkPerson").GetDisplayName());
    SetRecordCellIcon(aItem, theMainOrgCell, *parent, parent->GetIconKeyAsAccPerson());
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::UserSetTaxpayersType(DocQueryTaxpayersType aType) try {
    if (theLockCount >= 1) return;
    SetTaxpayersTypeInList(aType, false, true);
    RefreshControls(false);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::theOptTaxpayers_Click() try {
    if (IsChosen("theOptTaxpayers")) UserSetTaxpayersType(Taxpayers);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theOptMainOrgs_Click() try {
    if (IsChosen("theOptMainOrgs")) UserSetTaxpayersType(MainOrgs);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theTaxpayersList_ColumnClick(const ListColumn &aColumn) try {
    OnListViewColumnClick(The<ListView>("theTaxpayersList"), aColumn);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
