#include "foundation/FilesLibrary.h"

#include <algorithm>

#include "foundation/FileBounds.h"
#include "foundation/FileReplacement.h"
#include "foundation/XmlBytes.h"

namespace Vk_DocQuery {

namespace {

constexpr qsizetype theLongestPath = 100;
const QString theGap = QStringLiteral("...");

bool IsSeparator(QChar aCharacter) {
    return aCharacter == u'/' || aCharacter == u'\\';
}

qsizetype NextSeparator(const QString &aPath, qsizetype aFrom) {
    for (qsizetype i = aFrom; i < aPath.size(); ++i) {
        if (IsSeparator(aPath[i])) return i;
    }
    return -1;
}

/// Length of the root and the first folder with the separator behind it; 0 if there is no such
/// folder.
qsizetype HeadLength(const QString &aPath) {
    qsizetype root = aPath.size() > 2 && aPath[1] == u':' ? 2 : 0;
    while (root < aPath.size() && IsSeparator(aPath[root])) ++root;
    return NextSeparator(aPath, root) + 1;
}

}  // namespace

void DefaultFilesLibrary::SaveTextToFile(const QString &aText, const QString &aFileName,
                                         qint32 aCodePage) {
    const QByteArray bytes = XmlBytes(aText, aCodePage);
    CheckBounds(aText, bytes.size());
    ReplaceFile(aFileName, bytes);
}

QString DefaultFilesLibrary::ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                                             QString &rName) {
    qsizetype name = aPath.size();
    while (name > 0 && !IsSeparator(aPath[name - 1])) --name;
    rName = aPath.mid(name);
    rHead.clear();
    rTail = aPath;
    if (aPath.size() <= theLongestPath) return aPath;

    qsizetype head = HeadLength(aPath);
    const auto fits = [&](qsizetype aTail) {
        return head + theGap.size() + aPath.size() - aTail <= theLongestPath;
    };
    const qsizetype last = std::max<qsizetype>(name - 1, 0);  // where the shortest tail begins
    if (!fits(last)) head = 0;
    qsizetype tail = head;
    while (tail < last && !(IsSeparator(aPath[tail]) && fits(tail))) ++tail;
    rHead = aPath.left(head);
    rTail = aPath.mid(tail);
    return rHead + theGap + rTail;
}

}  // namespace Vk_DocQuery
