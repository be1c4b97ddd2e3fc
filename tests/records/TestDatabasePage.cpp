#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "support/TestMain.h"
#include "TableFiles.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theColumnsOfFiles = QStringLiteral(
    "SELECT group_concat(m.name || '.' || c.name, ' ') FROM sqlite_master m, "
    "pragma_table_info(m.name) c WHERE m.type = 'table'");
const QString theColumnsOfServers = QStringLiteral(
    "SELECT string_agg(table_name || '.' || column_name, ' ') FROM information_schema.columns "
    "WHERE table_schema = 'public'");

/// Whether a row of a table is on the page, its first cells being these.
bool HasRow(const QString &aText, const QStringList &aCells) {
    return aText.contains(QStringLiteral("\n| ") + aCells.join(QStringLiteral(" | ")));
}

QString Code(const QString &aText) {
    return u'`' + aText + u'`';
}

}  // namespace

/// The page that tells hosts what stands in the tables.
class TestDatabasePage : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QFile page(QStringLiteral(VK_DOCS "/office-database.md"));
        QVERIFY(page.open(QIODevice::ReadOnly));
        thePage = QString::fromUtf8(page.readAll());
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void TellsEveryColumn_data() { OfficeFolders::AddKinds(); }
    void TellsEveryColumn() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        QStringList real =
            folder
                .Tamper(address, {kind == QStringLiteral("sqlite") ? theColumnsOfFiles
                                                                   : theColumnsOfServers})
                .toString()
                .split(u' ');
        QStringList told = ToldColumns();
        real.sort();
        told.sort();
        QVERIFY(real.size() > 40);
        QCOMPARE(told, real);
    }

    void TellsTheVersion() {
        const QString address = theFolders.Of(QStringLiteral("sqlite")).NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        const QString version =
            theFolders.Of(QStringLiteral("sqlite"))
                .Tamper(address, {QStringLiteral("SELECT version FROM vk_schema")})
                .toString();
        QVERIFY(HasRow(
            thePage, {Code(QStringLiteral("version")), QStringLiteral("INTEGER"), version + u'.'}));
    }

    void TellsEveryKindOfStream() {
        OfficeFolder &folder = theFolders.Of(QStringLiteral("sqlite"));
        const QString address = folder.NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        const QStringList rows =
            folder
                .Tamper(address, {QStringLiteral("SELECT group_concat(id || '|' || name || '|`' || "
                                                 "icon_key || '`', ';') FROM acc_stream_type")})
                .toString()
                .split(u';');
        QCOMPARE(rows.size(), 9);
        for (const QString &row : rows)
            QVERIFY2(HasRow(Section(QStringLiteral("acc_stream_type")), row.split(u'|')),
                     qUtf8Printable(row));
    }

    void TellsEveryPeriod() {
        const auto names = Made<VkRecFactory>(u"Vk_Records.VkRecFactory");
        const QString section = Section(QStringLiteral("templ_type_time"));
        int told = 0;
        for (int code = 1; code <= 30; ++code) {
            const QString name = names->GetPeriodName(code);
            const bool isKnown = !name.endsWith(QString::number(code));
            QCOMPARE(HasRow(section, {QString::number(code), name + QStringLiteral(" |\n")}),
                     isKnown);
            told += isKnown ? 1 : 0;
        }
        QCOMPARE(told, 22);
    }

    void TellsEveryKindOfTaxpayer() {
        for (int code = 1; code <= 9; ++code)
            QVERIFY(HasRow(Section(QStringLiteral("templ_type_category")),
                           {QString::number(code), {}}));
        for (int code = 1; code <= 3; ++code)
            QVERIFY(HasRow(Section(QStringLiteral("person")), {QString::number(code), {}}));
    }

    void TellsEveryFile() {
        for (const Vk_Records::TableFile &file : Vk_Records::TableFiles()) {
            QVERIFY2(HasRow(thePage.section(QStringLiteral("\n## Files\n"), 1),
                            {Code(QLatin1String(file.Stem)), Code(QLatin1String(file.Table))}),
                     file.Stem);
        }
    }

private:
    /// What stands below the heading of a table.
    QString Section(const QString &aTable) const {
        return thePage.section(QStringLiteral("\n### ") + Code(aTable) + u'\n', 1)
            .section(QStringLiteral("\n##"), 0, 0);
    }

    QStringList ToldColumns() const {
        static const QRegularExpression heading(QStringLiteral("^### `(\\w+)`$"),
                                                QRegularExpression::MultilineOption);
        static const QRegularExpression row(
            QStringLiteral("^\\| `(\\w+)` \\| (?:INTEGER|TEXT|date)"),
            QRegularExpression::MultilineOption);
        QStringList columns;
        for (auto tables = heading.globalMatch(thePage); tables.hasNext();) {
            const QString table = tables.next().captured(1);
            const QString section = Section(table);
            for (auto rows = row.globalMatch(section); rows.hasNext();)
                columns << table + u'.' + rows.next().captured(1);
        }
        return columns;
    }

    OfficeFolders theFolders;
    QString thePage;
};

VK_TEST_CLASS(TestDatabasePage);

#include "TestDatabasePage.moc"
