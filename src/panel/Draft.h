#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <QStringList>

#include <Vk_DocQuery/Object.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "panel/VkDocQueryCriteries.h"

class QLineEdit;

namespace Vk_DocQuery {

class OptionButton;

/// A row with the texts and pictures that it shows.
struct RowDraft {
    QString Key;
    QString Icon;
    std::shared_ptr<Object> Tag;
    std::vector<std::pair<QString, QString>> Cells;
};

/// A list: its rows as they are shown, and what no record holds of it: widths of columns, the
/// selection, the current row, how far it is scrolled.
class ListDraft {
public:
    explicit ListDraft(ListView &aList);
    /// Asks no supplier.
    void PutBack() const;

private:
    void PutRowsBack() const;
    void PutViewBack() const;

    ListView &theList;
    std::vector<int> theWidths;
    std::vector<RowDraft> theRows;
    QStringList theSelected;
    QString theCurrent;
    int theScrolled = 0;
};

/// The texts of all boxes, among them dates, numbers and years that are none yet.
class TextDrafts {
public:
    explicit TextDrafts(const QWidget &aPanel);
    void PutBack() const;

private:
    std::vector<std::pair<QLineEdit *, QString>> theTexts;
};

/// The options, of which a group may have none chosen.
class OptionDrafts {
public:
    explicit OptionDrafts(const QWidget &aPanel);
    void PutBack() const;

private:
    std::vector<std::pair<OptionButton *, bool>> theValues;
};

/// What stands on the panel, to the half typed date.
struct VkDocQueryCriteries::Draft {
    VkDocQueryData Values;
    DocQueryTemplatesMode TemplatesMode;  ///< of the rows, which the option may have left behind
    DocQueryTaxpayersType TaxpayersType;
    TextDrafts Texts;
    OptionDrafts Options;
    std::vector<ListDraft> Lists;
};

}  // namespace Vk_DocQuery
