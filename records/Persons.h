#pragma once

#include <vector>

#include <QHash>

#include <Vk_DocQuery/Providers.h>

#include "Connection.h"
#include "Row.h"

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

    static constexpr int theCount = 8;
    /// Takes those of a row from aFirst on, without the parent.
    void Read(const Row &aRow, int aFirst = 0);
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

private:
    friend class PersonLoad;
    friend class SharedPersons;
};

/// Persons that one request gives in the order of their identities. Each has one record, whichever
/// way it is come upon.
class PersonLoad {
public:
    /// Takes a row: the columns of a person and, where aHasParent says so, those of the
    /// organisation of a branch behind them.
    const std::shared_ptr<PersonRecord> &Take(const Row &aRow, bool aHasParent);
    /// Gives the branches their organisations; to be called behind the last row.
    void LinkParents();
    /// One of the persons taken, or a null pointer.
    std::shared_ptr<PersonRecord> Find(qint64 aID) const;

private:
    std::vector<std::shared_ptr<PersonRecord>> theByID;
    std::vector<std::shared_ptr<PersonRecord>> theBranches;
    QHash<qint64, std::shared_ptr<PersonRecord>> theParents;  // those that came behind a branch
};

/// Persons that come in any order, with their organisations behind them; each has one record.
class SharedPersons {
public:
    SharedPersons() = default;
    /// For about so many persons.
    explicit SharedPersons(std::size_t aCount) {
        thePersons.reserve(aCount);
        thePlaces.reserve(static_cast<qsizetype>(aCount));
    }
    /// The person whose columns begin there.
    std::shared_ptr<PersonRecord> At(const Row &aRow, int aFirst);

private:
    // Apart from the table that finds them, so that they are let go in the order they were made in.
    std::vector<std::shared_ptr<PersonRecord>> thePersons;
    QHash<qint64, std::size_t> thePlaces;  // counted from 1
};

/// All persons, and those who own a stream, in the order of their names.
std::shared_ptr<Vk_DocQuery::RecordCollection> AllPersons(Connection &aConnection);
std::shared_ptr<Vk_DocQuery::RecordCollection> Taxpayers(Connection &aConnection);
/// Those who own a stream, for who looks for them by their identities.
PersonLoad Owners(Connection &aConnection);
/// Notes the persons that are about to be loaded one by one.
void AnnouncePersons(const std::vector<double> &aIDs);

/// The columns of a person in a request.
#define VK_PERSON_COLUMNS(p)                                                                   \
#p ".id, " #p ".kind, " #p ".inn, " #p ".kpp, " #p ".display_name, " #p ".owner_name, " #p \
       ".is_main, " #p ".parent_id"

}  // namespace Vk_Records
