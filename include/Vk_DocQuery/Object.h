#pragma once

#include <QtGlobal>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// The root of everything that is created by class name through the ClassRegistry.
class VK_DOCQUERY_EXPORT Object {
public:
    Object() = default;
    virtual ~Object();
    Q_DISABLE_COPY_MOVE(Object)
};

}  // namespace Vk_DocQuery
