// What a host may do with the flags of a record, without a cast.
#include <type_traits>

#include <Vk_DocQuery/VkDocQueryData.h>

using namespace Vk_DocQuery;

template <class Flags>
constexpr bool Combine(Flags aOne, Flags aOther) {
    Flags both = aOne;
    both |= aOther;
    Flags without = both;
    without &= ~aOne;
    return std::is_same<decltype(aOne | aOther), Flags>::value && both == (aOne | aOther) &&
           without == aOther && (both & aOne) == aOne && (aOne & aOther) == 0;
}
static_assert(Combine(AccStreamFns, AccStreamOfr), "");
static_assert(Combine(PeriodMonths, PeriodDocuments), "");
static_assert(Combine(DocInWork, DocCorrected), "");
static_assert(Combine(OrvexNotSent, OrvexNotice), "");
static_assert(Combine(OrvexInProgress, OrvexFailed), "");
static_assert(Combine(FssNotSent, FssAccepted), "");
static_assert(Combine(FssInProgress, FssFailed), "");
static_assert((AccStreamFns | AccStreamPfr | AccStreamOfr) == 259, "");

// Other enumerations are codes, of which two make no third.
template <class Code, class = void>
struct MakesCodes : std::false_type {};
template <class Code>
struct MakesCodes<Code, std::enable_if_t<std::is_same<decltype(Code{} | Code{}), Code>::value>>
    : std::true_type {};
static_assert(!MakesCodes<DocQueryNotesMode>::value && !MakesCodes<DocQueryTaxpayersType>::value &&
                  !MakesCodes<DocQueryAccStreamOpen>::value &&
                  !MakesCodes<DocQueryContoraJoining>::value &&
                  !MakesCodes<DocQueryPeriodCriterion>::value &&
                  !MakesCodes<DocQueryTemplatesMode>::value &&
                  !MakesCodes<DocQueryDocNumMode>::value,
              "");

void Fill(VkDocQueryData &rRecord) {
    rRecord.AccStreamTypes = AccStreamFns | AccStreamPfr;
    rRecord.AccStreamTypes |= AccStreamOfr;
    rRecord.AccStreamTypes &= ~AccStreamFns;
}
