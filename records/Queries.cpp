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

/// A request for the rows of one form, and the names under which its columns are asked for.
struct RecordsetSql {
    const char *Sql;
    QStringList Fields;
};

const RecordsetSql theCategories = {
    "SELECT category_id, stream_type, allowed_for_main, allowed_for_branch "
    "FROM templ_type_category WHERE templ_type_id = ? ORDER BY category_id, stream_type",
    {QStringLiteral("TPCategory_ID"), QStringLiteral("AccStreamType"),
     QStringLiteral("AllowedForMainOrg"), QStringLiteral("AllowedForBranch")}};
const RecordsetSql theTimes = {
    "SELECT the_year, month_id FROM templ_type_time WHERE templ_type_id = ? "
    "ORDER BY the_year, month_id",
    {QStringLiteral("the_year"), QStringLiteral("month_id")}};
const RecordsetSql theNames = {
    "SELECT full_name FROM templ_type_name WHERE templ_type_id = ? ORDER BY name_order",
    {QStringLiteral("full_name")}};

#define VK_NAMES_BY_ID \
    "SELECT n.full_name, n.templ_type_id FROM templ_type_name n WHERE n.templ_type_id "
#define VK_NAMES_IN_ORDER " ORDER BY n.templ_type_id, n.name_order"
constexpr ManySql theManyNamesSql = {VK_NAMES_BY_ID VK_IS_ONE_OF_A_FILE VK_NAMES_IN_ORDER,
                                     VK_NAMES_BY_ID VK_IS_ONE_OF_A_SERVER VK_NAMES_IN_ORDER};
constexpr char16_t theNamesNote[] = u"Vk_Records.VkTemplType.FullNames";

/// Those that can be loaded by their identity, and how they are announced.
struct AnnouncedClass {
    const char16_t *Name;
    void (*Announce)(const std::vector<double> &aIDs);
};

constexpr AnnouncedClass theAnnouncedClasses[] = {
    {u"Vk_Records.VkPerson", AnnouncePersons},
    {u"Vk_Records.VkAccStream", AnnounceAccStreams},
    {u"Vk_Records.VkTemplType", AnnounceTemplTypes},
    {u"Vk_Records.VkTemplate", AnnounceVersions},
};

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

std::shared_ptr<Recordset> RowsOf(const RecordsetSql &aWhat, double aID) {
    RowValues values;
    const auto count = static_cast<int>(aWhat.Fields.size());
    ThisThreadsConnection().Read(aWhat.Sql, {StoredID(aID).value_or(0)}, [&](const Row &row) {
        for (int column = 0; column < count; ++column) values.push_back(row.Value(column));
    });
    return std::make_shared<Rows>(aWhat.Fields, std::move(values));
}

/// What was announced of the form; null if nothing was.
std::shared_ptr<Recordset> NotedNames(double aID) {
    const std::shared_ptr<void> *note = Vk_DocQuery::SupplierNotes(theNamesNote);
    if (!note || !*note) return nullptr;
    const auto names = static_cast<KeptByID *>(note->get())->Find(StoredID(aID).value_or(0));
    if (!names.IsAsked) return nullptr;
    RowValues values;
    values.reserve(names.Rows.size());
    for (const KeptRow &row : names.Rows) values.push_back(Row(row).Value(0));
    return std::make_shared<Rows>(theNames.Fields, std::move(values));
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
    auto categories = RowsOf(theCategories, aID);
    rTimes = RowsOf(theTimes, aID);
    rCategories = std::move(categories);
}

std::shared_ptr<Recordset> OfficeBlankQueries::GetTemplTypeNames(double aID) {
    auto noted = NotedNames(aID);
    return noted ? noted : RowsOf(theNames, aID);
}

std::shared_ptr<RecordCollection> OfficeAccStreamQueries::GetAccStreams(const QString &aFilter,
                                                                        qint32 aFlags) {
    CheckNoCondition(aFilter, aFlags);
    return AllAccStreams(ThisThreadsConnection());
}

std::shared_ptr<RecordCollection> OfficePersonQueries::GetPersons(const QString &aFilter,
                                                                  qint32 aFlags) {
    CheckNoCondition(aFilter, aFlags);
    return AllPersons(ThisThreadsConnection());
}

std::shared_ptr<RecordCollection> OfficePersonQueries::GetTaxpayers() {
    return Taxpayers(ThisThreadsConnection());
}

void OfficeAnnouncements::AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs) {
    for (const AnnouncedClass &known : theAnnouncedClasses) {
        if (aClass.compare(QStringView(known.Name), Qt::CaseInsensitive) == 0) known.Announce(aIDs);
    }
}

void OfficeAnnouncements::AnnounceFormNames(const std::vector<double> &aIDs) {
    std::shared_ptr<void> *note = Vk_DocQuery::SupplierNotes(theNamesNote);
    if (!note) return;
    note->reset();
    constexpr int idColumn = 1;
    *note = std::make_shared<KeptByID>(ThisThreadsConnection(), theManyNamesSql, aIDs, idColumn);
}

}  // namespace Vk_Records
