#include "AccStreams.h"

#include "OneRecord.h"
#include "RussianOrder.h"

namespace Vk_Records {

namespace {

constexpr char16_t theClass[] = u"Vk_Records.VkAccStream";

#define VK_STREAM_COLUMNS                                        \
    "s.id, s.person_id, s.display_name, s.kpp, s.office_codes, " \
    "CASE WHEN s.is_closed = 1 THEN 'acc_stream_closed' ELSE t.icon_key END"

constexpr char theAllStreamsSql[] =
    "SELECT " VK_STREAM_COLUMNS
    " FROM acc_stream s JOIN acc_stream_type t ON t.id = s.type_id ORDER BY s.id";

#define VK_STREAMS_BY_ID \
    "SELECT " VK_STREAM_COLUMNS ", " VK_PERSON_COLUMNS(p) ", " VK_PERSON_COLUMNS(              \
        q) " FROM acc_stream s JOIN acc_stream_type t ON t.id = s.type_id "                    \
           "JOIN person p ON p.id = s.person_id LEFT JOIN person q ON q.id = p.parent_id WHERE s.id "
constexpr char theOneStreamSql[] = VK_STREAMS_BY_ID VK_IS_ONE;
constexpr ManySql theManyStreamsSql = {VK_STREAMS_BY_ID VK_IS_ONE_OF_A_FILE,
                                       VK_STREAMS_BY_ID VK_IS_ONE_OF_A_SERVER};

struct StreamReader {
    using Columns = AccStreamColumns;
    SharedPersons Persons;
    explicit StreamReader(std::size_t aCount = 1) : Persons(aCount) {}
    void operator()(const Row &aRow, AccStreamColumns &rColumns) {
        rColumns.Read(aRow);
        rColumns.thePerson = Persons.At(aRow, AccStreamColumns::theCount);
    }
};

}  // namespace

void AccStreamColumns::Read(const Row &aRow) {
    theID = aRow.Integer(0);
    thePersonID = aRow.Integer(1);
    theName = aRow.Text(2);
    theKpp = aRow.CommonText(3);
    theOffices = aRow.CommonText(4);
    theIcon = aRow.CommonText(5);
}

void AccStreamRecord::SetID(double aID) {
    ReadOne<StreamReader>(theOneStreamSql, theClass, aID, *this);
}

std::shared_ptr<Vk_DocQuery::RecordCollection> AllAccStreams(Connection &aConnection) {
    std::vector<std::shared_ptr<AccStreamRecord>> streams;
    aConnection.Read(theAllStreamsSql, {}, [&](const Row &row) {
        streams.push_back(std::make_shared<AccStreamRecord>());
        streams.back()->Read(row);
    });
    const PersonLoad owners = Owners(aConnection);
    std::vector<double> strays;
    for (const auto &stream : streams) {
        stream->thePerson = owners.Find(stream->thePersonID);
        if (!stream->thePerson) strays.push_back(stream->ID());
    }
    // Streams that were given to another owner between the two requests; the others are gone.
    Notes<StreamReader> found(KeptByID(aConnection, theManyStreamsSql, strays));
    InRussianOrder ordered;
    for (const auto &stream : streams) {
        if (!stream->thePerson) found.Fetch(stream->theID, *stream);
        if (stream->thePerson) ordered.Take(stream->theName, stream);
    }
    return ordered.Ordered();
}

void AnnounceAccStreams(const std::vector<double> &aIDs) {
    Announce<StreamReader>(theManyStreamsSql, theClass, aIDs);
}

}  // namespace Vk_Records
