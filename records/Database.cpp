#include <QFile>
#include <QFileInfo>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_Records/Database.h>

#include "AccStreams.h"
#include "FilesLibrary.h"
#include "PeriodNames.h"
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
    RegisterClass<PeriodNames>(QStringLiteral("Vk_Records.VkRecFactory"));
    RegisterClass<OfficeBlankQueries>(QStringLiteral("Vk_DBProvider.BlankQueries"));
    RegisterClass<OfficeAccStreamQueries>(QStringLiteral("Vk_DBProvider.DBQAccStream"));
    RegisterClass<OfficePersonQueries>(QStringLiteral("Vk_DBProvider.PersonQueries"));
    RegisterClass<FilesLibrary>(QStringLiteral("Vk_Lib.FilesLibrary"));
}

/// Takes away the empty file that connecting to a missing one leaves, unless it was filled.
class NewFile {
public:
    explicit NewFile(const Address &aAddress)
        : theFile(aAddress.File),
          theIsNew(!aAddress.IsServer && !QFileInfo::exists(aAddress.File)) {}
    ~NewFile() {
        if (theIsNew && QFileInfo(theFile).size() == 0) QFile::remove(theFile);
    }
    Q_DISABLE_COPY_MOVE(NewFile)

private:
    QString theFile;
    bool theIsNew;
};

}  // namespace

void OpenDatabase(const QString &aAddress, NewDatabase aNew) {
    const Address address = AddressOf(aAddress);
    const NewFile newFile(address);
    auto connection = std::make_unique<Connection>(address);
    EnsureSchema(*connection, [aNew](Connection &office) {
        if (aNew == NewDatabase::WithSampleOffice) FillSampleOffice(office, QDate::currentDate());
    });
    RegisterClasses();
    SetOpenOffice(std::move(connection));
}

void CloseDatabase() {
    SetOpenOffice(nullptr);
}

}  // namespace Vk_Records
