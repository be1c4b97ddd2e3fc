#include "Plain.h"

#include <algorithm>
#include <functional>
#include <sqlite3.h>

#include "RussianOrder.h"

namespace VkBench {

namespace {

#define PERSON(p)                                                                              \
#p ".id, " #p ".kind, " #p ".inn, " #p ".kpp, " #p ".display_name, " #p ".owner_name, " #p \
       ".is_main, " #p ".parent_id"
#define STREAM                                                   \
    "s.id, s.person_id, s.display_name, s.kpp, s.office_codes, " \
    "CASE WHEN s.is_closed = 1 THEN 'acc_stream_closed' ELSE t.icon_key END"
#define FORM "c.id, c.knd, c.short_name, c.icon_key, c.is_excluded"
#define VALID "(v.end_date IS NULL OR v.end_date >= ?)"

constexpr int thePersonColumns = 8;
constexpr int theStreamColumns = 6;

class Statement {
public:
    Statement(sqlite3 *aFile, const char *aSql) {
        if (sqlite3_prepare_v2(aFile, aSql, -1, &theStatement, nullptr) != SQLITE_OK)
            qFatal("%s", sqlite3_errmsg(aFile));
    }
    ~Statement() { sqlite3_finalize(theStatement); }
    Q_DISABLE_COPY_MOVE(Statement)

