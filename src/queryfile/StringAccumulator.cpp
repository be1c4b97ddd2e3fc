#include "queryfile/StringAccumulator.h"

#include <algorithm>
#include <limits>

#include "foundation/CheckedArithmetic.h"

namespace Vk_DocQuery {

namespace {

constexpr qint32 theFirstCapacity = 1024;

qint32 LengthOf(QStringView aText) {
    if (aText.size() > std::numeric_limits<qint32>::max()) RaiseOverflow();
    return static_cast<qint32>(aText.size());
}

}  // namespace

QString StringAccumulator::CurrentString() && {
    theBuffer.truncate(theLength);
    theLength = 0;
    return std::move(theBuffer);
}

void StringAccumulator::Add(QStringView aText) {
    if (aText.isEmpty()) return;
    const qint32 length = CheckedAdd(theLength, LengthOf(aText));
    if (length > Capacity()) EnsureCapacity(length);
    std::copy(aText.begin(), aText.end(), theBuffer.data() + theLength);
    theLength = length;
}

void StringAccumulator::AddLine(QStringView aText) {
    Add(aText);
    Add(u"\r\n");
}

void StringAccumulator::Grow(qint32 aCount) {
    EnsureCapacity(CheckedAdd(theLength, aCount));
}

void StringAccumulator::EnsureCapacity(qint32 aRequired) {
    qint32 capacity = Capacity() == 0 ? theFirstCapacity : Capacity();
    while (capacity < aRequired) capacity = CheckedAdd(capacity, capacity);
    if (capacity > Capacity()) theBuffer.resize(capacity);
}

void StringAccumulator::Clear() {
    theLength = 0;
    theBuffer = QString();
}

void StringAccumulator::TrimLength(qint32 aLength) {
    if (aLength >= 0 && aLength < theLength) theLength = aLength;
}

void StringAccumulator::Delete(qint32 aStart, qint32 aCount) {
    if (theLength <= 0 || aStart < 1 || aStart > theLength || aCount <= 0) return;
    if (CheckedAdd(aStart, aCount) > theLength) {
        theLength = aStart - 1;
        return;
    }
    QChar *gap = theBuffer.data() + (aStart - 1);
    std::copy(gap + aCount, theBuffer.data() + theLength, gap);
    theLength -= aCount;
}

}  // namespace Vk_DocQuery
