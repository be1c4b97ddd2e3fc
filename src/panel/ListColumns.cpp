#include "panel/VkDocQueryCriteries.h"

namespace Vk_DocQuery {

namespace {

/// A column of an object list; the width is in twips.
struct ColumnRow {
    ElementOf<ListView> List;
    const char16_t *Caption;
    int Width;
    const char *Key = "";
};

constexpr ColumnRow theColumnRows[] = {
    {"theTaxpayersList", u"*", 300, "icon"},
    {"theTaxpayersList", u"ИНН", 1500, "inn"},
    {"theTaxpayersList", u"КПП", 1200, "kpp"},
    {"theTaxpayersList", u"Наименование/ ФИО", 6000, "name"},
    {"theTaxpayersList", u"Головная организация", 6000, "mainorg"},
    {"theAccStreamsList", u"*", 300},
    {"theAccStreamsList", u"Название", 4500},
    {"theAccStreamsList", u"К.орг.", 1500},
    {"theAccStreamsList", u"КПП", 1200},
    {"theAccStreamsList", u"ИНН", 1500},
    {"theAccStreamsList", u"Организация/ Налогоплательщик", 6000},
    {"theTemplatesList", u"*", 300},
    {"theTemplatesList", u"Срок действия", 2100, "term"},
    {"theTemplatesList", u"Наименование", 9000, "name"},
};

/// By which column an object list is sorted at first, ascending.
struct FirstSortRow {
    ElementOf<ListView> List;
    qint16 Column;
};

constexpr FirstSortRow theFirstSortRows[] = {
    {"theTaxpayersList", 3},
    {"theAccStreamsList", 3},
    {"theTemplatesList", 2},
};

}  // namespace

void VkDocQueryCriteries::SetUpLists() {
    for (const auto list : theObjectLists) The(list).SetMultiSelect(true);
    for (const ColumnRow &row : theColumnRows)
        The(row.List).AddColumn(QString::fromUtf16(row.Caption), row.Width,
                                QString::fromLatin1(row.Key));
    for (const FirstSortRow &row : theFirstSortRows) {
        ListView &list = The(row.List);
        list.SetSortKey(row.Column);
        list.SetSortOrder(0);
        list.SetSorted(true);
    }
}

}  // namespace Vk_DocQuery
