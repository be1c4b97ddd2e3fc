#include "DelimitedText.h"

#include <algorithm>
#include <array>

namespace Vk_Records {

namespace {

constexpr std::array theSeparators = {'\t', ';', ','};

bool IsLineEnd(char aSign) {
    return aSign == '\n' || aSign == '\r';
}

}  // namespace

QString RawCell::Text() const {
    if (Bytes.isEmpty()) return QStringLiteral("");  // null would be no text
    QString text = QString::fromUtf8(Bytes);
    return HasQuotes ? text.replace(QStringLiteral("\"\""), QStringLiteral("\"")) : text;
}

DelimitedText::DelimitedText(QByteArrayView aText, char aSeparator)
    : theAt(aText.begin()), theEnd(aText.end()), theSeparator(aSeparator) {}

bool DelimitedText::Next() {
    do {
        if (theAt == theEnd) return false;
        theRowLine = theLine;
        theFault = Fault::None;
        theCells.clear();
        do TakeCell();
        while (PassSeparator());
        PassLineEnd();
    } while (IsBlank());
    return true;
}

bool DelimitedText::IsBlank() const {
    return theFault == Fault::None &&
           std::all_of(theCells.begin(), theCells.end(),
                       [](const RawCell &cell) { return cell.Bytes.isEmpty(); });
}

void DelimitedText::TakeCell() {
    const bool isQuoted = theAt != theEnd && *theAt == '"';
    theCells.push_back(isQuoted ? Quoted() : Plain());
}

bool DelimitedText::PassSeparator() {
    if (theAt == theEnd || *theAt != theSeparator) return false;
    ++theAt;
    return true;
}

void DelimitedText::PassLineEnd() {
    if (theAt == theEnd) return;
    if (*theAt++ == '\r' && theAt != theEnd && *theAt == '\n') ++theAt;
    ++theLine;
}

bool DelimitedText::IsAtCellEnd() const {
    return theAt == theEnd || *theAt == theSeparator || IsLineEnd(*theAt);
}

RawCell DelimitedText::Plain() {
    const char *begin = theAt;
    while (!IsAtCellEnd()) ++theAt;
    return {QByteArrayView(begin, theAt)};
}

RawCell DelimitedText::Quoted() {
    const char *begin = ++theAt;
    bool hasQuotes = false;
    for (; theAt != theEnd; ++theAt) {
        if (*theAt == '\n' || (*theAt == '\r' && (theAt + 1 == theEnd || theAt[1] != '\n')))
            ++theLine;
        if (*theAt != '"') continue;
        if (theAt + 1 == theEnd || theAt[1] != '"') return EndQuoted(begin, hasQuotes);
        hasQuotes = true;
        ++theAt;
    }
    theFault = Fault::OpenQuote;
    return {QByteArrayView(begin, theAt), hasQuotes};
}

RawCell DelimitedText::EndQuoted(const char *aBegin, bool aHasQuotes) {
    const QByteArrayView bytes(aBegin, theAt);
    ++theAt;
    if (!IsAtCellEnd()) theFault = Fault::TextBehindQuote;
    while (!IsAtCellEnd()) ++theAt;
    return {bytes, aHasQuotes};
}

char SeparatorOf(QByteArrayView aText) {
    const char *line = std::find_if_not(aText.begin(), aText.end(), IsLineEnd);
    const char *lineEnd = std::find_if(line, aText.end(), IsLineEnd);
    const auto countOf = [&](char separator) { return std::count(line, lineEnd, separator); };
    return *std::max_element(theSeparators.begin(), theSeparators.end(),
                             [&](char left, char right) { return countOf(left) < countOf(right); });
}

QByteArray CellOf(const QString &aText) {
    const bool isPlain = std::none_of(aText.begin(), aText.end(), [](QChar sign) {
        return QStringView(u"\"\t\r\n;,").contains(sign);
    });
    const bool hasEdges = aText.startsWith(u' ') || aText.endsWith(u' ');
    if (isPlain && !hasEdges) return aText.toUtf8();
    QString doubled = aText;
    doubled.replace(QStringLiteral("\""), QStringLiteral("\"\""));
    return '"' + doubled.toUtf8() + '"';
}

}  // namespace Vk_Records
