#include "foundation/FileBounds.h"

#include <algorithm>
#include <vector>

#include "foundation/FilesFailure.h"

namespace Vk_DocQuery {

namespace {

constexpr qsizetype theMostBytes = 3;  // of UTF-8 for a unit of UTF-16

[[noreturn]] void Raise(const QString &aText) {
    RaiseFiles(TextRefused, aText);
}

bool IsBlank(QChar aCharacter) {
    return aCharacter == u' ' || aCharacter == u'\t' || aCharacter == u'\r' || aCharacter == u'\n';
}

/// As the parser holds the character of the reference that begins at the position, taken on behind
/// it.
qint64 BytesOfReference(QStringView aValue, qsizetype &rPosition) {
    const qsizetype end = aValue.indexOf(u';', rPosition);
    const QStringView name = aValue.sliced(rPosition, end < 0 ? 1 : end - rPosition);
    rPosition += name.size() + (end < 0 ? 0 : 1);
    if (!name.startsWith(u"&#")) return 1;
    const uint code = name.sliced(2).toUInt();
    return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

qint64 BytesOfValue(QStringView aValue) {
    qint64 bytes = 0;
    for (qsizetype at = 0; at < aValue.size();) {
        const QChar unit = aValue[at];
        if (unit == u'&') {
            bytes += BytesOfReference(aValue, at);
            continue;
        }
        ++at;
        if (unit == u'\r' && at < aValue.size() && aValue[at] == u'\n') continue;  // one blank
        // Each half of a pair is two of its four bytes.
        bytes += unit < QChar(0x80) ? 1 : unit < QChar(0x800) || unit.isSurrogate() ? 2 : 3;
    }
    return bytes;
}

/// The name in front of the value that begins at the quotation mark.
QString NameOfValue(QStringView aText, qsizetype aQuote) {
    qsizetype end = aQuote;
    while (end > 0 && (aText[end - 1] == u'=' || IsBlank(aText[end - 1]))) --end;
    qsizetype begin = end;
    while (begin > 0 && !IsBlank(aText[begin - 1])) --begin;
    return aText.sliced(begin, end - begin).toString();
}

/// A tag from its "<" to its ">".
struct Tag {
    QStringView Name;
    qsizetype End = 0;
    qint32 Attributes = 0;
    bool Opens = false;
    bool Closes = false;
};

Tag TagAt(QStringView aText, qsizetype aBegin) {
    Tag tag;
    qsizetype at = aBegin + 1;
    const QChar first = at < aText.size() ? aText[at] : QChar();
    tag.Closes = first == u'/';
    tag.Opens = !tag.Closes && first != u'?' && first != u'!';
    while (at < aText.size() && !IsBlank(aText[at]) && aText[at] != u'>' &&
           (aText[at] != u'/' || tag.Closes))
        ++at;
    tag.Name = aText.sliced(aBegin + 1, at - aBegin - 1);
    for (; at < aText.size() && aText[at] != u'>'; ++at) {
        if (aText[at] != u'"' && aText[at] != u'\'') continue;
        const qsizetype quote = at;
        at = aText.indexOf(aText[quote], quote + 1);
        if (at < 0) at = aText.size() - 1;
        ++tag.Attributes;
        const QStringView value = aText.sliced(quote + 1, std::max<qsizetype>(at - quote - 1, 0));
        if (value.size() > theLongestValue / theMostBytes && BytesOfValue(value) > theLongestValue)
            Raise(TextTooLong(NameOfValue(aText, quote)));
    }
    tag.End = at;
    if (tag.Opens && aText[at - 1] == u'/') tag.Closes = true;
    return tag;
}

/// An element that is not closed yet.
struct Open {
    QStringView Name;
    qint32 Entries = 0;
};

void CheckTags(QStringView aText) {
    std::vector<Open> open(1);
    qint64 elements = 0;
    qint64 attributes = 0;
    for (qsizetype at = aText.indexOf(u'<'); at >= 0; at = aText.indexOf(u'<', at)) {
        const Tag tag = TagAt(aText, at);
        at = tag.End;
        if (tag.Opens) {
            attributes += tag.Attributes;
            if (++elements > theMostElementsOfFile || attributes > theMostElementsOfFile ||
                tag.Attributes > theMostAttributesOfElement)
                Raise(QStringLiteral("Файл слишком сложен: в нем слишком много элементов."));
            if (tag.Name == u"i" && ++open.back().Entries > theMostListEntries)
                Raise(ListTooLong(open.back().Name.toString()));
            open.push_back({tag.Name, 0});
        }
        if (tag.Closes && open.size() > 1) open.pop_back();
    }
}

}  // namespace

void CheckBounds(QStringView aText, qint64 aSize) {
    if (aSize > theLargestFile) Raise(FileTooLarge());
    // Texts of fewer units have room for no bound but that of the attributes of an element, which
    // no text of ours comes near.
    if (aText.size() > theLongestValue / theMostBytes) CheckTags(aText);
}

}  // namespace Vk_DocQuery
