#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <vector>

#include <libxml/xmlmemory.h>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/FilesLibrary.h"
#include "queryfile/FileBytes.h"
#include "queryfile/XmlNode.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::RaisedBy;

namespace {

/// Runs in a thread of its own in which the calls of the system fail as on a broken disk.
template <class Body>
void WithBroken(const std::vector<long> &aCalls, Body aBody) {
    std::thread([&] {
        std::vector<sock_filter> program{
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
        for (const long call : aCalls) {
            program.push_back(
                BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<quint32>(call), 0, 1));
            program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EIO));
        }
        program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
        const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
            qFatal("no filter");
        aBody();
    }).join();
}

std::vector<long> OpeningCalls() {
    std::vector<long> calls{SYS_openat};
#ifdef SYS_open
    calls.push_back(SYS_open);
#endif
    return calls;
}

QString Saved(const QString &aName) {
    return RaisedBy(
               [&] { DefaultFilesLibrary().SaveTextToFile(QStringLiteral("new"), aName, 1251); })
        .Description();
}

// The parser's memory: it gets none from a certain request on.
int theRequestsLeft = 0;

void *Allocated(std::size_t aSize) {
    return theRequestsLeft-- > 0 ? std::malloc(aSize) : nullptr;
}
void *Reallocated(void *aMemory, std::size_t aSize) {
    return theRequestsLeft-- > 0 ? std::realloc(aMemory, aSize) : nullptr;
}
char *Duplicated(const char *aText) {
    return theRequestsLeft-- > 0 ? strdup(aText) : nullptr;
}

}  // namespace

/// Files that are in order on a system that is not.
class TestSystemRefusals : public QObject {
    Q_OBJECT

private slots:
    void init() {
        theFolder = std::make_unique<QTemporaryDir>();
        theName = theFolder->filePath(QStringLiteral("a.qvk"));
        QFile file(theName);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<VkDocQuery/>") == 13);
    }

    void OpeningOnABrokenDisk() {
        QByteArray bytes;
        QString reason;
        WithBroken(OpeningCalls(), [&] { reason = ReadFileBytes(theName, 1000, bytes); });
        QCOMPARE(reason, QStringLiteral("Файл не удалось открыть: Input/output error."));
    }

    void ReadingThatFails() {
        QByteArray bytes;
        QCOMPARE(ReadFileBytes(QStringLiteral("/proc/self/mem"), 1000, bytes),
                 QStringLiteral("Файл не удалось прочитать: Input/output error."));
    }

    void ParsingWithoutMemory() {
        xmlFreeFunc freed = nullptr;
        xmlMallocFunc allocated = nullptr;
        xmlReallocFunc reallocated = nullptr;
        xmlStrdupFunc duplicated = nullptr;
        QCOMPARE(xmlMemGet(&freed, &allocated, &reallocated, &duplicated), 0);
        QStringList reasons;
        bool loaded = false;
        for (int requests = 0; !loaded && requests < 1000; ++requests) {
            XmlDocument document;
            theRequestsLeft = requests;
            xmlMemSetup(freed, Allocated, Reallocated, Duplicated);
            try {
                loaded = document.LoadBytes("<VkDocQuery><DocCriteria Notes='x'/></VkDocQuery>");
            } catch (const std::bad_alloc &) {
            }
            xmlMemSetup(freed, allocated, reallocated, duplicated);
            if (!loaded && !document.ParseError().Reason.isEmpty())
                reasons << document.ParseError().Reason;
        }
        QVERIFY(loaded);
        reasons.removeDuplicates();
        QCOMPARE(reasons, QStringList{QStringLiteral("Файл не удалось разобрать.")});
    }

    void SavingUnderANameThatIsTooLong() {
        QCOMPARE(Saved(theFolder->filePath(QString(300, u'x'))),
                 QStringLiteral("Файл не удалось заменить: File name too long."));
        OldFileIsThereAlone();
    }

    void SavingOnABrokenDisk_data() {
        QTest::addColumn<std::vector<long>>("calls");
        QTest::addColumn<QString>("reason");
        std::vector<long> replacing{SYS_renameat, SYS_renameat2, SYS_linkat};
#ifdef SYS_rename
        replacing.insert(replacing.end(), {SYS_rename, SYS_link});
#endif
        QTest::newRow("creating") << OpeningCalls()
                                  << QStringLiteral("Файл не удалось создать: Input/output error.");
        QTest::newRow("writing") << std::vector<long>{SYS_write, SYS_pwrite64, SYS_writev}
                                 << QStringLiteral("Файл не удалось записать: Input/output error.");
        QTest::newRow("replacing")
            << replacing << QStringLiteral("Файл не удалось заменить: Input/output error.");
    }
    void SavingOnABrokenDisk() {
        QFETCH(std::vector<long>, calls);
        QFETCH(QString, reason);
        QString raised;
        WithBroken(calls, [&] { raised = Saved(theName); });
        QCOMPARE(raised, reason);
        OldFileIsThereAlone();
    }

private:
    /// The file is as it was, and nothing else was left in its folder.
    void OldFileIsThereAlone() const {
        QFile file(theName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("<VkDocQuery/>"));
        QCOMPARE(QDir(theFolder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System),
                 QStringList{QStringLiteral("a.qvk")});
    }

    std::unique_ptr<QTemporaryDir> theFolder;
    QString theName;
};

VK_TEST_CLASS(TestSystemRefusals);

#include "TestSystemRefusals.moc"
