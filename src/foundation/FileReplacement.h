#pragma once

#include <QByteArray>
#include <QString>

namespace Vk_DocQuery {

/// Puts the bytes in the place of a file, or makes the file. At any moment the name stands for the
/// whole old file or the whole new one, also when the program is killed or the power goes, and when
/// this returns the new one is on the disk. Raises one of FilesFailure; the file is then as it was.
///
/// A link stays a link: what the file system finds behind it is replaced, or made. The file keeps
/// its group, its mode and its attributes, access lists among them; where they cannot be kept, or
/// its owner would lose access, it is not replaced. Another name of the same file (a hard link) is
/// left with the old content, as a copy would be: those who make such names keep former versions.
void ReplaceFile(const QString &aFileName, const QByteArray &aBytes);

}  // namespace Vk_DocQuery
