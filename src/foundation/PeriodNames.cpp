#include "foundation/PeriodNames.h"

namespace Vk_DocQuery {

namespace {

struct PeriodName {
    qint32 Code;
    const char16_t *Name;
};

constexpr PeriodName thePeriodNames[] = {
    {1, u"Январь"},       {2, u"Февраль"},      {3, u"Март"},
    {4, u"Апрель"},       {5, u"Май"},          {6, u"Июнь"},
    {7, u"Июль"},         {8, u"Август"},       {9, u"Сентябрь"},
    {10, u"Октябрь"},     {11, u"Ноябрь"},      {12, u"Декабрь"},
    {13, u"1-й квартал"}, {14, u"2-й квартал"}, {15, u"3-й квартал"},
    {16, u"4-й квартал"}, {17, u"Иной период"}, {18, u"Прочие документы"},
    {19, u"Полугодие"},   {20, u"Год"},         {21, u"Запрос, письмо"},
    {24, u"Документ"},
};

}  // namespace

QString PeriodNames::GetPeriodName(qint32 aMonthID) {
    for (const PeriodName &period : thePeriodNames) {
        if (period.Code == aMonthID) return QString::fromUtf16(period.Name);
    }
    return QStringLiteral("Период с кодом %1").arg(aMonthID);
}

}  // namespace Vk_DocQuery
