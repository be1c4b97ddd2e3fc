#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "RussianOrder.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// In the order of a Russian list.
const QStringList theNames = {
    QStringLiteral("\"Якорь\""),
    QStringLiteral("1-й завод"),
    QStringLiteral("2-й завод"),
    QStringLiteral("АО \"Заря\""),
    QStringLiteral("Единая (упрощённая) декларация"),
    QStringLiteral("Елочный базар"),
    QStringLiteral("Ёлочный базар"),
    QStringLiteral("Елочный базар 2"),
    QStringLiteral("ЕФС-1"),
    QStringLiteral("жук"),
    QStringLiteral("Жуков"),
    QStringLiteral("Игла"),
    QStringLiteral("Йод"),
    QStringLiteral("Кедр"),
    QStringLiteral("ООО Ромашка"),
    QStringLiteral("ООО-1"),
    QStringLiteral("Яхта"),
    QStringLiteral("café"),
    QStringLiteral("Cafés"),
    QStringLiteral("Zebra"),
};

/// Another order: every seventh.
QStringList Shuffled() {
    QStringList shuffled;
    for (qsizetype i = 0; i < theNames.size(); ++i) shuffled << theNames[i * 7 % theNames.size()];
    return shuffled;
}

QString Quoted(const QString &aText) {
    return u'\'' + aText + u'\'';
}

template <class Name>
QStringList NamesOf(const std::shared_ptr<RecordCollection> &aRecords, Name aName) {
    QStringList names;
    for (const auto &record : *aRecords) names << aName(*record);
    return names;
}

}  // namespace

/// One order of names on all databases.
class TestOrder : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void Keys() {
        using Vk_Records::RussianKey;
        for (qsizetype i = 1; i < theNames.size(); ++i)
            QVERIFY2(RussianKey(theNames[i - 1]) < RussianKey(theNames[i]),
                     qPrintable(theNames[i]));
        QCOMPARE(RussianKey(QStringLiteral("ЁЛКА №5")), RussianKey(QStringLiteral("ёлка №5")));
        QCOMPARE(RussianKey(QStringLiteral("е\u0308ж")), RussianKey(QStringLiteral("ёж")));
        QCOMPARE(RussianKey(QStringLiteral("Еж\u00AD")), RussianKey(QStringLiteral("еж")));
        QVERIFY(RussianKey(QStringLiteral("Елка Ёлка")) < RussianKey(QStringLiteral("Ёлка Елка")));
    }

    void Lists_data() { OfficeFolders::AddKinds(); }
    void Lists() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        QStringList statements;
        int id = 0;
        for (const QString &name : Shuffled()) {
            ++id;
            for (const char16_t *statement :
                 {u"INSERT INTO person VALUES (%1, 3, '', '', %2, '', 0, NULL, NULL)",
                  u"INSERT INTO acc_stream VALUES (%1, %1, 1, %2, '', '', 0)",
                  u"INSERT INTO templ_type VALUES (%1, '', %2, 0, '')",
                  u"INSERT INTO template VALUES (%1, %1, NULL, NULL, %2, '')"})
                statements << QString::fromUtf16(statement).arg(QString::number(id), Quoted(name));
        }
        folder.Tamper(address, statements);

        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        const auto displayed = [](const Record &record) { return record.GetDisplayName(); };
        QCOMPARE(NamesOf(persons->GetPersons(QString(), 0), displayed), theNames);
        QCOMPARE(NamesOf(persons->GetTaxpayers(), displayed), theNames);
        const auto streams = Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream");
        QCOMPARE(NamesOf(streams->GetAccStreams(QString(), 0),
                         [](const Record &record) { return record.DisplayName(); }),
                 theNames);
        const auto forms = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        QCOMPARE(NamesOf(forms->GetTemplates(Empty(), Empty(), true),
                         [](const Record &record) { return record.ShortName(); }),
                 theNames);
        QCOMPARE(NamesOf(forms->GetTemplates(Empty(), Empty(), false),
                         [](const Record &record) { return record.TemplateType()->ShortName(); }),
                 theNames);
    }

    /// Names that are alike, and the versions of one form.
    void Ties_data() { OfficeFolders::AddKinds(); }
    void Ties() {
        QFETCH(QString, kind);
        OfficeFolder &folder = theFolders.Of(kind);
        if (!folder.Complaint().isEmpty()) QSKIP(qUtf8Printable(folder.Complaint()));
        const QString address = folder.NewAddress();
        Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
        folder.Tamper(
            address,
            {QStringLiteral("INSERT INTO templ_type VALUES (2, '', 'ндс', 0, '')"),
             QStringLiteral("INSERT INTO templ_type VALUES (1, '', 'НДС', 0, '')"),
             QStringLiteral("INSERT INTO template VALUES (5, 1, NULL, NULL, '', '')"),
             QStringLiteral("INSERT INTO template VALUES (4, 1, '2020-01-01', NULL, '', '')"),
             QStringLiteral("INSERT INTO template VALUES (6, 1, '2021-01-01', NULL, '', '')"),
             QStringLiteral("INSERT INTO template VALUES (3, 2, '2022-01-01', NULL, '', '')")});
        const auto forms = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        const auto id = [](const Record &record) { return QString::number(record.ID()); };
        QCOMPARE(NamesOf(forms->GetTemplates(Empty(), Empty(), true), id).join(u' '),
                 QStringLiteral("1 2"));
        QCOMPARE(NamesOf(forms->GetTemplates(Empty(), Empty(), false), id).join(u' '),
                 QStringLiteral("6 4 5 3"));
    }

private:
    OfficeFolders theFolders;
};

VK_TEST_CLASS(TestOrder);

#include "TestOrder.moc"
