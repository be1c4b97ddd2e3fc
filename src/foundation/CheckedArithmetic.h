#pragma once

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

/// 32-bit arithmetic that raises ArithmeticOverflow where the result does not fit.

[[noreturn]] void RaiseOverflow();

inline qint32 CheckedAdd(qint32 aLeft, qint32 aRight) {
    qint32 result = 0;
    if (__builtin_add_overflow(aLeft, aRight, &result)) RaiseOverflow();
    return result;
}

inline qint32 CheckedSubtract(qint32 aLeft, qint32 aRight) {
    qint32 result = 0;
    if (__builtin_sub_overflow(aLeft, aRight, &result)) RaiseOverflow();
    return result;
}

inline qint32 CheckedMultiply(qint32 aLeft, qint32 aRight) {
    qint32 result = 0;
    if (__builtin_mul_overflow(aLeft, aRight, &result)) RaiseOverflow();
    return result;
}

}  // namespace Vk_DocQuery
