#include "foundation/XmlBytes.h"

#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include <QStringDecoder>

#include "foundation/FilesFailure.h"
#include "foundation/Windows1251.h"

namespace Vk_DocQuery {

namespace {

constexpr qint32 theUtf8Page = 65001;
constexpr qsizetype theBlock = 32;

/// The byte of every character of a one-byte code page; 0 where it has none.
using CodePage = std::array<quint8, 0x10000>;

/// The byte stands for the character, unless the character is one of the controls U+0080 to U+009F:
/// they show up where a code page has nothing, and readers of such a byte do not agree on what it
/// is.
void Enter(CodePage &rPage, quint8 aByte, char16_t aCharacter) {
    if (aCharacter < 0x80 || aCharacter > 0x9F) rPage[aCharacter] = aByte;
}

/// The program's own page is a table: not every Qt has a converter for it.
std::unique_ptr<CodePage> Page1251() {
    auto page = std::make_unique<CodePage>();
    for (quint8 byte = 1; byte < 128; ++byte) Enter(*page, byte, byte);
    for (quint8 i = 0; i < 128; ++i) Enter(*page, static_cast<quint8>(128 + i), theWindows1251[i]);
    return page;
}

std::unique_ptr<CodePage> PageOfConverter(QStringDecoder aDecoder) {
    auto page = std::make_unique<CodePage>();
    for (int byte = 1; byte < 256; ++byte) {
        const char code = static_cast<char>(byte);
        const QString character = aDecoder.decode(QByteArrayView(&code, 1));
        if (character.size() != 1 || character[0] == QChar::ReplacementCharacter) continue;
        Enter(*page, static_cast<quint8>(byte), character[0].unicode());
    }
    return page;
}

std::unique_ptr<CodePage> MadePage(qint32 aNumber) {
    if (aNumber == 1251) return Page1251();
    for (const char *form : {"windows-%1", "cp%1"}) {
        QStringDecoder decoder(QString::fromLatin1(form).arg(aNumber).toLatin1().constData());
        if (!decoder.isValid()) continue;
        auto page = PageOfConverter(std::move(decoder));
        if ((*page)[u'A'] == 'A' && (*page)[u'<'] == '<') return page;
    }
    return nullptr;
}

const CodePage &PageOf(qint32 aNumber) {
    static std::mutex lock;
    static std::map<qint32, std::unique_ptr<CodePage>> pages;
    const std::lock_guard guard(lock);
    std::unique_ptr<CodePage> &page = pages[aNumber];
    if (!page) page = MadePage(aNumber);
    if (!page)
        RaiseFiles(InvalidArgument,
                   QStringLiteral("Кодовая страница %1 не поддерживается.").arg(aNumber));
    return *page;
}

bool IsXmlCharacter(char32_t aCharacter) {
    return aCharacter == 0x9 || aCharacter == 0xA || aCharacter == 0xD ||
           (aCharacter >= 0x20 && aCharacter <= 0xD7FF) ||
           (aCharacter >= 0xE000 && aCharacter <= 0xFFFD) ||
           (aCharacter >= 0x10000 && aCharacter <= 0x10FFFF);
}

/// The character that begins at the position, taken on over a surrogate pair.
char32_t CharacterAt(QStringView aText, qsizetype &rPosition) {
    const char16_t unit = aText[rPosition++].unicode();
    char32_t character = unit;
    if (QChar::isHighSurrogate(unit) && rPosition < aText.size() &&
        aText[rPosition].isLowSurrogate())
        character = QChar::surrogateToUcs4(unit, aText[rPosition++].unicode());
    if (!IsXmlCharacter(character)) {
        const QString code =
            QString::number(static_cast<uint>(character), 16).toUpper().rightJustified(4, u'0');
        RaiseFiles(CharacterRefused,
                   QStringLiteral("Символ U+%1 нельзя сохранить в файле. Уберите его из текста.")
                       .arg(code));
    }
    return character;
}

/// Takes over plain characters, which are the same in every code page, block by block; returns how
/// many.
qsizetype CopyPlain(QStringView aText, qsizetype aFrom, char *aTo) {
    const char16_t *text = aText.utf16() + aFrom;
    const qsizetype length = aText.size() - aFrom;
    qsizetype copied = 0;
    while (copied + theBlock <= length) {
        std::array<quint8, theBlock> bytes;
        quint16 all = 0;
        for (std::size_t i = 0; i < theBlock; ++i) {
            all = static_cast<quint16>(all | text[copied + static_cast<qsizetype>(i)]);
            bytes[i] = static_cast<quint8>(text[copied + static_cast<qsizetype>(i)]);
        }
        quint8 odd = all > 0x7F;
        for (const quint8 byte : bytes) {
            odd = static_cast<quint8>(
                odd | ((byte < 0x20) & (byte != '\n') & (byte != '\r') & (byte != '\t')));
        }
        if (odd != 0) break;
        std::memcpy(aTo + copied, bytes.data(), bytes.size());
        copied += theBlock;
    }
    return copied;
}

QByteArray OneByteForm(QStringView aText, const CodePage &aPage) {
    QByteArray bytes(aText.size(), Qt::Uninitialized);
    qsizetype used = 0;
    for (qsizetype position = 0; position < aText.size();) {
        const qsizetype plain = CopyPlain(aText, position, bytes.data() + used);
        position += plain;
        used += plain;
        const qsizetype end = std::min(position + theBlock, aText.size());
        while (position < end) {
            const char16_t unit = aText[position].unicode();
            const quint8 byte = aPage[unit];
            if (byte != 0 && IsXmlCharacter(unit)) {
                bytes[used++] = static_cast<char>(byte);
                ++position;
                continue;
            }
            const QByteArray reference =
                "&#" + QByteArray::number(static_cast<uint>(CharacterAt(aText, position))) + ';';
            const qsizetype needed = used + reference.size() + (aText.size() - position);
            if (needed > bytes.size()) bytes.resize(needed + needed / 2);
            std::memcpy(bytes.data() + used, reference.constData(),
                        static_cast<std::size_t>(reference.size()));
            used += reference.size();
        }
    }
    bytes.truncate(used);
    return bytes;
}

}  // namespace

QByteArray XmlBytes(const QString &aText, qint32 aCodePage) {
    if (aCodePage != theUtf8Page) return OneByteForm(aText, PageOf(aCodePage));
    for (qsizetype position = 0; position < aText.size();) CharacterAt(aText, position);
    return aText.toUtf8();
}

}  // namespace Vk_DocQuery
