#include "foundation/mErrorHandling.h"

#include <new>
#include <optional>
#include <stdexcept>

#include <Vk_DocQuery/ClassRegistry.h>

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mErrorHandling";
const QString theLibraryName = QStringLiteral("Vk_DocQuery");
const QString theLineEnd = QStringLiteral("\r\n");

// Made beforehand: when it is needed there may be no memory for it.
const Failure theMemoryFailure(OutOfMemory, QString(), QStringLiteral("Недостаточно памяти."));

thread_local std::optional<Failure> theSavedFailure;

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

}  // namespace

void RaiseErrorUp(const char *aModule, const char *aProc, const QString &aDetail, qint32 aFlags) {
    try {
        const Failure failure = FailureToTreat(aFlags);
        throw Failure(failure.Number(), QString(),
                      DescriptionWithEntry(QString::fromUtf8(aModule), QString::fromUtf8(aProc),
                                           aDetail, failure));
    } catch (const std::bad_alloc &) {
        throw Failure(theMemoryFailure);  // without the chain, which needs memory
    }
}

Failure FailureToTreat(qint32 aFlags) {
    if ((aFlags & UseSavedFailure) != 0 && theSavedFailure) return *theSavedFailure;
    return CurrentFailure();
}

QString DescriptionWithEntry(const QString &aModule, const QString &aProc, const QString &aDetail,
                             const Failure &aFailure) {
    const QString entry = Entry(aModule, aProc, aDetail, aFailure);
    const QString &description = aFailure.Description();
    const bool begins = description.startsWith(u'\r') || description.startsWith(u'\n');
    return begins ? entry + description : entry + theLineEnd + description;
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
    RaiseErrorUp(theModule, __func__, detail);
}

void RaiseTypeMismatch(const QString &aWhat) {
    throw Failure(TypeMismatch, QString(), QStringLiteral("Несоответствие типа: ") + aWhat);
}

}  // namespace Vk_DocQuery
