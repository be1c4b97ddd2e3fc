#include "windows/ErrorReport.h"

#include <optional>

#include <QHash>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/HostServices.h>

#include "foundation/Application.h"
#include "foundation/ErrorStream.h"
#include "windows/Boxes.h"

namespace Vk_DocQuery {

namespace {

thread_local QHash<QString, int> theFailureCounts;

bool ErrorRepeatLimitReached(const QString &aModule, const QString &aProc) {
    int &count = theFailureCounts[QStringLiteral("_%1_%2").arg(aModule, aProc)];
    if (count >= 2) return true;
    ++count;
    return false;
}

/// No box where nobody could close it.
bool IsRead(const QString &aText) {
    bool read = false;
    if (!IsRunningUnattended())
        IgnoringFailures([&] { read = ShowFailureBox(aText, QStringLiteral("Сбой программы")); });
    return read;
}

void ShowErrorBox(const QString &aText, const QString &aSource, const QString &aExtra,
                  qint32 aNumber) {
    std::shared_ptr<VkErrorHandler> handler;
    IgnoringFailures([&] {
        handler = std::dynamic_pointer_cast<VkErrorHandler>(
            ClassRegistry::Create(QStringLiteral("Vk_Errors.VkErrorHandler")));
    });
    if (handler) {
        IgnoringFailures([&] { handler->ErrorMsgBox(aText, aSource, aNumber, aExtra); });
        return;
    }
    if (!IsRead(aText)) WriteToErrorStream(aText);
}

/// What would stand in the way of the box: a busy pointer and the host's splash window.
void ClearTheWay(std::optional<NormalPointer> &rPointer) {
    if (IsRunningUnattended()) return;
    IgnoringFailures([&] {
        EnsureApplication();
        rPointer.emplace();
        const auto splash = std::dynamic_pointer_cast<SplashWindow>(
            ClassRegistry::Create(QStringLiteral("Vk_SplashWindow.SplashWindow")));
        if (splash) splash->CloseSplashImmediately();
    });
}

void Report(const QString &aModule, const QString &aProc, const QString &aDetail, qint32 aFlags) {
    const Failure failure = FailureToTreat(aFlags);
    if ((aFlags & UseRepeatLimit) != 0 && ErrorRepeatLimitReached(aModule, aProc)) return;
    const QString description = DescriptionWithEntry(aModule, aProc, aDetail, failure);
    std::optional<NormalPointer> pointer;
    ClearTheWay(pointer);
    ShowErrorBox(description, failure.Source(), QString(), failure.Number());
}

}  // namespace

void ReportErrorToUser(const char *aModule, const char *aProc, const QString &aDetail,
                       qint32 aFlags) noexcept {
    IgnoringFailures(
        [&] { Report(QString::fromUtf8(aModule), QString::fromUtf8(aProc), aDetail, aFlags); });
}

}  // namespace Vk_DocQuery
