#include <functional>
#include <thread>

#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>

#include "foundation/mErrorHandling.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/mVkLib.h"
#include "foundation/mVkRecords.h"
#include "support/MemoryRecords.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// An accessor with the names under which it and its object are known.
struct Accessor {
    const char *Name;
    const char *Module;
    const char *Class;
    const void *(*Get)();
    bool HasDefault = false;
};

constexpr Accessor theAccessors[] = {
    {"GetRecFactory", "mVkRecords", "Vk_Records.VkRecFactory",
     []() -> const void * { return &GetRecFactory(); }, true},
    {"FilesLib", "mVkLib", "Vk_Lib.FilesLibrary", []() -> const void * { return &FilesLib(); },
     true},
    {"GetBlankQueries", "mVkDBProvider", "Vk_DBProvider.BlankQueries",
     []() -> const void * { return &GetBlankQueries(); }},
    {"GetDBQAccStream", "mVkDBProvider", "Vk_DBProvider.DBQAccStream",
     []() -> const void * { return &GetDBQAccStream(); }},
    {"GetPersonQueries", "mVkDBProvider", "Vk_DBProvider.PersonQueries",
     []() -> const void * { return &GetPersonQueries(); }},
};

/// A member that only some classes of records have.
struct Member {
    const char *Name;
    void (*Ask)(const Record &aRecord);
};

constexpr Member theMembers[] = {
    {"GetDisplayName", [](const Record &aRecord) { aRecord.GetDisplayName(); }},
    {"GetIconKey", [](const Record &aRecord) { aRecord.GetIconKey(); }},
    {"GetIconKeyAsAccPerson", [](const Record &aRecord) { aRecord.GetIconKeyAsAccPerson(); }},
    {"TemplateType", [](const Record &aRecord) { aRecord.TemplateType(); }},
    {"KND", [](const Record &aRecord) { aRecord.KND(); }},
    {"ShortName", [](const Record &aRecord) { aRecord.ShortName(); }},
    {"DisplayName", [](const Record &aRecord) { aRecord.DisplayName(); }},
    {"GetOfficeCodeForDisplay", [](const Record &aRecord) { aRecord.GetOfficeCodeForDisplay(); }},
    {"Kpp", [](const Record &aRecord) { aRecord.Kpp(); }},
    {"Inn", [](const Record &aRecord) { aRecord.Inn(); }},
    {"Person", [](const Record &aRecord) { aRecord.Person(); }},
    {"GetParentOrganization", [](const Record &aRecord) { aRecord.GetParentOrganization(); }},
    {"BegDate", [](const Record &aRecord) { aRecord.BegDate(); }},
    {"EndDate", [](const Record &aRecord) { aRecord.EndDate(); }},
};

/// Runs in a thread of its own, where the slots of the accessors are empty.
void InNewThread(const std::function<void()> &aBody) {
    std::thread(aBody).join();
}

}  // namespace

