#include <cstddef>
#include <cstring>

#include <QTest>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/HostServices.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/TemplateQuerier.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/TestMain.h"

using namespace Vk_DocQuery;

// Hosts and suppliers that were built with the present headers have these numbers compiled in.
#define VK_BREAKS_HOSTS                                                                    \
    "hosts that are built already would break: raise SOVERSION in src/CMakeLists.txt and " \
    "records/CMakeLists.txt, say so in CHANGELOG.md, and only then put the new number here"

constexpr bool theNumbersAreKnown =
#if defined(__linux__) && defined(__x86_64__) && defined(__GLIBCXX__)
    true;
#else
    false;
#endif

static_assert(!theNumbersAreKnown || sizeof(VkDocQueryData) == 464, VK_BREAKS_HOSTS);
static_assert(!theNumbersAreKnown || sizeof(DocQueryEditor) == 8, VK_BREAKS_HOSTS);
static_assert(!theNumbersAreKnown || sizeof(TemplateQuerier) == 1, VK_BREAKS_HOSTS);
static_assert(!theNumbersAreKnown || sizeof(Failure) == 96, VK_BREAKS_HOSTS);
static_assert(!theNumbersAreKnown || sizeof(LooseValue) == 32, VK_BREAKS_HOSTS);
static_assert(!theNumbersAreKnown || sizeof(RecordCollection) == 104, VK_BREAKS_HOSTS);

namespace {

/// The next virtual member that a class could have.
template <class Class>
class WithOneMore : public Class {
public:
    virtual void Next() = 0;
};

/// How many places the table of virtual members has: a pointer to a virtual member holds the
/// distance of its place in bytes, plus one.
template <class Class>
std::ptrdiff_t VirtualMembersOf() {
    const auto next = &WithOneMore<Class>::Next;
    std::ptrdiff_t place = 0;
    static_assert(sizeof next >= sizeof place);
    std::memcpy(&place, &next, sizeof place);
    return (place - 1) / std::ptrdiff_t{sizeof(void *)};
}

}  // namespace

/// What hosts and suppliers of records have compiled in.
class TestBinaryLayout : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (!theNumbersAreKnown) QSKIP("the numbers are those of 64-bit Linux");
    }

    void FieldsOfTheRecordStayWhereTheyAre() {
        const VkDocQueryData record;
        const auto placeOf = [&](const auto &aField) {
            return reinterpret_cast<const char *>(&aField) -
                   reinterpret_cast<const char *>(&record);
        };
        QVERIFY2(placeOf(record.FileName) == 0, VK_BREAKS_HOSTS);
        QVERIFY2(placeOf(record.LastError) == 440, VK_BREAKS_HOSTS);
    }

    void VirtualMembers_data() {
        QTest::addColumn<qint64>("present");
        QTest::addColumn<qint64>("expected");
        const auto row = [](const char *aName, qint64 aPresent, qint64 aExpected) {
            QTest::newRow(aName) << aPresent << aExpected;
        };
        // Each with the two destructors.
        row("Object", VirtualMembersOf<Object>(), 2);
        row("Record", VirtualMembersOf<Record>(), 18);
        row("VkTemplate", VirtualMembersOf<VkTemplate>(), 18);
        row("VkTemplType", VirtualMembersOf<VkTemplType>(), 19);
        row("VkAccStream", VirtualMembersOf<VkAccStream>(), 18);
        row("VkPerson", VirtualMembersOf<VkPerson>(), 22);
        row("Recordset", VirtualMembersOf<Recordset>(), 6);
        row("BlankQueries", VirtualMembersOf<BlankQueries>(), 5);
        row("DBQAccStream", VirtualMembersOf<DBQAccStream>(), 3);
        row("PersonQueries", VirtualMembersOf<PersonQueries>(), 4);
        row("VkRecFactory", VirtualMembersOf<VkRecFactory>(), 3);
        row("FilesLibrary", VirtualMembersOf<FilesLibrary>(), 4);
        row("VkErrorHandler", VirtualMembersOf<VkErrorHandler>(), 3);
        row("SplashWindow", VirtualMembersOf<SplashWindow>(), 3);
    }
    void VirtualMembers() {
        QFETCH(qint64, present);
        QFETCH(qint64, expected);
        QVERIFY2(present == expected, VK_BREAKS_HOSTS);
    }
};

VK_TEST_CLASS(TestBinaryLayout);

#include "TestBinaryLayout.moc"
