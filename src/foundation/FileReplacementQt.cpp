#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include "foundation/FileReplacement.h"
#include "foundation/FilesFailure.h"

// For systems whose own calls the library does not know: what Qt can do there.

namespace Vk_DocQuery {

namespace {

void CheckPlace(const QFileInfo &aInfo) {
    if (aInfo.filePath().isEmpty())
        RaiseFiles(InvalidArgument, QStringLiteral("Имя файла не задано."));
    if (aInfo.isDir())
        RaiseFiles(NotAFile, QStringLiteral("По этому пути находится папка, а не файл."));
    if (aInfo.exists() && !aInfo.isFile()) {
        RaiseFiles(
            NotAFile,
            QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
    }
    if (!aInfo.absoluteDir().exists()) {
        RaiseFiles(FolderMissing, QStringLiteral("Папка \"%1\" не найдена.")
                                      .arg(QDir::toNativeSeparators(aInfo.absolutePath())));
    }
    if (!QFileInfo(aInfo.absolutePath()).isWritable()) {
        RaiseFiles(PermissionDenied, QStringLiteral("Нет прав на запись в папку \"%1\".")
                                         .arg(QDir::toNativeSeparators(aInfo.absolutePath())));
    }
    if (aInfo.exists() && !aInfo.isWritable())
        RaiseFiles(PermissionDenied, QStringLiteral("Файл доступен только для чтения."));
}

[[noreturn]] void RaiseNotSaved(const QSaveFile &aFile) {
    switch (aFile.error()) {
        case QFileDevice::ResourceError:
            RaiseFiles(DiskFull, QStringLiteral("На диске не хватает места."));
        case QFileDevice::PermissionsError:
            RaiseFiles(PermissionDenied, QStringLiteral("Нет прав на запись этого файла."));
        default:
            RaiseFiles(WriteFailed, QStringLiteral("Файл не удалось записать: отказ системы (%1).")
                                        .arg(aFile.errorString()));
    }
}

}  // namespace

void ReplaceFile(const QString &aFileName, const QByteArray &aBytes) {
    const QFileInfo info(aFileName);
    CheckPlace(info);
    QSaveFile file(info.exists() ? info.canonicalFilePath() : aFileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) RaiseNotSaved(file);
    if (file.write(aBytes) != aBytes.size() || !file.commit()) RaiseNotSaved(file);
}

}  // namespace Vk_DocQuery
