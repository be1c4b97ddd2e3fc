#include "controls/OptionButton.h"
#include "lists/mListView.h"
#include "lists/RecordIcons.h"
#include "panel/LastTemplates.h"
#include "panel/Tags.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

constexpr int theTermWidth = 2100;
constexpr int theTermCell = 1;
constexpr int theNameCell = 2;

/// The classes of the versions in the rows; the first version of a class gives it its place.
void AddClasses(const ListView &aList, RecordCollection &rClasses) {
    for (int i = 0; i < aList.RowCount(); ++i) {
        const auto version = TagAs<VkTemplate>(*aList.Row(i), "VkTemplate");
        IgnoringFailures([&] {
            const std::shared_ptr<VkTemplType> type = version->TemplateType();
            rClasses.AddIfAbsent(type, ObjectKey(Present(type, "VkTemplType").ID()));
        });
    }
}

/// The newest versions of the classes in the rows; a class without one is left out.
void AddNewestVersions(const ListView &aList, RecordCollection &rVersions) {
    for (int i = 0; i < aList.RowCount(); ++i) {
        const auto type = TagAs<VkTemplType>(*aList.Row(i), "VkTemplType");
        const std::shared_ptr<Record> newest = GetLastTemplateByTemplType(type->ID());
        if (!newest) continue;
        IgnoringFailures([&] { rVersions.AddIfAbsent(newest, ObjectKey(newest->ID())); });
    }
}

}  // namespace

void VkDocQueryCriteries::SetTemplatesModeInList(DocQueryTemplatesMode aMode, bool aForce,
                                                 bool aConvert) try {
    if (aMode == theCurTemplatesMode && !aForce) return;
    auto &list = The<ListView>("theTemplatesList");
    const int term = list.ColumnPosition(QStringLiteral("term"));
    if (aMode == TemplateClass) list.SetColumnWidth(term, 0);
    if (aMode == TemplateVersion) list.SetColumnWidth(term, theTermWidth);
    if (aConvert)
        ConvertTemplatesMode(theCurTemplatesMode, aMode);
    else
        theCurTemplatesMode = aMode;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::ConvertTemplatesMode(DocQueryTemplatesMode aOldMode,
                                               DocQueryTemplatesMode aNewMode) try {
    if (aOldMode == aNewMode) return;
    const auto &list = The<ListView>("theTemplatesList");
    RecordCollection templates;
    if (aOldMode == TemplateVersion && aNewMode == TemplateClass) AddClasses(list, templates);
    if (aOldMode == TemplateClass && aNewMode == TemplateVersion)
        AddNewestVersions(list, templates);
    theCurTemplatesMode = aNewMode;
    FillTemplatesList(SortTemplates(templates), false);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

// The place of an order of one's own; the list's order is all there is.
const RecordCollection &VkDocQueryCriteries::SortTemplates(
    const RecordCollection &aTemplates) const {
    return aTemplates;
}

void VkDocQueryCriteries::FillTemplatesList(const RecordCollection &aTemplates, bool aSort) try {
    auto &list = The<ListView>("theTemplatesList");
    const auto sorting = StoreListViewSorting(list);
    list.ClearRows();
    const RecordCollection &templates = aSort ? SortTemplates(aTemplates) : aTemplates;
    list.ReserveRows(int(templates.Count()));
    for (const std::shared_ptr<Record> &object : templates) AddItemToTemplatesList(object, nullptr);
    RestoreListViewSorting(list, sorting);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

ListRow *VkDocQueryCriteries::AddItemToTemplatesList(const std::shared_ptr<Record> &aObject,
                                                     ListRow *aBefore) try {
    const QString key = ObjectKey(Present(aObject, "Record").ID());
    ListRow *row = The<ListView>("theTemplatesList").AddRow(key, aBefore);
    row->SetTag(aObject);
    row->SetCellText(theNameCell, QString());  // with those before it
    RefreshItemInTemplatesList(*row);
    return row;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::RefreshItemInTemplatesList(ListRow &aItem) try {
    switch (theCurTemplatesMode) {
        case TemplateClass: {
            const auto type = TagAs<Record>(aItem, "VkTemplType");
            aItem.SetIcon(QStringLiteral("doc_blank"));
            aItem.SetCellText(theTermCell, QString());
            aItem.SetCellText(theNameCell, type->ShortName());
            return;
        }
        case TemplateVersion: {
            const auto version = TagAs<Record>(aItem, "VkTemplate");
            SetRecordIcon(aItem, *version, version->GetIconKey());
            aItem.SetCellText(theTermCell, ToText(version->BegDate()) + QStringLiteral(" - ") +
                                               ToText(version->EndDate()));
            aItem.SetCellText(theNameCell, version->GetDisplayName());
            return;
        }
    }
    aItem.SetIcon(QString());
    aItem.SetCellText(theTermCell, QString());
    aItem.SetCellText(theNameCell, QString());
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::UserSetTemplatesMode(DocQueryTemplatesMode aMode) try {
    if (theLockCount < 1) SetTemplatesModeInList(aMode, false, true);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::theOptTemplateClass_Click() try {
    if (IsChosen("theOptTemplateClass")) UserSetTemplatesMode(TemplateClass);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theOptTemplate_Click() try {
    if (IsChosen("theOptTemplate")) UserSetTemplatesMode(TemplateVersion);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theTemplatesList_ColumnClick(const ListColumn &aColumn) try {
    OnListViewColumnClick(The<ListView>("theTemplatesList"), aColumn);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