/// The accessors, over the supplier that keeps its records in memory.
class TestAccessors : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void SecondCallGivesTheSameInstance_data() { AddAccessors(); }
    void SecondCallGivesTheSameInstance() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const QString name = QString::fromLatin1(accessor.Class);
        InNewThread([&] {
            const void *first = accessor.Get();
            QVERIFY(first);
            ClassRegistry::Register(name, nullptr);  // a second object could not be made any more
            QCOMPARE(accessor.Get(), first);
        });
    }

    void EveryThreadHasItsSlot_data() { AddAccessors(); }
    void EveryThreadHasItsSlot() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const void *here = accessor.Get();
        const void *there = nullptr;
        InNewThread([&] { there = accessor.Get(); });
        QVERIFY(there && there != here);
        QCOMPARE(accessor.Get(), here);
    }

    void FailureNamesAccessorAndModule_data() { AddAccessors(); }
    void FailureNamesAccessorAndModule() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const QString name = QString::fromLatin1(accessor.Class);
        ClassRegistry::Register(name, [] { return std::shared_ptr<Object>(); });
        QString chain;
        const void *later = nullptr;
        InNewThread([&] {
            chain = RaisedBy([&] { accessor.Get(); }).Description();
            MemoryOffice::Install();
            later = accessor.Get();  // a failure fills no slot
        });
        QCOMPARE(chain,
                 QStringLiteral("[Vk_DocQuery::%1.%2]\r\n"
                                "[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: %3}\r\n"
                                "[ClassRegistry]\r\n"
                                "Не удалось создать объект класса \"%3\".")
                     .arg(QString::fromLatin1(accessor.Module), QString::fromLatin1(accessor.Name),
                          name));
        QVERIFY(later);
    }

    /// Files and the names of periods are there without a supplier; the records are not.
    void WithoutASupplier_data() { AddAccessors(); }
    void WithoutASupplier() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const QString name = QString::fromLatin1(accessor.Class);
        ClassRegistry::Unregister(name);
        QCOMPARE(ClassRegistry::IsRegistered(name), accessor.HasDefault);
        QCOMPARE(ClassRegistry::IsRegistered(name.toUpper()), accessor.HasDefault);
        QString raised;
        InNewThread([&] { raised = RaisedBy([&] { accessor.Get(); }).Description(); });
        QCOMPARE(raised, accessor.HasDefault
                             ? QStringLiteral("nothing was raised")
                             : QStringLiteral(
                                   "[Vk_DocQuery::%1.%2]\r\n"
                                   "[Vk_DocQuery::mErrorHandling.CreateObjectErr] {Object: %3}\r\n"
                                   "[ClassRegistry]\r\n"
                                   "Класс \"%3\" не зарегистрирован.")
                                   .arg(QString::fromLatin1(accessor.Module),
                                        QString::fromLatin1(accessor.Name), name));
    }

    void DefaultsAreTheLibrarysOwn() {
        ClassRegistry::Unregister(QStringLiteral("Vk_Records.VkRecFactory"));
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        InNewThread([&] {
            QCOMPARE(GetRecFactory().GetPeriodName(3), QStringLiteral("Март"));
            FilesLib().SaveTextToFile(QStringLiteral("Ёж"), name, 1251);
        });
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("\xA8\xE6"));
    }

    void ObjectOfAnotherClassIsRefused_data() { AddAccessors(); }
    void ObjectOfAnotherClassIsRefused() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const QString name = QString::fromLatin1(accessor.Class);
        ClassRegistry::Register(name, [] { return std::make_shared<Object>(); });
        QString chain;
        InNewThread([&] { chain = RaisedBy([&] { accessor.Get(); }).Description(); });
        QCOMPARE(chain, QStringLiteral("[Vk_DocQuery::%1.%2]\r\nНесоответствие типа: %3")
                            .arg(QString::fromLatin1(accessor.Module),
                                 QString::fromLatin1(accessor.Name), name));
    }

    /// Who comes too late is told: what was made goes on on its thread.
    void RegisterSaysWhatItTakesOver_data() { AddAccessors(); }
    void RegisterSaysWhatItTakesOver() {
        QFETCH(int, index);
        const Accessor &accessor = theAccessors[index];
        const QString name = QString::fromLatin1(accessor.Class);
        const auto factory = [] { return std::shared_ptr<Object>(); };
        InNewThread([&] {
            const void *first = accessor.Get();
            QVERIFY(ClassRegistry::Register(name.toUpper(), factory) == Takeover::FromUsed);
            QVERIFY(ClassRegistry::Register(name, factory) == Takeover::FromUsed);
            QCOMPARE(accessor.Get(), first);
        });
        ClassRegistry::Unregister(name);
        QVERIFY(ClassRegistry::Register(name, factory) == Takeover::FromUsed);
    }

    void NothingMadeIsNothingTakenOver() {
        const QString name = QStringLiteral("Test.Class");
        QVERIFY(ClassRegistry::Register(name, nullptr) == Takeover::None);
        QVERIFY(RegisterClass<Object>(name.toUpper()) == Takeover::Unused);
        QVERIFY(ClassRegistry::IsRegistered(name));  // asking is not using
        QVERIFY(RegisterClass<Object>(name) == Takeover::Unused);
        ClassRegistry::Unregister(name);
        QVERIFY(RegisterClass<Object>(name) == Takeover::None);
        QVERIFY(ClassRegistry::Create(name));
        QVERIFY(RegisterClass<Object>(name) == Takeover::FromUsed);
        ClassRegistry::Unregister(name);
    }

    void FailureOfAFactoryIsPassedOn() {
        ClassRegistry::Register(QStringLiteral("Vk_Records.VkRecFactory"),
                                []() -> std::shared_ptr<Object> {
                                    throw Failure(77, QStringLiteral("S"), QStringLiteral("D"));
                                });
        qint32 number = 0;
        InNewThread([&] {
            try {
                GetRecFactory();
            } catch (const Failure &failure) {
                number = failure.Number();
            }
        });
        QCOMPARE(number, 77);
    }

private:
    static void AddAccessors() {
        QTest::addColumn<int>("index");
        for (int i = 0; i < static_cast<int>(std::size(theAccessors)); ++i)
            QTest::newRow(theAccessors[i].Name) << i;
    }
};

VK_TEST_CLASS(TestAccessors);

