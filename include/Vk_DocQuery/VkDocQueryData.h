#pragma once

#include <memory>

#include <QString>

#include <Vk_DocQuery/KeyedCollection.h>
#include <Vk_DocQuery/LooseValue.h>
#include <Vk_DocQuery/Records.h>

namespace Vk_DocQuery {

class XmlNode;

/// What VkDocQueryData::TaxpayersList holds.
enum DocQueryTaxpayersType : qint32 {
    Taxpayers = 1,  ///< the taxpayers themselves
    MainOrgs = 2,   ///< head organisations, whose separate divisions are meant
};

/// Flags. The sixth is 256, not 32.
enum DocQueryAccStreamTypes : qint32 {
    AccStreamFns = 1,      ///< "Отчетность в ИФНС"
    AccStreamPfr = 2,      ///< "РСВ, НДФЛ и отчетность в ПФР"
    AccStreamRosstat = 4,  ///< "Отчетность в Росстат"
    AccStreamFss = 8,      ///< "Отчетность в ФСС"
    AccStreamAlcohol = 16,  ///< "Отчетность в Росалкогольрегулирование"
    AccStreamOfr = 256,  ///< "Отчетность ОФР"
};

/// Which streams VkDocQueryData::IsAccStreamOpeness asks for.
enum DocQueryAccStreamOpen : qint32 {
    StreamOpen = 1,    ///< "Открыт"
    StreamClosed = 2,  ///< "Закрыт"
};

/// How the conditions on the two office codes join.
enum DocQueryContoraJoining : qint32 {
    JoinAnd = 0,  ///< "... И ..."
    JoinOr = 1,   ///< "... ИЛИ ..."
};

/// How the reporting period is given.
enum DocQueryPeriodCriterion : qint32 {
    OnePeriod = 1,     ///< OnePeriodYear and OnePeriodMonthID count
    RangePeriods = 2,  ///< RangePeriodYear1 to RangePeriodMonth2 count
    OtherPeriod = 3,   ///< the period "Прочее"
};

/// Flags.
enum DocQueryPeriodTypes : qint32 {
    PeriodMonths = 1,           ///< "месяцы"
    PeriodQuarters1To3 = 2,     ///< "кварталы 1-3"
    PeriodQuarter4 = 4,         ///< "4-й квартал"
    PeriodHalfYearAndYear = 8,  ///< "полугодие, год"
    PeriodOther = 16,           ///< ""иное""
    PeriodLetters = 32,         ///< "запросы и переписка"
    PeriodDocuments = 64,       ///< "документы"
};

/// What VkDocQueryData::Templates holds.
enum DocQueryTemplatesMode : qint32 {
    TemplateClass = 1,    ///< VkTemplType
    TemplateVersion = 2,  ///< VkTemplate
};

/// Flags.
enum DocQueryDocStatuses : qint32 {
    DocInWork = 1,     ///< "В работе"
    DocReady = 2,      ///< "Готов к сдаче"
    DocDelivered = 4,  ///< "Сдан"
    DocCorrected = 8,  ///< "Уточнён"
};

/// What the note of a document has to be.
enum DocQueryNotesMode : qint32 {
    NotesEmpty = 0,     ///< "Пусто"
    NotesNotEmpty = 1,  ///< "Не пусто"
    NotesLike = 2,      ///< "Содержит"
};

/// How the numbers of documents are given.
enum DocQueryDocNumMode : qint32 {
    DocNumRange = 0,  ///< DocNum1 and DocNum2 count
    DocLastNums = 1,  ///< LastDocNumsCount counts
};

/// Flags.
enum DocQueryOrvexStages : qint32 {
    OrvexNotSent = 1,         ///< "Не передавался в Орвекс"
    OrvexChecked = 2,         ///< "Проверен в Орвекс"
    OrvexSent = 4,            ///< "Отправлен"
    OrvexDeliveryReport = 8,  ///< "Есть отчет доставки"
    OrvexCheckResult = 16,    ///< "Есть результаты проверки"
    OrvexNotice = 32,         ///< "Есть уведомление ИФНС"
};

/// Flags.
enum DocQueryOrvexTerms : qint32 {
    OrvexInProgress = 1,  ///< "В процессе (не завершен)"
    OrvexSucceeded = 2,   ///< "Завершен успешно"
    OrvexFailed = 4,      ///< "Завершен с ошибкой"
};

/// Flags.
enum DocQueryFssStages : qint32 {
    FssNotSent = 1,  ///< "Не отправлялся в ФСС либо не получен ФСС"
    FssReceived = 2,       ///< "Документ получен ФСС"
    FssDecrypted = 4,      ///< "Расшифрован, ЭЦП проверена"
    FssFormatChecked = 8,  ///< "Пройден форматный контроль"
    FssLogicChecked = 16,  ///< "Пройден логический контроль"
    FssAccepted = 32,      ///< "Принят, есть квитанция"
};

/// Flags.
enum DocQueryFssTerms : qint32 {
    FssInProgress = 1,  ///< "В процессе (не завершен)"
    FssSucceeded = 2,   ///< "Завершен успешно"
    FssFailed = 4,      ///< "Завершен с ошибкой"
};

/// Flags are combined without a cast: |, |=, & and ~ give flags again.
#define VK_DOCQUERY_FLAGS(Flags)                                       \
    constexpr Flags operator|(Flags aOne, Flags aOther) noexcept {     \
        return static_cast<Flags>(qint32{aOne} | qint32{aOther});      \
    }                                                                  \
    constexpr Flags operator&(Flags aOne, Flags aOther) noexcept {     \
        return static_cast<Flags>(qint32{aOne} & qint32{aOther});      \
    }                                                                  \
    constexpr Flags operator~(Flags aFlags) noexcept {                 \
        return static_cast<Flags>(~qint32{aFlags});                    \
    }                                                                  \
    constexpr Flags &operator|=(Flags &rFlags, Flags aMore) noexcept { \
        return rFlags = rFlags | aMore;                                \
    }                                                                  \
    constexpr Flags &operator&=(Flags &rFlags, Flags aKept) noexcept { \
        return rFlags = rFlags & aKept;                                \
    }
VK_DOCQUERY_FLAGS(DocQueryAccStreamTypes)
VK_DOCQUERY_FLAGS(DocQueryPeriodTypes)
VK_DOCQUERY_FLAGS(DocQueryDocStatuses)
VK_DOCQUERY_FLAGS(DocQueryOrvexStages)
VK_DOCQUERY_FLAGS(DocQueryOrvexTerms)
VK_DOCQUERY_FLAGS(DocQueryFssStages)
VK_DOCQUERY_FLAGS(DocQueryFssTerms)
#undef VK_DOCQUERY_FLAGS

/// A search over stored reporting documents. The library fills it, saves it and reads it back; the
/// host runs the search.
///
/// A switch Is... that is off takes its criterion out of the search, whatever the values under it
/// hold. Any field takes any value of its type; only the check before a search judges them.
/// Enumeration fields hold any 32-bit value, flag fields any bits.
///
/// The collections are held by shared reference: assigning one stores the caller's collection. A
/// null pointer counts as an empty collection.
class VkDocQueryData {
public:
    /// As the fields say, with the year of today in the three fields of years.
    VK_DOCQUERY_EXPORT VkDocQueryData();
    /// The copy shares the collections.
    VK_DOCQUERY_EXPORT VkDocQueryData(const VkDocQueryData &);
    /// Shares the collections.
    VK_DOCQUERY_EXPORT VkDocQueryData &operator=(const VkDocQueryData &);
    VK_DOCQUERY_EXPORT ~VkDocQueryData();

