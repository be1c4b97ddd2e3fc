#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

#include "Connection.h"
#include "foundation/OpenNotes.h"
#include "queryfile/XmlNode.h"
#include "SmallOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

template <class Class>
std::shared_ptr<Class> Loaded(const char16_t *aName, double aID) {
    auto record = Made<Class>(aName);
    record->SetID(aID);
    return record;
}

constexpr char16_t thePerson[] = u"Vk_Records.VkPerson";
constexpr char16_t theStream[] = u"Vk_Records.VkAccStream";
constexpr char16_t theType[] = u"Vk_Records.VkTemplType";
constexpr char16_t theTemplate[] = u"Vk_Records.VkTemplate";

/// What a record has of what the classes share.
QString InWords(const Record &aRecord) {
    QStringList words{QString::number(aRecord.ID())};
    const auto add = [&](auto aMember) {
        try {
            words << aMember();
        } catch (const Failure &) {
            words << QStringLiteral("-");  // a member of other classes
        }
    };
    add([&] { return aRecord.GetDisplayName(); });
    add([&] { return aRecord.GetIconKey(); });
    add([&] { return aRecord.GetIconKeyAsAccPerson(); });
    add([&] { return aRecord.TemplateType()->ShortName(); });
    add([&] { return aRecord.KND(); });
    add([&] { return aRecord.ShortName(); });
    add([&] { return aRecord.DisplayName(); });
    add([&] { return aRecord.GetOfficeCodeForDisplay(); });
    add([&] { return aRecord.Kpp(); });
    add([&] { return aRecord.Inn(); });
    add([&] { return aRecord.Person()->GetDisplayName(); });
    add([&] { return aRecord.GetParentOrganization()->GetDisplayName(); });
    add([&] { return ToText(aRecord.BegDate()); });
    add([&] { return ToText(aRecord.EndDate()); });
    return words.join(u'|');
}

}  // namespace

