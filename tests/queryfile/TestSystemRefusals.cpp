#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <utility>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/FilesLibrary.h"
#include "queryfile/FileBytes.h"
#include "support/SystemCalls.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// All calls that have to do with files. Not every system has those of old.
const Calls theFileCalls = {
#ifdef SYS_open
    SYS_open,       SYS_stat,      SYS_lstat,     SYS_access,    SYS_readlink,   SYS_rename,
    SYS_link,       SYS_unlink,    SYS_chmod,     SYS_chown,
#endif
#ifdef SYS_newfstatat
    SYS_newfstatat,
#endif
    SYS_openat,     SYS_fstat,     SYS_statx,     SYS_faccessat, SYS_faccessat2, SYS_readlinkat,
    SYS_renameat2,  SYS_linkat,    SYS_unlinkat,  SYS_fchmod,    SYS_fchown,     SYS_fchmodat,
    SYS_write,      SYS_writev,    SYS_pwrite64,  SYS_fsync,     SYS_fdatasync,  SYS_syncfs,
    SYS_close,      SYS_flock,     SYS_fcntl,     SYS_listxattr, SYS_llistxattr, SYS_flistxattr,
    SYS_getxattr,   SYS_lgetxattr, SYS_fgetxattr, SYS_setxattr,  SYS_fsetxattr,  SYS_fremovexattr,
#ifdef SYS_renameat
    SYS_renameat,
#endif
};

/// What a system may not be able to do, and what a save then does in another way.
enum Way { Unnamed, Named, WithoutProc, WithoutExchange };

/// What such a system answers to a call; 0 if nothing in particular.
int AnswerOf(Way aWay, const Call &aCall) {
    constexpr __u64 unnamed = O_TMPFILE & ~O_DIRECTORY;
    if (aWay == Named && aCall.Number == SYS_openat && (aCall.Arguments[2] & unnamed) != 0)
        return EOPNOTSUPP;
    if (aWay == WithoutProc && aCall.Number == SYS_linkat) return ENOENT;
    if (aWay == WithoutExchange && aCall.Number == SYS_renameat2) return EINVAL;
    return 0;
}

/// No word of another language but the system's own, which stand in brackets.
bool IsRussian(QString aText) {
    static const QRegularExpression brackets(QStringLiteral("\\([^)]*\\)"));
    static const QRegularExpression quoted(QStringLiteral("\"[^\"]*\""));
    static const QRegularExpression latin(QStringLiteral("[A-Za-z]"));
    return !aText.remove(brackets).remove(quoted).contains(latin);
}

constexpr int theNotWatched = 77;  // what a child ends with whose calls cannot be answered
constexpr char theOld[] = "<VkDocQuery/>";
constexpr char theNew[] = "new";
const QString theDiskIsFull = QStringLiteral("На диске не хватает места.");

/// What saving raises; empty if it does not.
QString Saved(const QString &aName, const QString &aText = QString::fromLatin1(theNew)) {
    try {
        DefaultFilesLibrary().SaveTextToFile(aText, aName, 1251);
    } catch (const Failure &failure) {
        return failure.Description();
    }
    return QString();
}

}  // namespace

