#pragma once

#include <QtGlobal>

namespace Vk_DocQuery {

/// An option of a group and the code that it stands for. The groups are read in this order.
struct OptionCode {
    const char *Option;
    qint32 Code;
};

constexpr OptionCode theTemplatesModeOptions[] = {{"theOptTemplateClass", 1},
                                                  {"theOptTemplate", 2}};
constexpr OptionCode thePeriodOptions[] = {
    {"theOnePeriod", 1}, {"theRangePeriods", 2}, {"theOtherPeriod", 3}};
constexpr OptionCode theOpenessOptions[] = {{"theAccStreamOpen", 1}, {"theAccStreamClosed", 2}};
constexpr OptionCode theJoiningOptions[] = {{"theContoraJoinAnd", 0}, {"theContoraJoinOr", 1}};
constexpr OptionCode theTaxpayersOptions[] = {{"theOptTaxpayers", 1}, {"theOptMainOrgs", 2}};

}  // namespace Vk_DocQuery
