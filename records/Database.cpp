#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_Records/Database.h>

#include "AccStreams.h"
#include "Persons.h"
#include "Queries.h"
#include "SampleOffice.h"
#include "Schema.h"
#include "Templates.h"

namespace Vk_Records {

namespace {

void RegisterClasses() {
    using Vk_DocQuery::RegisterClass;
    RegisterClass<PersonRecord>(QStringLiteral("Vk_Records.VkPerson"));
    RegisterClass<AccStreamRecord>(QStringLiteral("Vk_Records.VkAccStream"));
    RegisterClass<TemplTypeRecord>(QStringLiteral("Vk_Records.VkTemplType"));
    RegisterClass<TemplateRecord>(QStringLiteral("Vk_Records.VkTemplate"));
    RegisterClass<OfficeBlankQueries>(QStringLiteral("Vk_DBProvider.BlankQueries"));
    RegisterClass<OfficeAccStreamQueries>(QStringLiteral("Vk_DBProvider.DBQAccStream"));
    RegisterClass<OfficePersonQueries>(QStringLiteral("Vk_DBProvider.PersonQueries"));
    RegisterClass<OfficeAnnouncements>(QStringLiteral("Vk_DBProvider.RecordAnnouncements"));
}

}  // namespace

void OpenDatabase(const QString &aAddress, NewDatabase aNew) {
    const bool isRefused = aNew == NewDatabase::Refused;
    auto connection = std::make_unique<Connection>(
        AddressOf(aAddress), isRefused ? MissingFile::IsNoOffice : MissingFile::IsMade);
    if (isRefused) {
        RequireOffice(*connection);
    } else {
        MakeOffice(*connection, [aNew](Connection &office) {
            if (aNew == NewDatabase::WithSampleOffice)
                FillSampleOffice(office, QDate::currentDate());
        });
    }
    CheckOffice(*connection);
    RegisterClasses();
    SetOpenOffice(std::move(connection));
}

void CloseDatabase() {
    SetOpenOffice(nullptr);
}

}  // namespace Vk_Records