/// Files that are in order on a system that is not.
class TestSystemRefusals : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MakeFolder(QDir::tempPath());
        QFile file(theName);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(theOld) == 13);
    }

    void OpeningOnABrokenDisk_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("reason");
        QTest::newRow("broken") << EIO
                                << QStringLiteral(
                                       "Файл не удалось открыть: ошибка чтения или "
                                       "записи на диске (Input/output error).");
        QTest::newRow("no memory") << ENOMEM
                                   << QStringLiteral(
                                          "Файл не удалось открыть: не хватает памяти "
                                          "(Cannot allocate memory).");
        QTest::newRow("no rights") << EACCES << QStringLiteral("Нет прав на чтение файла.");
        QTest::newRow("gone") << ENOTCONN
                              << QStringLiteral(
                                     "Файл не удалось открыть: диск отключен (Transport endpoint "
                                     "is not connected).");
    }
    void OpeningOnABrokenDisk() {
        QFETCH(int, code);
        QFETCH(QString, reason);
        for (const Calls &calls : {Calls{SYS_openat}, Calls{SYS_statx, SYS_openat}}) {
            QByteArray bytes;
            QString told;
            const bool broken = WithCalls(
                calls, [=](const Call &) { return code; },
                [&] { told = ReadFileBytes(theName, bytes); });
            if (!broken) QSKIP("calls of the system cannot be answered here");
            QCOMPARE(told, reason);
        }
    }

    void ReadingThatFails() {
        QByteArray bytes;
        QCOMPARE(ReadFileBytes(QStringLiteral("/proc/self/mem"), bytes),
                 QStringLiteral("Файл не удалось прочитать: ошибка чтения или записи на диске "
                                "(Input/output error)."));
    }

    /// What happens to the file between the opening and the first byte that is read.
    void ReadingWhileOthersWrite_data() {
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("nothing new") << QByteArray(theOld) << true;
        QTest::newRow("shorter") << QByteArray("<VkDoc") << false;
        QTest::newRow("longer") << QByteArray("<VkDocQuery/>\n") << false;
    }
    void ReadingWhileOthersWrite() {
        QFETCH(QByteArray, written);
        QFETCH(bool, isRead);
        QByteArray bytes;
        QString told;
        int reads = 0;
        const bool answered = WithCalls(
            {SYS_read},
            [&](const Call &) {
                QFile file(theName);
                if (++reads == 1 && file.open(QIODevice::WriteOnly)) file.write(written);
                return 0;
            },
            [&] { told = ReadFileBytes(theName, bytes); });
        if (!answered) QSKIP("calls of the system cannot be answered here");
        QVERIFY(reads > 0);
        QCOMPARE(told, isRead ? QString()
                              : QStringLiteral("Файл не удалось прочитать: в это время его "
                                               "изменила другая программа."));
    }

    /// A file that is replaced while it is being opened is read whole, the old one or the new one.
    void ReadingWhileOthersSave_data() {
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("shorter") << QByteArray("<a/>");
        QTest::newRow("longer") << QByteArray("<VkDocQuery ver=\"1\"/>");
    }
    void ReadingWhileOthersSave() {
        QFETCH(QByteArray, written);
        for (const long call : {SYS_openat, SYS_read}) {
            PutThere(theOld);
            QByteArray bytes;
            QString told;
            int calls = 0;
            const bool answered = WithCalls(
                {call},
                [&](const Call &) {
                    if (++calls == 1) PutThere(written.constData());
                    return 0;
                },
                [&] { told = ReadFileBytes(theName, bytes); });
            if (!answered) QSKIP("calls of the system cannot be answered here");
            QVERIFY(calls > 0);
            QCOMPARE(told, QString());
            QCOMPARE(bytes, call == SYS_openat ? written : QByteArray(theOld));
        }
    }

    void SavingOnABrokenDisk_data() {
        QTest::addColumn<Calls>("calls");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *aName, const Calls &aCalls, int aCode,
                            const char16_t *aReason) {
            QTest::newRow(aName) << aCalls << aCode << QString::fromUtf16(aReason);
        };
        const Calls creating{SYS_openat};
        const Calls writing{SYS_write};
        const Calls replacing{SYS_renameat, SYS_renameat2};
        row("creating", creating, EIO,
            u"Файл не удалось найти: ошибка чтения или записи на диске (Input/output error).");
        row("writing", writing, EIO,
            u"Файл не удалось записать: ошибка чтения или записи на диске (Input/output error).");
        row("flushing", {SYS_fsync}, EIO,
            u"Файл не удалось записать: ошибка чтения или записи на диске (Input/output error).");
        row("closing", {SYS_close}, EIO,
            u"Файл не удалось записать: ошибка чтения или записи на диске (Input/output error).");
        row("naming", {SYS_linkat}, EIO,
            u"Файл не удалось заменить: ошибка чтения или записи на диске (Input/output error).");
        row("replacing", replacing, EIO,
            u"Файл не удалось заменить: ошибка чтения или записи на диске (Input/output error).");
        row("replacing without rights", replacing, EPERM,
            u"Файл не удалось заменить: нет прав на его удаление.");
        row("creating on a disk for reading", creating, EROFS, u"Диск доступен только для чтения.");
        row("writing, unknown error", writing, 999,
            u"Файл не удалось записать: отказ системы 999 (Unknown error 999).");
        row("full: writing", writing, ENOSPC, u"На диске не хватает места.");
        row("full: quota", writing, EDQUOT, u"На диске не хватает места.");
        row("full: limit", writing, EFBIG, u"На диске не хватает места.");
        row("full: flushing", {SYS_fsync}, ENOSPC, u"На диске не хватает места.");
        row("full: closing", {SYS_close}, EDQUOT, u"На диске не хватает места.");
        row("full: naming", {SYS_linkat}, ENOSPC, u"На диске не хватает места.");
        row("full: replacing", replacing, ENOSPC, u"На диске не хватает места.");
    }
    void SavingOnABrokenDisk() {
        QFETCH(Calls, calls);
        QFETCH(int, code);
        QFETCH(QString, reason);
        QString raised;
        const bool broken = WithCalls(
            calls, [=](const Call &) { return code; }, [&] { raised = Saved(theName); });
        if (!broken) QSKIP("calls of the system cannot be answered here");
        QCOMPARE(raised, reason);
        OldFileIsThereAlone();
    }

    /// The folder alone cannot be brought to the disk: what was is put back.
    void FolderThatIsNotConfirmed_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QString>("reason");
        QTest::addColumn<QByteArray>("left");
        const QString refused = QStringLiteral(
            "Файл не удалось заменить: ошибка чтения или записи на диске (Input/output error).");
        const QString unconfirmed = QStringLiteral(
            "Файл записан, но диск этого не подтвердил: ошибка чтения или записи на диске "
            "(Input/output error).");
        QTest::newRow("replaced") << int(Unnamed) << false << refused << QByteArray(theOld);
        QTest::newRow("new") << int(Unnamed) << true << refused << QByteArray();
        QTest::newRow("replaced for good")
            << int(WithoutExchange) << false << unconfirmed << QByteArray(theNew);
    }
    void FolderThatIsNotConfirmed() {
        QFETCH(int, way);
        QFETCH(bool, isNew);
        QFETCH(QString, reason);
        QFETCH(QByteArray, left);
        if (isNew) QVERIFY(QFile::remove(theName));
        int flushes = 0;
        QString raised;
        const bool broken = WithCalls(
            {SYS_fsync, SYS_renameat2},
            [&](const Call &aCall) {
                if (aCall.Number == SYS_fsync && ++flushes == 2) return EIO;
                return AnswerOf(Way(way), aCall);
            },
            [&] { raised = Saved(theName); });
        if (!broken) QSKIP("calls of the system cannot be answered here");
        QCOMPARE(raised, reason);
        QCOMPARE(Bytes(), left);
        QCOMPARE(Files(), left.isEmpty() ? QStringList() : QStringList{QStringLiteral("a.qvk")});
    }

    /// What another program puts there before the disk fails to confirm a save is not undone.
    void WhatComesBeforeTheUndoing_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<bool>("isNew");
        QTest::newRow("exchanged") << int(Unnamed) << false;
        QTest::newRow("replaced for good") << int(WithoutExchange) << false;
        QTest::newRow("new") << int(Unnamed) << true;
        QTest::newRow("new, replaced for good") << int(WithoutExchange) << true;
    }
    void WhatComesBeforeTheUndoing() {
        QFETCH(int, way);
        QFETCH(bool, isNew);
        if (isNew) QVERIFY(QFile::remove(theName));
        int flushes = 0;
        QString raised;
        const bool broken = WithCalls(
            {SYS_fsync, SYS_renameat2},
            [&](const Call &aCall) {
                if (aCall.Number != SYS_fsync || ++flushes != 2) return AnswerOf(Way(way), aCall);
                PutThere("another's");
                return EIO;
            },
            [&] { raised = Saved(theName); });
        if (!broken) QSKIP("calls of the system cannot be answered here");
        QCOMPARE(raised, QStringLiteral("Файл не удалось заменить: ошибка чтения или записи на "
                                        "диске (Input/output error)."));
        QCOMPARE(Bytes(), QByteArray("another's"));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
    }

    /// What a save has in hand is locked, under each name, so that another one waits or leaves it
    /// alone.
    void AllIsLocked_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<int>("call");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("locked");
        QTest::newRow("named, while it is written") << int(Named) << int(SYS_write) << 1 << 1;
        QTest::newRow("before they are exchanged") << int(Unnamed) << int(SYS_renameat2) << 1 << 2;
        QTest::newRow("while it is confirmed") << int(Unnamed) << int(SYS_fsync) << 2 << 2;
        QTest::newRow("named, while it is confirmed") << int(Named) << int(SYS_fsync) << 2 << 2;
        QTest::newRow("when the old one goes") << int(Unnamed) << int(SYS_unlinkat) << 1 << 2;
        QTest::newRow("replaced for good, while it is confirmed")
            << int(WithoutExchange) << int(SYS_fsync) << 2 << 1;
    }
    void AllIsLocked() {
        QFETCH(int, way);
        QFETCH(int, call);
        QFETCH(int, number);
        QFETCH(int, locked);
        int calls = 0;
        int found = -1;
        QString raised;
        const bool watched = WithCalls(
            {SYS_openat, SYS_write, SYS_fsync, SYS_renameat2, SYS_unlinkat},
            [&](const Call &aCall) {
                if (aCall.Number == call && ++calls == number) found = LockedFiles();
                return AnswerOf(Way(way), aCall);
            },
            [&] { raised = Saved(theName); });
        if (!watched) QSKIP("calls of the system cannot be answered here");
        QCOMPARE(raised, QString());
        QCOMPARE(found, locked);
        QCOMPARE(LockedFiles(), 0);
    }

    /// A save that comes while another one is at it changes nothing before that one has ended.
    void OneAfterTheOther_data() {
        QTest::addColumn<bool>("isReplaced");
        QTest::newRow("undone") << false;
        QTest::newRow("done") << true;
    }
    void OneAfterTheOther() {
        QFETCH(bool, isReplaced);
        int held = OpenLocked(theName);
        QVERIFY(held >= 0);
        int looks = 0;
        int locked = -1;
        QByteArray found;
        QString raised;
        const bool watched = WithCalls(
            {SYS_flock, SYS_renameat2},
            [&](const Call &aCall) {
                if (aCall.Number == SYS_renameat2) {
                    found = held < 0 ? Bytes() : "too early";
                    locked = LockedFiles();
                } else if (++looks == 5) {
                    if (isReplaced) PutThere("another's");
                    ::close(std::exchange(held, -1));
                }
                return 0;
            },
            [&] { raised = Saved(theName); });
        if (!watched) QSKIP("calls of the system cannot be answered here");
        QCOMPARE(raised, QString());
        QCOMPARE(found, QByteArray(isReplaced ? "another's" : theOld));
        QCOMPARE(locked, 2);  // the file that is there now, and the new one
        QCOMPARE(Bytes(), QByteArray(theNew));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
    }

    void LockThatStays() {
        const int held = OpenLocked(theName);
        QVERIFY(held >= 0);
        QCOMPARE(Saved(theName), QString());
        QCOMPARE(Bytes(), QByteArray(theNew));
        ::close(held);
    }

    /// What other programs do to the files just before they change their names.
    void OthersInTheWay_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QString>("what");
        const std::pair<const char *, Way> ways[] = {
            {"unnamed", Unnamed}, {"named", Named}, {"without exchange", WithoutExchange}};
        for (const auto &[name, way] : ways) {
            for (const bool isNew : {false, true}) {
                for (const char *what : {"clear", "remove", "put", "put early"})
                    QTest::addRow("%s, %s, %s", name, isNew ? "new" : "old", what)
                        << int(way) << isNew << QString::fromLatin1(what);
            }
        }
    }
    void OthersInTheWay() {
        QFETCH(int, way);
        QFETCH(bool, isNew);
        QFETCH(QString, what);
        if (isNew) QVERIFY(QFile::remove(theName));
        int renames = 0;
        QString raised;
        const bool watched = WithCalls(
            {SYS_openat, SYS_fsync, SYS_renameat, SYS_renameat2},
            [&](const Call &aCall) {
                if (aCall.Number == SYS_fsync) {
                    if (what == QStringLiteral("put early") && renames == 0) PutThere("another's");
                    return 0;
                }
                const int code = AnswerOf(Way(way), aCall);
                if (aCall.Number == SYS_openat || code != 0 || ++renames != 1) return code;
                if (what == QStringLiteral("clear")) {
                    for (const QString &name : Files()) {
                        if (name != QStringLiteral("a.qvk"))
                            QFile::remove(theFolder->filePath(name));
                    }
                }
                if (what == QStringLiteral("remove")) QFile::remove(theName);
                if (what == QStringLiteral("put")) PutThere("another's");
                return 0;
            },
            [&] { raised = Saved(theName); });
        if (!watched) QSKIP("calls of the system cannot be answered here");
        QVERIFY(renames > 0);
        QCOMPARE(raised, QString());
        QCOMPARE(Bytes(), QByteArray(theNew));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
        // Another's file has rights of its own, and they are kept where its coming can be seen.
        if (isNew && (what == QStringLiteral("put early") ||
                      (what == QStringLiteral("put") && way != WithoutExchange)))
            QCOMPARE(QFile::permissions(theName) & 0x0077, QFileDevice::Permissions());
    }

    /// A file that another save takes back, at whichever call.
    void FileThatGoes_data() {
        QTest::addColumn<int>("way");
        QTest::newRow("unnamed") << int(Unnamed);
        QTest::newRow("named") << int(Named);
        QTest::newRow("without exchange") << int(WithoutExchange);
    }
    void FileThatGoes() {
        MakeFolder(FolderInMemory());
        QFETCH(int, way);
        int early = 0;
        for (int number = 1; number < 200; ++number) {
            MakeOld();
            int calls = 0;
            bool isRenamed = false;
            bool isEarly = false;
            QString raised;
            const bool answered = WithCalls(
                theFileCalls,
                [&](const Call &aCall) {
                    const int code = AnswerOf(Way(way), aCall);
                    if (++calls == number) {
                        isEarly = !isRenamed;
                        QFile::remove(theName);
                    }
                    isRenamed = isRenamed || (code == 0 && (aCall.Number == SYS_renameat2 ||
                                                            aCall.Number == SYS_renameat));
                    return code;
                },
                [&] { raised = Saved(theName); });
            if (!answered) QSKIP("calls of the system cannot be answered here");
            if (calls < number) break;
            QVERIFY2(raised.isEmpty(),
                     QStringLiteral("call %1: %2").arg(number).arg(raised).toUtf8());
            if (!isEarly) continue;
            ++early;
            QCOMPARE(Bytes(), QByteArray(theNew));
            QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
        }
        QVERIFY(early >= 10);
    }

    /// Each call of a save fails once, with each of some errors.
    void EveryCallThatFails_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<int>("code");
        const std::pair<const char *, Way> ways[] = {{"unnamed", Unnamed},
                                                     {"named", Named},
                                                     {"without /proc", WithoutProc},
                                                     {"without exchange", WithoutExchange}};
        const std::pair<const char *, int> codes[] = {
            {"EIO", EIO},     {"ENOSPC", ENOSPC}, {"EACCES", EACCES}, {"EPERM", EPERM},
            {"EROFS", EROFS}, {"ENOENT", ENOENT}, {"EINTR", EINTR}};
        for (const auto &[wayName, way] : ways) {
            for (const auto &[codeName, code] : codes) {
                if (way == Unnamed || code == EIO || code == ENOSPC)
                    QTest::addRow("%s, %s", wayName, codeName) << int(way) << code;
            }
        }
    }
    void EveryCallThatFails() {
        MakeFolder(FolderInMemory());  // a disk would be waited for at every save
        QFETCH(int, way);
        QFETCH(int, code);
        int failed = 0;
        for (int number = 1; number < 200; ++number) {
            MakeOld();
            int calls = 0;
            long call = 0;
            QString raised;
            const bool answered = WithCalls(
                theFileCalls,
                [&](const Call &aCall) {
                    if (++calls != number) return AnswerOf(Way(way), aCall);
                    call = aCall.Number;
                    // The system has closed it, whatever it says.
                    if (call == SYS_close) ::close(static_cast<int>(aCall.Arguments[0]));
                    return code;
                },
                [&] { raised = Saved(theName); });
            if (!answered) QSKIP("calls of the system cannot be answered here");
            if (calls < number) break;
            failed += raised.isEmpty() ? 0 : 1;
            const QByteArray where =
                QStringLiteral("call %1 (%2): %3").arg(number).arg(call).arg(raised).toUtf8();
            const bool isKnown = raised.startsWith(QStringLiteral("Файл записан, но диск"));
            QVERIFY2(Bytes() == (raised.isEmpty() || isKnown ? theNew : theOld), where.constData());
            QVERIFY2(IsRussian(raised), where.constData());
            QVERIFY2(raised.isEmpty() || isKnown || code != ENOSPC || raised == theDiskIsFull,
                     where.constData());
            QVERIFY2(HasOldRights(), where.constData());
            if (raised.isEmpty() && call == SYS_openat)  // there are too many files open, say
                QVERIFY2(Files() == QStringList{QStringLiteral("a.qvk")}, where.constData());
            if (code == EINTR && (call == SYS_write || call == SYS_fsync || call == SYS_close))
                QVERIFY2(raised.isEmpty(), where.constData());
            QCOMPARE(Saved(theName), QString());  // and the next save is one again
            QVERIFY2(Files() == QStringList{QStringLiteral("a.qvk")}, where.constData());
        }
        QVERIFY(failed >= 10);
    }

    /// A program that is killed at a call of a save: the file is the old or the new one, and the
    /// next save takes away what stayed.
    void KilledAtACall_data() {
        QTest::addColumn<int>("way");
        QTest::addColumn<int>("call");
        QTest::addColumn<bool>("leaves");
        const auto row = [](const char *aName, Way aWay, long aCall, bool aLeaves) {
            QTest::newRow(aName) << int(aWay) << int(aCall) << aLeaves;
        };
        row("unnamed, writing", Unnamed, SYS_write, false);
        row("unnamed, flushing", Unnamed, SYS_fsync, false);
        row("unnamed, replacing", Unnamed, SYS_renameat2, true);
        row("unnamed, removing the old one", Unnamed, SYS_unlinkat, true);
        row("named, locking", Named, SYS_flock, true);
        row("named, writing", Named, SYS_write, true);
        row("named, flushing", Named, SYS_fsync, true);
        row("named, replacing", Named, SYS_renameat2, true);
    }
    void KilledAtACall() {
        QFETCH(int, way);
        QFETCH(int, call);
        QFETCH(bool, leaves);
        const pid_t child = fork();
        if (child == 0) {
            if (way == Named) RefuseUnnamedFiles();
            AnswerCalls({call}, SECCOMP_RET_KILL_PROCESS);
            Saved(theName);
            _exit(0);
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status));
        const QByteArray bytes = Bytes();
        QVERIFY2(bytes == theOld || bytes == theNew, bytes.constData());
        QCOMPARE(Files().size(), leaves ? 2 : 1);
        QCOMPARE(Saved(theName), QString());
        QCOMPARE(Bytes(), QByteArray(theNew));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
    }

    /// The same at any moment.
    void KilledAtAnyMoment() {
        for (int round = 0; round < 40; ++round) {
            int begun[2];
            QCOMPARE(pipe(begun), 0);
            const pid_t child = fork();
            if (child == 0) {
                RefuseUnnamedFiles();
                while (write(begun[1], "x", 1) == 1) Saved(theName);
                _exit(0);
            }
            char byte = 0;
            for (int save = 0; save <= round % 4; ++save) QCOMPARE(read(begun[0], &byte, 1), 1);
            QCOMPARE(kill(child, SIGKILL), 0);
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            ::close(begun[0]);
            ::close(begun[1]);
            const QByteArray bytes = Bytes();
            QVERIFY2(bytes == theOld || bytes == theNew, bytes.constData());
            QCOMPARE(Saved(theName), QString());
            QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
        }
    }

    /// Several programs that save one file at once: it is always the whole file of one of them, and
    /// never that of one whose disk has not confirmed it.
    void SavedByManyAtOnce_data() {
        QTest::addColumn<bool>("areNamed");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<bool>("oneFails");
        QTest::newRow("unnamed") << false << false << false;
        QTest::newRow("named") << true << false << false;
        QTest::newRow("new") << false << true << false;
        QTest::newRow("new, named") << true << true << false;
        QTest::newRow("one that is not confirmed") << false << false << true;
        QTest::newRow("one that is not confirmed, new") << false << true << true;
    }
    void SavedByManyAtOnce() {
        QFETCH(bool, areNamed);
        QFETCH(bool, isNew);
        QFETCH(bool, oneFails);
        MakeFolder(FolderInMemory());
        for (int round = 0; round < 50; ++round) {
            if (isNew)
                QFile::remove(theName);
            else
                MakeOld();
            int gate[2];
            QCOMPARE(pipe(gate), 0);
            std::vector<pid_t> children;
            for (const char letter : {'a', 'b', 'c'}) {
                children.push_back(fork());
                if (children.back() != 0) continue;
                if (areNamed) RefuseUnnamedFiles();
                char byte = 0;
                ::close(gate[1]);
                if (::read(gate[0], &byte, 1) != 0) _exit(1);  // all begin at once
                _exit(ExitOfSave(letter, oneFails && letter == 'a'));
            }
            ::close(gate[0]);
            ::close(gate[1]);
            for (const pid_t child : children) {
                int status = -1;
                QCOMPARE(waitpid(child, &status, 0), child);
                QVERIFY(WIFEXITED(status));
                const bool fails = oneFails && child == children.front();
                if (fails && WEXITSTATUS(status) == theNotWatched)
                    QSKIP("calls of the system cannot be answered here");
                QCOMPARE(WEXITSTATUS(status), fails ? 1 : 0);
            }
            const QByteArray bytes = Bytes();
            QVERIFY2(bytes.size() == 10000 && bytes.count(bytes[0]) == 10000,
                     bytes.left(100).constData());
            QVERIFY(!oneFails || bytes[0] != 'a');
            QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
            QVERIFY(isNew || HasOldRights());
        }
    }

    /// The name of a leftover may be another save's a moment after it was looked at.
    void LeftoverThatBecomesAnothersFile() {
        const QString left = LeftByAKilledSave();
        QVERIFY(!left.isEmpty());
        int locks = 0;
        int held = -1;
        QString raised;
        const bool watched = WithCalls(
            {SYS_flock},
            [&](const Call &) {
                if (++locks != 1) return 0;
                QFile::remove(left);
                QFile file(left);
                if (file.open(QIODevice::WriteOnly)) held = OpenLocked(left);
                return 0;
            },
            [&] { raised = Saved(theName); });
        if (!watched) QSKIP("calls of the system cannot be answered here");
        QVERIFY(held >= 0);
        QCOMPARE(raised, QString());
        QCOMPARE(Bytes(), QByteArray(theNew));
        QVERIFY(QFile::exists(left));
        ::close(held);
    }

    /// What is no leftover of ours stays: a file that is locked, a link, one with another name.
    void WhatIsNotOursIsNotTakenAway() {
        const QString left = LeftByAKilledSave();
        QVERIFY(!left.isEmpty());
        const int held = OpenLocked(left);
        QVERIFY(held >= 0);
        QCOMPARE(Saved(theName), QString());
        QVERIFY(QFile::exists(left));  // somebody is still saving
        ::close(held);
        const QString stranger = theFolder->filePath(QStringLiteral("a.qvk.AbCdEf"));
        QVERIFY(QFile::copy(theName, stranger));
        QVERIFY(QFile::remove(left));
        QVERIFY(QFile::link(stranger, left));
        QCOMPARE(Saved(theName), QString());
        QVERIFY(QFileInfo(left).isSymLink());
        QVERIFY(QFile::exists(stranger));
        if (geteuid() != 0) return;
        QVERIFY(QFile::remove(left) && QFile::copy(theName, left));
        QCOMPARE(chown(QFile::encodeName(left).constData(), 65534, 65534), 0);
        QCOMPARE(Saved(theName), QString());
        QVERIFY(QFile::exists(left));
    }

