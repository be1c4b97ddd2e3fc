#include "queryfile/XmlText.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include <QtEndian>

#include "foundation/Windows1251.h"
#include "queryfile/CodePages.h"

namespace Vk_DocQuery {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view theUtf8Mark = "\xEF\xBB\xBF"sv;

/// How characters are made of bytes.
enum class Kind { Utf8, Utf16Little, Utf16Big, Utf32Little, Utf32Big, OneByte, Refused };

/// First bytes that tell how a file is written, whatever its declaration says.
struct Beginning {
    std::string_view Bytes;
    Kind How;
    qsizetype Mark;  ///< how many of them are no part of the text
};

constexpr Beginning theBeginnings[] = {
    {"\x00\x00\xFE\xFF"sv, Kind::Utf32Big, 4},
    {"\xFF\xFE\x00\x00"sv, Kind::Utf32Little, 4},
    {"\xFE\xFF"sv, Kind::Utf16Big, 2},
    {"\xFF\xFE"sv, Kind::Utf16Little, 2},
    {theUtf8Mark, Kind::Utf8, 3},
    {"\x00\x00\x00<"sv, Kind::Utf32Big, 0},
    {"<\x00\x00\x00"sv, Kind::Utf32Little, 0},
    {"\x00<"sv, Kind::Utf16Big, 0},
    {"<\x00"sv, Kind::Utf16Little, 0},
    {"\x4C\x6F\xA7\x94"sv, Kind::Refused, 0},  // EBCDIC
};

/// Character sets that a declaration may name, if it can be read as one-byte characters at all. A
/// set of one-byte characters without an upper half is the alphabet alone.
struct CharacterSet {
    const char *Name;
    Kind How;
    const char16_t *UpperHalf = nullptr;
};

constexpr CharacterSet theSets[] = {
    {"utf-8", Kind::Utf8},
    {"utf8", Kind::Utf8},
    {"us-ascii", Kind::OneByte},
    {"ascii", Kind::OneByte},
    {"windows-1251", Kind::OneByte, theWindows1251},
    {"cp1251", Kind::OneByte, theWindows1251},
    {"koi8-r", Kind::OneByte, theKoi8R},
    {"koi8-u", Kind::OneByte, theKoi8U},
    {"ibm866", Kind::OneByte, theCodePage866},
    {"cp866", Kind::OneByte, theCodePage866},
    {"iso-8859-5", Kind::OneByte, theIso8859Part5},
    {"iso-8859-1", Kind::OneByte, theIso8859Part1},
    {"latin1", Kind::OneByte, theIso8859Part1},
    {"windows-1252", Kind::OneByte, theWindows1252},
    {"cp1252", Kind::OneByte, theWindows1252},
};

QByteArrayView View(std::string_view aBytes) {
    return {aBytes.data(), static_cast<qsizetype>(aBytes.size())};
}

bool IsBlankByte(char aByte) {
    return aByte == ' ' || aByte == '\t' || aByte == '\r' || aByte == '\n';
}

void SkipBlanks(QByteArrayView &rText) {
    while (!rText.isEmpty() && IsBlankByte(rText.front())) rText = rText.sliced(1);
}

/// Takes `name="value"` off the text; false if there is none.
bool TakePart(QByteArrayView &rText, QByteArrayView &rName, QByteArrayView &rValue) {
    SkipBlanks(rText);
    qsizetype length = 0;
    while (length < rText.size() && rText[length] >= 'a' && rText[length] <= 'z') ++length;
    rName = rText.first(length);
    rText = rText.sliced(length);
    SkipBlanks(rText);
    if (length == 0 || !rText.startsWith('=')) return false;
    rText = rText.sliced(1);
    SkipBlanks(rText);
    if (rText.isEmpty() || (rText.front() != '"' && rText.front() != '\'')) return false;
    const qsizetype end = rText.indexOf(rText.front(), 1);
    if (end < 0) return false;
    rValue = rText.sliced(1, end - 1);
    rText = rText.sliced(end + 1);
    return true;
}

/// The character set that the declaration names; empty without one.
QByteArrayView DeclaredSet(QByteArrayView aText) {
    constexpr qsizetype start = 5;
    if (!aText.startsWith("<?xml") || aText.size() == start || !IsBlankByte(aText[start]))
        return {};
    aText = aText.sliced(start);
    QByteArrayView name;
    QByteArrayView value;
    while (TakePart(aText, name, value)) {
        if (name == QByteArrayView("encoding")) return value;
    }
    return {};
}

char *PutUtf8(char *aEnd, char32_t aCharacter) {
    const auto put = [&](char32_t aLead, int aRest) {
        *aEnd++ = static_cast<char>(aLead | aCharacter >> static_cast<unsigned>(6 * aRest));
        while (aRest-- > 0)
            *aEnd++ =
                static_cast<char>(0x80U | (aCharacter >> static_cast<unsigned>(6 * aRest) & 0x3FU));
    };
    aCharacter < 0x80      ? put(0, 0)
    : aCharacter < 0x800   ? put(0xC0, 1)
    : aCharacter < 0x10000 ? put(0xE0, 2)
                           : put(0xF0, 3);
    return aEnd;
}

/// False if a byte has no character.
bool AddOneByte(const QByteArray &aBytes, const char16_t *aUpperHalf, QByteArray &rUtf8) {
    const auto isUpper = [](char byte) { return (static_cast<quint8>(byte) & 0x80U) != 0; };
    const auto upper = std::count_if(aBytes.cbegin(), aBytes.cend(), isUpper);
    if (upper == 0) {
        rUtf8 = aBytes;
        return true;
    }
    rUtf8 = QByteArray(aBytes.size() + 2 * upper, Qt::Uninitialized);
    char *end = rUtf8.data();
    const char *byte = aBytes.cbegin();
    for (; byte != aBytes.cend() && (aUpperHalf || !isUpper(*byte)); ++byte) {
        if (isUpper(*byte))
            end = PutUtf8(end, aUpperHalf[static_cast<quint8>(*byte) - 0x80U]);
        else
            *end++ = *byte;
    }
    rUtf8.truncate(end - rUtf8.constData());
    return byte == aBytes.cend();
}

template <class Unit, bool IsBig>
char32_t UnitAt(const char *aPlace) {
    return IsBig ? qFromBigEndian<Unit>(aPlace) : qFromLittleEndian<Unit>(aPlace);
}

/// False if the bytes are no characters from some place on.
template <class Unit, bool IsBig>
bool AddWide(QByteArrayView aBytes, QByteArray &rUtf8) {
    constexpr qsizetype size = sizeof(Unit);
    rUtf8 = QByteArray(aBytes.size() / size * (size == 2 ? 3 : 4), Qt::Uninitialized);
    char *end = rUtf8.data();
    qsizetype i = 0;
    for (; i + size <= aBytes.size(); i += size) {
        char32_t character = UnitAt<Unit, IsBig>(aBytes.data() + i);
        if (size == 2 && QChar::isHighSurrogate(character) && i + 2 * size <= aBytes.size()) {
            const char32_t low = UnitAt<Unit, IsBig>(aBytes.data() + i + size);
            if (!QChar::isLowSurrogate(low)) break;
            character = QChar::surrogateToUcs4(static_cast<char16_t>(character),
                                               static_cast<char16_t>(low));
            i += size;
        }
        if (QChar::isSurrogate(character) || character > QChar::LastValidCodePoint) break;
        end = PutUtf8(end, character);
    }
    rUtf8.truncate(end - rUtf8.constData());
    return i == aBytes.size();
}

bool AddText(const CharacterSet &aSet, const QByteArray &aBytes, qsizetype aMark,
             QByteArray &rUtf8) {
    const QByteArrayView bytes = QByteArrayView(aBytes).sliced(aMark);
    switch (aSet.How) {
        case Kind::Utf16Little:
            return AddWide<char16_t, false>(bytes, rUtf8);
        case Kind::Utf16Big:
            return AddWide<char16_t, true>(bytes, rUtf8);
        case Kind::Utf32Little:
            return AddWide<char32_t, false>(bytes, rUtf8);
        case Kind::Utf32Big:
            return AddWide<char32_t, true>(bytes, rUtf8);
        case Kind::OneByte:
            return AddOneByte(aBytes, aSet.UpperHalf, rUtf8);
        case Kind::Utf8:  // the parser passes over the mark, and judges the bytes
        case Kind::Refused:
            break;
    }
    rUtf8 = aBytes;
    return true;
}

Beginning BeginningOf(QByteArrayView aBytes) {
    for (const Beginning &beginning : theBeginnings) {
        if (aBytes.startsWith(View(beginning.Bytes))) return beginning;
    }
    return {{}, Kind::Utf8, 0};
}

/// Whether it can be a name at all; about what cannot the parser complains.
bool IsName(QByteArrayView aName) {
    const auto isGood = [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
               (byte >= '0' && byte <= '9') || byte == '-' || byte == '_' || byte == '.' ||
               byte == ':';
    };
    constexpr qsizetype longest = 40;
    return !aName.isEmpty() && aName.size() <= longest &&
           std::all_of(aName.cbegin(), aName.cend(), isGood);
}

CharacterSet SetOf(QByteArrayView aName) {
    if (!IsName(aName)) return {"", Kind::Utf8};
    for (const CharacterSet &set : theSets) {
        if (aName.compare(set.Name, Qt::CaseInsensitive) == 0) return set;
    }
    return {"", Kind::Refused};
}

QString Refusal(QByteArrayView aName) {
    const QString name = QString::fromLatin1(aName);
    for (const char *wide : {"utf-16", "utf-32", "iso-10646-ucs", "ucs-"}) {
        if (name.startsWith(QLatin1String(wide), Qt::CaseInsensitive))
            return QStringLiteral("Файл записан не в той кодировке, которую он объявляет (%1).")
                .arg(name);
    }
    return QStringLiteral(
               "Кодировка \"%1\" не поддерживается. Сохраните файл в кодировке UTF-8 "
               "или windows-1251.")
        .arg(name);
}

/// A beginning that the parser cannot take for a mark.
bool BeginsPlainly(const QByteArray &aUtf8) {
    return aUtf8.size() < 2 || (aUtf8[0] == '<' && aUtf8[1] != 0);
}

/// Behind the next aEnd in the text, or at its end.
const char *Behind(const char *aFrom, const char *aTextEnd, std::string_view aEnd) {
    const char *found = std::search(aFrom, aTextEnd, aEnd.begin(), aEnd.end());
    return found == aTextEnd ? found : found + aEnd.size();
}

const char *Find(const char *aFrom, const char *aTextEnd, char aWanted) {
    const void *found =
        aFrom == aTextEnd ? nullptr
                          : std::memchr(aFrom, aWanted, static_cast<std::size_t>(aTextEnd - aFrom));
    return found ? static_cast<const char *>(found) : aTextEnd;
}

/// Where the markup that is no start tag ends; null of a start tag. aFrom stands behind its "<".
const char *BehindOther(const char *aFrom, const char *aTextEnd) {
    const std::string_view rest(aFrom, static_cast<std::size_t>(aTextEnd - aFrom));
    if (rest.starts_with('?')) return Behind(aFrom, aTextEnd, "?>");
    if (rest.starts_with("!--")) return Behind(aFrom + 3, aTextEnd, "-->");
    if (rest.starts_with("![CDATA[")) return Behind(aFrom, aTextEnd, "]]>");
    return rest.starts_with('/') ? aFrom : nullptr;
}

}  // namespace