    /// Full path of the file that the record was last read from, or saved to under a new name.
    QString FileName;

    /// Switch: the taxpayers of the list.
    bool IsTaxpayers = false;
    /// What TaxpayersList holds.
    DocQueryTaxpayersType TaxpayersType = Taxpayers;
    std::shared_ptr<RecordCollection> TaxpayersList;  ///< of VkPerson
    bool IncludeMainOrgDocs = false;  ///< also the documents of the head organisation itself

    /// Switch: streams of some types.
    bool IsAccStreamType = false;
    /// Which types; any of them.
    DocQueryAccStreamTypes AccStreamTypes{};
    /// Switch: open streams only, or closed ones.
    bool IsAccStreamOpeness = false;
    /// Which of the two.
    DocQueryAccStreamOpen AccStreamOpen = StreamOpen;
    /// Switch: the first office code of the stream.
    bool IsContoraPrefix1 = false;
    QString ContoraPrefix1;  ///< what the first office code begins with
    /// Switch: the second office code of the stream.
    bool IsContoraPrefix2 = false;
    /// What the second office code begins with; several are parted by blanks or commas.
    QString ContoraPrefix2;
    /// Counts if both codes are asked for.
    DocQueryContoraJoining ContoraJoining = JoinAnd;
    /// Switch: the streams of the list.
    bool IsAccStreamsList = false;
    std::shared_ptr<RecordCollection> AccStreamsList;  ///< of VkAccStream

