#pragma once

#include <memory>

#include <Vk_DocQuery/Failure.h>

#include "controls/ListView.h"
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

/// The record that a row shows, as the class that it must be.
template <class Kind>
std::shared_ptr<Kind> TagAs(const ListRow &aRow, const char *aWhat) {
    Present(aRow.Tag(), aWhat);
    auto record = std::dynamic_pointer_cast<Kind>(aRow.Tag());
    if (!record) RaiseTypeMismatch(QString::fromLatin1(aWhat));
    return record;
}

}  // namespace Vk_DocQuery
