#pragma once

#include <Vk_DocQuery/Failure.h>

namespace VkTests {

/// The failure that the body raises. If it raises none, the number is 0 and the text says so.
template <class Body>
Vk_DocQuery::Failure RaisedBy(Body aBody) {
    try {
        aBody();
    } catch (const Vk_DocQuery::Failure &failure) {
        return failure;
    }
    return Vk_DocQuery::Failure(0, QString(), QStringLiteral("nothing was raised"));
}

}  // namespace VkTests
