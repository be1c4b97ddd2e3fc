#pragma once

#include <Vk_DocQuery/LooseValue.h>

namespace Vk_DocQuery {

/// A date as day, month and year parted by dots. rFailed says that the text is no date. A text
/// without a date in it, as an empty masked box gives it, and a day or month that is not above zero
/// count as not given: the default without rFailed.
LooseValue RussStringToDate(const QString &aText, const LooseValue &aDefault, bool &rFailed);

/// What a date field of a record stands for: a text for the date that it tells, and for empty if it
/// tells none; everything else for itself.
LooseValue DateOfField(const LooseValue &aValue);

}  // namespace Vk_DocQuery
