#include "queryfile/FileBytes.h"

#include <cerrno>

#include <QFile>
#include <QFileInfo>

#include "foundation/FileBounds.h"
#include "foundation/FilesFailure.h"

namespace Vk_DocQuery {

namespace {

/// Half a character, or a zero, would make the system look for another name.
bool IsName(const QString &aFileName) {
    return !aFileName.contains(QChar(0)) && aFileName.isValidUtf16();
}

/// The errno in the user's language; of a file that failed without one, as on other systems, what
/// Qt says.
QString ReasonOf(const QFile &aFile, int aCode) {
    return aCode != 0 ? SystemReason(aCode)
                      : QStringLiteral("отказ системы (%1)").arg(aFile.errorString());
}

QString ReasonNotOpened(const QFile &aFile, int aCode) {
    if (aCode == ENOENT || aCode == ENOTDIR || aCode == ENAMETOOLONG ||
        (aCode == 0 && !aFile.exists()))
        return QStringLiteral("Файл не найден.");
    if (aCode == ELOOP)
        return QStringLiteral("По этому пути находится ссылка, которая ведет по кругу.");
    if (aCode == EACCES || aCode == EPERM || aFile.error() == QFileDevice::PermissionsError)
        return QStringLiteral("Нет прав на чтение файла.");
    return QStringLiteral("Файл не удалось открыть: %1.").arg(ReasonOf(aFile, aCode));
}

QString ReasonNotRead(const QString &aWhy) {
    return QStringLiteral("Файл не удалось прочитать: %1.").arg(aWhy);
}

}  // namespace

QString ReadFileBytes(const QString &aFileName, QByteArray &rBytes) {
    if (aFileName.isEmpty()) return QStringLiteral("Имя файла не задано.");
    if (!IsName(aFileName)) return QStringLiteral("Файл не найден.");
    const QFileInfo info(aFileName);
    if (info.isDir()) return QStringLiteral("По этому пути находится папка, а не файл.");
    if (info.exists() && !info.isFile())
        return QStringLiteral("По этому пути находится не обычный файл, а канал или устройство.");
    QFile file(aFileName);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return ReasonNotOpened(file, errno);
    const qint64 size = file.size();  // of the one that is open: another may have its name by now
    if (size > theLargestFile) return FileTooLarge();
    // Some file systems tell no size.
    rBytes = file.read(size > 0 ? size : theLargestFile + 1);
    if (rBytes.size() > theLargestFile) return FileTooLarge();
    char more = 0;
    errno = 0;
    const qint64 behind = file.read(&more, 1);  // also tells what cut the reading short
    if (behind < 0) return ReasonNotRead(ReasonOf(file, errno));
    if (behind == 0 && rBytes.size() >= size) return QString();
    return ReasonNotRead(QStringLiteral("в это время его изменила другая программа"));
}

}  // namespace Vk_DocQuery
