#pragma once

#include <memory>

#include <QStringView>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// Where a supplier of records may note, under a name of its own, what it reads while a query file
/// is read on this thread, or the forms of the browser. A file may name one identity again and
/// again, and each time a record is made and told it by SetID: with the notes the supplier need not
/// ask its database each time. They are let go at the end of the file or of the forms, so that
/// nothing outdated is shown later. RecordAnnouncements.h tells what to note before it is asked
/// for.
///
/// Null while nothing of that is read. The place is empty at first, and good until the next call.
VK_DOCQUERY_EXPORT std::shared_ptr<void> *SupplierNotes(QStringView aName);

}  // namespace Vk_DocQuery