bool XmlText::IsBlank() const {
    const QByteArrayView text(Utf8);
    const QByteArrayView behindMark = text.sliced(text.startsWith(View(theUtf8Mark)) ? 3 : 0);
    return std::all_of(behindMark.cbegin(), behindMark.cend(), IsBlankByte);
}

XmlText XmlTextOf(const QByteArray &aBytes) {
    const Beginning beginning = BeginningOf(aBytes);
    const bool isTold = !beginning.Bytes.empty();
    const QByteArrayView name = isTold ? QByteArrayView("EBCDIC") : DeclaredSet(aBytes);
    const CharacterSet set = isTold ? CharacterSet{"", beginning.How} : SetOf(name);
    XmlText text;
    if (set.How == Kind::Refused) {
        if (!isTold) text.Utf8 = aBytes;
        text.Reason = Refusal(name);
        return text;
    }
    if (!AddText(set, aBytes, beginning.Mark, text.Utf8)) {
        text.Fault = text.Utf8.size();
        text.Reason = QStringLiteral("Здесь стоят байты, недопустимые в кодировке файла.");
    }
    if (set.How == Kind::Utf8 && isTold) return text;
    if (!BeginsPlainly(text.Utf8)) text.Utf8.prepend(View(theUtf8Mark));
    return text;
}

qsizetype PlaceWithMoreAttributes(QByteArrayView aText, qint32 aMost) {
    // Most files have fewer in all.
    if (std::count(aText.cbegin(), aText.cend(), '=') <= aMost) return -1;
    const char *const end = aText.cend();
    const char *at = Find(aText.cbegin(), end, '<');
    while (at != end) {
        if (const char *other = BehindOther(++at, end)) {
            at = Find(other, end, '<');
            continue;
        }
        qint32 attributes = 0;
        for (; at != end && *at != '>' && *at != '<'; ++at) {
            if (*at != '"' && *at != '\'') continue;
            if (++attributes > aMost) return at - aText.cbegin();
            at = Find(at + 1, end, *at);
            if (at == end) return -1;
        }
        at = Find(at, end, '<');
    }
    return -1;
}

}  // namespace Vk_DocQuery
