#include "Persons.h"

#include <algorithm>

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

namespace {

constexpr char16_t theClass[] = u"Vk_Records.VkPerson";

constexpr char theAllPersonsSql[] = "SELECT " VK_PERSON_COLUMNS(p) " FROM person p ORDER BY p.id";
constexpr char theTaxpayersSql[] =
    "SELECT " VK_PERSON_COLUMNS(p) ", " VK_PERSON_COLUMNS(q) " FROM person p "
    "LEFT JOIN person q ON q.id = p.parent_id WHERE EXISTS "
    "(SELECT 1 FROM acc_stream s WHERE s.person_id = p.id) ORDER BY p.id";

#define VK_PERSONS_BY_ID \
    "SELECT " VK_PERSON_COLUMNS(p) ", " VK_PERSON_COLUMNS(q) " FROM person p "      \
                                   "LEFT JOIN person q ON q.id = p.parent_id WHERE p.id "
constexpr char theOnePersonSql[] = VK_PERSONS_BY_ID VK_IS_ONE;
constexpr ManySql theManyPersonsSql = {VK_PERSONS_BY_ID VK_IS_ONE_OF_A_FILE,
                                       VK_PERSONS_BY_ID VK_IS_ONE_OF_A_SERVER};

struct PersonReader {
    using Columns = PersonColumns;
    SharedPersons Parents;
    explicit PersonReader(std::size_t = 1) {}  // parents are fewer
    void operator()(const Row &aRow, PersonColumns &rColumns) {
        rColumns.Read(aRow);
        rColumns.theParent.reset();
        if (rColumns.theKind == PersonKind::Branch)
            rColumns.theParent = Parents.At(aRow, PersonColumns::theCount);
    }
};

/// The parent of everyone who has none.
std::shared_ptr<PersonRecord> Nobody() {
    static const auto nobody = std::make_shared<PersonRecord>();
    return nobody;
}

std::shared_ptr<Vk_DocQuery::RecordCollection> PersonsBy(Connection &aConnection, const char *aSql,
                                                         bool aHasParents) {
    PersonLoad load;
    InRussianOrder ordered;
    aConnection.Read(aSql, {}, [&](const Row &row) {
        const auto &person = load.Take(row, aHasParents);
        ordered.Take(person->GetDisplayName(), person);
    });
    load.LinkParents();
    return ordered.Ordered();
}

}  // namespace

void PersonColumns::Read(const Row &aRow, int aFirst) {
    theID = aRow.Integer(aFirst);
    theKind = static_cast<PersonKind>(aRow.Integer(aFirst + 1));
    theInn = aRow.Text(aFirst + 2);
    theKpp = aRow.CommonText(aFirst + 3);
    theName = aRow.Text(aFirst + 4);
    theOwnerName = aRow.Text(aFirst + 5, theName);
    theIsMain = aRow.Integer(aFirst + 6) != 0;
    theParentID = aRow.Integer(aFirst + 7);
}

void PersonRecord::SetID(double aID) {
    ReadOne<PersonReader>(theOnePersonSql, theClass, aID, *this);
}

std::shared_ptr<Vk_DocQuery::VkPerson> PersonRecord::GetParentOrganization() const {
    return theParent ? theParent : Nobody();
}

QString PersonRecord::GetIconKeyAsAccPerson() const {
    switch (theKind) {
        case PersonKind::Organization:
            return theIsMain ? QStringLiteral("orgs") : QStringLiteral("org");
        case PersonKind::Branch:
            return QStringLiteral("branch");
        case PersonKind::PrivatePerson:
            return QStringLiteral("man_purple");
        case PersonKind::None:
            break;
    }
    return QString();
}

const std::shared_ptr<PersonRecord> &PersonLoad::Take(const Row &aRow, bool aHasParent) {
    auto person = std::make_shared<PersonRecord>();
    person->Read(aRow);
    if (person->IsBranch()) {
        theBranches.push_back(person);
        if (aHasParent && !Find(person->theParentID)) {
            auto &parent = theParents[person->theParentID];
            if (!parent) {
                parent = std::make_shared<PersonRecord>();
                parent->Read(aRow, PersonColumns::theCount);
            }
        }
    }
    return theByID.emplace_back(std::move(person));
}

std::shared_ptr<PersonRecord> PersonLoad::Find(qint64 aID) const {
    const auto found =
        std::lower_bound(theByID.begin(), theByID.end(), aID,
                         [](const auto &person, qint64 id) { return person->theID < id; });
    return found != theByID.end() && (*found)->theID == aID ? *found : nullptr;
}

void PersonLoad::LinkParents() {
    for (const auto &branch : theBranches) {
        auto parent = Find(branch->theParentID);
        if (!parent) parent = theParents.value(branch->theParentID);
        // Only an organisation is taken for a parent, so that no ring of records can come about.
        if (parent && parent->theKind == PersonKind::Organization) branch->theParent = parent;
    }
}

std::shared_ptr<PersonRecord> SharedPersons::At(const Row &aRow, int aFirst) {
    std::size_t &place = thePlaces[aRow.Integer(aFirst)];
    if (place != 0) return thePersons[place - 1];
    auto person = std::make_shared<PersonRecord>();
    person->Read(aRow, aFirst);
    thePersons.push_back(person);
    place = thePersons.size();
    if (person->IsBranch()) person->theParent = At(aRow, aFirst + PersonColumns::theCount);
    return person;
}

std::shared_ptr<Vk_DocQuery::RecordCollection> AllPersons(Connection &aConnection) {
    return PersonsBy(aConnection, theAllPersonsSql, false);
}

std::shared_ptr<Vk_DocQuery::RecordCollection> Taxpayers(Connection &aConnection) {
    return PersonsBy(aConnection, theTaxpayersSql, true);
}

PersonLoad Owners(Connection &aConnection) {
    PersonLoad load;
    aConnection.Read(theTaxpayersSql, {}, [&](const Row &row) { load.Take(row, true); });
    load.LinkParents();
    return load;
}

void AnnouncePersons(const std::vector<double> &aIDs) {
    Announce<PersonReader>(theManyPersonsSql, theClass, aIDs);
}

}  // namespace Vk_Records
