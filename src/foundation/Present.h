#pragma once

#include <memory>

#include <QLatin1String>

#include <Vk_DocQuery/Failure.h>

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

/// The object, or a failure that names what is absent.
template <class Kind>
Kind &Present(const std::shared_ptr<Kind> &aObject, const char *aWhat) {
    if (!aObject) {
        throw Failure(ObjectNotSet, QString::fromLatin1(aWhat),
                      QStringLiteral("Объект не задан: %1.").arg(QLatin1String(aWhat)));
    }
    return *aObject;
}

/// The object as the class that it must be; otherwise a failure that names the class, too.
template <class Wanted, class Kind>
std::shared_ptr<Wanted> PresentAs(const std::shared_ptr<Kind> &aObject, const char *aWhat) {
    Present(aObject, aWhat);
    auto object = std::dynamic_pointer_cast<Wanted>(aObject);
    if (!object) RaiseTypeMismatch(QString::fromLatin1(aWhat));
    return object;
}

}  // namespace Vk_DocQuery
