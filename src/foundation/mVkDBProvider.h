#pragma once

#include <vector>

#include <Vk_DocQuery/Providers.h>

namespace Vk_DocQuery {

/// Each gives the one instance of this thread, made on first use and kept.
BlankQueries &GetBlankQueries();
DBQAccStream &GetDBQAccStream();
PersonQueries &GetPersonQueries();

/// Tell the supplier what is about to be fetched one by one, if it wants to know
/// (RecordAnnouncements.h). Its failures are ignored: the fetching tells what is wrong.
void AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs) noexcept;
void AnnounceFormNames(const std::vector<double> &aIDs) noexcept;

}  // namespace Vk_DocQuery
