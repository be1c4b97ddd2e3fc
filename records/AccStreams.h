#pragma once

#include <Vk_DocQuery/Providers.h>

#include "Persons.h"

namespace Vk_Records {

/// What is read of an accounting stream, with its owner.
struct AccStreamColumns {
    qint64 theID = 0;
    qint64 thePersonID = 0;
    QString theName;
    QString theKpp;
    QString theOffices;
    QString theIcon;
    std::shared_ptr<PersonRecord> thePerson;

    static constexpr int theCount = 6;
    /// Takes those of a row, without the owner.
    void Read(const Row &aRow);
};

/// An accounting stream as it was read.
class AccStreamRecord final : public Vk_DocQuery::VkAccStream, private AccStreamColumns {
public:
    double ID() const override { return static_cast<double>(theID); }
    void SetID(double aID) override;
    std::shared_ptr<Vk_DocQuery::VkPerson> Person() const override { return thePerson; }
    QString DisplayName() const override { return theName; }
    QString Kpp() const override { return theKpp; }
    QString GetIconKey() const override { return theIcon; }
    QString GetOfficeCodeForDisplay() const override { return theOffices; }

private:
    friend std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection);
};

/// All streams in the order of their names; those of one person share its record.
std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection);
/// Notes the streams that are about to be loaded one by one.
void AnnounceAccStreams(const std::vector<double> &aIDs);

}  // namespace Vk_Records
