#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

Object::~Object() = default;

}  // namespace Vk_DocQuery
