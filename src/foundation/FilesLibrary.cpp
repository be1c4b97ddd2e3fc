#include "foundation/FilesLibrary.h"

#include <cerrno>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "foundation/FilesFailure.h"
#include "foundation/XmlBytes.h"

namespace Vk_DocQuery {

namespace {

constexpr qsizetype theLongestPath = 100;
const QString theGap = QStringLiteral("...");

/// Says what is wrong with a place to save at before anything is touched there.
void CheckPlace(const QString &aFileName) {
    if (aFileName.isEmpty()) RaiseFiles(InvalidArgument, QStringLiteral("Имя файла не задано."));
    const QFileInfo info(aFileName);
    if (info.isDir())
        RaiseFiles(NotAFile, QStringLiteral("По этому пути находится папка, а не файл."));
    if (info.exists() && !info.isFile()) {
        RaiseFiles(
            NotAFile,
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
    }
    const QString folder = QDir::toNativeSeparators(info.absolutePath());
    if (!info.absoluteDir().exists())
        RaiseFiles(FolderMissing, QStringLiteral("Папка \"%1\" не найдена.").arg(folder));
    if (info.exists() && !info.isWritable())
        RaiseFiles(PermissionDenied, QStringLiteral("Файл доступен только для чтения."));
}

[[noreturn]] void RaiseNotOpened(const QSaveFile &aFile, int aCode) {
    if (aCode == EACCES || aCode == EPERM || aFile.error() == QFileDevice::PermissionsError) {
        RaiseFiles(PermissionDenied,
                   QStringLiteral("Нет прав на запись в папку \"%1\".")
                       .arg(QDir::toNativeSeparators(QFileInfo(aFile.fileName()).absolutePath())));
    }
    RaiseFiles(WriteFailed,
               QStringLiteral("Файл не удалось создать: %1.").arg(aFile.errorString()));
}

[[noreturn]] void RaiseNotWritten(QSaveFile &aFile, int aCode) {
    const QString text = aFile.errorString();
    aFile.cancelWriting();
    if (aFile.error() == QFileDevice::ResourceError || aCode == ENOSPC || aCode == EFBIG)
        RaiseFiles(DiskFull, QStringLiteral("На диске не хватает места."));
    RaiseFiles(WriteFailed, QStringLiteral("Файл не удалось записать: %1.").arg(text));
}

[[noreturn]] void RaiseNotReplaced(const QSaveFile &aFile, int aCode) {
    if (aCode == EPERM || aCode == EACCES) {
        RaiseFiles(PermissionDenied,
                   QStringLiteral("Файл не удалось заменить: нет прав на его удаление."));
    }
    RaiseFiles(WriteFailed,
               QStringLiteral("Файл не удалось заменить: %1.").arg(aFile.errorString()));
}

bool IsSeparator(QChar aCharacter) {
    return aCharacter == u'/' || aCharacter == u'\\';
}

qsizetype NextSeparator(const QString &aPath, qsizetype aFrom) {
    for (qsizetype i = aFrom; i < aPath.size(); ++i) {
        if (IsSeparator(aPath[i])) return i;
    }
    return -1;
}

/// Length of the root and the first folder with the separator behind it; 0 if there is no such
/// folder.
qsizetype HeadLength(const QString &aPath) {
    qsizetype root = aPath.size() > 2 && aPath[1] == u':' ? 2 : 0;
    while (root < aPath.size() && IsSeparator(aPath[root])) ++root;
    return NextSeparator(aPath, root) + 1;
}

}  // namespace

void DefaultFilesLibrary::SaveTextToFile(const QString &aText, const QString &aFileName,
                                         qint32 aCodePage) {
    const QByteArray bytes = XmlBytes(aText, aCodePage);
    CheckPlace(aFileName);
    QSaveFile file(aFileName);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) RaiseNotOpened(file, errno);
    errno = 0;
    if (file.write(bytes) != bytes.size()) RaiseNotWritten(file, errno);
    errno = 0;
    if (!file.commit()) RaiseNotReplaced(file, errno);
}

QString DefaultFilesLibrary::ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                                             QString &rName) {
    qsizetype name = aPath.size();
    while (name > 0 && !IsSeparator(aPath[name - 1])) --name;
    rName = aPath.mid(name);
    rHead.clear();
    rTail = aPath;
    if (aPath.size() <= theLongestPath) return aPath;

    qsizetype head = HeadLength(aPath);
    const auto fits = [&](qsizetype aTail) {
        return head + theGap.size() + aPath.size() - aTail <= theLongestPath;
    };
    const qsizetype last = std::max<qsizetype>(name - 1, 0);  // where the shortest tail begins
    if (!fits(last)) head = 0;
    qsizetype tail = head;
    while (tail < last && !(IsSeparator(aPath[tail]) && fits(tail))) ++tail;
    rHead = aPath.left(head);
    rTail = aPath.mid(tail);
    return rHead + theGap + rTail;
}

}  // namespace Vk_DocQuery
