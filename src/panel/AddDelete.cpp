#include <algorithm>

#include "lists/mListView.h"
#include "panel/Tags.h"
#include "panel/VkDocQueryCriteries.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";
const QString theDeleteTitle = QStringLiteral("Удаление из списка");

bool ConfirmDeletion(std::size_t aCount) {
    if (aCount == 0) {
        ShowWarningBox(
            QStringLiteral(
                "Необходимо выделить хотя бы одну запись, подлежащую удалению из списка."),
            theDeleteTitle);
        return false;
    }
    const QString question = aCount == 1
                                 ? QStringLiteral("Удалить выделенную запись из списка?")
                                 : QStringLiteral("Удалить выделенные записи (") +
                                       QString::number(aCount) + QStringLiteral(") из списка?");
    return AskYesNo(question, theDeleteTitle);
}

}  // namespace

void VkDocQueryCriteries::PerformAddItems(ListView &aList, qint32 aObjectsType) try {
    const auto chosen = SelectObjectsForm().Execute(aObjectsType, TagsOf(aList));
    if (!chosen) return;
    UnselectAllListItems(aList);
    const auto sorting = StoreListViewSorting(aList);
    aList.ReserveRows(aList.RowCount() + static_cast<int>(chosen->Count()));
    ListRow *row = nullptr;
    for (const std::shared_ptr<Record> &object : *chosen) {
        row = AddItemOfType(object, aObjectsType);
        row->SetSelected(true);
    }
    RestoreListViewSorting(aList, sorting);
    if (!row) return;
    aList.EnsureVisible(row);
    aList.SetSelectedItem(row);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

ListRow *VkDocQueryCriteries::AddItemOfType(const std::shared_ptr<Record> &aObject,
                                            qint32 aObjectsType) {
    switch (aObjectsType) {
        case TemplateVersions:
        case TemplateClasses:
            return AddItemToTemplatesList(aObject, nullptr);
        case AccountStreams:
            return AddItemToAccStreamsList(aObject, nullptr);
        default:
            return AddItemToTaxpayersList(aObject, nullptr);
    }
}

void VkDocQueryCriteries::PerformDeleteItems(ListView &aList) try {
    if (!ConfirmDeletion(aList.SelectedRows().size())) return;
    QStringList keys;
    const int first = aList.PositionOf(aList.SelectedRows().front());
    for (const ListRow *row : aList.SelectedRows()) keys << row->Key();
    for (const QString &key : keys) aList.RemoveRow(key);
    // The row that takes the place, so that the keyboard goes on from there.
    if (aList.RowCount() > 0) aList.SetCurrent(aList.Row(std::min(first, aList.RowCount() - 1)));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::theTemplatesAdd_Click() try {
    const DocQueryTemplatesMode mode = GetTemplatesMode();
    auto &list = The<ListView>("theTemplatesList");
    if (mode == TemplateVersion) PerformAddItems(list, TemplateVersions);
    if (mode == TemplateClass) PerformAddItems(list, TemplateClasses);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theAccStreamAdd_Click() try {
    PerformAddItems(The<ListView>("theAccStreamsList"), AccountStreams);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theTaxpayerAdd_Click() try {
    const DocQueryTaxpayersType type = GetTaxpayersType();
    auto &list = The<ListView>("theTaxpayersList");
    if (type == Taxpayers) PerformAddItems(list, TaxpayerPersons);
    if (type == MainOrgs) PerformAddItems(list, MainOrganizations);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theTemplatesDelete_Click() try {
    PerformDeleteItems(The<ListView>("theTemplatesList"));
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theAccStreamDelete_Click() try {
    PerformDeleteItems(The<ListView>("theAccStreamsList"));
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::theTaxpayerDelete_Click() try {
    PerformDeleteItems(The<ListView>("theTaxpayersList"));
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
