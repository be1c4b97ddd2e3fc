#pragma once

#include <memory>

#include <Vk_DocQuery/KeyedCollection.h>
#include <Vk_DocQuery/Records.h>

namespace Vk_DocQuery {

/// One report form as the browser lists it: the tag of a row of its list.
class IntTemplateClass : public Object {
public:
    std::shared_ptr<VkTemplType> Class;
    QString ActualFullName;  ///< the first of FullNames, empty if there is none
    /// The official full names over all versions, without line breaks; each is its own key.
    KeyedCollection<QString> FullNames;
};

}  // namespace Vk_DocQuery
