#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_DocQuery {

/// Text files and paths, as long as no host has entered a files library of its own. The texts that
/// it saves are XML: a character that the code page lacks is written as a numeric character
/// reference, which every reader of XML gives back as the same character.
class DefaultFilesLibrary final : public FilesLibrary {
public:
    /// Raises a failure, with the file as it was before, for a text that XML cannot hold, for one
    /// that goes beyond the bounds of FileBounds.h and for a file that cannot be written.
    void SaveTextToFile(const QString &aText, const QString &aFileName, qint32 aCodePage) override;
    /// A path of more than 100 characters is shown as its root and first folder, "...", and as much
    /// of its end as fits, with the whole file name in any case. rHead and rTail take what stands
    /// before and behind the "...", rName the file name; a path that is short enough is all tail.
    QString ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                            QString &rName) override;
};

}  // namespace Vk_DocQuery
