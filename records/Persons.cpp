#include "Persons.h"

#include <algorithm>

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

#define VK_PERSON_COLUMNS(p)                                                                   \
#p ".id, " #p ".kind, " #p ".inn, " #p ".kpp, " #p ".display_name, " #p ".owner_name, " #p \
       ".is_main, " #p ".parent_id"

constexpr char theAllPersonsSql[] = "SELECT " VK_PERSON_COLUMNS(p) " FROM person p ORDER BY p.id";
constexpr char theTaxpayersSql[] =
    "SELECT " VK_PERSON_COLUMNS(p) " FROM person p WHERE EXISTS "
    "(SELECT 1 FROM acc_stream s WHERE s.person_id = p.id) ORDER BY p.id";

namespace {

constexpr char theParentsSql[] =
    "SELECT " VK_PERSON_COLUMNS(p) " FROM person p WHERE p.id IN "
    "(SELECT b.parent_id FROM person b WHERE b.parent_id IS NOT NULL)";
constexpr char theOnePersonSql[] = "SELECT " VK_PERSON_COLUMNS(p) ", " VK_PERSON_COLUMNS(
    q) " FROM person p LEFT JOIN person q ON q.id = p.parent_id WHERE p.id = ?";
constexpr int thePersonColumns = 8;

/// The parent of everyone who has none.
std::shared_ptr<PersonRecord> Nobody() {
    static const auto nobody = std::make_shared<PersonRecord>();
    return nobody;
}

}  // namespace

void PersonRecord::SetID(double aID) {
    ReadOne(theOnePersonSql, u"Vk_Records.VkPerson", aID, static_cast<PersonColumns &>(*this),
            [this](const QSqlQuery &row) {
                Read(row);
                theParent.reset();
                if (theParentID == 0) return;
                theParent = std::make_shared<PersonRecord>();
                theParent->Read(row, thePersonColumns);
            });
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

void PersonRecord::Read(const QSqlQuery &aRow, int aFirst) {
    theID = aRow.value(aFirst).toLongLong();
    theKind = static_cast<PersonKind>(aRow.value(aFirst + 1).toInt());
    theInn = aRow.value(aFirst + 2).toString();
    theKpp = aRow.value(aFirst + 3).toString();
    theName = aRow.value(aFirst + 4).toString();
    theOwnerName = aRow.value(aFirst + 5).toString();
    theIsMain = aRow.value(aFirst + 6).toInt() != 0;
    theParentID = aRow.value(aFirst + 7).toLongLong();
}

void PersonLoad::Read(const char *aSql, Vk_DocQuery::RecordCollection *rPersons) {
    QSqlQuery &query = theConnection.Prepared(aSql);
    theConnection.Execute(query);
    InRussianOrder ordered;
    theConnection.ForEachRow(query, [&](const QSqlQuery &row) {
        auto person = std::make_shared<PersonRecord>();
        person->Read(row);
        if (person->IsBranch()) theBranches.push_back(person);
        if (rPersons) ordered.Take(person->theName, person);
        const qint64 id = person->theID;
        theByID.emplace_back(id, std::move(person));
    });
    if (rPersons) ordered.MoveTo(*rPersons);
}

void PersonLoad::Sort() {
    std::sort(theByID.begin(), theByID.end(),
              [](const Entry &left, const Entry &right) { return left.first < right.first; });
}

std::shared_ptr<PersonRecord> PersonLoad::Find(qint64 aID) const {
    const auto found =
        std::lower_bound(theByID.begin(), theByID.end(), aID,
                         [](const Entry &entry, qint64 id) { return entry.first < id; });
    return found != theByID.end() && found->first == aID ? found->second : nullptr;
}

void PersonLoad::LinkParents() {
    Sort();
    PersonLoad others(theConnection);
    bool areOthersRead = false;
    for (const auto &branch : theBranches) {
        auto parent = Find(branch->theParentID);
        if (!parent) {
            if (!areOthersRead) {
                others.Read(theParentsSql, nullptr);
                others.Sort();
            }
            areOthersRead = true;
            parent = others.Find(branch->theParentID);
        }
        // Only an organisation is taken for a parent, so that no ring of records can come about.
        if (parent && parent->theKind == PersonKind::Organization) branch->theParent = parent;
    }
}

}  // namespace Vk_Records
