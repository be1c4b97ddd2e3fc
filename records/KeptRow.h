#pragma once

#include <cstring>
#include <vector>

#include <QByteArrayView>

namespace Vk_Records {

enum class ColumnKind : quint8 { Null, Integer, Text };

/// A copy of a row in memory that is another's: the number of its columns, a number for each, their
/// kinds, and the texts. The number of a text is where it begins. What is neither NULL nor a whole
/// number is text there; a date has the ISO form.
class KeptRow {
public:
    explicit KeptRow(const char *aBegin) : theBegin(aBegin) {}

    int Count() const { return static_cast<int>(Number(0)); }
    /// Null of a column that is not there.
    ColumnKind KindOf(int aColumn) const {
        const int count = Count();
        if (aColumn < 0 || aColumn >= count) return ColumnKind::Null;
        return static_cast<ColumnKind>(
            theBegin[PlaceOf(count + 1) + static_cast<std::size_t>(aColumn)]);
    }
    /// Of an Integer.
    qint64 Integer(int aColumn) const { return Number(PlaceOf(aColumn + 1)); }
    /// UTF-8, of a Text.
    QByteArrayView Text(int aColumn) const {
        const auto begin = static_cast<std::size_t>(Integer(aColumn));
        return {theBegin + begin + sizeof(qint64), Number(begin)};
    }

private:
    friend class KeptRowMaker;
    static std::size_t PlaceOf(int aNumber) {
        return sizeof(qint64) * static_cast<std::size_t>(aNumber);
    }
    qint64 Number(std::size_t aPlace) const {
        qint64 number = 0;
        std::memcpy(&number, theBegin + aPlace, sizeof number);
        return number;
    }

    const char *theBegin;
};

/// Puts rows together, one after the other.
class KeptRowMaker {
public:
    /// A row of so many columns, all Null.
    void Begin(int aCount) {
        theBytes.assign(KeptRow::PlaceOf(aCount + 1) + static_cast<std::size_t>(aCount), '\0');
        theCount = aCount;
        Put(0, aCount);
    }
    void SetInteger(int aColumn, qint64 aNumber) { Set(aColumn, ColumnKind::Integer, aNumber); }
    void SetText(int aColumn, QByteArrayView aText) {
        const std::size_t begin = theBytes.size();
        Set(aColumn, ColumnKind::Text, static_cast<qint64>(begin));
        theBytes.resize(begin + sizeof(qint64));
        Put(begin, aText.size());
        theBytes.insert(theBytes.end(), aText.begin(), aText.end());
    }
    const std::vector<char> &Bytes() const { return theBytes; }

private:
    void Put(std::size_t aPlace, qint64 aNumber) {
        std::memcpy(theBytes.data() + aPlace, &aNumber, sizeof aNumber);
    }
    void Set(int aColumn, ColumnKind aKind, qint64 aNumber) {
        Put(KeptRow::PlaceOf(aColumn + 1), aNumber);
        theBytes[KeptRow::PlaceOf(theCount + 1) + static_cast<std::size_t>(aColumn)] =
            static_cast<char>(aKind);
    }

    std::vector<char> theBytes;
    int theCount = 0;
};

}  // namespace Vk_Records
