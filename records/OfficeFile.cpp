#include "OfficeFile.h"

#include <filesystem>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <Vk_Records/Database.h>

#include "Connection.h"
#include "Refusals.h"

namespace Vk_Records {

namespace {

constexpr int theMostLinks = 40;

/// Where the path leads through all links, also if there is nothing.
QString LedTo(const QString &aPath, int aLinks = 0) {
    const QFileInfo file(aPath);
    if (file.isRoot() || aLinks > theMostLinks) return aPath;
    if (file.isSymLink()) return LedTo(file.symLinkTarget(), aLinks + 1);
    return QDir(LedTo(file.path(), aLinks)).filePath(file.fileName());
}

[[noreturn]] void RaiseNotOpened(qint32 aNumber, const Address &aAddress, const QString &aReason) {
    RaiseDatabaseFailure(
        aNumber, QStringLiteral("База данных \"%1\" не открыта: %2").arg(aAddress.Shown, aReason));
}

/// What is wrong with the road to a file that is not there.
void CheckRoad(const Address &aAddress) {
    std::error_code error;
    const std::string path = QFile::encodeName(aAddress.File).toStdString();
    if (!std::filesystem::exists(path, error) && error == std::errc::permission_denied)
        RaiseDatabaseFailure(DatabaseUnreachable, ForbiddenText(aAddress));
    const QString target = LedTo(aAddress.File);
    const QString folder = QFileInfo(target).path();
    if (!QFileInfo(folder).isDir()) {
        RaiseNotOpened(DatabaseUnreachable, aAddress,
                       QStringLiteral("нет папки \"%1\". Создайте папку, подключите диск с базой "
                                      "или укажите другое место базы.")
                           .arg(folder));
    }
    // Whoever made the link had an office there, and not an empty file.
    if (QFileInfo(aAddress.File).isSymLink()) {
        RaiseNotOpened(DatabaseUnreachable, aAddress,
                       QStringLiteral("это ссылка на файл \"%1\", которого нет. Подключите диск с "
                                      "базой или исправьте ссылку.")
                           .arg(target));
    }
}

void CheckMissing(const Address &aAddress, MissingFile aMissing) {
    if (aMissing == MissingFile::IsGone)
        RaiseDatabaseFailure(DatabaseUnreachable, GoneText(aAddress));
    CheckRoad(aAddress);
    if (aMissing == MissingFile::IsMade) return;
    RaiseNotOpened(DatabaseEmpty, aAddress,
                   QStringLiteral("такого файла нет. Исправьте адрес; новую базу создает программа "
                                  "vk_make_office."));
}

void CheckKind(const Address &aAddress, const QFileInfo &aFile) {
    if (aFile.isDir()) {
        RaiseNotOpened(DatabaseForeign, aAddress,
                       QStringLiteral("это папка, а не файл. Укажите файл базы."));
    }
    if (!aFile.isFile()) {  // opening a pipe may wait for ever
        RaiseNotOpened(DatabaseForeign, aAddress,
                       QStringLiteral("это не обычный файл, а канал или устройство. Укажите файл "
                                      "базы."));
    }
    // SQLite takes a file of one byte for an empty database and writes over it. What is left of an
    // interrupted transaction may stand beside it; then nobody but SQLite can judge.
    const bool isUnfinished =
        QFileInfo::exists(aFile.canonicalFilePath() + QStringLiteral("-journal")) ||
        QFileInfo::exists(aFile.canonicalFilePath() + QStringLiteral("-wal"));
    if (aFile.size() == 1 && !isUnfinished)
        RaiseDatabaseFailure(DatabaseForeign, ForeignText(aAddress));
}

}  // namespace

void CheckFile(const Address &aAddress, MissingFile aMissing) {
    const QFileInfo file(aAddress.File);
    file.exists() ? CheckKind(aAddress, file) : CheckMissing(aAddress, aMissing);
}

}  // namespace Vk_Records
