#include "look/mVkPics.h"

#include <optional>

#include <QCoreApplication>
#include <QFileInfo>

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mVkPics";

/// The executable of the development environment, in lower case; empty in a build that has none.
const QString theIdeExecutable = QStringLiteral(VK_IDE_EXECUTABLE);

/// A longer path is cut, as in a buffer of that size.
constexpr qsizetype theLongestPath = 3900;

struct Answer {
    std::optional<bool> IsUnderIde;
    ExecutablePathSource Source;
};

Answer &TheAnswer() {
    static Answer answer;
    return answer;
}

QString PathOfThisProcess() {
    if (QCoreApplication::instance()) return QCoreApplication::applicationFilePath();
    return QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget();
}

bool IsIdeExecutable(const QString &aPath) {
    if (aPath.isEmpty()) return false;
    QString path = aPath.left(theLongestPath);
    if (const qsizetype zero = path.indexOf(QChar(u'\0')); zero >= 0) path.truncate(zero);
    path = path.toLower();
    if (path == theIdeExecutable) return !theIdeExecutable.isEmpty();
    const qsizetype separator = std::max(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/'));
    if (separator < 0 || separator == path.size() - 1) return false;
    return path.mid(separator + 1) == theIdeExecutable;
}

VkPictureServer &ThePictureServer() {
    static const auto *server = new std::shared_ptr<VkPictureServer>(
        CreateObjectAs<VkPictureServer>(QString(thePictureServerClass)));
    return **server;
}

}  // namespace

bool WeAreUnderIde() try {
    Answer &answer = TheAnswer();
    if (!answer.IsUnderIde)
        answer.IsUnderIde = IsIdeExecutable(answer.Source ? answer.Source() : PathOfThisProcess());
    return *answer.IsUnderIde;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

std::shared_ptr<const ImageList> QueryImageList(qint32 aSizeKind) try {
    if (WeAreUnderIde()) return nullptr;
    return ThePictureServer().GetImageList(aSizeKind);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString QueryIcon(const QString &aKey) {
    return aKey.isEmpty() || WeAreUnderIde() ? QString() : aKey;
}

void SetExecutablePathSource(ExecutablePathSource aSource) {
    TheAnswer() = {std::nullopt, std::move(aSource)};
}

}  // namespace Vk_DocQuery
