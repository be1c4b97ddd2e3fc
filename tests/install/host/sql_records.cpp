// A host that takes the records from a database.
// sql_records FOLDER [DATABASE]: exit code 0 if the database is made, or the one that was named is
// opened, and a record with a person of it is saved.
#include <cstdio>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

using namespace Vk_DocQuery;

int main(int aCount, char **aArguments) try {
    if (aCount != 2 && aCount != 3) return 1;
    const QString folder = QString::fromUtf8(aArguments[1]);
    if (aCount == 3)
        Vk_Records::OpenDatabase(QString::fromUtf8(aArguments[2]));
    else
        Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + folder + QStringLiteral("/office.db"),
                                 Vk_Records::NewDatabase::WithSampleOffice);

    auto queries = std::dynamic_pointer_cast<PersonQueries>(
        ClassRegistry::Create(QStringLiteral("Vk_DBProvider.PersonQueries")));
    if (!queries) return 1;
    VkDocQueryData record;
    record.IsTaxpayers = true;
    record.TaxpayersList = queries->GetTaxpayers();
    std::printf("%d taxpayers\n", static_cast<int>(record.TaxpayersList->Count()));
    if (!record.WriteToXmlFile(folder + QStringLiteral("/a.qvk"))) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(record.LastError));
        return 1;
    }
    return record.TaxpayersList->IsEmpty() ? 1 : 0;
} catch (const Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
