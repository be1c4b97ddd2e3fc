#include "panel/Draft.h"

#include <QLineEdit>
#include <QScrollBar>

#include "controls/OptionButton.h"
#include "foundation/mErrorHandling.h"
#include "lists/ListView.h"

namespace Vk_DocQuery {

namespace {

QString KeyOf(const ListRow *aRow) {
    return aRow ? aRow->Key() : QString();
}

RowDraft DraftOf(const ListRow &aRow) {
    RowDraft draft{aRow.Key(), aRow.Icon(), aRow.Tag(), {}};
    for (int cell = 1; cell <= aRow.CellCount(); ++cell)
        draft.Cells.emplace_back(aRow.CellText(cell), aRow.CellIcon(cell));
    return draft;
}

/// What is shown of a mask tells blank places apart; what is shown of other texts hides line ends.
QString WholeText(const QLineEdit &aLine) {
    return aLine.inputMask().isEmpty() ? aLine.text() : aLine.displayText();
}

}  // namespace

ListDraft::ListDraft(ListView &aList) : theList(aList), theCurrent(KeyOf(aList.SelectedItem())) {
    for (int i = 0; i < aList.ColumnCount(); ++i) theWidths.push_back(aList.Column(i).Width);
    theRows.reserve(static_cast<std::size_t>(aList.RowCount()));
    for (int i = 0; i < aList.RowCount(); ++i) theRows.push_back(DraftOf(*aList.Row(i)));
    for (const ListRow *row : aList.SelectedRows()) theSelected << row->Key();
    static_cast<void>(aList.FirstVisible());  // brings the scroll bar up to date
    theScrolled = aList.verticalScrollBar()->value();
}

void ListDraft::PutBack() const {
    PutRowsBack();
    PutViewBack();
}

void ListDraft::PutRowsBack() const {
    theList.ClearRows();
    theList.ReserveRows(static_cast<int>(theRows.size()));
    for (const RowDraft &draft : theRows) {
        ListRow *row = theList.AddRow(draft.Key);
        row->SetTag(draft.Tag);
        row->SetIcon(draft.Icon);
        for (int cell = 1; const auto &[text, icon] : draft.Cells) row->SetCell(cell++, text, icon);
    }
}

void ListDraft::PutViewBack() const {
    for (int i = 0; i < static_cast<int>(theWidths.size()); ++i)
        theList.SetColumnWidth(i, theWidths[static_cast<std::size_t>(i)]);
    theList.SetSelectedItem(theList.RowByKey(theCurrent));
    theList.UnselectAll();
    for (const QString &key : theSelected) {
        if (ListRow *row = theList.RowByKey(key)) row->SetSelected(true);
    }
    static_cast<void>(theList.FirstVisible());
    theList.verticalScrollBar()->setValue(theScrolled);
}

TextDrafts::TextDrafts(const QWidget &aPanel) {
    for (QLineEdit *line : aPanel.findChildren<QLineEdit *>())
        theTexts.emplace_back(line, WholeText(*line));
}

void TextDrafts::PutBack() const {
    for (const auto &[line, text] : theTexts) {
        if (WholeText(*line) != text) line->setText(text);
    }
}

OptionDrafts::OptionDrafts(const QWidget &aPanel) {
    for (OptionButton *option : aPanel.findChildren<OptionButton *>())
        theValues.emplace_back(option, option->Value());
}

void OptionDrafts::PutBack() const {
    for (const auto &[option, chosen] : theValues) option->SetValue(chosen);
}

std::shared_ptr<VkDocQueryCriteries::Draft> VkDocQueryCriteries::TakeDraft() {
    auto draft = std::make_shared<Draft>(Draft{
        {}, theCurTemplatesMode, theCurTaxpayersType, TextDrafts(*this), OptionDrafts(*this), {}});
    AssembleValuesTo(draft->Values);
    for (const auto list : theObjectLists) draft->Lists.emplace_back(The(list));
    return draft;
}

bool VkDocQueryCriteries::PutBack(Draft &aDraft) noexcept {
    bool distributed = false;
    IgnoringFailures([&] {
        DistributeValues(aDraft.Values);
        distributed = true;
    });
    IgnoringFailures([&] {
        if (!distributed) DistributeWithoutLists(aDraft.Values);
        UpdateLock lock(*this);
        PutTheRestBack(aDraft);
        RefreshControls(false);
        lock.Unlock();
    });
    return distributed;
}

/// Asks no supplier either.
void VkDocQueryCriteries::DistributeWithoutLists(VkDocQueryData aRecord) {
    aRecord.Templates = aRecord.AccStreamsList = aRecord.TaxpayersList = nullptr;
    DistributeValues(aRecord);
}

/// The rows as they were shown, without asking a supplier for them, and what no record holds.
void VkDocQueryCriteries::PutTheRestBack(const Draft &aDraft) {
    for (const ListDraft &list : aDraft.Lists) list.PutBack();
    theCurTemplatesMode = aDraft.TemplatesMode;
    theCurTaxpayersType = aDraft.TaxpayersType;
    aDraft.Texts.PutBack();
    aDraft.Options.PutBack();
}

}  // namespace Vk_DocQuery
