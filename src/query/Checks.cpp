#include "query/Checks.h"

#include "foundation/CheckedArithmetic.h"
#include "foundation/RussDate.h"
#include "query/Fields.h"

namespace Vk_DocQuery {

namespace {

/// Nothing chosen in a list whose switch is on. A list that is absent becomes an empty one.
bool IsNothingIn(std::shared_ptr<RecordCollection> &aList) {
    if (!aList) aList = std::make_shared<RecordCollection>();
    return aList->IsEmpty();
}

/// Null is not among them: it counts as given.
bool IsNoDate(const LooseValue &aField) {
    return IsEmpty(DateOfField(aField));
}

qint32 MonthNumber(qint32 aYear, qint32 aMonth) {
    return CheckedAdd(CheckedMultiply(aYear, 100), aMonth);
}

bool IsRange(const VkDocQueryData &aRecord) {
    return aRecord.IsPeriods && aRecord.PeriodCriterion == RangePeriods;
}

bool IsDocNumMode(const VkDocQueryData &aRecord, DocQueryDocNumMode aMode) {
    return aRecord.IsDocNum && aRecord.DocNumMode == aMode;
}

struct Check {
    bool (*IsFault)(VkDocQueryData &aRecord);
    const char16_t *Message;
    bool WithEnding = true;
};

constexpr Check theChecks[] = {
    {[](VkDocQueryData &r) { return r.IsTaxpayers && IsNothingIn(r.TaxpayersList); },
     uR"(Закладка "Налогоплательщик": отмечен флажок "Список налогоплательщиков", однако не указан ни один налогоплательщик. )"},
    {[](VkDocQueryData &r) { return r.IsAccStreamType && r.AccStreamTypes == 0; },
     uR"(Закладка "Комплект отчетности": отмечен флажок "Тип комплекта отчетности", однако не указано ни одного типа. )"},
    {[](VkDocQueryData &r) { return r.IsContoraPrefix1 && r.ContoraPrefix1.isEmpty(); },
     uR"(Закладка "Комплект отчетности": отмечен флажок "Код первого контролирующего органа начинается на", однако не указано на что должен начинаться код контролирующего органа. )"},
    {[](VkDocQueryData &r) { return r.IsContoraPrefix2 && r.ContoraPrefix2.isEmpty(); },
     uR"(Закладка "Комплект отчетности": отмечен флажок "Код второго контролирующего органа начинается на", однако не указано на что должен начинаться код контролирующего органа. )"},
    {[](VkDocQueryData &r) { return r.IsAccStreamsList && IsNothingIn(r.AccStreamsList); },
     uR"(Закладка "Комплект отчетности": отмечен флажок "Список конкретных комплектов отчетности", однако не указано ни одного комплекта отчетности. )"},
    // A range that is turned round is a slip of the pen, so no word about an empty list.
    {[](VkDocQueryData &r) {
         return IsRange(r) && MonthNumber(r.RangePeriodYear1, r.RangePeriodMonth1) >
                                  MonthNumber(r.RangePeriodYear2, r.RangePeriodMonth2);
     },
     uR"(Закладка "Период отчетности": в диапазоне периодов начало отбираемого периода больше его окончания.)",
     false},
    // The types restrict a range only; with another criterion they are not looked at.
    {[](VkDocQueryData &r) { return IsRange(r) && r.IsPeriodTypes && r.PeriodTypes == 0; },
     uR"(Закладка "Период отчетности": отмечен флажок "только периоды следующего типа:", однако не указано ни одного типа периодов. )"},
    {[](VkDocQueryData &r) { return r.IsTemplate && IsNothingIn(r.Templates); },
     uR"~(Закладка "Отчетная форма": отмечен флажок "Список отчетных форм (бланков)", однако не указано ни одной отчетной формы. )~"},
    {[](VkDocQueryData &r) { return r.IsDocStatus && r.DocStatuses == 0; },
     uR"(Закладка "Свойства документов": отмечен флажок "Состояние документа", однако не указано ни одного состояния. )"},
    {[](VkDocQueryData &r) {
         return r.IsSignDate && IsNoDate(r.SignDate1) && IsNoDate(r.SignDate2);
     },
     uR"(Закладка "Свойства документа": выбрана опция поиска по "Дате документа", однако не задан искомый период дат. )"},
    {[](VkDocQueryData &r) { return r.IsSignerFio && r.SignerSurname.isEmpty(); },
     uR"(Закладка "Свойства документа": выбрана опция поиска по "Фамилии подписанта", однако фамилия не задана. )"},
    {[](VkDocQueryData &r) { return r.IsNotes && r.NotesMode == NotesLike && r.Notes.isEmpty(); },
     uR"(Закладка "Свойства документа": выбран поиск по контексту в поле "Примечание", однако не указан искомый контекст. )"},
    {[](VkDocQueryData &r) {
         return IsDocNumMode(r, DocNumRange) && r.DocNum1 == 0 && r.DocNum2 == 0;
     },
     uR"(Закладка "Свойства документов": отмечен флажок "Диапазон номеров документов", однако не указаны границы диапазона. )"},
    {[](VkDocQueryData &r) {
         return IsDocNumMode(r, DocNumRange) && (r.DocNum1 < 0 || r.DocNum2 < r.DocNum1);
     },
     uR"(Закладка "Свойства документов": ошибка в указании границ диапазона номеров документов. )"},
    {[](VkDocQueryData &r) { return IsDocNumMode(r, DocLastNums) && r.LastDocNumsCount == 0; },
     uR"(Закладка "Свойства документов": отмечен флажок "Последние созданные документы", однако не указано их количество. )"},
    {[](VkDocQueryData &r) { return IsDocNumMode(r, DocLastNums) && r.LastDocNumsCount < 0; },
     uR"(Закладка "Свойства документов": ошибка в количестве последних созданных документов. )"},
};

}  // namespace

QString FaultOf(VkDocQueryData &aRecord) {
    for (const Check &check : theChecks) {
        if (!check.IsFault(aRecord)) continue;
        const QString text = QString::fromUtf16(check.Message);
        return check.WithEnding
                   ? text + QStringLiteral("\r\n\r\nТакой запрос вернет пустой список документов.")
                   : text;
    }
    return QString();
}

}  // namespace Vk_DocQuery