/// A supplier of records that is made of the installed headers alone plugs in by class name.
class TestForeignSupplier : public QObject {
    Q_OBJECT

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void RecordsComeThroughTheProviders() {
        const auto persons = GetPersonQueries().GetPersons(QString(), 0);
        QCOMPARE(persons->Count(), 4);
        const auto branch = persons->Fetch(QStringLiteral("_2"));
        QCOMPARE(branch->GetParentOrganization()->GetDisplayName(), QStringLiteral("ООО Ромашка"));
        QCOMPARE(persons->Fetch(QStringLiteral("_1"))->GetParentOrganization()->ID(), 0.0);
        QCOMPARE(GetPersonQueries().GetTaxpayers()->Count(), 3);
        QCOMPARE(GetDBQAccStream().GetAccStreams(QString(), 0)->Count(), 3);
        QCOMPARE(GetBlankQueries().GetTemplates(Null(), Null(), false)->Count(), 4);
        QCOMPARE(GetBlankQueries().GetTemplates(Null(), Null(), true)->Count(), 3);
        QCOMPARE(GetRecFactory().GetPeriodName(3), QStringLiteral("период 3"));
    }

    void RecordsAreMadeFromStoredIdentities() {
        const auto stream = CreateObjectAs<Record>(QStringLiteral("Vk_Records.VkAccStream"));
        stream->SetID(12);
        QCOMPARE(stream->DisplayName(), QStringLiteral("ПФР"));
        QCOMPARE(stream->Person()->Inn(), QStringLiteral("7701000001"));
        const auto version = CreateObjectAs<Record>(QStringLiteral("Vk_Records.VkTemplate"));
        version->SetID(32);
        QCOMPARE(version->TemplateType()->KND(), QStringLiteral("1151001"));
        QVERIFY(IsEmpty(version->EndDate()));
    }

    void MembersThatAClassLacksAreRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("member");
        struct Lack {
            const char *Class;
            std::initializer_list<const char *> Members;
        };
        const Lack lacks[] = {
            {"VkPerson",
             {"GetIconKey", "TemplateType", "KND", "ShortName", "DisplayName",
              "GetOfficeCodeForDisplay", "Person", "BegDate", "EndDate"}},
            {"VkAccStream",
             {"GetDisplayName", "GetIconKeyAsAccPerson", "TemplateType", "KND", "ShortName", "Inn",
              "GetParentOrganization", "BegDate", "EndDate"}},
            {"VkTemplate",
             {"GetIconKeyAsAccPerson", "KND", "ShortName", "DisplayName", "GetOfficeCodeForDisplay",
              "Kpp", "Inn", "Person", "GetParentOrganization"}},
            {"VkTemplType",
             {"GetDisplayName", "GetIconKeyAsAccPerson", "TemplateType", "DisplayName",
              "GetOfficeCodeForDisplay", "Kpp", "Inn", "Person", "GetParentOrganization", "BegDate",
              "EndDate"}},
        };
        QSet<QString> asked;
        for (const Lack &lack : lacks) {
            for (const char *member : lack.Members) {
                int index = 0;
                while (qstrcmp(theMembers[index].Name, member) != 0) ++index;
                QTest::addRow("%s.%s", lack.Class, member)
                    << QStringLiteral("Vk_Records.") + QLatin1String(lack.Class) << index;
                asked << QString::fromLatin1(member);
            }
        }
        QCOMPARE(asked.size(), qsizetype(std::size(theMembers)));
    }
    void MembersThatAClassLacksAreRefused() {
        QFETCH(QString, name);
        QFETCH(int, member);
        const auto record = CreateObjectAs<Record>(name);
        const Failure failure = RaisedBy([&] { theMembers[member].Ask(*record); });
        QCOMPARE(failure.Description(), QStringLiteral("Объект не имеет члена \"%1\".")
                                            .arg(QLatin1String(theMembers[member].Name)));
        QCOMPARE(failure.Number(), 438);
        QCOMPARE(failure.Source(), QStringLiteral("Record"));
    }

    void ObjectKeysAreThoseOfLists_data() {
        QTest::addColumn<double>("id");
        QTest::addColumn<QString>("key");
        QTest::newRow("whole") << 1234.0 << QStringLiteral("_1234");
        QTest::newRow("zero") << 0.0 << QStringLiteral("_0");
        QTest::newRow("negative") << -5.0 << QStringLiteral("_-5");
        QTest::newRow("million") << 1e6 << QStringLiteral("_1000000");
        QTest::newRow("large") << 123456789012345.0 << QStringLiteral("_123456789012345");
        QTest::newRow("fraction") << 1.5 << QStringLiteral("_1.5");
        QTest::newRow("exponent") << 1e20 << QStringLiteral("_1E+20");
    }
    void ObjectKeysAreThoseOfLists() {
        QFETCH(double, id);
        QFETCH(QString, key);
        QCOMPARE(ObjectKey(id), key);
    }
};

VK_TEST_CLASS(TestForeignSupplier);

#include "TestAccessors.moc"