/// Records loaded by their identity, member by member.
class TestRecords : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFETCH(QString, kind);
        theFolder = &theFolders.Of(kind);
        if (!theFolder->Complaint().isEmpty()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        if (!theAddresses.contains(kind)) theAddresses[kind] = OpenSmallOffice(*theFolder);
        theAddress = theAddresses[kind];
        Vk_Records::OpenDatabase(theAddress);
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void Person_data() { OfficeFolders::AddRoads(); }
    void Person() {
        const auto person = Loaded<VkPerson>(thePerson, 1);
        QCOMPARE(person->ID(), 1.0);
        QCOMPARE(person->Inn(), QStringLiteral("7701000001"));
        QCOMPARE(person->Kpp(), QStringLiteral("770101001"));
        QCOMPARE(person->GetDisplayName(), QStringLiteral("ООО \"Ромашка\""));
        QCOMPARE(person->GetDisplayNameAsAccPerson(), QStringLiteral("Ромашка, ООО"));
        QCOMPARE(person->GetIconKeyAsAccPerson(), QStringLiteral("orgs"));
        QVERIFY(person->IsOrganization());
        QVERIFY(!person->IsBranch());
        QVERIFY(person->IsMainOrganization());
        QVERIFY(person->GetParentOrganization());
        QCOMPARE(person->GetParentOrganization()->ID(), 0.0);
    }

    void KindsOfPersons_data() { OfficeFolders::AddRoads(); }
    void KindsOfPersons() {
        const auto branch = Loaded<VkPerson>(thePerson, 2);
        QVERIFY(branch->IsBranch());
        QVERIFY(branch->IsOrganization());
        QVERIFY(!branch->IsMainOrganization());
        QCOMPARE(branch->GetIconKeyAsAccPerson(), QStringLiteral("branch"));
        const auto parent = branch->GetParentOrganization();
        QCOMPARE(parent->ID(), 1.0);
        QCOMPARE(parent->GetDisplayNameAsAccPerson(), QStringLiteral("Ромашка, ООО"));
        QCOMPARE(parent->Kpp(), QStringLiteral("770101001"));
        QVERIFY(parent->IsMainOrganization());
        QCOMPARE(parent->GetParentOrganization()->ID(), 0.0);

        const auto privatePerson = Loaded<VkPerson>(thePerson, 3);
        QVERIFY(!privatePerson->IsOrganization());
        QVERIFY(!privatePerson->IsBranch());
        QVERIFY(!privatePerson->IsMainOrganization());
        QCOMPARE(privatePerson->Kpp(), QString());
        QCOMPARE(privatePerson->GetIconKeyAsAccPerson(), QStringLiteral("man_purple"));
        QCOMPARE(privatePerson->GetParentOrganization()->ID(), 0.0);

        const auto minor = Loaded<VkPerson>(thePerson, 4);
        QVERIFY(minor->IsOrganization() && !minor->IsBranch() && !minor->IsMainOrganization());
        QCOMPARE(minor->GetIconKeyAsAccPerson(), QStringLiteral("org"));
    }

    void AccStream_data() { OfficeFolders::AddRoads(); }
    void AccStream() {
        const auto stream = Loaded<VkAccStream>(theStream, 11);
        QCOMPARE(stream->ID(), 11.0);
        QCOMPARE(stream->DisplayName(), QStringLiteral("ИФНС"));
        QCOMPARE(stream->Kpp(), QStringLiteral("770101001"));
        QCOMPARE(stream->GetOfficeCodeForDisplay(), QStringLiteral("7701, 7702"));
        QCOMPARE(stream->GetIconKey(), QStringLiteral("acc_stream"));
        QCOMPARE(stream->Person()->Inn(), QStringLiteral("7701000001"));
        QCOMPARE(Loaded<VkAccStream>(theStream, 12)->GetIconKey(),
                 QStringLiteral("acc_stream_closed"));
        QCOMPARE(Loaded<VkAccStream>(theStream, 13)->GetIconKey(), QStringLiteral("acc_stream_rs"));
        const auto ofBranch = Loaded<VkAccStream>(theStream, 15);
        QCOMPARE(ofBranch->Person()->GetParentOrganization()->Inn(), QStringLiteral("7704000004"));
    }

    void TemplType_data() { OfficeFolders::AddRoads(); }
    void TemplType() {
        const auto type = Loaded<VkTemplType>(theType, 21);
        QCOMPARE(type->ID(), 21.0);
        QCOMPARE(type->KND(), QStringLiteral("1151001"));
        QCOMPARE(type->ShortName(), QStringLiteral("НДС"));
        QCOMPARE(type->GetIconKey(), QStringLiteral("doc_blank"));
        QVERIFY(!type->IsExcludedFromSearch());
        const auto excluded = Loaded<VkTemplType>(theType, 22);
        QVERIFY(excluded->IsExcludedFromSearch());
        QCOMPARE(excluded->GetIconKey(), QString());
    }

    void Template_data() { OfficeFolders::AddRoads(); }
    void Template() {
        const auto version = Loaded<VkTemplate>(theTemplate, 31);
        QCOMPARE(version->ID(), 31.0);
        QVERIFY(version->BegDate() == LooseValue(QDate(2015, 1, 1)));
        QVERIFY(version->EndDate() == LooseValue(QDate(2018, 12, 31)));
        QCOMPARE(version->GetDisplayName(), QStringLiteral("НДС 1"));
        QCOMPARE(version->GetIconKey(), QStringLiteral("doc_archived"));
        QCOMPARE(version->TemplateType()->KND(), QStringLiteral("1151001"));
        QCOMPARE(version->TemplateType()->ID(), 21.0);
        QVERIFY(IsEmpty(Loaded<VkTemplate>(theTemplate, 32)->EndDate()));
        QVERIFY(IsEmpty(Loaded<VkTemplate>(theTemplate, 33)->BegDate()));
    }

    /// Texts that rows have in common are there once; those that only look alike are not mixed up.
    void CommonTexts_data() { OfficeFolders::AddRoads(); }
    void CommonTexts() {
        const auto stream = Loaded<VkAccStream>(theStream, 11);
        QCOMPARE(stream->Kpp().constData(), stream->Person()->Kpp().constData());
        QStringList texts{QString(), QStringLiteral("7"), QStringLiteral("77"),
                          QStringLiteral("МРИ")};
        for (int size = 20; size < 28; ++size) {
            texts << QString(size, u'7') << QString(size - 1, u'7') + u'8'
                  << QString(size / 2, u'ж') << QString(size, u'ж');
        }
        for (int i = 0; i < 2000; ++i) texts << QString::number(i % 1000);  // more than are kept
        auto &connection = Vk_Records::ThisThreadsConnection();
        for (const QString &text : texts) {
            connection.Read("SELECT CAST(? AS TEXT)", {text}, [&](const Vk_Records::Row &row) {
                QCOMPARE(row.CommonText(0), text);
                QCOMPARE(row.CommonText(0), text);
            });
        }
    }

    void AbsentIdentity_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("shown");
        for (const char *kind : {"sqlite", "postgresql"}) {
            for (const auto *name : {thePerson, theStream, theType, theTemplate}) {
                const QString text = QString::fromUtf16(name);
                QTest::addRow("%s %s", kind, qPrintable(text))
                    << QString::fromLatin1(kind) << text << 777.0 << QStringLiteral("777");
            }
            const QString person = QString::fromUtf16(thePerson);
            const QString server = QString::fromLatin1(kind);
            QTest::addRow("%s zero", kind) << server << person << 0.0 << QStringLiteral("0");
            QTest::addRow("%s negative", kind) << server << person << -1.0 << QStringLiteral("-1");
            QTest::addRow("%s fraction", kind) << server << person << 1.5 << QStringLiteral("1.5");
            QTest::addRow("%s large", kind)
                << server << person << 5e12 << QStringLiteral("5000000000000");
            QTest::addRow("%s huge", kind) << server << person << 1e300 << QStringLiteral("1E+300");
        }
    }
    void AbsentIdentity() {
        QFETCH(QString, name);
        QFETCH(double, id);
        QFETCH(QString, shown);
        const auto record = std::dynamic_pointer_cast<Record>(ClassRegistry::Create(name));
        const Failure failure = RaisedBy([&] { record->SetID(id); });
        QCOMPARE(
            failure.Description(),
            QStringLiteral("Объекта %1 с идентификатором %2 нет в базе данных \"%3\": он удален "
                           "или взят из другой базы.")
                .arg(name, shown, theFolder->Shown(theAddress)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::RecordMissing));
        QCOMPARE(record->ID(), 0.0);
    }

    /// While one file is read, an identity that comes again is answered from what was read of it;
    /// afterwards the database is asked again.
    void RepeatedIdentities_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("column");
        struct Row {
            const char16_t *Class;
            double ID;
            const char *Column;
        };
        static constexpr Row rows[] = {{thePerson, 2, "person.display_name"},
                                       {theStream, 15, "acc_stream.display_name"},
                                       {theType, 21, "templ_type.short_name"},
                                       {theTemplate, 31, "template.display_name"}};
        for (const char *kind : {"sqlite", "postgresql"}) {
            for (const Row &row : rows)
                QTest::addRow("%s %s", kind, row.Column)
                    << QString::fromLatin1(kind) << QString::fromUtf16(row.Class) << row.ID
                    << QString::fromLatin1(row.Column);
        }
    }
    void RepeatedIdentities() {
        QFETCH(QString, name);
        QFETCH(double, id);
        QFETCH(QString, column);
        const auto inWords = [&] {
            const auto record = std::dynamic_pointer_cast<Record>(ClassRegistry::Create(name));
            record->SetID(id);
            return InWords(*record);
        };
        const QString before = inWords();
        const QString table = column.section(u'.', 0, 0);
        const QString cell = column.section(u'.', 1);
        const auto write = [&](const QString &aValue) {
            theFolder->Tamper(theAddress, {QStringLiteral("UPDATE %1 SET %2 = %3 WHERE id = %4")
                                               .arg(table, cell, aValue)
                                               .arg(id)});
        };
        {
            const OpenNotes notes;
            QCOMPARE(inWords(), before);
            write(cell + QStringLiteral(" || 'Z'"));
            QCOMPARE(inWords(), before);
            const OpenNotes inner;
            QVERIFY(inWords() != before);
        }
        const QString after = inWords();
        write(QStringLiteral("substr(%1, 1, length(%1) - 1)").arg(cell));
        QVERIFY(after != before);
        QCOMPARE(QString(after).remove(u'Z'), before);
        QCOMPARE(inWords(), before);
    }

    void FileReadAgainShowsWhatHasChanged_data() { OfficeFolders::AddRoads(); }
    void FileReadAgainShowsWhatHasChanged() {
        XmlDocument document;
        QVERIFY(
            document.LoadBytes("<q><TaxpayersCriteria IsTaxpayers='1'><TaxpayersList>"
                               "<i id='3'/><i id='1'/><i id='3'/>"
                               "</TaxpayersList></TaxpayersCriteria></q>"));
        VkDocQueryData record;
        const auto inns = [&] {
            if (!record.ReadFromXml(document.Node().SelectSingleNode("q"))) return QStringList();
            QStringList result;
            for (const auto &item : *record.TaxpayersList) result << item->Inn();
            return result;
        };
        const QStringList before = inns();
        QCOMPARE(before.size(), 3);
        QVERIFY(record.TaxpayersList->At(0) != record.TaxpayersList->At(2));
        theFolder->Tamper(theAddress, {QStringLiteral("UPDATE person SET inn = '5' WHERE id = 3")});
        const QStringList after = inns();
        theFolder->Tamper(
            theAddress,
            {QStringLiteral("UPDATE person SET inn = '%1' WHERE id = 3").arg(before.first())});
        QCOMPARE(after, (QStringList{QStringLiteral("5"), before.at(1), QStringLiteral("5")}));
    }

    void ForeignMembersAreRefused_data() { OfficeFolders::AddRoads(); }
    void ForeignMembersAreRefused() {
        const auto person = Loaded<VkPerson>(thePerson, 1);
        QCOMPARE(RaisedBy([&] { static_cast<Record &>(*person).KND(); }).Number(),
                 qint32(MemberNotSupported));
    }

    void RecordsOutliveTheDatabase_data() { OfficeFolders::AddRoads(); }
    void RecordsOutliveTheDatabase() {
        const auto stream = Loaded<VkAccStream>(theStream, 15);
        const auto version = Loaded<VkTemplate>(theTemplate, 31);
        Vk_Records::CloseDatabase();
        QCOMPARE(stream->DisplayName(), QStringLiteral("Финансовый рынок"));
        QCOMPARE(stream->Person()->GetParentOrganization()->Kpp(), QStringLiteral("770401001"));
        QCOMPARE(version->TemplateType()->ShortName(), QStringLiteral("НДС"));
        const auto other = Made<VkPerson>(thePerson);
        const Failure failure = RaisedBy([&] { other->SetID(1); });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseNotOpen));
        QCOMPARE(failure.Description(),
                 QStringLiteral("База данных не открыта. Откройте базу и повторите."));
    }

    void TablesKeepTheirRules_data() { OfficeFolders::AddRoads(); }
    void TablesKeepTheirRules() {
        // A branch of a branch, a branch of nobody and a span that ends before it begins get no
        // entry.
        for (const char16_t *statement :
             {u"INSERT INTO person VALUES (9, 2, '', '', 'x', 'x', 0, 2, 1)",
              u"INSERT INTO person VALUES (9, 2, '', '', 'x', 'x', 0, NULL, NULL)",
              u"INSERT INTO template VALUES (39, 21, '2020-01-02', '2020-01-01', 'x', '')",
              u"INSERT INTO acc_stream VALUES (19, 99, 1, 'x', '', '', 0)"}) {
            QVERIFY2(!theFolder->Accepts(theAddress, QString::fromUtf16(statement)),
                     qPrintable(QString::fromUtf16(statement)));
        }
    }

private:
    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    QHash<QString, QString> theAddresses;
    QString theAddress;
};

VK_TEST_CLASS(TestRecords);

#include "TestRecords.moc"
