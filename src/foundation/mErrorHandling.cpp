#include "foundation/mErrorHandling.h"

#include <atomic>
#include <new>
#include <optional>
#include <stdexcept>

#include <QApplication>
#include <QHash>
#include <QMessageBox>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/HostServices.h>

#include "foundation/Application.h"
#include "foundation/ErrorStream.h"
#include "foundation/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mErrorHandling";
const QString theLibraryName = QStringLiteral("Vk_DocQuery");
const QString theLineEnd = QStringLiteral("\r\n");

enum class ErrorMode { Raise = 1, Show = 2 };

// Made beforehand: when it is needed there may be no memory for it.
const Failure theMemoryFailure(OutOfMemory, QString(), QStringLiteral("Недостаточно памяти."));

thread_local std::optional<Failure> theSavedFailure;
thread_local QHash<QString, int> theFailureCounts;
std::atomic<bool> theUnattended = false;

bool ErrorRepeatLimitReached(const QString &aModule, const QString &aProc) {
    int &count = theFailureCounts[QStringLiteral("_%1_%2").arg(aModule, aProc)];
    if (count >= 2) return true;
    ++count;
    return false;
}

QString Entry(const QString &aModule, const QString &aProc, const QString &aDetail,
              const Failure &aFailure) {
    QString location = theLibraryName + QStringLiteral("::");
    location += aModule.isEmpty() ? QStringLiteral("?") : aModule;
    if (!aProc.isEmpty()) location += u'.' + aProc;
    if (aFailure.Line() != 0) location += QStringLiteral(" (%1)").arg(aFailure.Line());

    QString entry = u'[' + location + u']';
    if (!aDetail.isEmpty()) entry += QStringLiteral(" {") + aDetail + u'}';
    if (!aFailure.Source().isEmpty()) entry += theLineEnd + u'[' + aFailure.Source() + u']';
    return entry;
}

QString WithEntry(const QString &aEntry, const QString &aDescription) {
    const bool begins = aDescription.startsWith(u'\r') || aDescription.startsWith(u'\n');
    return begins ? aEntry + aDescription : aEntry + theLineEnd + aDescription;
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

void ProcessError(ErrorMode aMode, const QString &aModule, const QString &aProc,
                  const QString &aDetail, const Failure &aFailure, qint32 aFlags) {
    if ((aFlags & UseRepeatLimit) != 0 && aMode == ErrorMode::Show &&
        ErrorRepeatLimitReached(aModule, aProc))
        return;

    const QString description =
        WithEntry(Entry(aModule, aProc, aDetail, aFailure), aFailure.Description());
    if (aMode == ErrorMode::Raise) throw Failure(aFailure.Number(), QString(), description);

    std::optional<NormalPointer> pointer;
    if (!IsRunningUnattended()) {
        IgnoringFailures([&] {
            EnsureApplication();
            pointer.emplace();
            const auto splash = std::dynamic_pointer_cast<SplashWindow>(
                ClassRegistry::Create(QStringLiteral("Vk_SplashWindow.SplashWindow")));
            if (splash) splash->CloseSplashImmediately();
        });
    }
    ShowErrorBox(description, aFailure.Source(), QString(), aFailure.Number());
}

Failure FailureToTreat(qint32 aFlags) {
    if ((aFlags & UseSavedFailure) != 0 && theSavedFailure) return *theSavedFailure;
    return CurrentFailure();
}

}  // namespace

void RaiseErrorUp(const char *aModule, const char *aProc, const QString &aDetail, qint32 aFlags) {
    try {
        ProcessError(ErrorMode::Raise, QString::fromUtf8(aModule), QString::fromUtf8(aProc),
                     aDetail, FailureToTreat(aFlags), aFlags);
    } catch (const std::bad_alloc &) {
        throw Failure(theMemoryFailure);  // without the chain, which needs memory
    }
    Q_UNREACHABLE();
}

void ReportErrorToUser(const char *aModule, const char *aProc, const QString &aDetail,
                       qint32 aFlags) noexcept {
    IgnoringFailures([&] {
        ProcessError(ErrorMode::Show, QString::fromUtf8(aModule), QString::fromUtf8(aProc), aDetail,
                     FailureToTreat(aFlags), aFlags);
    });
}

Failure CurrentFailure() {
    const auto text = [](const std::exception &aException) {
        return QString::fromUtf8(aException.what());
    };
    try {
        throw;
    } catch (const Failure &failure) {
        return failure;
    } catch (const std::bad_alloc &) {
        return theMemoryFailure;
    } catch (const std::out_of_range &exception) {
        return Failure(SubscriptOutOfRange, QStringLiteral("std::out_of_range"), text(exception));
    } catch (const std::overflow_error &exception) {
        return Failure(ArithmeticOverflow, QStringLiteral("std::overflow_error"), text(exception));
    } catch (const std::invalid_argument &exception) {
        return Failure(InvalidArgument, QStringLiteral("std::invalid_argument"), text(exception));
    } catch (const std::exception &exception) {
        return Failure(InternalFailure, QStringLiteral("std::exception"), text(exception));
    } catch (...) {
        return Failure(InternalFailure, QString(),
                       QStringLiteral("Неизвестная внутренняя ошибка."));
    }
}

void SaveFailure(const Failure &aFailure) {
    theSavedFailure = aFailure;
}

std::shared_ptr<Object> CreateObjectErr(const QString &aClass, const QString &aServer) try {
    return ClassRegistry::Create(aClass, aServer);
} catch (...) {
    QString detail = QStringLiteral("Object: ") + aClass;
    if (!aServer.isEmpty()) detail += u'@' + aServer;
    RaiseErrorUp(theModule, "CreateObjectErr", detail);
}

void RaiseTypeMismatch(const QString &aWhat) {
    throw Failure(TypeMismatch, QString(), QStringLiteral("Несоответствие типа: ") + aWhat);
}

void SetRunningUnattended(bool aUnattended) {
    theUnattended = aUnattended;
}

bool IsRunningUnattended() {
    return theUnattended;
}

}  // namespace Vk_DocQuery
