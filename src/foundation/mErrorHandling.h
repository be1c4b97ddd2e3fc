#pragma once

#include <memory>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

/// Bits of aFlags in the tails.
enum ErrorFlags : qint32 {
    UseRepeatLimit = 1,   ///< report a procedure's complaints no more than twice
    UseSavedFailure = 2,  ///< take the saved failure in place of the current one
};

/// The tail of an inner procedure, called in a catch handler: raises the current failure again with
/// the entry "[library::aModule.aProc]" in front. Other exceptions become failures here.
[[noreturn]] void RaiseErrorUp(const char *aModule, const char *aProc,
                               const QString &aDetail = QString(), qint32 aFlags = 0);

/// The exception being handled, as a failure.
Failure CurrentFailure();

/// The failure that a tail with these flags treats.
Failure FailureToTreat(qint32 aFlags);
/// Its description with the entry of the procedure in front.
QString DescriptionWithEntry(const QString &aModule, const QString &aProc, const QString &aDetail,
                             const Failure &aFailure);

/// Keeps a failure for a tail with UseSavedFailure, per thread.
void SaveFailure(const Failure &aFailure);

/// Creates an object by class name; a failure names the class in the chain.
std::shared_ptr<Object> CreateObjectErr(const QString &aClass, const QString &aServer = QString());

/// The same for a caller that knows what it must be. Raises TypeMismatch if it is something else.
template <class Wanted>
std::shared_ptr<Wanted> CreateObjectAs(const QString &aClass);

/// Where failures are ignored on purpose.
template <class Body>
void IgnoringFailures(Body &&aBody) noexcept {
    try {
        aBody();
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
}

/// Where a value that cannot be used leaves a default standing. Memory that is gone is not a matter
/// of the value and goes on up.
template <class Body>
void IgnoringBadValues(Body &&aBody) {
    try {
        aBody();
    } catch (const Failure &failure) {
        if (failure.Number() == OutOfMemory) throw;
    }
}

[[noreturn]] void RaiseTypeMismatch(const QString &aWhat);

template <class Wanted>
std::shared_ptr<Wanted> CreateObjectAs(const QString &aClass) {
    auto object = std::dynamic_pointer_cast<Wanted>(CreateObjectErr(aClass));
    if (!object) RaiseTypeMismatch(aClass);
    return object;
}

}  // namespace Vk_DocQuery