    void Bind(const QByteArray &aText) {
        sqlite3_bind_text(theStatement, 1, aText.constData(), static_cast<int>(aText.size()),
                          SQLITE_STATIC);
    }
    void Bind(qint64 aNumber) {
        sqlite3_reset(theStatement);
        sqlite3_bind_int64(theStatement, 1, aNumber);
    }
    bool Next() { return sqlite3_step(theStatement) == SQLITE_ROW; }
    qint64 Integer(int aColumn) const { return sqlite3_column_int64(theStatement, aColumn); }
    QString Text(int aColumn) const {
        const auto *text = sqlite3_column_text(theStatement, aColumn);
        return QString::fromUtf8(reinterpret_cast<const char *>(text),
                                 sqlite3_column_bytes(theStatement, aColumn));
    }

private:
    sqlite3_stmt *theStatement = nullptr;
};

PlainPerson PersonAt(const Statement &aRow, int aFirst) {
    return {aRow.Integer(aFirst),          aRow.Integer(aFirst + 1), aRow.Text(aFirst + 2),
            aRow.Text(aFirst + 3),         aRow.Text(aFirst + 4),    aRow.Text(aFirst + 5),
            aRow.Integer(aFirst + 6) != 0, aRow.Integer(aFirst + 7)};
}

PlainStream StreamAt(const Statement &aRow) {
    return {aRow.Integer(0), aRow.Integer(1), aRow.Text(2), aRow.Text(3),
            aRow.Text(4),    aRow.Text(5),    {},           {}};
}

PlainForm FormAt(const Statement &aRow) {
    return {aRow.Integer(0), aRow.Text(1), aRow.Text(2), aRow.Text(3), aRow.Integer(4) != 0, {}};
}

template <class Kind>
std::vector<Kind> Ordered(std::vector<Kind> aRows, QString Kind::*aName) {
    std::vector<std::pair<QByteArray, std::size_t>> keys;
    keys.reserve(aRows.size());
    for (const Kind &row : aRows)
        keys.emplace_back(Vk_Records::RussianKey(row.*aName), keys.size());
    std::sort(keys.begin(), keys.end());
    std::vector<Kind> ordered;
    ordered.reserve(aRows.size());
    for (const auto &[key, place] : keys) ordered.push_back(std::move(aRows[place]));
    return ordered;
}

}  // namespace

PlainOffice::PlainOffice(const QString &aPath) {
    if (sqlite3_open(qUtf8Printable(aPath), &theFile) != SQLITE_OK) qFatal("no office");
    // As much memory for pages of the file as the records take.
    sqlite3_exec(theFile, "PRAGMA cache_size = -65536", nullptr, nullptr, nullptr);
}

PlainOffice::~PlainOffice() {
    sqlite3_close(theFile);
}

std::vector<PlainPerson> PlainOffice::Persons(bool aIsOrdered) const {
    Statement rows(theFile, "SELECT " PERSON(p) " FROM person p ORDER BY p.id");
    std::vector<PlainPerson> persons;
    while (rows.Next()) persons.push_back(PersonAt(rows, 0));
    return aIsOrdered ? Ordered(std::move(persons), &PlainPerson::Name) : persons;
}

PlainStreams PlainOffice::Streams() const {
    PlainStreams all;
    Statement streams(theFile, "SELECT " STREAM
                               " FROM acc_stream s JOIN acc_stream_type t ON t.id = s.type_id "
                               "ORDER BY s.id");
    while (streams.Next()) all.Streams.push_back(StreamAt(streams));
    all.Streams = Ordered(std::move(all.Streams), &PlainStream::Name);
    Statement owners(theFile, "SELECT " PERSON(p) " FROM person p WHERE EXISTS (SELECT 1 FROM "
                                                  "acc_stream s WHERE s.person_id = p.id) ORDER BY p.id");
    while (owners.Next()) all.Owners.push_back(PersonAt(owners, 0));
    return all;
}

std::vector<PlainForm> PlainOffice::Forms(const QString &aFrom) const {
    Statement rows(theFile, "SELECT " FORM
                            " FROM templ_type c WHERE EXISTS (SELECT 1 FROM template v WHERE "
                            "v.templ_type_id = c.id AND " VALID ") ORDER BY c.id");
    const QByteArray from = aFrom.toUtf8();
    rows.Bind(from);
    std::vector<PlainForm> forms;
    while (rows.Next()) forms.push_back(FormAt(rows));
    return Ordered(std::move(forms), &PlainForm::Name);
}

std::vector<PlainVersion> PlainOffice::Versions(const QString &aFrom) const {
    Statement rows(theFile,
                   "SELECT v.id, v.beg_date, v.end_date, v.display_name, v.icon_key, c.id, "
                   "c.short_name, c.knd FROM template v JOIN templ_type c ON c.id = "
                   "v.templ_type_id WHERE " VALID
                   " ORDER BY c.id, v.beg_date IS NULL, v.beg_date DESC, v.id DESC");
    const QByteArray from = aFrom.toUtf8();
    rows.Bind(from);
    std::vector<PlainVersion> versions;
    while (rows.Next()) {
        versions.push_back({rows.Integer(0), rows.Text(1), rows.Text(2), rows.Text(3), rows.Text(4),
                            rows.Integer(5), rows.Text(6), rows.Text(7)});
    }
    return Ordered(std::move(versions), &PlainVersion::FormName);
}

std::vector<PlainForm> PlainOffice::FormsWithNames(const QString &aFrom) const {
    Statement rows(theFile, "SELECT " FORM
                            ", n.full_name FROM templ_type c LEFT JOIN templ_type_name n "
                            "ON n.templ_type_id = c.id WHERE c.is_excluded = 0 AND EXISTS "
                            "(SELECT 1 FROM template v WHERE v.templ_type_id = c.id AND " VALID
                            ") ORDER BY c.id, n.name_order");
    const QByteArray from = aFrom.toUtf8();
    rows.Bind(from);
    std::vector<PlainForm> forms;
    while (rows.Next()) {
        if (forms.empty() || forms.back().ID != rows.Integer(0)) forms.push_back(FormAt(rows));
        forms.back().FullNames.push_back(rows.Text(5));
    }
    return Ordered(std::move(forms), &PlainForm::Name);
}

std::vector<PlainStream> PlainOffice::StreamsOf(const QByteArray &aIDs) const {
    Statement rows(theFile,
                   "SELECT " STREAM ", " PERSON(p) ", " PERSON(
                       q) " FROM acc_stream s JOIN acc_stream_type t ON t.id = s.type_id "
                          "JOIN person p ON p.id = s.person_id "
                          "LEFT JOIN person q ON q.id = p.parent_id "
                          "WHERE s.id IN (SELECT value FROM json_each(?))");
    rows.Bind(aIDs);
    std::vector<PlainStream> streams;
    while (rows.Next()) {
        streams.push_back(StreamAt(rows));
        streams.back().Owner = PersonAt(rows, theStreamColumns);
        if (streams.back().Owner.ParentID != 0)
            streams.back().Parent = PersonAt(rows, theStreamColumns + thePersonColumns);
    }
    return streams;
}

std::vector<PlainPerson> PlainOffice::OneByOne(const std::vector<qint64> &aIDs) const {
    Statement rows(theFile, "SELECT " PERSON(p) ", " PERSON(q) " FROM person p LEFT JOIN person q "
                                                               "ON q.id = p.parent_id WHERE p.id = ?");
    std::vector<PlainPerson> persons;
    for (const qint64 id : aIDs) {
        rows.Bind(id);
        if (!rows.Next()) continue;
        persons.push_back(PersonAt(rows, 0));
        if (persons.back().ParentID != 0) persons.push_back(PersonAt(rows, thePersonColumns));
    }
    return persons;
}

}  // namespace VkBench
