#pragma once

#include <memory>

#include <QLatin1String>

#include <Vk_DocQuery/Failure.h>

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

}  // namespace Vk_DocQuery
