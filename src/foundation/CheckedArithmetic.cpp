#include "foundation/CheckedArithmetic.h"

namespace Vk_DocQuery {

void RaiseOverflow() {
    throw Failure(ArithmeticOverflow, QString(), QStringLiteral("Переполнение."));
}

}  // namespace Vk_DocQuery
