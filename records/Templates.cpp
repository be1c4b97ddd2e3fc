#include "Templates.h"

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

using Vk_DocQuery::LooseValue;
using Vk_DocQuery::RecordCollection;

namespace {

#define VK_TYPE_COLUMNS "c.id, c.knd, c.short_name, c.icon_key, c.is_excluded"
#define VK_VERSION_COLUMNS "v.id, v.beg_date, v.end_date, v.display_name, v.icon_key"

constexpr char theOneTypeSql[] = "SELECT " VK_TYPE_COLUMNS " FROM templ_type c WHERE c.id = ?";
constexpr char theOneVersionSql[] =
    "SELECT " VK_VERSION_COLUMNS ", " VK_TYPE_COLUMNS
    " FROM template v JOIN templ_type c ON c.id = v.templ_type_id WHERE v.id = ?";
constexpr int theVersionColumns = 5;

const QString theVersionsSql =
    QStringLiteral("SELECT " VK_VERSION_COLUMNS ", " VK_TYPE_COLUMNS
                   " FROM template v JOIN templ_type c ON c.id = v.templ_type_id %1"
                   " ORDER BY c.id, v.beg_date IS NULL, v.beg_date DESC, v.id DESC");
const QString theTypesSql = QStringLiteral(
    "SELECT " VK_TYPE_COLUMNS
    " FROM templ_type c WHERE EXISTS (SELECT 1 FROM template v WHERE v.templ_type_id = c.id %1)"
    " ORDER BY c.id");

LooseValue DateOrEmpty(const QVariant &aValue) {
    const QDate date = aValue.toDate();
    return date.isValid() ? LooseValue(date) : LooseValue(Vk_DocQuery::Empty());
}

/// The conditions by which a version and the window share a day.
struct Window {
    QStringList Conditions;
    QVariantList Values;
    bool HasNoDay = false;

    Window(QDate aFrom, QDate aTo) {
        HasNoDay = aFrom.isValid() && aTo.isValid() && aFrom > aTo;
        Add(aFrom, QStringLiteral("(v.end_date IS NULL OR v.end_date >= ?)"));
        Add(aTo, QStringLiteral("(v.beg_date IS NULL OR v.beg_date <= ?)"));
    }
    void Add(QDate aDate, const QString &aCondition) {
        if (!aDate.isValid()) return;
        Conditions << aCondition;
        Values << aDate;
    }
    QString After(const QString &aWord) const {
        if (Conditions.isEmpty()) return QString();
        return aWord + Conditions.join(QStringLiteral(" AND "));
    }
};

}  // namespace

void TemplTypeRecord::SetID(double aID) {
    ReadOne(theOneTypeSql, u"Vk_Records.VkTemplType", aID, static_cast<TemplTypeColumns &>(*this),
            [this](const QSqlQuery &row) { Read(row); });
}

void TemplTypeRecord::Read(const QSqlQuery &aRow, int aFirst) {
    theID = aRow.value(aFirst).toDouble();
    theKnd = aRow.value(aFirst + 1).toString();
    theShortName = aRow.value(aFirst + 2).toString();
    theIcon = aRow.value(aFirst + 3).toString();
    theIsExcluded = aRow.value(aFirst + 4).toInt() != 0;
}

void TemplateRecord::SetID(double aID) {
    ReadOne(theOneVersionSql, u"Vk_Records.VkTemplate", aID, static_cast<TemplateColumns &>(*this),
            [this](const QSqlQuery &row) {
                Read(row);
                theType = std::make_shared<TemplTypeRecord>();
                theType->Read(row, theVersionColumns);
            });
}

void TemplateRecord::Read(const QSqlQuery &aRow) {
    theID = aRow.value(0).toDouble();
    theBegDate = DateOrEmpty(aRow.value(1));
    theEndDate = DateOrEmpty(aRow.value(2));
    theName = aRow.value(3).toString();
    theIcon = aRow.value(4).toString();
}

std::shared_ptr<RecordCollection> Versions(Connection &aConnection, QDate aFrom, QDate aTo) {
    auto versions = std::make_shared<RecordCollection>();
    const Window window(aFrom, aTo);
    if (window.HasNoDay) return versions;
    QHash<double, std::shared_ptr<TemplTypeRecord>> types;
    InRussianOrder ordered;
    QSqlQuery query =
        aConnection.Run(theVersionsSql.arg(window.After(QStringLiteral("WHERE "))), window.Values);
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) {
        auto version = std::make_shared<TemplateRecord>();
        version->Read(row);
        auto &type = types[row.value(theVersionColumns).toDouble()];
        if (!type) {
            type = std::make_shared<TemplTypeRecord>();
            type->Read(row, theVersionColumns);
        }
        version->theType = type;
        ordered.Take(type->ShortName(), version);
    });
    ordered.MoveTo(*versions);
    return versions;
}

std::shared_ptr<RecordCollection> TemplTypes(Connection &aConnection, QDate aFrom, QDate aTo) {
    auto types = std::make_shared<RecordCollection>();
    const Window window(aFrom, aTo);
    if (window.HasNoDay) return types;
    InRussianOrder ordered;
    QSqlQuery query =
        aConnection.Run(theTypesSql.arg(window.After(QStringLiteral("AND "))), window.Values);
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) {
        auto type = std::make_shared<TemplTypeRecord>();
        type->Read(row);
        ordered.Take(type->ShortName(), type);
    });
    ordered.MoveTo(*types);
    return types;
}

}  // namespace Vk_Records
