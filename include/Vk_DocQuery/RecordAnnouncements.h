#pragma once

#include <vector>

#include <QString>

#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

/// What a supplier of records is told before it is asked, so that it can read with one request what
/// is then fetched one by one. Class name "Vk_DBProvider.RecordAnnouncements"; optional, and so is
/// each member. A new object is made for each announcement.
///
/// A query file with 100,000 identities makes the library create 100,000 records and tell each its
/// identity by SetID; a database that is two milliseconds away would take minutes for that. What a
/// member reads, it keeps under a name of its own in SupplierNotes, whose place is open then on
/// this thread: there SetID and GetTemplTypeNames find it, and it is let go when the file has been
/// read, whether all of it was fetched or not.
///
/// An announcement changes no answer. What it cannot read is left out: SetID of an identity that is
/// gone raises as it does without one. It takes the place of what the notes held of the class
/// before, so that nothing is shown that is older than the announcement. A failure of a member is
/// ignored; what is fetched then is read as without it, and tells what is wrong.
class VK_DOCQUERY_EXPORT RecordAnnouncements : public Object {
public:
    ~RecordAnnouncements() override;
    /// Records of the class, a name such as "Vk_Records.VkAccStream", are about to be created and
    /// told these identities by SetID, in this order. An identity may come again, and may be one
    /// that cannot be.
    virtual void AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs);
    /// GetTemplTypeNames is about to be called with the identities of these forms, in this order.
    virtual void AnnounceFormNames(const std::vector<double> &aIDs);
};

}  // namespace Vk_DocQuery
