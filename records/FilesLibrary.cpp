#include "FilesLibrary.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

#include <Vk_DocQuery/Failure.h>

namespace Vk_Records {

using Vk_DocQuery::Failure;

namespace {

enum FilesFailure : qint32 {
    DiskFull = 61,
    WriteFailed = 57,
    PermissionDenied = 70,
    NotAFile = 75,
    FolderMissing = 76,
    CharacterRefused = 93,
};

constexpr qint32 theUtf8Page = 65001;
constexpr qsizetype theLongestPath = 100;
constexpr qsizetype theBlock = 32;
const QString theGap = QStringLiteral("...");

[[noreturn]] void Raise(qint32 aNumber, const QString &aText) {
    throw Failure(aNumber, QStringLiteral("Vk_Lib.FilesLibrary"), aText);
}

/// The byte of every character of a one-byte code page; 0 where it has none.
using CodePage = std::array<quint8, 0x10000>;

std::unique_ptr<CodePage> MadePage(qint32 aNumber) {
    for (const char *form : {"windows-%1", "cp%1"}) {
        const QByteArray name = QString::fromLatin1(form).arg(aNumber).toLatin1();
        QStringDecoder decoder(name.constData());
        if (!decoder.isValid()) continue;
        auto page = std::make_unique<CodePage>();
        for (int byte = 1; byte < 256; ++byte) {
            const char code = static_cast<char>(byte);
            const QString character = decoder.decode(QByteArrayView(&code, 1));
            if (character.size() != 1 || character[0] == QChar::ReplacementCharacter) continue;
            // Converters let the control characters U+0080 to U+009F through where a code page has
            // no character; readers of such a byte do not agree on what it is.
            const char16_t unit = character[0].unicode();
            if (unit < 0x80 || unit > 0x9F) (*page)[unit] = static_cast<quint8>(byte);
        }
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
        Raise(Vk_DocQuery::InvalidArgument,
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
        Raise(CharacterRefused,
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

/// Says what is wrong with a place to save at before anything is touched there.
void CheckPlace(const QString &aFileName) {
    if (aFileName.isEmpty())
        Raise(Vk_DocQuery::InvalidArgument, QStringLiteral("Имя файла не задано."));
    const QFileInfo info(aFileName);
    if (info.isDir()) Raise(NotAFile, QStringLiteral("По этому пути находится папка, а не файл."));
    if (info.exists() && !info.isFile()) {
        Raise(NotAFile,
              QStringLiteral("По этому пути находится не обычный файл, а канал или устройство."));
    }
    const QString folder = QDir::toNativeSeparators(info.absolutePath());
    if (!info.absoluteDir().exists())
        Raise(FolderMissing, QStringLiteral("Папка \"%1\" не найдена.").arg(folder));
    if (info.exists() && !info.isWritable())
        Raise(PermissionDenied, QStringLiteral("Файл доступен только для чтения."));
}

[[noreturn]] void RaiseNotOpened(const QSaveFile &aFile, int aCode) {
    if (aCode == EACCES || aCode == EPERM || aFile.error() == QFileDevice::PermissionsError) {
        Raise(PermissionDenied,
              QStringLiteral("Нет прав на запись в папку \"%1\".")
                  .arg(QDir::toNativeSeparators(QFileInfo(aFile.fileName()).absolutePath())));
    }
    Raise(WriteFailed, QStringLiteral("Файл не удалось создать: %1.").arg(aFile.errorString()));
}

[[noreturn]] void RaiseNotWritten(QSaveFile &aFile, int aCode) {
    const QString text = aFile.errorString();
    aFile.cancelWriting();
    if (aFile.error() == QFileDevice::ResourceError || aCode == ENOSPC || aCode == EFBIG)
        Raise(DiskFull, QStringLiteral("На диске не хватает места."));
    Raise(WriteFailed, QStringLiteral("Файл не удалось записать: %1.").arg(text));
}

[[noreturn]] void RaiseNotReplaced(const QSaveFile &aFile, int aCode) {
    if (aCode == EPERM || aCode == EACCES) {
        Raise(PermissionDenied,
              QStringLiteral("Файл не удалось заменить: нет прав на его удаление."));
    }
    Raise(WriteFailed, QStringLiteral("Файл не удалось заменить: %1.").arg(aFile.errorString()));
}

bool IsSeparator(QChar aCharacter) {
    return aCharacter == u'/' || aCharacter == u'\\';
}

qsizetype NextSeparator(const QString &aPath, qsizetype aFrom) {
    for (qsizetype i = aFrom; i < aPath.size(); ++i) {
        if (IsSeparator(aPath[i])) return i;
    }
    return -1;
}

/// Length of the root and the first folder with the separator behind it; 0 if there is no such
/// folder.
qsizetype HeadLength(const QString &aPath) {
    qsizetype root = aPath.size() > 2 && aPath[1] == u':' ? 2 : 0;
    while (root < aPath.size() && IsSeparator(aPath[root])) ++root;
    return NextSeparator(aPath, root) + 1;
}

}  // namespace

void FilesLibrary::SaveTextToFile(const QString &aText, const QString &aFileName,
                                  qint32 aCodePage) {
    const QByteArray bytes = XmlBytes(aText, aCodePage);
    CheckPlace(aFileName);
    QSaveFile file(aFileName);
    errno = 0;
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) RaiseNotOpened(file, errno);
    errno = 0;
    if (file.write(bytes) != bytes.size()) RaiseNotWritten(file, errno);
    errno = 0;
    if (!file.commit()) RaiseNotReplaced(file, errno);
}

QByteArray XmlBytes(const QString &aText, qint32 aCodePage) {
    if (aCodePage != theUtf8Page) return OneByteForm(aText, PageOf(aCodePage));
    for (qsizetype position = 0; position < aText.size();) CharacterAt(aText, position);
    return aText.toUtf8();
}

QString FilesLibrary::ShortenFilePath(const QString &aPath, QString &rHead, QString &rTail,
                                      QString &rName) {
    qsizetype name = aPath.size();
    while (name > 0 && !IsSeparator(aPath[name - 1])) --name;
    rName = aPath.mid(name);
    rHead.clear();
    rTail = aPath;
    if (aPath.size() <= theLongestPath) return aPath;

    qsizetype head = HeadLength(aPath);
    const auto fits = [&](qsizetype aTail) {
        return head + theGap.size() + aPath.size() - aTail <= theLongestPath;
    };
    const qsizetype last = std::max<qsizetype>(name - 1, 0);  // where the shortest tail begins
    if (!fits(last)) head = 0;
    qsizetype tail = head;
    while (tail < last && !(IsSeparator(aPath[tail]) && fits(tail))) ++tail;
    rHead = aPath.left(head);
    rTail = aPath.mid(tail);
    return rHead + theGap + rTail;
}

}  // namespace Vk_Records
