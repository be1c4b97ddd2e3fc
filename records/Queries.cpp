#include "Queries.h"

#include "AccStreams.h"
#include "OneRecord.h"
#include "Persons.h"
#include "Rows.h"
#include "Templates.h"

namespace Vk_Records {

using Vk_DocQuery::LooseValue;
using Vk_DocQuery::RecordCollection;
using Vk_DocQuery::Recordset;

namespace {

constexpr char theCategoriesSql[] =
    "SELECT category_id AS \"TPCategory_ID\", stream_type AS \"AccStreamType\", "
    "allowed_for_main AS \"AllowedForMainOrg\", allowed_for_branch AS \"AllowedForBranch\" "
    "FROM templ_type_category WHERE templ_type_id = ? ORDER BY category_id, stream_type";
constexpr char theTimesSql[] =
    "SELECT the_year AS \"the_year\", month_id AS \"month_id\" FROM templ_type_time "
    "WHERE templ_type_id = ? ORDER BY the_year, month_id";
constexpr char theNamesSql[] =
    "SELECT full_name AS \"full_name\" FROM templ_type_name WHERE templ_type_id = ? "
    "ORDER BY name_order";
constexpr qint32 theOnlyKind = 1;

[[noreturn]] void RaiseUnknownArgument(const QString &aWhat) {
    throw Vk_DocQuery::Failure(
        Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
        QStringLiteral("Запрос с таким условием не поддерживается: %1.").arg(aWhat));
}

void CheckNoCondition(const QString &aFilter, qint32 aFlags) {
    if (!aFilter.isEmpty()) RaiseUnknownArgument(QStringLiteral("отбор \"%1\"").arg(aFilter));
    if (aFlags != 0) RaiseUnknownArgument(QStringLiteral("признаки %1").arg(aFlags));
}

/// A side of a window; what is empty or null leaves it open.
QDate SideOf(const LooseValue &aDate) {
    if (Vk_DocQuery::IsNull(aDate) || Vk_DocQuery::IsEmpty(aDate)) return QDate();
    return Vk_DocQuery::ToDate(aDate);
}

std::shared_ptr<Recordset> RowsOf(const char *aSql, double aID) {
    Connection &connection = ThisThreadsConnection();
    QSqlQuery &query = connection.Prepared(aSql);
    query.bindValue(0, StoredID(aID).value_or(0));
    connection.Execute(query);
    return std::make_shared<Rows>(connection, query);
}

std::shared_ptr<RecordCollection> PersonsBy(const char *aSql) {
    auto persons = std::make_shared<RecordCollection>();
    PersonLoad load(ThisThreadsConnection());
    load.Read(aSql, persons.get());
    load.LinkParents();
    return persons;
}

}  // namespace

std::shared_ptr<RecordCollection> OfficeBlankQueries::GetTemplates(const LooseValue &aDateFrom,
                                                                   const LooseValue &aDateTo,
                                                                   bool aClasses) {
    const QDate from = SideOf(aDateFrom);
    const QDate to = SideOf(aDateTo);
    Connection &connection = ThisThreadsConnection();
    return aClasses ? TemplTypes(connection, from, to) : Versions(connection, from, to);
}

void OfficeBlankQueries::GetTemplTypeAvailability(qint32 aKind, double aID,
                                                  std::shared_ptr<Recordset> &rCategories,
                                                  std::shared_ptr<Recordset> &rTimes) {
    if (aKind != theOnlyKind) RaiseUnknownArgument(QStringLiteral("вид %1").arg(aKind));
    auto categories = RowsOf(theCategoriesSql, aID);
    rTimes = RowsOf(theTimesSql, aID);
    rCategories = std::move(categories);
}

std::shared_ptr<Recordset> OfficeBlankQueries::GetTemplTypeNames(double aID) {
    return RowsOf(theNamesSql, aID);
}

std::shared_ptr<RecordCollection> OfficeAccStreamQueries::GetAccStreams(const QString &aFilter,
                                                                        qint32 aFlags) {
    CheckNoCondition(aFilter, aFlags);
    return AllAccStreams(ThisThreadsConnection());
}

std::shared_ptr<RecordCollection> OfficePersonQueries::GetPersons(const QString &aFilter,
                                                                  qint32 aFlags) {
    CheckNoCondition(aFilter, aFlags);
    return PersonsBy(theAllPersonsSql);
}

std::shared_ptr<RecordCollection> OfficePersonQueries::GetTaxpayers() {
    return PersonsBy(theTaxpayersSql);
}

}  // namespace Vk_Records