    /// Switch: the reporting period.
    bool IsPeriods = false;
    /// Which of the fields below count.
    DocQueryPeriodCriterion PeriodCriterion = OnePeriod;
    qint32 OnePeriodYear;           ///< this year on creation
    qint32 OnePeriodMonthID = 16;   ///< period code; 16 is the fourth quarter
    qint32 RangePeriodYear1;        ///< this year on creation
    qint32 RangePeriodMonth1 = 1;   ///< 1 to 12
    qint32 RangePeriodYear2;        ///< this year on creation
    qint32 RangePeriodMonth2 = 12;  ///< 1 to 12
    /// Switch: of a range only periods of some types; counts for a range alone.
    bool IsPeriodTypes = false;
    /// Which types; any of them.
    DocQueryPeriodTypes PeriodTypes{};

    /// Switch: the report forms of the list.
    bool IsTemplate = false;
    /// What Templates holds.
    DocQueryTemplatesMode TemplatesMode = TemplateClass;
    std::shared_ptr<RecordCollection>
        Templates;  ///< of VkTemplType or VkTemplate, by TemplatesMode

    /// Switch: documents in some states.
    bool IsDocStatus = false;
    /// Which states; any of them.
    DocQueryDocStatuses DocStatuses{};
    /// Switch: the document's date.
    bool IsSignDate = false;
    LooseValue SignDate1;  ///< a date, empty or null: the start of the window may be open
    /// A date, empty or null: the end of the window may be open.
    LooseValue SignDate2;
    /// Switch: who signed.
    bool IsSignerFio = false;
    /// The signer's surname.
    QString SignerSurname;
    /// Switch: the document's note.
    bool IsNotes = false;
    /// What the note has to be.
    DocQueryNotesMode NotesMode = NotesEmpty;
    QString Notes;  ///< what to look for when NotesMode is NotesLike
    /// Switch: the document's number.
    bool IsDocNum = false;
    /// Which of the fields below count.
    DocQueryDocNumMode DocNumMode = DocLastNums;
    /// First number of the range.
    qint32 DocNum1 = 0;
    /// Last number of the range.
    qint32 DocNum2 = 0;
    qint32 LastDocNumsCount = 10;  ///< how many of the documents created last
    /// When a found document belongs to a pack of individual records about persons, add the whole
    /// pack.
    bool WholePfrCluster = false;

    /// Switch: delivery by Orvex. The dialog keeps it and does not show it; so with all of Orvex
    /// and Fss.
    bool IsOrvex = false;
    /// Switch: some stages of the delivery.
    bool IsOrvexStages = false;
    /// Which stages; any of them.
    DocQueryOrvexStages OrvexStages{};
    /// Switch: some outcomes of the delivery.
    bool IsOrvexTerms = false;
    /// Which outcomes; any of them.
    DocQueryOrvexTerms OrvexTerms{};

    /// Switch: delivery to the social insurance fund.
    bool IsFss = false;
    /// Switch: some stages of the delivery.
    bool IsFssStages = false;
    /// Which stages; any of them.
    DocQueryFssStages FssStages{};
    /// Switch: some outcomes of the delivery.
    bool IsFssTerms = false;
    /// Which outcomes; any of them.
    DocQueryFssTerms FssTerms{};

    QString LastTab;    ///< key of the tab that was open
    QString LastError;  ///< text of the last failed read or write

    /// Saves the record as a .qvk file. Raises SaveFailed with the reason; an existing file then
    /// stays as it was.
    VK_DOCQUERY_EXPORT void WriteToFile(const QString &aFileName);
    /// The same with a result: false puts the reason into rErrorMessage, true leaves it alone.
    VK_DOCQUERY_EXPORT bool WriteToFileSafe(const QString &aFileName, QString &rErrorMessage);
    /// The same with the reason in LastError. FileName is not changed. Raises only if there is no
    /// files library, or if an item of a list fails to tell its ID.
    VK_DOCQUERY_EXPORT bool WriteToXmlFile(const QString &aFileName);

    // From here on for the library itself; these symbols are not exported.

    /// The text of a .qvk file, every line aDepth steps further in.
    QString WriteToXmlString(bool aWithDeclaration, qint32 aDepth);
    /// Fills the record from a .qvk file. False leaves the reason in LastError. Raises what the
    /// supplier of records raises for an identity that it cannot load.
    bool ReadFromXmlFile(const QString &aFileName);
    /// The same from a parsed document, or from an element of any name that stands for the root.
    bool ReadFromXml(const XmlNode &aNode);
    /// Judges the record before a search; shows the first fault in a box and returns false.
    bool Validate();
};

}  // namespace Vk_DocQuery
