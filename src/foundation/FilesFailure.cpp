#include "foundation/FilesFailure.h"

#include <cerrno>
#include <system_error>

namespace Vk_DocQuery {

namespace {

struct Reason {
    int Code;
    const char16_t *Text;
};

constexpr Reason theReasons[] = {
    {EIO, u"ошибка чтения или записи на диске"},
    {EACCES, u"нет прав"},
    {EPERM, u"нет прав"},
    {ENOENT, u"нет такого файла или папки"},
    {EEXIST, u"такой файл уже есть"},
    {EBUSY, u"файл занят другой программой"},
    {ETXTBSY, u"файл занят другой программой"},
    {EMFILE, u"открыто слишком много файлов"},
    {ENFILE, u"открыто слишком много файлов"},
    {ENOMEM, u"не хватает памяти"},
    {ENODEV, u"диск отключен"},
    {ENXIO, u"диск отключен"},
    {ENOTCONN, u"диск отключен"},
    {EINTR, u"вызов прерван"},
    {ESTALE, u"файл на сервере больше не доступен"},
    {ETIMEDOUT, u"сервер не отвечает"},
    {EHOSTDOWN, u"сервер не отвечает"},
    {EOPNOTSUPP, u"диск этого не умеет"},
    {ENOSYS, u"система этого не умеет"},
};

QString InRussian(int aCode) {
    for (const Reason &reason : theReasons) {
        if (reason.Code == aCode) return QString::fromUtf16(reason.Text);
    }
    return QStringLiteral("отказ системы %1").arg(aCode);
}

/// The refusals that need no further word.
struct Refusal {
    int Code;
    FilesFailure Number;
    const char16_t *Text;
};

constexpr Refusal theRefusals[] = {
    {ENOSPC, DiskFull, u"На диске не хватает места."},
    {EDQUOT, DiskFull, u"На диске не хватает места."},
    {EFBIG, DiskFull, u"На диске не хватает места."},
    {EROFS, PermissionDenied, u"Диск доступен только для чтения."},
    {ENAMETOOLONG, NotAFile, u"Слишком длинное имя файла."},
};

}  // namespace

void RaiseFiles(qint32 aNumber, const QString &aText) {
    throw Failure(aNumber, QStringLiteral("Vk_Lib.FilesLibrary"), aText);
}

void RaiseSystem(const QString &aWhat, int aCode) {
    for (const Refusal &refusal : theRefusals) {
        if (refusal.Code == aCode) RaiseFiles(refusal.Number, QString::fromUtf16(refusal.Text));
    }
    RaiseFiles(WriteFailed, QStringLiteral("%1: %2.").arg(aWhat, SystemReason(aCode)));
}

QString SystemReason(int aCode) {
    const std::string words = std::generic_category().message(aCode);
    return QStringLiteral("%1 (%2)").arg(InRussian(aCode), QString::fromLocal8Bit(words.c_str()));
}

}  // namespace Vk_DocQuery
