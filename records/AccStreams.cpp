#include "AccStreams.h"

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

namespace {

#define VK_STREAM_SELECT                                                      \
    "SELECT s.id, s.person_id, s.display_name, s.kpp, s.office_codes, "       \
    "CASE WHEN s.is_closed = 1 THEN 'acc_stream_closed' ELSE t.icon_key END " \
    "FROM acc_stream s JOIN acc_stream_type t ON t.id = s.type_id "

constexpr char theAllStreamsSql[] = VK_STREAM_SELECT "ORDER BY s.id";
constexpr char theOneStreamSql[] = VK_STREAM_SELECT "WHERE s.id = ?";

std::shared_ptr<PersonRecord> OnePerson(double aID) {
    auto person = std::make_shared<PersonRecord>();
    person->SetID(aID);
    return person;
}

}  // namespace

void AccStreamRecord::SetID(double aID) {
    ReadOne(theOneStreamSql, u"Vk_Records.VkAccStream", aID, static_cast<AccStreamColumns &>(*this),
            [this](const QSqlQuery &row) { Read(row); });
    thePerson = OnePerson(thePersonID);
}

void AccStreamRecord::Read(const QSqlQuery &aRow) {
    theID = aRow.value(0).toDouble();
    thePersonID = aRow.value(1).toDouble();
    theName = aRow.value(2).toString();
    theKpp = aRow.value(3).toString();
    theOffices = aRow.value(4).toString();
    theIcon = aRow.value(5).toString();
}

std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection) {
    PersonLoad persons(aConnection);
    persons.Read(theTaxpayersSql, nullptr);
    persons.LinkParents();
    auto streams = std::make_shared<Vk_DocQuery::RecordCollection>();
    InRussianOrder ordered;
    std::vector<std::shared_ptr<AccStreamRecord>> strays;
    QSqlQuery &query = aConnection.Prepared(theAllStreamsSql);
    aConnection.Execute(query);
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) {
        auto stream = std::make_shared<AccStreamRecord>();
        stream->Read(row);
        stream->thePerson = persons.Find(static_cast<qint64>(stream->thePersonID));
        if (!stream->thePerson) strays.push_back(stream);
        ordered.Take(stream->theName, stream);
    });
    ordered.MoveTo(*streams);
    // Owners whose first stream was entered between the two requests.
    for (const auto &stream : strays) stream->thePerson = OnePerson(stream->thePersonID);
    return streams;
}

}  // namespace Vk_Records
