#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_DocQuery {

/// Each gives the one instance of this thread, made on first use and kept.
BlankQueries &GetBlankQueries();
DBQAccStream &GetDBQAccStream();
PersonQueries &GetPersonQueries();

}  // namespace Vk_DocQuery
