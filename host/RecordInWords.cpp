#include "RecordInWords.h"

#include <array>
#include <span>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>

using namespace Vk_DocQuery;

namespace {

constexpr qsizetype theMostNames = 5;  // of a list; the rest is counted

struct Flag {
    qint32 Value;
    const char16_t *Label;
};

constexpr auto theStreamTypes = std::to_array<Flag>({
    {AccStreamFns, u"Отчетность в ИФНС"},
    {AccStreamPfr, u"РСВ, НДФЛ и отчетность в ПФР"},
    {AccStreamRosstat, u"Отчетность в Росстат"},
    {AccStreamFss, u"Отчетность в ФСС"},
    {AccStreamAlcohol, u"Отчетность в Росалкогольрегулирование"},
    {AccStreamOfr, u"Отчетность ОФР"},
});

constexpr auto thePeriodTypes = std::to_array<Flag>({
    {PeriodMonths, u"месяцы"},
    {PeriodQuarters1To3, u"кварталы 1-3"},
    {PeriodQuarter4, u"4-й квартал"},
    {PeriodHalfYearAndYear, u"полугодие, год"},
    {PeriodOther, u"\"иное\""},
    {PeriodLetters, u"запросы и переписка"},
    {PeriodDocuments, u"документы"},
});

constexpr auto theStatuses = std::to_array<Flag>({
    {DocInWork, u"В работе"},
    {DocReady, u"Готов к сдаче"},
    {DocDelivered, u"Сдан"},
    {DocCorrected, u"Уточнён"},
});

constexpr auto theOrvexStages = std::to_array<Flag>({
    {OrvexNotSent, u"Не передавался в Орвекс"},
    {OrvexChecked, u"Проверен в Орвекс"},
    {OrvexSent, u"Отправлен"},
    {OrvexDeliveryReport, u"Есть отчет доставки"},
    {OrvexCheckResult, u"Есть результаты проверки"},
    {OrvexNotice, u"Есть уведомление ИФНС"},
});

constexpr auto theFssStages = std::to_array<Flag>({
    {FssNotSent, u"Не отправлялся в ФСС либо не получен ФСС"},
    {FssReceived, u"Документ получен ФСС"},
    {FssDecrypted, u"Расшифрован, ЭЦП проверена"},
    {FssFormatChecked, u"Пройден форматный контроль"},
    {FssLogicChecked, u"Пройден логический контроль"},
    {FssAccepted, u"Принят, есть квитанция"},
});

constexpr auto theTerms = std::to_array<Flag>({
    {OrvexInProgress, u"В процессе (не завершен)"},
    {OrvexSucceeded, u"Завершен успешно"},
    {OrvexFailed, u"Завершен с ошибкой"},
});

QString Flags(qint32 aValue, std::span<const Flag> aFlags) {
    QStringList labels;
    for (const Flag &flag : aFlags) {
        if (aValue & flag.Value) labels << QString::fromUtf16(flag.Label);
    }
    return labels.isEmpty() ? QStringLiteral("ничего не отмечено")
                            : labels.join(QStringLiteral("; "));
}

QString NameOf(const Record &aRecord) {
    if (const auto *form = dynamic_cast<const VkTemplType *>(&aRecord))
        return QStringLiteral("%1 (КНД %2)").arg(form->ShortName(), form->KND());
    if (const auto *stream = dynamic_cast<const VkAccStream *>(&aRecord))
        return stream->DisplayName();
    return aRecord.GetDisplayName();
}

QString Names(const std::shared_ptr<RecordCollection> &aRecords) {
    if (!aRecords || aRecords->IsEmpty()) return QStringLiteral("список пуст");
    QStringList names;
    for (const auto &record : *aRecords) {
        if (names.size() == theMostNames) {
            names << QStringLiteral("и еще %1").arg(aRecords->Count() - theMostNames);
            break;
        }
        names << NameOf(*record);
    }
    return names.join(QStringLiteral("; "));
}

QString PeriodName(qint32 aCode) {
    const auto factory = std::dynamic_pointer_cast<VkRecFactory>(
        ClassRegistry::Create(QStringLiteral("Vk_Records.VkRecFactory")));
    return factory ? factory->GetPeriodName(aCode) : QString::number(aCode);
}

QString DateText(const LooseValue &aDate) {
    return IsDate(aDate) ? ToText(aDate) : QString();
}

/// "с A по B", where either side may be open.
QString Span(const QString &aFrom, const QString &aTo) {
    QStringList sides;
    if (!aFrom.isEmpty()) sides << QStringLiteral("с ") + aFrom;
    if (!aTo.isEmpty()) sides << QStringLiteral("по ") + aTo;
    return sides.isEmpty() ? QStringLiteral("любая") : sides.join(u' ');
}

void AddTaxpayers(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (!aRecord.IsTaxpayers) return;
    const QString names = Names(aRecord.TaxpayersList);
    if (aRecord.TaxpayersType == MainOrgs) {
        rWords << QStringLiteral("Обособленные подразделения головных организаций: %1").arg(names);
        if (aRecord.IncludeMainOrgDocs)
            rWords << QStringLiteral("Включая документы самой головной организации");
    } else {
        rWords << QStringLiteral("Налогоплательщики: %1").arg(names);
    }
}

void AddOffices(const VkDocQueryData &aRecord, QStringList &rWords) {
    const QString first =
        QStringLiteral("Код первого контр. органа начинается на: %1").arg(aRecord.ContoraPrefix1);
    const QString second =
        QStringLiteral("Код второго контр. органа начинается на: %1").arg(aRecord.ContoraPrefix2);
    if (aRecord.IsContoraPrefix1 && aRecord.IsContoraPrefix2) {
        rWords << first +
                      (aRecord.ContoraJoining == JoinOr ? QStringLiteral(" ИЛИ ")
                                                        : QStringLiteral(" И ")) +
                      second;
    } else if (aRecord.IsContoraPrefix1) {
        rWords << first;
    } else if (aRecord.IsContoraPrefix2) {
        rWords << second;
    }
}

void AddStreams(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (aRecord.IsAccStreamType) {
        rWords << QStringLiteral("Тип комплекта отчетности: %1")
                      .arg(Flags(aRecord.AccStreamTypes, theStreamTypes));
    }
    if (aRecord.IsAccStreamOpeness) {
        rWords << QStringLiteral("Комплект отчетности: %1")
                      .arg(aRecord.AccStreamOpen == StreamClosed ? QStringLiteral("закрыт")
                                                                 : QStringLiteral("открыт"));
    }
    AddOffices(aRecord, rWords);
    if (aRecord.IsAccStreamsList)
        rWords << QStringLiteral("Комплекты отчетности: %1").arg(Names(aRecord.AccStreamsList));
}

void AddPeriods(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (!aRecord.IsPeriods) return;
    const auto dated = [](qint32 aPeriod, qint32 aYear) {
        return QStringLiteral("%1 %2").arg(PeriodName(aPeriod)).arg(aYear);
    };
    switch (aRecord.PeriodCriterion) {
        case OtherPeriod:
            rWords << QStringLiteral("Период отчетности: \"Прочее\"");
            break;
        case RangePeriods:
            rWords << QStringLiteral("Период отчетности: с: %1, по: %2")
                          .arg(dated(aRecord.RangePeriodMonth1, aRecord.RangePeriodYear1),
                               dated(aRecord.RangePeriodMonth2, aRecord.RangePeriodYear2));
            if (aRecord.IsPeriodTypes) {
                rWords << QStringLiteral("Только периоды следующего типа: %1")
                              .arg(Flags(aRecord.PeriodTypes, thePeriodTypes));
            }
            break;
        default:
            rWords << QStringLiteral("Период отчетности: %1")
                          .arg(dated(aRecord.OnePeriodMonthID, aRecord.OnePeriodYear));
    }
}

void AddForms(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (!aRecord.IsTemplate) return;
    const QString kind = aRecord.TemplatesMode == TemplateVersion
                             ? QStringLiteral("Бланки")
                             : QStringLiteral("Отчетные формы");
    rWords << QStringLiteral("%1: %2").arg(kind, Names(aRecord.Templates));
}

void AddNumbers(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (!aRecord.IsDocNum) return;
    if (aRecord.DocNumMode == DocLastNums) {
        rWords << QStringLiteral("Последние созданные документы, количество: %1")
                      .arg(aRecord.LastDocNumsCount);
    } else {
        rWords << QStringLiteral("Номер документа: с %1 по %2")
                      .arg(aRecord.DocNum1)
                      .arg(aRecord.DocNum2);
    }
}

QString NotesWords(const VkDocQueryData &aRecord) {
    switch (aRecord.NotesMode) {
        case NotesLike:
            return QStringLiteral("содержит \"%1\"").arg(aRecord.Notes);
        case NotesNotEmpty:
            return QStringLiteral("не пусто");
        default:
            return QStringLiteral("пусто");
    }
}

void AddProperties(const VkDocQueryData &aRecord, QStringList &rWords) {
    if (aRecord.IsDocStatus) {
        rWords << QStringLiteral("Состояние документа: %1")
                      .arg(Flags(aRecord.DocStatuses, theStatuses));
    }
    if (aRecord.IsSignDate) {
        rWords << QStringLiteral("Дата документа: %1")
                      .arg(Span(DateText(aRecord.SignDate1), DateText(aRecord.SignDate2)));
    }
    if (aRecord.IsSignerFio)
        rWords << QStringLiteral("Фамилия подписанта: %1").arg(aRecord.SignerSurname);
    if (aRecord.IsNotes) rWords << QStringLiteral("Примечание: %1").arg(NotesWords(aRecord));
    AddNumbers(aRecord, rWords);
    if (aRecord.WholePfrCluster)
        rWords << QStringLiteral("К индивидуальным сведениям добавляется весь комплект документов");
}

void AddDelivery(const VkDocQueryData &aRecord, QStringList &rWords) {
    struct Delivery {
        const char16_t *Name;
        bool IsOn;
        bool IsStages;
        qint32 Stages;
        std::span<const Flag> StageFlags;
        bool IsTerms;
        qint32 Terms;
    };
    const std::array<Delivery, 2> deliveries{{
        {u"Отправка через Орвекс", aRecord.IsOrvex, aRecord.IsOrvexStages, aRecord.OrvexStages,
         theOrvexStages, aRecord.IsOrvexTerms, aRecord.OrvexTerms},
        {u"Отправка через сайт ФСС", aRecord.IsFss, aRecord.IsFssStages, aRecord.FssStages,
         theFssStages, aRecord.IsFssTerms, aRecord.FssTerms},
    }};
    for (const Delivery &delivery : deliveries) {
        if (!delivery.IsOn) continue;
        QStringList parts;
        if (delivery.IsStages) parts << Flags(delivery.Stages, delivery.StageFlags);
        if (delivery.IsTerms) parts << Flags(delivery.Terms, theTerms);
        const QString name = QString::fromUtf16(delivery.Name);
        rWords << (parts.isEmpty()
                       ? name
                       : name + QStringLiteral(": ") + parts.join(QStringLiteral(". ")));
    }
}

}  // namespace

QStringList RecordInWords(const VkDocQueryData &aRecord) {
    QStringList words;
    AddTaxpayers(aRecord, words);
    AddStreams(aRecord, words);
    AddPeriods(aRecord, words);
    AddForms(aRecord, words);
    AddProperties(aRecord, words);
    AddDelivery(aRecord, words);
    if (words.isEmpty()) words << QStringLiteral("Критерии не заданы: подойдет любой документ");
    return words;
}
