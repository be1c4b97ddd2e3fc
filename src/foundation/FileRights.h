#pragma once

#include <map>
#include <sys/stat.h>

#include <QByteArray>

namespace Vk_DocQuery {

/// Whose a file is and who may do what with it: what its replacement has to take over.
struct FileRights {
    struct stat Stat {};
    std::map<QByteArray, QByteArray> Attributes;  ///< extended ones, with the access list
};

/// The rights of the file, which is no link. Raises a failure for what cannot be learned.
FileRights RightsOf(const QByteArray &aPath, const struct stat &aStat);

/// Gives an open file those rights. Raises a failure that says which of them cannot be kept.
void GiveRights(int aFile, const FileRights &aRights);

}  // namespace Vk_DocQuery
