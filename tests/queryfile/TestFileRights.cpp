#include <cstring>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/FilesLibrary.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::AsNobody;

namespace {

constexpr uid_t theColleague = 4712;  // whom nobody knows
constexpr gid_t theGroup = 4711;      // in which nobody is
constexpr gid_t theNobodys = 65534;

const QByteArray theOldBytes = "the file as it was before";

QString Saved(const QString &aName) {
    try {
        DefaultFilesLibrary().SaveTextToFile(QStringLiteral("new"), aName, 1251);
    } catch (const Failure &failure) {
        return failure.Description();
    }
    return QString();
}

/// An access list as the system stores it: rights of the owner, the group, the mask and others, and
/// of one more user.
QByteArray AccessList(int aOwner, int aGroup, int aMask, int aOther, uid_t aUser, int aRights) {
    QByteArray list("\2\0\0\0", 4);
    const auto add = [&](int aTag, int aWhat, quint32 aId) {
        const quint16 head[] = {static_cast<quint16>(aTag), static_cast<quint16>(aWhat)};
        list.append(reinterpret_cast<const char *>(head), sizeof head);
        list.append(reinterpret_cast<const char *>(&aId), sizeof aId);
    };
    constexpr quint32 none = 0xFFFFFFFF;
    add(1, aOwner, none);
    add(2, aRights, aUser);
    add(4, aGroup, none);
    add(16, aMask, none);
    add(32, aOther, none);
    return list;
}

}  // namespace

