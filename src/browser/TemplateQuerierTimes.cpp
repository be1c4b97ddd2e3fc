// The lower right pane: in which reporting periods a form exists.

#include <array>

#include "browser/RowNumber.h"
#include "browser/TemplateQuerierForm.h"
#include "foundation/Clock.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"
#include "lists/ListView.h"
#include "look/mVkPics.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "TemplateQuerierForm";
constexpr qint32 theOtherDocuments = 18;  // stands outside of the years, in a row of its own

struct TimeColumn {
    QStringView Key;
    QStringView Caption;
    int Width;  ///< twips
    Qt::AlignmentFlag Alignment;
    qint32 MonthID;         ///< 0: no period
    QStringView Picture{};  ///< of a year in which the form exists
};

// The half year and the full year have a column but no picture: forms of these periods leave it
// blank.
constexpr TimeColumn theTimeColumns[] = {
    {u"", u"*", 15, Qt::AlignLeft, 0},
    {u"year", u"Год", 1080, Qt::AlignRight, 0},
    {u"m1", u"Янв", 540, Qt::AlignHCenter, 1, u"period"},
    {u"m2", u"Фев", 540, Qt::AlignHCenter, 2, u"period"},
    {u"m3", u"Мар", 540, Qt::AlignHCenter, 3, u"period"},
    {u"q1", u"1 кв", 540, Qt::AlignHCenter, 13, u"quartal"},
    {u"m4", u"Апр", 540, Qt::AlignHCenter, 4, u"period"},
    {u"m5", u"Май", 540, Qt::AlignHCenter, 5, u"period"},
    {u"m6", u"Июн", 540, Qt::AlignHCenter, 6, u"period"},
    {u"q2", u"2 кв", 540, Qt::AlignHCenter, 14, u"quartal"},
    {u"m7", u"Июл", 540, Qt::AlignHCenter, 7, u"period"},
    {u"m8", u"Авг", 540, Qt::AlignHCenter, 8, u"period"},
    {u"m9", u"Сен", 540, Qt::AlignHCenter, 9, u"period"},
    {u"q3", u"3 кв", 540, Qt::AlignHCenter, 15, u"quartal"},
    {u"m10", u"Окт", 540, Qt::AlignHCenter, 10, u"period"},
    {u"m11", u"Ноя", 540, Qt::AlignHCenter, 11, u"period"},
    {u"m12", u"Дек", 540, Qt::AlignHCenter, 12, u"period"},
    {u"q4", u"4 кв", 540, Qt::AlignHCenter, 16, u"quartal"},
    {u"etc", u"Иное", 600, Qt::AlignHCenter, 17, u"period_other"},
    {u"hyear", u"П/г", 600, Qt::AlignHCenter, 19},
    {u"fyear", u"Год", 600, Qt::AlignHCenter, 20},
    {u"doc", u"Док", 600, Qt::AlignHCenter, 24, u"perreg"},
    {u"lett", u"Запр", 600, Qt::AlignHCenter, 21, u"period_letter"},
};

/// Picture keys by period code; codes without a picture have an empty one.
using Pictures = std::array<QString, TimeTable::theLastColumn + 1>;

Pictures MakePictures() {
    Pictures pictures;
    for (const TimeColumn &column : theTimeColumns)
        pictures[static_cast<std::size_t>(column.MonthID)] = column.Picture.toString();
    return pictures;
}

const QString &PictureOf(qint32 aMonthID) {
    static const Pictures pictures = MakePictures();
    return pictures[static_cast<std::size_t>(aMonthID)];
}

bool HasMarkedPeriod(const TimeTable &aTable) {
    for (int row = 0; row <= TimeTable::theLastRow; ++row)
        for (int column = 1; column <= TimeTable::theLastColumn; ++column)
            if (aTable.At(row, column) != 0) return true;
    return false;
}

}  // namespace

void TemplateQuerierForm::MakeTimeColumns() {
    theTimeList->ClearRows();
    theTimeList->ClearColumns();
    for (const TimeColumn &column : theTimeColumns)
        theTimeList->AddColumn(column.Caption.toString(), column.Width, column.Key.toString(),
                               column.Alignment);
}

void TemplateQuerierForm::BuildTimeTable(Recordset &aTimes, TimeTable &rTable) try {
    rTable = TimeTable();
    const int thisYear = Today().year();
    const int firstYear = thisYear - TimeTable::theLastRow;
    for (int row = 0; row <= TimeTable::theLastRow; ++row) rTable.At(row, 0) = thisYear - row;
    IgnoringFailures([&] { aTimes.MoveFirst(); });  // fails where there are no rows
    for (; !aTimes.EndOfData(); aTimes.MoveNext()) {
        const qint32 year = RowNumber(aTimes, QStringLiteral("the_year"));
        const qint32 month = RowNumber(aTimes, QStringLiteral("month_id"));
        if (month == theOtherDocuments)
            rTable.At(-1, 0) = 1;
        else if (year >= firstYear && year <= thisYear && month >= 1 &&
                 month <= TimeTable::theLastColumn)
            rTable.At(thisYear - year, month) = 1;
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void TemplateQuerierForm::DrawTimes(Recordset *aTimes) try {
    if (!aTimes) return;
    TimeTable table;
    BuildTimeTable(*aTimes, table);
    if (table.At(-1, 0) == 1) {
        ListRow *other = theTimeList->AddRow(QString());
        other->SetCell(1, QStringLiteral("Прочее"), QueryIcon(QStringLiteral("otherdocs")));
        other->SetCell(2, QString(), QueryIcon(QStringLiteral("galka_green")));
        // A form with this row and with periods shows this row alone; the years, all blank, follow
        // only where there are no periods. It stands this way round on purpose.
        if (HasMarkedPeriod(table)) return;
    }
    for (int year = 0; year <= TimeTable::theLastRow; ++year) {
        ListRow *row = theTimeList->AddRow(QString());
        row->SetCell(1, QString::number(table.At(year, 0)), QueryIcon(QStringLiteral("year")));
        for (const TimeColumn &column : theTimeColumns)
            if (column.MonthID != 0)
                AddTimeItem(*row, column.MonthID, table.At(year, column.MonthID));
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void TemplateQuerierForm::AddTimeItem(ListRow &aRow, qint32 aMonthID, qint32 aValue) try {
    const QString picture = aValue == 1 ? PictureOf(aMonthID) : QString();
    aRow.SetCell(aRow.CellCount() + 1, QString(), QueryIcon(picture));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
