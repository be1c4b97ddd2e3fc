#pragma once

#include <QString>

namespace Vk_DocQuery {

/// A growing text: a used length apart from a buffer that doubles from 1024 characters, so that
/// many small additions cost no more than the text is long. Lengths are 32-bit; one that does not
/// fit raises ArithmeticOverflow.
class StringAccumulator {
public:
    qint32 ALength() const noexcept { return theLength; }
    qint32 Capacity() const noexcept { return static_cast<qint32>(theBuffer.size()); }
    QString CurrentString() const & { return theBuffer.left(theLength); }
    /// Of an accumulator that is not needed any more: gives the buffer itself.
    QString CurrentString() &&;

    void Add(QStringView aText);
    /// Adds the text and a line end, CR LF.
    void AddLine(QStringView aText);
    /// Room for so many characters behind the text, for who puts them there in place; what was put
    /// there is taken over by AddRoom.
    char16_t *Room(qint32 aCount) {
        if (aCount > Capacity() - theLength) Grow(aCount);
        return reinterpret_cast<char16_t *>(theBuffer.data()) + theLength;
    }
    void AddRoom(qint32 aCount) { theLength += aCount; }
    /// Gives the memory back.
    void Clear();
    /// Shortens the text; a length that is negative or not shorter changes nothing.
    void TrimLength(qint32 aLength);
    /// Takes out aCount characters from aStart on, counted from 1, or all that stand there.
    void Delete(qint32 aStart, qint32 aCount);

private:
    void Grow(qint32 aCount);
    void EnsureCapacity(qint32 aRequired);

    qint32 theLength = 0;
    QString theBuffer;  // its size is the capacity; what stands behind theLength means nothing
};

}  // namespace Vk_DocQuery
