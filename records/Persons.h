#pragma once

#include <vector>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"

namespace Vk_Records {

enum class PersonKind { None = 0, Organization = 1, Branch = 2, PrivatePerson = 3 };

class PersonRecord;

/// What is read of a taxpayer.
struct PersonColumns {
    qint64 theID = 0;
    qint64 theParentID = 0;
    QString theInn;
    QString theKpp;
    QString theName;
    QString theOwnerName;
    PersonKind theKind = PersonKind::None;
    bool theIsMain = false;
    std::shared_ptr<PersonRecord> theParent;
};

/// A taxpayer as it was read.
class PersonRecord final : public Vk_DocQuery::VkPerson, private PersonColumns {
public:
    double ID() const override { return static_cast<double>(theID); }
    void SetID(double aID) override;
    QString Inn() const override { return theInn; }
    QString Kpp() const override { return theKpp; }
    bool IsBranch() const override { return theKind == PersonKind::Branch; }
    bool IsOrganization() const override {
        return theKind == PersonKind::Organization || theKind == PersonKind::Branch;
    }
    std::shared_ptr<VkPerson> GetParentOrganization() const override;
    QString GetDisplayName() const override { return theName; }
    QString GetDisplayNameAsAccPerson() const override { return theOwnerName; }
    QString GetIconKeyAsAccPerson() const override;
    bool IsMainOrganization() const override { return theIsMain; }

    /// Takes the columns of thePersonColumns from aFirst on.
    void Read(const QSqlQuery &aRow, int aFirst = 0);

private:
    friend class PersonLoad;
};

/// Persons that are read together: the branches of one organisation share its record.
class PersonLoad {
public:
    explicit PersonLoad(Connection &aConnection) : theConnection(aConnection) {}

    /// Reads the persons that the statement gives and adds them to the collection, if there is one.
    void Read(const char *aSql, Vk_DocQuery::RecordCollection *rPersons);
    /// Gives the branches their organisations, reading those that are not there yet.
    void LinkParents();
    /// One of the persons read, or a null pointer. After LinkParents only.
    std::shared_ptr<PersonRecord> Find(qint64 aID) const;

private:
    using Entry = std::pair<qint64, std::shared_ptr<PersonRecord>>;

    void Sort();

    Connection &theConnection;
    std::vector<Entry> theByID;  // in order once sorted
    std::vector<std::shared_ptr<PersonRecord>> theBranches;
};

extern const char theAllPersonsSql[];
extern const char theTaxpayersSql[];

}  // namespace Vk_Records
