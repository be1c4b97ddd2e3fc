#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "foundation/FileReplacement.h"
#include "foundation/FileRights.h"
#include "foundation/FilesFailure.h"

namespace Vk_DocQuery {

namespace {

constexpr int theMostLinks = 40;
constexpr int theMostSaves = 10;        // of one file at a time
constexpr int theLongestTurn = 2000;    // milliseconds that another save is waited for
constexpr int theTimeBetweenLooks = 5;  // milliseconds

const QString theNotCreated = QStringLiteral("Файл не удалось создать");
const QString theNotWritten = QStringLiteral("Файл не удалось записать");
const QString theNotReplaced = QStringLiteral("Файл не удалось заменить");
const QString theNotFound = QStringLiteral("Файл не удалось найти");

/// The whole path. What stands in front of a ".." may be a link or missing, so it is shown as well.
QString Shown(const QByteArray &aPath) {
    const QString path = QFile::decodeName(aPath);
    const QString whole = aPath.startsWith('/') ? path : QDir::currentPath() + u'/' + path;
    return aPath.contains("..") ? whole : QDir::cleanPath(whole);
}

/// An open file of the system.
class Handle {
public:
    explicit Handle(int aFile = -1) : theFile(aFile) {}
    Handle(Handle &&aOther) noexcept : theFile(std::exchange(aOther.theFile, -1)) {}
    Handle &operator=(Handle &&aOther) noexcept {
        std::swap(theFile, aOther.theFile);
        return *this;
    }
    ~Handle() { Close(); }
    operator int() const { return theFile; }
    /// 0, or why the system could not close it.
    int Close() {
        const int file = std::exchange(theFile, -1);
        return file < 0 || close(file) == 0 || errno == EINTR ? 0 : errno;
    }

private:
    int theFile;
};

/// A file by its name in the folder in which it truly stands.
struct Place {
    QByteArray Folder;
    QByteArray Name;
    QByteArray Path() const { return Folder + '/' + Name; }
};

Place Split(const QByteArray &aPath) {
    const qsizetype slash = aPath.lastIndexOf('/');
    if (slash < 0) return {".", aPath};
    return {slash == 0 ? QByteArray("/") : aPath.left(slash), aPath.mid(slash + 1)};
}

/// The path without links, as the file system finds it; empty, with errno, where there is nothing.
QByteArray RealPath(const QByteArray &aPath) {
    const std::unique_ptr<char, decltype(&std::free)> path(realpath(aPath.constData(), nullptr),
                                                           &std::free);
    return QByteArray(path.get());
}

[[noreturn]] void RaiseCircle() {
    RaiseFiles(NotAFile, QStringLiteral("По этому пути находится ссылка, которая ведет по кругу."));
}

/// Says why there is no folder, or why nobody can get into it.
[[noreturn]] void RaiseNoFolder(const QByteArray &aFolder, int aCode) {
    if (aCode == ELOOP) RaiseCircle();
    if (aCode == ENOENT && !aFolder.startsWith('/') && RealPath(".").isEmpty()) {
        RaiseFiles(FolderMissing,
                   QStringLiteral("Текущая папка программы удалена или недоступна. Укажите полный "
                                  "путь к файлу."));
    }
    if (aCode == ENOENT || aCode == ENOTDIR)
        RaiseFiles(FolderMissing, QStringLiteral("Папка \"%1\" не найдена.").arg(Shown(aFolder)));
    if (aCode == EACCES) {
        RaiseFiles(PermissionDenied,
                   QStringLiteral("Нет прав на доступ к папке \"%1\".").arg(Shown(aFolder)));
    }
    RaiseSystem(theNotFound, aCode);
}

/// What a link says; empty if the file is none.
QByteArray LinkTarget(const QByteArray &aPath) {
    std::array<char, 4096> target;
    const ssize_t size = readlink(aPath.constData(), target.data(), target.size());
    if (size >= 0) return QByteArray(target.data(), size);
    // Of a folder that nobody gets into the caller speaks.
    if (errno != EINVAL && errno != ENOENT && errno != ENOTDIR && errno != EACCES)
        RaiseSystem(theNotFound, errno);
    return QByteArray();
}

/// Where the file is, or where it will be: a link that leads nowhere yet is followed to its end.
Place PlaceOf(const QString &aFileName) {
    if (aFileName.isEmpty()) RaiseFiles(InvalidArgument, QStringLiteral("Имя файла не задано."));
    // Half a character would become another name.
    if (aFileName.contains(QChar(0)) || !aFileName.isValidUtf16())
        RaiseFiles(InvalidArgument, QStringLiteral("В имени файла есть недопустимый знак."));
    QByteArray path = QFile::encodeName(aFileName);
    for (int link = 0; link < theMostLinks; ++link) {
        const QByteArray real = RealPath(path);
        if (!real.isEmpty()) return Split(real);
        const int code = errno;
        const Place named = Split(path);
        const QByteArray folder = named.Name.isEmpty() ? QByteArray() : RealPath(named.Folder);
        if (folder.isEmpty()) RaiseNoFolder(named.Folder, errno);
        const Place place{folder, named.Name};
        const QByteArray target = code == ELOOP ? QByteArray() : LinkTarget(place.Path());
        if (target.isEmpty() && code != ENOENT) RaiseNoFolder(folder, code);
        if (target.isEmpty()) return place;
        path = target.startsWith('/') ? target : folder + '/' + target;
    }
    RaiseCircle();
}

bool IsGone(const QByteArray &aPath) {
    struct stat stat {};
    return lstat(aPath.constData(), &stat) != 0 && errno == ENOENT;
}

/// The file that is to be replaced; none where there is none, or not any more: another save may
/// take its own back. Whether one has come is asked again before anything is replaced. Raises a
/// failure for what cannot be replaced.
std::optional<FileRights> OldFile(const Place &aPlace) {
    const QByteArray path = aPlace.Path();
    struct stat stat {};
    if (lstat(path.constData(), &stat) != 0) {
        if (errno == ENOENT) return std::nullopt;
        RaiseSystem(QStringLiteral("Свойства файла не удалось узнать"), errno);
    }
    if (S_ISDIR(stat.st_mode))
        RaiseFiles(NotAFile, QStringLiteral("По этому пути находится папка, а не файл."));
    if (!S_ISREG(stat.st_mode)) {
        RaiseFiles(
            NotAFile,
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
    }
    if (access(path.constData(), W_OK) != 0) {
        if (errno == ENOENT) return std::nullopt;
        if (errno == EACCES || errno == EPERM)
            RaiseFiles(PermissionDenied, QStringLiteral("Файл доступен только для чтения."));
        RaiseSystem(theNotWritten, errno);
    }
    try {
        return RightsOf(path, stat);
    } catch (const Failure &) {
        if (IsGone(path)) return std::nullopt;
        throw;
    }
}

/// A folder, for calls that take names in it.
class Folder {
public:
    explicit Folder(const QByteArray &aPath)
        : thePath(aPath),
          theHandle(open(aPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          theCanBeRead(theHandle >= 0) {
#ifdef O_PATH
        // Files may be made in a folder whose list may not be seen.
        if (theHandle < 0 && errno == EACCES)
            theHandle = Handle(open(aPath.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
#endif
        if (theHandle < 0) RaiseNoFolder(aPath, errno);
    }
    operator int() const {
        return theHandle;
    }
    const QByteArray &Path() const {
        return thePath;
    }

    /// Brings the names in it to the disk; aFile is a file in it. 0, or why it could not.
    int Sync(int aFile) const {
        int result = 0;
        do {
#ifdef __linux__
            result = theCanBeRead ? fsync(theHandle) : syncfs(aFile);
#else
            result = theCanBeRead ? fsync(theHandle) : fsync(aFile);
#endif
        } while (result != 0 && errno == EINTR);
        const bool isNotKnown = result != 0 && (errno == EINVAL || errno == EOPNOTSUPP);
        return result == 0 || isNotKnown ? 0 : errno;
    }

private:
    QByteArray thePath;
    Handle theHandle;
    bool theCanBeRead;
};

/// The names that files of a save have, beside the file and short enough for any. They are the same
/// for every save of that file, so that what a killed one has left is found again.
QByteArray TemporaryName(const QByteArray &aName, int aSave) {
    const QByteArray hash = QCryptographicHash::hash(aName, QCryptographicHash::Md5).toHex();
    return ".qvk-" + hash.left(16) + '-' + QByteArray::number(aSave);
}

bool IsSameFile(const struct stat &aOne, const struct stat &aOther) {
    return aOne.st_dev == aOther.st_dev && aOne.st_ino == aOther.st_ino;
}

/// Whether the name stands for the open file.
bool StandsFor(int aFolder, const QByteArray &aName, int aFile) {
    struct stat named {};
    struct stat opened {};
    return fstat(aFile, &opened) == 0 &&
           fstatat(aFolder, aName.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           IsSameFile(named, opened);
}

/// Opens the file for no more than a lock.
Handle OpenToLock(int aFolder, const QByteArray &aName) {
    constexpr int options = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Handle file(openat(aFolder, aName.constData(), O_RDWR | options));
    if (file < 0) file = Handle(openat(aFolder, aName.constData(), O_RDONLY | options));
    return file;
}

/// Takes away what killed saves of this file and this user have left. What a save that goes on has
/// under such a name it holds a lock on, so that the name of a file that is locked here stands for
/// it until it is taken away.
void ClearLeftovers(const Folder &aFolder, const QByteArray &aName) {
    for (int save = 0; save < theMostSaves; ++save) {
        const QByteArray name = TemporaryName(aName, save);
        struct stat seen {};
        if (fstatat(aFolder, name.constData(), &seen, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISREG(seen.st_mode) || seen.st_uid != geteuid())
            continue;
        const Handle file = OpenToLock(aFolder, name);
        struct stat opened {};
        if (file >= 0 && flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &opened) == 0 &&
            IsSameFile(seen, opened) && StandsFor(aFolder, name, file))
            unlinkat(aFolder, name.constData(), 0);
    }
}

/// Holds back the signal that ends a program whose file grows beyond a limit of its user; the call
/// that writes tells it as well.
class LimitSignal {
public:
    LimitSignal() {
        sigemptyset(&theSignal);
        sigaddset(&theSignal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &theSignal, &theBefore);
    }
    ~LimitSignal() {
        sigset_t pending;
        int taken = 0;
        if (sigismember(&theBefore, SIGXFSZ) == 0 && sigpending(&pending) == 0 &&
            sigismember(&pending, SIGXFSZ) == 1)
            sigwait(&theSignal, &taken);
        pthread_sigmask(SIG_SETMASK, &theBefore, nullptr);
    }
    Q_DISABLE_COPY_MOVE(LimitSignal)

private:
    sigset_t theSignal{};
    sigset_t theBefore{};
};

/// The new file on its way. It has no name where the system can do that, so that nothing stays of
/// it when the program is killed; what it is given before it takes the place of the old one is a
/// name of a save.
class NewFile {
public:
    NewFile(const Folder &aFolder, const QByteArray &aName) : theFolder(aFolder), theName(aName) {}
    ~NewFile() {
        if (!theTemporary.isEmpty()) unlinkat(theFolder, theTemporary.constData(), 0);
    }
    Q_DISABLE_COPY_MOVE(NewFile)

    /// False where the system makes no files without a name.
    bool OpenUnnamed(mode_t aMode) {
#ifdef O_TMPFILE
        theFile = Handle(openat(theFolder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, aMode));
        if (theFile >= 0) {
            Lock();
            return true;
        }
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOENT &&
            errno != ENOSYS)
            RaiseNotCreated(errno);
#else
        Q_UNUSED(aMode);
#endif
        return false;
    }

    void OpenNamed(mode_t aMode) {
        constexpr int options = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        for (int save = 0; save < theMostSaves; ++save) {
            const QByteArray name = TemporaryName(theName, save);
            theFile = Handle(openat(theFolder, name.constData(), options, aMode));
            if (theFile < 0 && errno != EEXIST) RaiseNotCreated(errno);
            if (theFile < 0) continue;
            theTemporary = name;
            if (Lock()) return;
            theTemporary.clear();  // somebody took it for a leftover
        }
        RaiseNotCreated(EEXIST);
    }

    void Write(const QByteArray &aBytes) const {
        const LimitSignal held;
        qsizetype written = 0;
        while (written < aBytes.size()) {
            const ssize_t count = write(theFile, aBytes.constData() + written,
                                        static_cast<std::size_t>(aBytes.size() - written));
            if (count > 0) written += count;
            if (count == 0 || (count < 0 && errno != EINTR))
                RaiseSystem(theNotWritten, count == 0 ? EIO : errno);
        }
    }

    void TakeOver(const FileRights &aRights) const {
        GiveRights(theFile, aRights);
    }

    /// Brings it to the disk. The lock lives on in another handle.
    void Finish() {
        int result = 0;
        do {
            result = fsync(theFile);
        } while (result != 0 && errno == EINTR);
        if (result != 0 && errno != EINVAL && errno != EOPNOTSUPP)
            RaiseSystem(theNotWritten, errno);
        const int code = theFile.Close();
        if (code != 0) RaiseSystem(theNotWritten, code);
    }

    /// Gives it a name. False where the system cannot do that to a file without one.
    bool Name() {
        const QByteArray file = "/proc/self/fd/" + QByteArray::number(int{theLock});
        for (int save = 0; theTemporary.isEmpty() && save < theMostSaves; ++save) {
            const QByteArray name = TemporaryName(theName, save);
            if (linkat(AT_FDCWD, file.constData(), theFolder, name.constData(),
                       AT_SYMLINK_FOLLOW) == 0) {
                theTemporary = name;
            } else if (errno == ENOENT || errno == EOPNOTSUPP || errno == ENOSYS ||
                       errno == EPERM || errno == EXDEV) {
                return false;
            } else if (errno != EEXIST) {
                RaiseNotReplaced(errno);
            }
        }
        if (theTemporary.isEmpty()) RaiseNotCreated(EEXIST);
        return true;
    }

    /// Puts it in the place of what is there. They change their names, where the system can do
    /// that: as long as the disk has not confirmed the new one, the old one is there to be put
    /// back. aIsKnown tells that there was a file whose rights the new one has. False if other
    /// programs were in the way, so that all has to be done again.
    bool Replace(bool aIsKnown) {
        const bool isThere = HasTurn();
        if (isThere && !aIsKnown) return false;
        const std::optional<bool> isKept = Placed(isThere);
        if (!isKept) return false;
        if (*isKept) HoldOld();
        const int code = theFolder.Sync(theLock);
        if (code != 0) {
            if (!IsUndone(isThere, *isKept)) RaiseNotConfirmed(code);
            RaiseNotReplaced(code);
        }
        if (*isKept) RemoveOld();
        theTemporary.clear();
        return true;
    }

private:
    /// Whether there is a file of that name. If so, it is locked until all is done, and another
    /// save that would replace it, or what has been put in its place, waits: it must not come
    /// between this one and its undoing. A lock that is not a save's is not waited for any longer,
    /// and not every disk knows locks.
    bool HasTurn() {
        const QDeadlineTimer patience(theLongestTurn);
        for (;;) {
            theTurn = OpenToLock(theFolder, theName);
            if (theTurn < 0) return errno != ENOENT;
            while (flock(theTurn, LOCK_EX | LOCK_NB) != 0) {
                if (errno != EWOULDBLOCK || patience.hasExpired()) return true;
                poll(nullptr, 0, theTimeBetweenLooks);
            }
            if (StandsFor(theFolder, theName, theTurn) || patience.hasExpired()) return true;
        }
    }

    /// Whether the old file is kept under the name of the save; nothing if other programs were in
    /// the way.
    std::optional<bool> Placed(bool aIsThere) {
        const int code = Rename(aIsThere ? Exchange : NoReplace);
        if (code == 0) return aIsThere;
        if (code == ENOENT || code == EEXIST) return IsInTheWay();
        if (code != EINVAL && code != ENOSYS && code != EOPNOTSUPP) RaiseNotReplaced(code);
        if (renameat(theFolder, theTemporary.constData(), theFolder, theName.constData()) == 0)
            return false;
        if (errno == ENOENT) return IsInTheWay();
        RaiseNotReplaced(errno);
    }

    /// Of a new file that somebody has taken away, the name is not ours any more.
    std::optional<bool> IsInTheWay() {
        struct stat stat {};
        if (fstat(theLock, &stat) == 0 && stat.st_nlink == 0) theTemporary.clear();
        return std::nullopt;
    }

    /// Whether the file is locked and has not been taken away before that.
    bool Lock() {
        theLock = Handle(fcntl(theFile, F_DUPFD_CLOEXEC, 0));
        if (theLock < 0) RaiseNotCreated(errno);
        if (flock(theLock, LOCK_EX | LOCK_NB) != 0) return errno != EWOULDBLOCK;
        struct stat stat {};
        return theTemporary.isEmpty() || (fstat(theLock, &stat) == 0 && stat.st_nlink > 0);
    }

#ifdef RENAME_EXCHANGE
    enum Renaming : unsigned int { Exchange = RENAME_EXCHANGE, NoReplace = RENAME_NOREPLACE };
#else
    enum Renaming : unsigned int { Exchange, NoReplace };
#endif

    /// Gives the new file the name of the save, and what is there the other, or nothing if anything
    /// is there. 0, or why it could not.
    int Rename(Renaming aRenaming) const {
#ifdef RENAME_EXCHANGE
        const int result = renameat2(theFolder, theTemporary.constData(), theFolder,
                                     theName.constData(), aRenaming);
        return result == 0 ? 0 : errno;
#else
        Q_UNUSED(aRenaming);
        return ENOSYS;
#endif
    }

    /// Puts back what was, as far as that can be. What another program has put there since stays.
    bool IsUndone(bool aWasThere, bool aIsKept) {
        const bool isOurs = StandsFor(theFolder, theName, theLock);
        if (aIsKept) return !isOurs || Rename(Exchange) == 0;
        theTemporary.clear();  // the file has its own name now
        return !isOurs || (!aWasThere && unlinkat(theFolder, theName.constData(), 0) == 0);
    }

    /// Holds the file that has the name of the save now. It need not be the one that was locked:
    /// other programs save as well.
    void HoldOld() {
#ifdef O_PATH
        theOld =
            Handle(openat(theFolder, theTemporary.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
#endif
    }

    /// Takes it away, unless somebody took it for a leftover and the name is another's by now.
    void RemoveOld() const {
        const int old = theOld >= 0 ? theOld : theTurn;  // no more files may be open
        if (old >= 0 && StandsFor(theFolder, theTemporary, old))
            unlinkat(theFolder, theTemporary.constData(), 0);
    }

    [[noreturn]] void RaiseNotCreated(int aCode) const {
        if (aCode == EACCES || aCode == EPERM) {
            RaiseFiles(
                PermissionDenied,
                QStringLiteral("Нет прав на запись в папку \"%1\".").arg(Shown(theFolder.Path())));
        }
        RaiseSystem(theNotCreated, aCode);
    }

    [[noreturn]] void RaiseNotReplaced(int aCode) const {
        if (aCode == EPERM || aCode == EACCES) {
            RaiseFiles(PermissionDenied,
                       QStringLiteral("Файл не удалось заменить: нет прав на его удаление."));
        }
        if (aCode == EBUSY && IsMounted()) {
            RaiseFiles(NotAFile,
                       QStringLiteral("Файл не удалось заменить: он подключен к этой папке как "
                                      "отдельный диск. Сохраните под другим именем."));
        }
        RaiseSystem(theNotReplaced, aCode);
    }

    /// Whether another file was put over this one, as containers do: its name cannot be changed.
    bool IsMounted() const {
#ifdef STATX_ATTR_MOUNT_ROOT
        struct statx found {};
        return statx(theFolder, theName.constData(), AT_SYMLINK_NOFOLLOW, 0, &found) == 0 &&
               (found.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
#else
        return false;
#endif
    }

    [[noreturn]] static void RaiseNotConfirmed(int aCode) {
        RaiseFiles(WriteFailed, QStringLiteral("Файл записан, но диск этого не подтвердил: %1.")
                                    .arg(SystemReason(aCode)));
    }

    const Folder &theFolder;
    QByteArray theName;
    Handle theFile;
    Handle theLock;
    Handle theTurn;
    Handle theOld;
    QByteArray theTemporary;  // the name that it has; made before, since memory may be gone then
};

/// One try; false if other programs were in its way.
bool HasReplaced(const Folder &aFolder, const Place &aPlace, const std::optional<FileRights> &aOld,
                 const QByteArray &aBytes) {
    const mode_t mode = aOld ? 0600 : 0666;  // of a file that was, the right one follows
    for (const bool isUnnamed : {true, false}) {
        NewFile file(aFolder, aPlace.Name);
        if (isUnnamed && !file.OpenUnnamed(mode)) continue;
        if (!isUnnamed) file.OpenNamed(mode);
        file.Write(aBytes);
        if (aOld) file.TakeOver(*aOld);
        file.Finish();
        if (!file.Name()) continue;
        return file.Replace(aOld.has_value());
    }
    return false;
}

}  // namespace

void ReplaceFile(const QString &aFileName, const QByteArray &aBytes) {
    const Place place = PlaceOf(aFileName);
    std::optional<FileRights> old = OldFile(place);
    const Folder folder(place.Folder);
    ClearLeftovers(folder, place.Name);
    for (int attempt = 0; attempt < theMostSaves; ++attempt) {
        if (HasReplaced(folder, place, old, aBytes)) return;
        old = OldFile(place);
    }
    RaiseSystem(theNotReplaced, EBUSY);
}

}  // namespace Vk_DocQuery
