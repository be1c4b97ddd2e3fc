#pragma once

#include <Vk_DocQuery/Providers.h>

#include "Persons.h"

namespace Vk_Records {

/// What is read of an accounting stream, with its owner.
struct AccStreamColumns {
    double theID = 0;
    double thePersonID = 0;
    QString theName;
    QString theKpp;
    QString theOffices;
    QString theIcon;
    std::shared_ptr<PersonRecord> thePerson;
};

/// An accounting stream as it was read.
class AccStreamRecord final : public Vk_DocQuery::VkAccStream, private AccStreamColumns {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override;
    std::shared_ptr<Vk_DocQuery::VkPerson> Person() const override { return thePerson; }
    QString DisplayName() const override { return theName; }
    QString Kpp() const override { return theKpp; }
    QString GetIconKey() const override { return theIcon; }
    QString GetOfficeCodeForDisplay() const override { return theOffices; }

private:
    friend std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection);
    void Read(const QSqlQuery &aRow);
};

/// All streams; those of one person share its record.
std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection);

}  // namespace Vk_Records
