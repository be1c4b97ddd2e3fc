// What two milliseconds of way to the server cost: the roads over PostgreSQL behind a proxy that
// delays each turn, beside the same without the delay.
#include <algorithm>
#include <cstdio>

#include <QApplication>
#include <QDate>
#include <QTemporaryDir>

#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

#include "browser/TemplateQuerierForm.h"
#include "Figure.h"
#include "OfficeFolder.h"
#include "QueryFile.h"
#include "SlowTurns.h"

namespace {

using namespace Vk_DocQuery;
using VkTests::Made;

constexpr int theRecords = 100000;
constexpr int theDelayMs = 2;
constexpr double theBar = 1.5;

/// 100,000 of each; what they hold does not matter here but in its size.
const char *const theFill[] = {
    "INSERT INTO person SELECT i, 1, '7700000000', '770001001', 'ООО \"Ромашка ' || i || '\"', "
    "'Ромашка ' || i || ', ООО', 1, NULL, NULL FROM generate_series(1, 100000) i",
    "INSERT INTO acc_stream SELECT i, i, i % 9 + 1, 'Комплект налогоплательщика ' || i, "
    "'770001001', '7701', 0 FROM generate_series(1, 100000) i",
    "INSERT INTO templ_type SELECT i, i, 'Форма ' || i, 0, 'doc_blank' "
    "FROM generate_series(1, 100000) i",
    "INSERT INTO template SELECT i, i, NULL, NULL, 'Форма ' || i || ', редакция', 'doc_blank' "
    "FROM generate_series(1, 100000) i",
    "INSERT INTO templ_type_name SELECT i, 1, 'Отчет о показателях по форме ' || i "
    "FROM generate_series(1, 100000) i",
    "ANALYZE",
};

void Check(const std::shared_ptr<RecordCollection> &aRecords) {
    if (aRecords->Count() != theRecords) qFatal("not all records");
}

struct Road {
    QString Name;
    std::function<void()> Go;
};

void ReadPersons() {
    Check(Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0));
}

void ReadStreams() {
    Check(Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0));
}

void ReadTemplates(bool aClasses) {
    const auto blanks = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
    Check(blanks->GetTemplates(QDate::currentDate(), Null(), aClasses));
}

void ReadFile(const QString &aPath) {
    VkDocQueryData query;
    if (!query.ReadFromXmlFile(aPath)) qFatal("not read");
    Check(query.AccStreamsList);
}

void OpenBrowser() {
    TemplateQuerierForm form;
    form.Prepare();
    form.show();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}

std::vector<Road> Roads(const QString &aFolder) {
    const QString path = VkBench::WriteQueryFile(aFolder, theRecords);
    std::vector<Road> roads = {
        {QStringLiteral("server: GetPersons, 100000 persons"), ReadPersons},
        {QStringLiteral("server: GetAccStreams, 100000 streams"), ReadStreams},
        {QStringLiteral("server: GetTemplates, 100000 forms"), [] { ReadTemplates(true); }},
        {QStringLiteral("server: GetTemplates, 100000 versions"), [] { ReadTemplates(false); }},
        {QStringLiteral("server: read a query file of 100000 streams"), [path] { ReadFile(path); }},
        {QStringLiteral("server: open the browser with 100000 forms"), OpenBrowser},
    };
    roads.erase(std::remove_if(roads.begin(), roads.end(),
                               [](const Road &road) { return !VkBench::IsWanted(road.Name); }),
                roads.end());
    return roads;
}

void Measure(const Road &aRoad, VkBench::SlowTurns &rProxy) {
    VkBench::Measure({aRoad.Name, QStringLiteral("the same without the delay"), theBar, 7, aRoad.Go,
                      aRoad.Go, [&] { rProxy.SetDelay(theDelayMs); }, [&] { rProxy.SetDelay(0); }});
    // Without turns there is nothing to delay: the proxy is not on the way.
    if (rProxy.Turns() == 0) qFatal("nobody came by the proxy");
}

}  // namespace

/// bench_server [part of a figure's name]
int main(int aCount, char **aArguments) try {
    QApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    const QTemporaryDir folder;
    const std::vector<Road> roads = Roads(folder.path());
    if (roads.empty()) return 0;
    VkTests::ServerFolder server;
    if (!server.Complaint().isEmpty()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(server.Complaint()));
        return 1;
    }
    const QString address = server.NewAddress();
    Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
    Vk_Records::CloseDatabase();
    for (const char *statement : theFill) server.Tamper(address, {QString::fromUtf8(statement)});
    {
        VkBench::SlowTurns proxy(address.section(u'=', -1));
        Vk_Records::OpenDatabase(address.section(u'=', 0, -2) + u'=' + proxy.Folder());
        for (const Road &road : roads) Measure(road, proxy);
        Vk_Records::CloseDatabase();
    }
    return 0;
} catch (const Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
