// What the records of an office cost beside SQLite's C API, which takes the same columns into plain
// structs.
#include <cstdio>

#include <QApplication>
#include <QCollator>
#include <QDate>
#include <QTemporaryDir>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

#include "browser/TemplateQuerierForm.h"
#include "Figure.h"
#include "LargeOffice.h"
#include "Plain.h"
#include "QueryFile.h"
#include "RussianOrder.h"

namespace {

using namespace Vk_DocQuery;
using VkBench::PlainOffice;

constexpr int theRecords = 100000;
constexpr int theLoads = 10000;
constexpr int thePickersDays = 1461;
constexpr int theBrowsersDays = 1827;

void Check(std::size_t aCount, std::size_t aLeast = theRecords) {
    if (aCount < aLeast) qFatal("%zu records are not all", aCount);
}
void Check(const std::shared_ptr<RecordCollection> &aRecords) {
    Check(static_cast<std::size_t>(aRecords->Count()));
}

template <class Provider>
std::shared_ptr<Provider> Made(const char16_t *aName) {
    return std::dynamic_pointer_cast<Provider>(ClassRegistry::Create(QString::fromUtf16(aName)));
}

QString DayBefore(int aDays) {
    return QDate::currentDate().addDays(-aDays).toString(Qt::ISODate);
}

void Measure(const QString &aName, const QString &aPeer, double aBar,
             const std::function<void()> &aOurs, const std::function<void()> &aTheirs) {
    VkBench::Measure(
        {QStringLiteral("records: ") + aName, aPeer, aBar, 9, aOurs, aTheirs, nullptr, nullptr});
}

void MeasureLists(const PlainOffice &aPlain) {
    constexpr double bar = 1.35;
    const QString peer = QStringLiteral("SQLite's C API into structs in the same order");
    const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
    const auto streams = Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream");
    const auto forms = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
    const QDate from = QDate::currentDate().addDays(-thePickersDays);
    Measure(
        QStringLiteral("GetPersons, 100000 persons"), peer, bar,
        [&] { Check(persons->GetPersons(QString(), 0)); },
        [&] { Check(aPlain.Persons(true).size()); });
    Measure(
        QStringLiteral("GetAccStreams, 100000 streams"), peer, bar,
        [&] { Check(streams->GetAccStreams(QString(), 0)); },
        [&] { Check(aPlain.Streams().Owners.size()); });
    Measure(
        QStringLiteral("GetTemplates, 100000 forms"), peer, bar,
        [&] { Check(forms->GetTemplates(from, Null(), true)); },
        [&] { Check(aPlain.Forms(DayBefore(thePickersDays)).size()); });
    Measure(
        QStringLiteral("GetTemplates, versions of 100000 forms"), peer, bar,
        [&] { Check(forms->GetTemplates(from, Null(), false)); },
        [&] { Check(aPlain.Versions(DayBefore(thePickersDays)).size()); });
}

/// What the order costs by itself, beside a collator of Qt's, and beside reading what is put in
/// order.
void MeasureOrder(const PlainOffice &aPlain) {
    const auto persons =
        Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
    std::vector<std::shared_ptr<Record>> shuffled;
    for (qsizetype i = 0; i < persons->Count(); ++i)
        shuffled.push_back(persons->At(i * 7919 % persons->Count()));
    std::vector<QString> names;
    for (const auto &record : shuffled) names.push_back(record->GetDisplayName());
    const auto order = [&] {
        Vk_Records::InRussianOrder ordered;
        for (std::size_t i = 0; i < names.size(); ++i) ordered.Take(names[i], shuffled[i]);
        Check(ordered.Ordered());
    };
    Measure(QStringLiteral("the Russian order of 100000 names"),
            QStringLiteral("sort keys of QCollator"), 1.0, order, [&] {
                const QCollator collator(QLocale(QLocale::Russian, QLocale::Russia));
                std::vector<QCollatorSortKey> keys;
                keys.reserve(names.size());
                for (const QString &name : names) keys.push_back(collator.sortKey(name));
                std::sort(keys.begin(), keys.end());
                Check(keys.size());
            });
    Measure(QStringLiteral("the Russian order of 100000 persons"),
            QStringLiteral("reading them by the C API without an order"), 1.0, order,
            [&] { Check(aPlain.Persons(false).size()); });
}

void MeasureLoads(const PlainOffice &aPlain) {
    std::vector<qint64> ids;  // all over the table
    for (qint64 i = 0; i < theLoads; ++i) ids.push_back(i * 7919 % theRecords + 1);
    Measure(
        QStringLiteral("10000 SetID of persons"),
        QStringLiteral("one prepared statement of the C API into structs"), 1.6,
        [&] {
            std::vector<std::shared_ptr<Object>> records;
            for (const qint64 id : ids) {
                records.push_back(ClassRegistry::Create(QStringLiteral("Vk_Records.VkPerson")));
                static_cast<Record &>(*records.back()).SetID(static_cast<double>(id));
            }
            Check(records.size(), theLoads);
        },
        [&] { Check(aPlain.OneByOne(ids).size(), theLoads); });
}

void MeasureRoads(const PlainOffice &aPlain, const QString &aFolder) {
    constexpr double bar = 1.6;
    const QByteArray ids = '[' + VkBench::ScatteredIDs(theRecords) + ']';
    const QString path = VkBench::WriteQueryFile(aFolder, theRecords);
    Measure(
        QStringLiteral("read a query file of 100000 streams"),
        QStringLiteral("the same by one joined SELECT into structs"), bar,
        [&] {
            VkDocQueryData query;
            if (!query.ReadFromXmlFile(path)) qFatal("not read");
            Check(query.AccStreamsList);
        },
        [&] { Check(aPlain.StreamsOf(ids).size()); });
    Measure(
        QStringLiteral("open the browser with 100000 forms"),
        QStringLiteral("the same by one joined SELECT into structs"), bar,
        [&] {
            TemplateQuerierForm form;
            form.Prepare();
            form.show();
            QApplication::sendPostedEvents();
            QApplication::processEvents();
        },
        [&] { Check(aPlain.FormsWithNames(DayBefore(theBrowsersDays)).size()); });
}

}  // namespace

int main(int aCount, char **aArguments) try {
    QApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("office.db"));
    Vk_Records::MakeLargeOffice(QStringLiteral("sqlite:") + path,
                                {theRecords, theRecords, theRecords});
    Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + path);
    {
        const PlainOffice plain(path);
        MeasureLists(plain);
        MeasureOrder(plain);
        MeasureLoads(plain);
        MeasureRoads(plain, folder.path());
    }
    Vk_Records::CloseDatabase();
    return 0;
} catch (const Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
