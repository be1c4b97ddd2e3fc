#pragma once

#include <QStringList>

#include <Vk_DocQuery/VkDocQueryData.h>

/// What a search asks for, one sentence for each criterion that is switched on, in the order of the
/// dialog's tabs. A record without any gives the one sentence that says so. Raises the failures of
/// the records' supplier.
QStringList RecordInWords(const Vk_DocQuery::VkDocQueryData &aRecord);
