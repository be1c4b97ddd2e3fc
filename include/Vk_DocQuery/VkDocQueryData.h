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
    AccStreamFns = 1,
    AccStreamPfr = 2,
    AccStreamRosstat = 4,
    AccStreamFss = 8,
    AccStreamAlcohol = 16,
    AccStreamOfr = 256,
};

enum DocQueryAccStreamOpen : qint32 { StreamOpen = 1, StreamClosed = 2 };

/// How the conditions on the two office codes join.
enum DocQueryContoraJoining : qint32 { JoinAnd = 0, JoinOr = 1 };

enum DocQueryPeriodCriterion : qint32 {
    OnePeriod = 1,     ///< OnePeriodYear and OnePeriodMonthID count
    RangePeriods = 2,  ///< RangePeriodYear1 to RangePeriodMonth2 count
    OtherPeriod = 3,   ///< the period "Прочее"
};

/// Flags.
enum DocQueryPeriodTypes : qint32 {
    PeriodMonths = 1,
    PeriodQuarters1To3 = 2,
    PeriodQuarter4 = 4,
    PeriodHalfYearAndYear = 8,
    PeriodOther = 16,
    PeriodLetters = 32,
    PeriodDocuments = 64,
};

/// What VkDocQueryData::Templates holds.
enum DocQueryTemplatesMode : qint32 {
    TemplateClass = 1,    ///< VkTemplType
    TemplateVersion = 2,  ///< VkTemplate
};

/// Flags.
enum DocQueryDocStatuses : qint32 {
    DocInWork = 1,
    DocReady = 2,
    DocDelivered = 4,
    DocCorrected = 8,
};

enum DocQueryNotesMode : qint32 { NotesEmpty = 0, NotesNotEmpty = 1, NotesLike = 2 };

enum DocQueryDocNumMode : qint32 {
    DocNumRange = 0,  ///< DocNum1 and DocNum2 count
    DocLastNums = 1,  ///< LastDocNumsCount counts
};

/// Flags.
enum DocQueryOrvexStages : qint32 {
    OrvexNotSent = 1,
    OrvexChecked = 2,
    OrvexSent = 4,
    OrvexDeliveryReport = 8,
    OrvexCheckResult = 16,
    OrvexNotice = 32,
};

/// Flags.
enum DocQueryOrvexTerms : qint32 { OrvexInProgress = 1, OrvexSucceeded = 2, OrvexFailed = 4 };

/// Flags.
enum DocQueryFssStages : qint32 {
    FssNotSent = 1,
    FssReceived = 2,
    FssDecrypted = 4,
    FssFormatChecked = 8,
    FssLogicChecked = 16,
    FssAccepted = 32,
};

/// Flags.
enum DocQueryFssTerms : qint32 { FssInProgress = 1, FssSucceeded = 2, FssFailed = 4 };

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
    VK_DOCQUERY_EXPORT VkDocQueryData(const VkDocQueryData &);
    VK_DOCQUERY_EXPORT VkDocQueryData &operator=(const VkDocQueryData &);
    VK_DOCQUERY_EXPORT ~VkDocQueryData();

    /// Full path of the file that the record was last read from, or saved to under a new name.
    QString FileName;

    bool IsTaxpayers = false;
    DocQueryTaxpayersType TaxpayersType = Taxpayers;
    std::shared_ptr<RecordCollection> TaxpayersList;  ///< of VkPerson
    bool IncludeMainOrgDocs = false;  ///< also the documents of the head organisation itself

    bool IsAccStreamType = false;
    DocQueryAccStreamTypes AccStreamTypes{};
    bool IsAccStreamOpeness = false;
    DocQueryAccStreamOpen AccStreamOpen = StreamOpen;
    bool IsContoraPrefix1 = false;
    QString ContoraPrefix1;  ///< what the first office code begins with
    bool IsContoraPrefix2 = false;
    QString ContoraPrefix2;
    DocQueryContoraJoining ContoraJoining = JoinAnd;
    bool IsAccStreamsList = false;
    std::shared_ptr<RecordCollection> AccStreamsList;  ///< of VkAccStream

    bool IsPeriods = false;
    DocQueryPeriodCriterion PeriodCriterion = OnePeriod;
    qint32 OnePeriodYear;           ///< this year on creation
    qint32 OnePeriodMonthID = 16;   ///< period code; 16 is the fourth quarter
    qint32 RangePeriodYear1;        ///< this year on creation
    qint32 RangePeriodMonth1 = 1;   ///< 1 to 12
    qint32 RangePeriodYear2;        ///< this year on creation
    qint32 RangePeriodMonth2 = 12;  ///< 1 to 12
    bool IsPeriodTypes = false;
    DocQueryPeriodTypes PeriodTypes{};

    bool IsTemplate = false;
    DocQueryTemplatesMode TemplatesMode = TemplateClass;
    std::shared_ptr<RecordCollection>
        Templates;  ///< of VkTemplType or VkTemplate, by TemplatesMode

    bool IsDocStatus = false;
    DocQueryDocStatuses DocStatuses{};
    bool IsSignDate = false;
    LooseValue SignDate1;  ///< a date, empty or null: the start of the window may be open
    LooseValue SignDate2;
    bool IsSignerFio = false;
    QString SignerSurname;
    bool IsNotes = false;
    DocQueryNotesMode NotesMode = NotesEmpty;
    QString Notes;  ///< what to look for when NotesMode is NotesLike
    bool IsDocNum = false;
    DocQueryDocNumMode DocNumMode = DocLastNums;
    qint32 DocNum1 = 0;
    qint32 DocNum2 = 0;
    qint32 LastDocNumsCount = 10;  ///< how many of the documents created last
    /// When a found document belongs to a pack of individual records about persons, add the whole
    /// pack.
    bool WholePfrCluster = false;

    bool IsOrvex = false;
    bool IsOrvexStages = false;
    DocQueryOrvexStages OrvexStages{};
    bool IsOrvexTerms = false;
    DocQueryOrvexTerms OrvexTerms{};

    bool IsFss = false;
    bool IsFssStages = false;
    DocQueryFssStages FssStages{};
    bool IsFssTerms = false;
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
