#include "foundation/FileRights.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>
#include <vector>

#ifdef __linux__
#include <sys/xattr.h>
#endif

#include <QList>

#include "foundation/FilesFailure.h"

namespace Vk_DocQuery {

namespace {

constexpr mode_t theModeBits = 07777;
constexpr char theAccessList[] = "system.posix_acl_access";

#ifdef __linux__

/// What the kernel says about a content; it cannot be taken over to another one.
bool IsOfContent(const QByteArray &aName) {
    return aName == "security.ima" || aName == "security.evm";
}

bool AreNotKnown(int aCode) {
    return aCode == EOPNOTSUPP || aCode == ENOSYS;
}

[[noreturn]] void RaiseNotLearned(int aCode) {
    RaiseSystem(QStringLiteral("Свойства файла не удалось узнать"), aCode);
}

/// Calls aRead with a buffer and its size until what it gives fits.
template <class Read>
QByteArray Whole(Read aRead) {
    for (;;) {
        const ssize_t size = aRead(nullptr, 0);
        if (size < 0) return QByteArray();
        QByteArray bytes(size, '\0');
        const ssize_t got = aRead(bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (got < 0 && errno == ERANGE) continue;  // it has grown in between
        return got < 0 ? QByteArray() : bytes.left(got);
    }
}

/// aList gives the names, aGet the value of one, as the calls of the system do.
template <class List, class Get>
std::map<QByteArray, QByteArray> AttributesBy(List aList, Get aGet) {
    std::map<QByteArray, QByteArray> attributes;
    errno = 0;
    const QByteArray names = Whole(aList);
    if (names.isEmpty() && errno != 0 && !AreNotKnown(errno)) RaiseNotLearned(errno);
    for (const QByteArray &name : names.split('\0')) {
        if (name.isEmpty() || IsOfContent(name)) continue;
        errno = 0;
        const QByteArray value =
            Whole([&](char *aTo, std::size_t aSize) { return aGet(name.constData(), aTo, aSize); });
        if (value.isEmpty() && errno == ENODATA) continue;  // gone in between
        if (value.isEmpty() && errno != 0) RaiseNotLearned(errno);
        attributes[name] = value;
    }
    return attributes;
}

[[noreturn]] void RaiseAttributeLost(const QByteArray &aName, int aCode) {
    if (aCode == ENOSPC || aCode == EDQUOT) RaiseSystem(QString(), aCode);
    RaiseFiles(PermissionDenied,
               QStringLiteral("Файл не заменен: не удалось сохранить его свойство \"%1\": %2.")
                   .arg(QString::fromUtf8(aName), SystemReason(aCode)));
}

void GiveAttributes(int aFile, const FileRights &aRights) {
    const auto given =
        AttributesBy([=](char *aTo, std::size_t aSize) { return flistxattr(aFile, aTo, aSize); },
                     [=](const char *aName, char *aTo, std::size_t aSize) {
                         return fgetxattr(aFile, aName, aTo, aSize);
                     });
    for (const auto &[name, value] : given) {  // what the folder hands down
        if (aRights.Attributes.count(name) == 0 && fremovexattr(aFile, name.constData()) != 0)
            RaiseAttributeLost(name, errno);
    }
    for (const auto &[name, value] : aRights.Attributes) {
        const auto has = given.find(name);
        if (has != given.end() && has->second == value) continue;
        if (fsetxattr(aFile, name.constData(), value.constData(),
                      static_cast<std::size_t>(value.size()), 0) != 0)
            RaiseAttributeLost(name, errno);
    }
}

#endif

QString NameOfGroup(gid_t aGroup) {
    const group *entry = getgrgid(aGroup);
    return entry ? QString::fromLocal8Bit(entry->gr_name) : QString::number(aGroup);
}

QString NameOfUser(uid_t aUser) {
    const passwd *entry = getpwuid(aUser);
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(aUser);
}

std::vector<gid_t> GroupsOf(uid_t aUser) {
    const passwd *entry = getpwuid(aUser);
    if (!entry) return {};
    int count = 64;
    std::vector<gid_t> groups(static_cast<std::size_t>(count));
    while (getgrouplist(entry->pw_name, entry->pw_gid, groups.data(), &count) < 0)
        groups.resize(std::max(groups.size() * 2, static_cast<std::size_t>(count)));
    groups.resize(static_cast<std::size_t>(count));
    return groups;
}

/// One line of an access list, as the system stores it.
struct AccessEntry {
    quint16 Tag;
    quint16 Rights;
    quint32 Id;
};

enum AccessTag : quint16 { User = 2, OwningGroup = 4, Group = 8, Mask = 16, Other = 32 };

std::vector<AccessEntry> AccessOf(const FileRights &aRights) {
    const auto bits = [&](int aShift) {
        return static_cast<quint16>((aRights.Stat.st_mode >> static_cast<unsigned>(aShift)) & 7U);
    };
    const auto list = aRights.Attributes.find(theAccessList);
    if (list == aRights.Attributes.end()) return {{OwningGroup, bits(3), 0}, {Other, bits(0), 0}};
    constexpr qsizetype header = 4;
    const qsizetype count = (list->second.size() - header) / qsizetype{sizeof(AccessEntry)};
    std::vector<AccessEntry> entries(static_cast<std::size_t>(std::max<qsizetype>(count, 0)));
    std::memcpy(entries.data(), list->second.constData() + header,
                entries.size() * sizeof(AccessEntry));
    return entries;
}

/// Whether the owner could still do with the file what it could, once the file is another's.
bool OwnerKeepsAccess(const FileRights &aRights) {
    const quint16 wanted = (aRights.Stat.st_mode >> 6U) & 6U;
    const std::vector<gid_t> groups = GroupsOf(aRights.Stat.st_uid);
    const auto isIn = [&](gid_t aGroup) {
        return std::find(groups.begin(), groups.end(), aGroup) != groups.end();
    };
    quint16 mask = 7;
    quint16 others = 0;
    bool isNamed = false;
    bool isGranted = false;
    const std::vector<AccessEntry> entries = AccessOf(aRights);
    for (const AccessEntry &entry : entries) {
        if (entry.Tag == Mask) mask = entry.Rights;
        if (entry.Tag == Other) others = entry.Rights;
    }
    for (const AccessEntry &entry : entries) {
        if (entry.Tag == User && entry.Id == aRights.Stat.st_uid)
            return (entry.Rights & mask & wanted) == wanted;
        const bool isGroup = (entry.Tag == OwningGroup && isIn(aRights.Stat.st_gid)) ||
                             (entry.Tag == Group && isIn(entry.Id));
        isNamed = isNamed || isGroup;
        isGranted = isGranted || (isGroup && (entry.Rights & mask & wanted) == wanted);
    }
    return isNamed ? isGranted : (others & wanted) == wanted;
}

void GiveOwnerAndGroup(int aFile, const struct stat &aHas, const FileRights &aRights) {
    const struct stat &wanted = aRights.Stat;
    if (aHas.st_uid != wanted.st_uid) {
        if (fchown(aFile, wanted.st_uid, wanted.st_gid) == 0) return;
        if (!OwnerKeepsAccess(aRights)) {
            RaiseFiles(PermissionDenied,
                       QStringLiteral("Файл не заменен: его владелец \"%1\" потерял бы к нему "
                                      "доступ.")
                           .arg(NameOfUser(wanted.st_uid)));
        }
    }
    if (aHas.st_gid == wanted.st_gid) return;
    if (fchown(aFile, static_cast<uid_t>(-1), wanted.st_gid) != 0) {
        if (errno != EPERM && errno != EINVAL)
            RaiseSystem(QStringLiteral("Группу файла не удалось сохранить"), errno);
        RaiseFiles(PermissionDenied,
                   QStringLiteral("Файл не заменен: оставить его за группой \"%1\" нет прав, и "
                                  "коллеги потеряли бы к нему доступ.")
                       .arg(NameOfGroup(wanted.st_gid)));
    }
}

struct stat StatOf(int aFile) {
    struct stat stat {};
    if (fstat(aFile, &stat) != 0)
        RaiseSystem(QStringLiteral("Свойства нового файла не удалось узнать"), errno);
    return stat;
}

void GiveMode(int aFile, const FileRights &aRights) {
    const mode_t mode = aRights.Stat.st_mode & theModeBits;
    if ((StatOf(aFile).st_mode & theModeBits) == mode) return;
    if (fchmod(aFile, mode) != 0)
        RaiseSystem(QStringLiteral("Права доступа к файлу не удалось сохранить"), errno);
    // The system takes the bit of the group away from who is not in it, and says nothing.
    if ((StatOf(aFile).st_mode & theModeBits) != mode) {
        RaiseFiles(PermissionDenied,
                   QStringLiteral("Файл не заменен: оставить ему прежние права доступа нельзя."));
    }
}

}  // namespace

FileRights RightsOf(const QByteArray &aPath, const struct stat &aStat) {
    FileRights rights{aStat, {}};
#ifdef __linux__
    const char *path = aPath.constData();
    rights.Attributes =
        AttributesBy([=](char *aTo, std::size_t aSize) { return llistxattr(path, aTo, aSize); },
                     [=](const char *aName, char *aTo, std::size_t aSize) {
                         return lgetxattr(path, aName, aTo, aSize);
                     });
#else
    Q_UNUSED(aPath);
#endif
    return rights;
}

void GiveRights(int aFile, const FileRights &aRights) {
    GiveOwnerAndGroup(aFile, StatOf(aFile), aRights);
#ifdef __linux__
    GiveAttributes(aFile, aRights);
#endif
    GiveMode(aFile, aRights);  // last: a new owner takes bits of the mode away
}

}  // namespace Vk_DocQuery
