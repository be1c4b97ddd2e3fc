#pragma once

#include <QString>

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

/// Numbers of the failures of the files library.
enum FilesFailure : qint32 {
    WriteFailed = 57,
    DiskFull = 61,
    PermissionDenied = 70,
    NotAFile = 75,
    FolderMissing = 76,
    CharacterRefused = 93,
    TextRefused = 94,
};

[[noreturn]] void RaiseFiles(qint32 aNumber, const QString &aText);

/// Raises what a refused call of the system means to the user. aWhat says in words what could not
/// be done, for the refusals that say nothing by themselves, as a full disk does; aCode is an
/// errno.
[[noreturn]] void RaiseSystem(const QString &aWhat, int aCode);

/// An errno in the user's language, with the system's own words behind it in brackets.
QString SystemReason(int aCode);

}  // namespace Vk_DocQuery
