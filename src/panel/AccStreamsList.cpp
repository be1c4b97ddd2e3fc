#include "lists/mListView.h"
#include "lists/RecordIcons.h"
#include "panel/Tags.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

constexpr int theNameCell = 1;
constexpr int theOfficeCell = 2;
constexpr int theKppCell = 3;
constexpr int theInnCell = 4;
constexpr int thePersonCell = 5;

}  // namespace

void VkDocQueryCriteries::FillAccStreamsList(const RecordCollection &aStreams) try {
    auto &list = The<ListView>("theAccStreamsList");
    const auto sorting = StoreListViewSorting(list);
    list.ClearRows();
    list.ReserveRows(int(aStreams.Count()));
    for (const std::shared_ptr<Record> &stream : aStreams) AddItemToAccStreamsList(stream, nullptr);
    RestoreListViewSorting(list, sorting);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

ListRow *VkDocQueryCriteries::AddItemToAccStreamsList(const std::shared_ptr<Record> &aObject,
                                                      ListRow *aBefore) try {
    const QString key = ObjectKey(Present(aObject, "Record").ID());
    ListRow *row = The<ListView>("theAccStreamsList").AddRow(key, aBefore);
    row->SetTag(aObject);
    row->SetCellText(thePersonCell, QString());  // with those before it
    RefreshItemInAccStreamsList(*row);
    return row;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::RefreshItemInAccStreamsList(ListRow &aItem) try {
    const auto stream = TagAs<Record>(aItem, "VkAccStream");
    SetRecordIcon(aItem, *stream, stream->GetIconKey());
    aItem.SetCellText(theNameCell, stream->DisplayName());
    aItem.SetCellText(theOfficeCell, stream->GetOfficeCodeForDisplay());
    aItem.SetCellText(theKppCell, stream->Kpp());
    const std::shared_ptr<VkPerson> owner = stream->Person();
    VkPerson &person = Present(owner, "VkPerson");
    SetRecordCellIcon(aItem, theInnCell, person, person.GetIconKeyAsAccPerson());
    aItem.SetCellText(theInnCell, person.Inn());
    aItem.SetCellText(thePersonCell, person.GetDisplayName());
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::theAccStreamsList_ColumnClick(const ListColumn &aColumn) try {
    OnListViewColumnClick(The<ListView>("theAccStreamsList"), aColumn);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
