#include "Templates.h"

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

using Vk_DocQuery::RecordCollection;

namespace {

constexpr char16_t theTypeClass[] = u"Vk_Records.VkTemplType";
constexpr char16_t theVersionClass[] = u"Vk_Records.VkTemplate";

#define VK_TYPE_COLUMNS "c.id, c.knd, c.short_name, c.icon_key, c.is_excluded"
#define VK_VERSION_COLUMNS "v.id, v.beg_date, v.end_date, v.display_name, v.icon_key"
constexpr int theShortNameColumn = 2;  // of a form
constexpr int theVersionColumns = 5;

#define VK_TYPES_BY_ID "SELECT " VK_TYPE_COLUMNS " FROM templ_type c WHERE c.id "
constexpr char theOneTypeSql[] = VK_TYPES_BY_ID VK_IS_ONE;
constexpr ManySql theManyTypesSql = {VK_TYPES_BY_ID VK_IS_ONE_OF_A_FILE,
                                     VK_TYPES_BY_ID VK_IS_ONE_OF_A_SERVER};

#define VK_VERSIONS                                   \
    "SELECT " VK_VERSION_COLUMNS ", " VK_TYPE_COLUMNS \
    " FROM template v JOIN templ_type c ON c.id = v.templ_type_id WHERE "
constexpr char theOneVersionSql[] = VK_VERSIONS "v.id " VK_IS_ONE;
constexpr ManySql theManyVersionsSql = {VK_VERSIONS "v.id " VK_IS_ONE_OF_A_FILE,
                                        VK_VERSIONS "v.id " VK_IS_ONE_OF_A_SERVER};

// Versions that share a day with the window; a side without a date is open.
#define VK_IN_WINDOW                                                 \
    "(v.end_date IS NULL OR v.end_date >= coalesce(?, v.end_date)) " \
    "AND (v.beg_date IS NULL OR v.beg_date <= coalesce(?, v.beg_date)) "
constexpr char theVersionsSql[] =
    VK_VERSIONS VK_IN_WINDOW "ORDER BY c.id, v.beg_date IS NULL, v.beg_date DESC, v.id DESC";
constexpr char theTypesSql[] =
    "SELECT " VK_TYPE_COLUMNS
    " FROM templ_type c WHERE EXISTS "
    "(SELECT 1 FROM template v WHERE v.templ_type_id = c.id AND " VK_IN_WINDOW ") ORDER BY c.id";

struct TypeReader {
    using Columns = TemplTypeColumns;
    explicit TypeReader(std::size_t = 1) {}
    void operator()(const Row &aRow, TemplTypeColumns &rColumns) { rColumns.Read(aRow); }
};

struct VersionReader {
    using Columns = TemplateColumns;
    explicit VersionReader(std::size_t = 1) {}
    QHash<qint64, std::shared_ptr<TemplTypeRecord>> Types;
    void operator()(const Row &aRow, TemplateColumns &rColumns) { rColumns.Read(aRow, Types); }
};

QVariant DateOrNull(QDate aDate) {
    return aDate.isValid() ? QVariant(aDate) : QVariant(QMetaType(QMetaType::QDate));
}

/// Hands the function what lies in the window.
template <class Take>
void ReadWindow(Connection &aConnection, const char *aSql, QDate aFrom, QDate aTo, Take aTake) {
    const bool hasNoDay = aFrom.isValid() && aTo.isValid() && aFrom > aTo;
    if (!hasNoDay) aConnection.Read(aSql, {DateOrNull(aFrom), DateOrNull(aTo)}, aTake);
}

}  // namespace

void TemplTypeRecord::SetID(double aID) {
    ReadOne<TypeReader>(theOneTypeSql, theTypeClass, aID, *this);
}

void TemplTypeColumns::Read(const Row &aRow, int aFirst) {
    theID = aRow.Integer(aFirst);
    theKnd = aRow.Text(aFirst + 1);
    theShortName = aRow.Text(aFirst + theShortNameColumn);
    theIcon = aRow.CommonText(aFirst + 3);
    theIsExcluded = aRow.Integer(aFirst + 4) != 0;
}

void TemplateRecord::SetID(double aID) {
    ReadOne<VersionReader>(theOneVersionSql, theVersionClass, aID, *this);
}

void TemplateColumns::Read(const Row &aRow,
                           QHash<qint64, std::shared_ptr<TemplTypeRecord>> &rTypes) {
    theID = aRow.Integer(0);
    theBegDate = aRow.Date(1);
    theEndDate = aRow.Date(2);
    theName = aRow.Text(3);
    theIcon = aRow.CommonText(4);
    auto &type = rTypes[aRow.Integer(theVersionColumns)];
    if (!type) {
        type = std::make_shared<TemplTypeRecord>();
        type->Read(aRow, theVersionColumns);
    }
    theType = type;
}

std::shared_ptr<RecordCollection> Versions(Connection &aConnection, QDate aFrom, QDate aTo) {
    QHash<qint64, std::shared_ptr<TemplTypeRecord>> types;
    InRussianOrder ordered;
    ReadWindow(aConnection, theVersionsSql, aFrom, aTo, [&](const Row &row) {
        auto version = std::make_shared<TemplateRecord>();
        version->Read(row, types);
        ordered.Take(version->TemplateType()->ShortName(), version);
    });
    return ordered.Ordered();
}

/// The records are made in the order of the list, as whoever shows it goes through them.
std::shared_ptr<RecordCollection> TemplTypes(Connection &aConnection, QDate aFrom, QDate aTo) {
    RussianOrder order;
    KeptRows memory;
    std::vector<KeptRow> rows;
    ReadWindow(aConnection, theTypesSql, aFrom, aTo, [&](const Row &row) {
        order.Take(row.Text(theShortNameColumn));
        rows.push_back(memory.Take(row));
    });
    auto types = std::make_shared<RecordCollection>();
    types->Reserve(static_cast<qsizetype>(rows.size()));
    for (const quint32 number : order.Numbers()) {
        auto type = std::make_shared<TemplTypeRecord>();
        type->Read(Row(rows[number]));
        const QString key = Vk_DocQuery::ObjectKey(type->ID());
        types->Add(std::move(type), key);
    }
    return types;
}

void AnnounceTemplTypes(const std::vector<double> &aIDs) {
    Announce<TypeReader>(theManyTypesSql, theTypeClass, aIDs);
}

void AnnounceVersions(const std::vector<double> &aIDs) {
    Announce<VersionReader>(theManyVersionsSql, theVersionClass, aIDs);
}

}  // namespace Vk_Records
