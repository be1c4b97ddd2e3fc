#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_Records {

/// Text files and paths, entered as "Vk_Lib.FilesLibrary". The texts that it saves are XML: a
/// character that the code page lacks is written as a numeric character reference, which every
/// reader of XML gives back as the same character.
class FilesLibrary : public Vk_DocQuery::FilesLibrary {
public:
    /// Raises a failure, with the file as it was before, for a text that XML cannot hold and for a
    /// file that cannot be written.
    void SaveTextToFile(const QString &aText, const QString &aFileName, qint32 aCodePage) override;
    /// A path of more than 100 characters is shown as its root and first folder, "...", and as much
    /// of its end as fits, with the whole file name in any case. rHead and rTail take what stands
    /// before and behind the "...", rName the file name; a path that is short enough is all tail.
    QString ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                            QString &rName) override;
};

/// The text in the code page, with references for what the code page lacks. Raises a failure that
/// names the character for one that XML cannot hold, and for a code page that is not known.
QByteArray XmlBytes(const QString &aText, qint32 aCodePage);

}  // namespace Vk_Records