/// Whose a file is, and who may do what with it, before and after it is replaced.
class TestFileRights : public QObject {
    Q_OBJECT

private slots:
    void init() {
        theFolder = std::make_unique<QTemporaryDir>();
        theName = QFile::encodeName(theFolder->filePath(QStringLiteral("a.qvk")));
        QFile file(QFile::decodeName(theName));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(theOldBytes) == theOldBytes.size());
        QCOMPARE(chmod(QFile::encodeName(theFolder->path()).constData(), 0777), 0);
    }

    void ModeStays_data() {
        QTest::addColumn<int>("mode");
        for (const int mode : {0600, 0640, 0664, 0666, 0777, 02660, 04711, 0200})
            QTest::addRow("%o", static_cast<unsigned>(mode)) << mode;
    }
    void ModeStays() {
        QFETCH(int, mode);
        QCOMPARE(chmod(theName.constData(), static_cast<mode_t>(mode)), 0);
        QCOMPARE(Saved(QFile::decodeName(theName)), QString());
        QCOMPARE(int(Stat().st_mode & 07777), mode);
        IsReplaced(true);
    }

    void OwnerAndGroupStayForWhoMayKeepThem() {
        if (geteuid() != 0) QSKIP("needs a file of another user");
        QCOMPARE(chown(theName.constData(), theColleague, theGroup), 0);
        QCOMPARE(chmod(theName.constData(), 02664), 0);
        QCOMPARE(Saved(QFile::decodeName(theName)), QString());
        QCOMPARE(Stat().st_uid, theColleague);
        QCOMPARE(Stat().st_gid, theGroup);
        QCOMPARE(int(Stat().st_mode & 07777), 02664);
        IsReplaced(true);
    }

    /// A user of few rights saves the file of a colleague, or of a group that is not theirs.
    void SomebodyElsesFile_data() {
        QTest::addColumn<int>("owner");
        QTest::addColumn<int>("group");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QByteArray>("list");
        QTest::addColumn<QString>("reason");
        const auto row = [](const char *aName, uid_t aOwner, gid_t aGroup, int aMode,
                            const QByteArray &aList, const QString &aReason) {
            QTest::newRow(aName) << int(aOwner) << int(aGroup) << aMode << aList << aReason;
        };
        const QString group = QStringLiteral(
            "Файл не заменен: оставить его за группой \"4711\" нет прав, и коллеги потеряли бы к "
            "нему доступ.");
        const QString owner =
            QStringLiteral("Файл не заменен: его владелец \"4712\" потерял бы к нему доступ.");
        row("group that is not ours", theNobodys, theGroup, 0666, {}, group);
        row("owner and others alike", theColleague, theNobodys, 0666, {}, QString());
        row("owner outside of the group", theColleague, theNobodys, 0660, {}, owner);
        row("owner who may only read", theColleague, theNobodys, 0464, {}, QString());
        row("owner with a line of the list", theColleague, theNobodys, 0660,
            AccessList(6, 6, 6, 0, theColleague, 6), QString());
        row("owner whose line is masked", theColleague, theNobodys, 0660,
            AccessList(6, 6, 6, 0, theColleague, 4), owner);
        row("owner without a line of the list", theColleague, theNobodys, 0660,
            AccessList(6, 6, 6, 0, theNobodys, 6), owner);
    }
    void SomebodyElsesFile() {
        if (geteuid() != 0) QSKIP("needs a file of another user");
        QFETCH(int, owner);
        QFETCH(int, group);
        QFETCH(int, mode);
        QFETCH(QByteArray, list);
        QFETCH(QString, reason);
        QCOMPARE(chown(theName.constData(), uid_t(owner), gid_t(group)), 0);
        QCOMPARE(chmod(theName.constData(), mode_t(mode)), 0);
        if (!list.isEmpty() && !SetAccess(theName, "system.posix_acl_access", list))
            QSKIP("the disk knows no access lists");
        QString raised;
        {
            const AsNobody nobody;
            raised = Saved(QFile::decodeName(theName));
        }
        QCOMPARE(raised, reason);
        QCOMPARE(Stat().st_gid, gid_t(group));
        QCOMPARE(int(Stat().st_mode & 07777), mode);
        QCOMPARE(Attribute("system.posix_acl_access"), list);
        IsReplaced(reason.isEmpty());
    }

    /// The system takes the bit of the group away from who is not in it.
    void BitOfAGroupThatIsNotOurs() {
        if (geteuid() != 0) QSKIP("needs a file of another group");
        const QByteArray folder = QFile::encodeName(theFolder->path());
        QCOMPARE(chown(folder.constData(), 0, theGroup), 0);
        QCOMPARE(chmod(folder.constData(), 02777), 0);
        QCOMPARE(chown(theName.constData(), theNobodys, theGroup), 0);
        QCOMPARE(chmod(theName.constData(), 02666), 0);
        QString raised;
        {
            const AsNobody nobody;
            raised = Saved(QFile::decodeName(theName));
        }
        QCOMPARE(raised,
                 QStringLiteral("Файл не заменен: оставить ему прежние права доступа нельзя."));
        QCOMPARE(int(Stat().st_mode & 07777), 02666);
        IsReplaced(false);
    }

    void AttributesStay() {
        if (!SetAccess(theName, "user.origin", "отчёт") || !SetAccess(theName, "user.empty", ""))
            QSKIP("the disk knows no attributes");
        QCOMPARE(Saved(QFile::decodeName(theName)), QString());
        QCOMPARE(Attribute("user.origin"), QByteArray("отчёт"));
        QCOMPARE(getxattr(theName.constData(), "user.empty", nullptr, 0), ssize_t(0));
        IsReplaced(true);
    }

    void AccessListStays() {
        const QByteArray list = AccessList(6, 4, 6, 0, theColleague, 6);
        if (!SetAccess(theName, "system.posix_acl_access", list))
            QSKIP("the disk knows no access lists");
        const mode_t mode = Stat().st_mode;
        QCOMPARE(Saved(QFile::decodeName(theName)), QString());
        QCOMPARE(Attribute("system.posix_acl_access"), list);
        QCOMPARE(Stat().st_mode, mode);
        IsReplaced(true);
    }

    /// What the folder hands down to new files does not open a file that was closed.
    void ListOfTheFolderIsNotHandedDown() {
        const QByteArray list = AccessList(7, 7, 7, 7, theColleague, 7);
        if (!SetAccess(QFile::encodeName(theFolder->path()), "system.posix_acl_default", list))
            QSKIP("the disk knows no access lists");
        QCOMPARE(chmod(theName.constData(), 0600), 0);
        QCOMPARE(Saved(QFile::decodeName(theName)), QString());
        QCOMPARE(Attribute("system.posix_acl_access"), QByteArray());
        QCOMPARE(int(Stat().st_mode & 07777), 0600);
        IsReplaced(true);
        const QString fresh = theFolder->filePath(QStringLiteral("b.qvk"));
        QCOMPARE(Saved(fresh), QString());  // a new one takes it
        QVERIFY(getxattr(QFile::encodeName(fresh).constData(), "system.posix_acl_access", nullptr,
                         0) > 0);
    }

private:
    static bool SetAccess(const QByteArray &aName, const char *aWhat, const QByteArray &aValue) {
        return setxattr(aName.constData(), aWhat, aValue.constData(),
                        static_cast<std::size_t>(aValue.size()), 0) == 0;
    }
    QByteArray Attribute(const char *aName) const {
        char value[256];
        const ssize_t size = getxattr(theName.constData(), aName, value, sizeof value);
        return size < 0 ? QByteArray() : QByteArray(value, size);
    }
    struct stat Stat() const {
        struct stat stat {};
        if (::stat(theName.constData(), &stat) != 0) qFatal("no file");
        return stat;
    }
    void IsReplaced(bool aExpected) const {
        QFile file(QFile::decodeName(theName));
        chmod(theName.constData(), 0600);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), aExpected ? QByteArray("new") : theOldBytes);
    }

    std::unique_ptr<QTemporaryDir> theFolder;
    QByteArray theName;
};

VK_TEST_CLASS(TestFileRights);

#include "TestFileRights.moc"
