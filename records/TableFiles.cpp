#include "TableFiles.h"

#include <QStringList>

namespace Vk_Records {

namespace {

using enum CellKind;

constexpr FileColumn theStreamTypeColumns[] = {
    {"id", Number},
    {"name", Text, 200},
    {"icon_key", Text, 50},
};
constexpr FileColumn thePersonColumns[] = {
    {"id", Identity},
    {"kind", PersonKind},
    {"inn", Text, 12},
    {"kpp", Text, 9},
    {"display_name", Text, 1000},
    {"owner_name", Text, 1000},
    {"is_main", Flag},
    {"parent_id", Parent, 0, "person"},
};
constexpr FileColumn theStreamColumns[] = {
    {"id", Identity},
    {"person_id", Identity, 0, "person"},
    {"type_id", Number, 0, "acc_stream_type"},
    {"display_name", Text, 1000},
    {"kpp", Text, 9},
    {"office_codes", Text, 200},
    {"is_closed", Flag},
};
constexpr FileColumn theFormColumns[] = {
    {"id", Identity},      {"knd", Text, 20},      {"short_name", Text, 500},
    {"is_excluded", Flag}, {"icon_key", Text, 50},
};
constexpr FileColumn theVersionColumns[] = {
    {"id", Identity},
    {"templ_type_id", Identity, 0, "templ_type"},
    {"beg_date", Day},
    {"end_date", Day},
    {"display_name", Text, 500},
    {"icon_key", Text, 50},
};
constexpr FileColumn theNameColumns[] = {
    {"templ_type_id", Identity, 0, "templ_type"},
    {"name_order", Number},
    {"full_name", Text, 4000},
};
constexpr FileColumn thePeriodColumns[] = {
    {"templ_type_id", Identity, 0, "templ_type"},
    {"the_year", Number},
    {"month_id", Number},
};
constexpr FileColumn theCategoryColumns[] = {
    {"templ_type_id", Identity, 0, "templ_type"},
    {"category_id", Number},
    {"stream_type", Number},
    {"allowed_for_main", Flag},
    {"allowed_for_branch", Flag},
};

constexpr TableFile theFiles[] = {
    {"stream_types", "acc_stream_type", theStreamTypeColumns, 1, true},
    {"persons", "person", thePersonColumns, 1},
    {"streams", "acc_stream", theStreamColumns, 1},
    {"forms", "templ_type", theFormColumns, 1},
    {"versions", "template", theVersionColumns, 1},
    {"names", "templ_type_name", theNameColumns, 2},
    {"periods", "templ_type_time", thePeriodColumns, 3},
    {"categories", "templ_type_category", theCategoryColumns, 3},
};

}  // namespace

std::span<const TableFile> TableFiles() {
    return theFiles;
}

QString ColumnList(const TableFile &aFile) {
    QStringList names;
    for (const FileColumn &column : aFile.Columns) names << QString::fromLatin1(column.Name);
    return names.join(QStringLiteral(", "));
}

}  // namespace Vk_Records