private:
    static void RefuseUnnamedFiles() {
        sock_filter program[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])),
            BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_TMPFILE & ~O_DIRECTORY, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
        const sock_fprog filter{std::size(program), program};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
            _exit(1);
    }

    /// The temporary file of a save that was killed; empty if there is none.
    QString LeftByAKilledSave() const {
        const pid_t child = fork();
        if (child == 0) {
            RefuseUnnamedFiles();
            AnswerCalls({SYS_renameat2}, SECCOMP_RET_KILL_PROCESS);
            Saved(theName);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        for (const QString &name : Files()) {
            if (name != QStringLiteral("a.qvk")) return theFolder->filePath(name);
        }
        return QString();
    }

    /// Saves many times that letter; 0 if that went well.
    int ExitOfSave(char aLetter, bool aIsNotConfirmed) const {
        const QString text(10000, QLatin1Char(aLetter));
        QString refusal;
        if (!aIsNotConfirmed) {
            refusal = Saved(theName, text);
            if (!refusal.isEmpty()) qWarning() << refusal;
            return refusal.isEmpty() ? 0 : 1;
        }
        int flushes = 0;
        const bool broken = WithCalls(
            {SYS_fsync}, [&](const Call &) { return ++flushes >= 2 ? EIO : 0; },
            [&] { refusal = Saved(theName, text); });
        return !broken ? theNotWatched : refusal.isEmpty() ? 0 : 1;
    }

    /// A lock on the file that another save would hold; less than 0 if it cannot be had.
    static int OpenLocked(const QString &aName) {
        const int file = ::open(QFile::encodeName(aName).constData(), O_RDWR | O_CLOEXEC);
        if (file < 0 || flock(file, LOCK_EX | LOCK_NB) == 0) return file;
        ::close(file);
        return -1;
    }
    /// How many files of the folder somebody holds a lock on.
    int LockedFiles() const {
        int count = 0;
        for (const QString &name : Files()) {
            const int file = OpenLocked(theFolder->filePath(name));
            if (file < 0) ++count;
            if (file >= 0) ::close(file);
        }
        return count;
    }
    /// As many programs save: under another name, which is then changed.
    void PutThere(const char *aBytes) const {
        const QString name = theFolder->filePath(QStringLiteral("another"));
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) < 1) qFatal("cannot write");
        file.close();
        const QByteArray from = QFile::encodeName(name);
        if (chmod(from.constData(), 0600) != 0 ||
            rename(from.constData(), QFile::encodeName(theName).constData()) != 0)
            qFatal("cannot rename");
    }

    void MakeFolder(const QString &aWhere) {
        theFolder = std::make_unique<QTemporaryDir>(aWhere + QStringLiteral("/refusals-"));
        QVERIFY(theFolder->isValid());
        theName = theFolder->filePath(QStringLiteral("a.qvk"));
    }
    static QString FolderInMemory() {
        const QString memory = QStringLiteral("/dev/shm");
        return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    }

    QByteArray Bytes() const {
        QFile file(theName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList Files() const {
        return QDir(theFolder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    /// The file of before, with rights that no new file has.
    void MakeOld() const {
        QFile::remove(theName);
        QFile file(theName);
        if (!file.open(QIODevice::WriteOnly) || file.write(theOld) != qint64(std::strlen(theOld)))
            qFatal("cannot write");
        file.close();
        const QByteArray name = QFile::encodeName(theName);
        setxattr(name.constData(), "user.vk", "1", 1, 0);  // where the disk knows that
        if (geteuid() == 0 && chown(name.constData(), 0, 4711) != 0) qFatal("cannot chown");
        if (chmod(name.constData(), 0640) != 0) qFatal("cannot chmod");
        theAttribute = Attribute();
    }
    bool HasOldRights() const {
        struct stat stat {};
        return ::stat(QFile::encodeName(theName).constData(), &stat) == 0 &&
               (stat.st_mode & 07777) == 0640 && (geteuid() != 0 || stat.st_gid == 4711) &&
               Attribute() == theAttribute;
    }
    QByteArray Attribute() const {
        char value[8] = {};
        getxattr(QFile::encodeName(theName).constData(), "user.vk", value, sizeof value);
        return value;
    }

    /// The file is as it was, and nothing else was left in its folder.
    void OldFileIsThereAlone() const {
        QCOMPARE(Bytes(), QByteArray(theOld));
        QCOMPARE(Files(), QStringList{QStringLiteral("a.qvk")});
    }

    mutable QByteArray theAttribute;
    std::unique_ptr<QTemporaryDir> theFolder;
    QString theName;
};

VK_TEST_CLASS(TestSystemRefusals);

#include "TestSystemRefusals.moc"
