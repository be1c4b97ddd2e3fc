#include "queryfile/FileBytes.h"

#include <cerrno>

#include <QFile>
#include <QFileInfo>

namespace Vk_DocQuery {

namespace {

QString ReasonNoFile(const QFileInfo &aInfo) {
    if (aInfo.filePath().isEmpty()) return QStringLiteral("Имя файла не задано.");
    if (!aInfo.exists()) return QStringLiteral("Файл не найден.");
    if (aInfo.isDir()) return QStringLiteral("По этому пути находится папка, а не файл.");
    return QStringLiteral("По этому пути находится не обычный файл, а канал или устройство.");
}

QString ReasonNotOpened(const QFile &aFile, int aCode) {
    if (aCode == EACCES || aCode == EPERM || aFile.error() == QFileDevice::PermissionsError)
        return QStringLiteral("Нет прав на чтение файла.");
    return QStringLiteral("Файл не удалось открыть: %1.").arg(aFile.errorString());
}

}  // namespace

QString ReadFileBytes(const QString &aFileName, qint64 aLargest, QByteArray &rBytes) {
    const QFileInfo info(aFileName);
    if (!info.isFile()) return ReasonNoFile(info);
    QFile file(aFileName);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return ReasonNotOpened(file, errno);
    const auto tooLarge = [=] {
        return QStringLiteral("Файл слишком велик: допускается не более %1 МБ.")
            .arg(aLargest / (qint64{1024} * 1024));
    };
    const qint64 size = info.size();
    if (size > aLargest) return tooLarge();
    rBytes =
        size > 0 ? file.read(size) : file.read(aLargest + 1);  // some file systems tell no size
    if (rBytes.size() > aLargest) return tooLarge();
    if (file.error() != QFileDevice::NoError || rBytes.size() < size)
        return QStringLiteral("Файл не удалось прочитать: %1.").arg(file.errorString());
    return QString();
}

}  // namespace Vk_DocQuery
