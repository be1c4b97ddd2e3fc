#pragma once

#include <memory>

#include <QWidget>

#include <Vk_DocQuery/VkDocQueryData.h>

namespace Vk_DocQuery {

/// Filter of the file dialogs for query files.
extern const QString theQueryFilesFilter;

/// Asks for a query file and reads it into a new record. Null on cancel and, after a box with the
/// reason, for a file that cannot be read. aHwnd is the owner window, or 0.
std::shared_ptr<VkDocQueryData> AskFileAndLoadDocQuery(WId aHwnd);

}  // namespace Vk_DocQuery
