#include "lists/RecordIcons.h"

#include <Vk_DocQuery/Failure.h>

#include "look/mVkPics.h"

namespace Vk_DocQuery {

namespace {

/// The name under which the class of the record is made.
QString ClassOf(const Record &aRecord) {
    if (dynamic_cast<const VkTemplate *>(&aRecord)) return QStringLiteral("Vk_Records.VkTemplate");
    if (dynamic_cast<const VkTemplType *>(&aRecord))
        return QStringLiteral("Vk_Records.VkTemplType");
    if (dynamic_cast<const VkAccStream *>(&aRecord))
        return QStringLiteral("Vk_Records.VkAccStream");
    if (dynamic_cast<const VkPerson *>(&aRecord)) return QStringLiteral("Vk_Records.VkPerson");
    return QStringLiteral("Record");
}

/// Says behind a failure of the body which record the key is of.
template <class Body>
void NamingRecord(const Record &aRecord, Body aBody) {
    try {
        aBody();
    } catch (const Failure &failure) {
        throw Failure(
            failure.Number(), failure.Source(),
            failure.Description() + QStringLiteral(" Его назвал объект %1 с идентификатором %2.")
                                        .arg(ClassOf(aRecord), GeneralNumberText(aRecord.ID())));
    }
}

}  // namespace

void SetRecordIcon(ListRow &aRow, const Record &aRecord, const QString &aKey) {
    NamingRecord(aRecord, [&] { aRow.SetIcon(QueryIcon(aKey)); });
}

void SetRecordCellIcon(ListRow &aRow, int aCell, const Record &aRecord, const QString &aKey) {
    NamingRecord(aRecord, [&] { aRow.SetCellIcon(aCell, QueryIcon(aKey)); });
}

}  // namespace Vk_DocQuery
