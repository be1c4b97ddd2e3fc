#include "queryfile/FileBytes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include "foundation/Windows1251.h"

namespace Vk_DocQuery {

namespace {

/// The UTF-8 forms of the upper half of windows-1251.
struct UpperHalf {
    struct Form {
        char Bytes[3];
        quint8 Length;
    };
    std::array<Form, 128> Forms;
};

const UpperHalf &Windows1251() {
    static const UpperHalf half = [] {
        UpperHalf result;
        for (std::size_t i = 0; i < result.Forms.size(); ++i) {
            const QByteArray utf8 = QStringView(&theWindows1251[i], 1).toUtf8();
            UpperHalf::Form &form = result.Forms[i];
            form.Length = static_cast<quint8>(std::min<qsizetype>(utf8.size(), 3));
            std::memcpy(form.Bytes, utf8.constData(), form.Length);
        }
        return result;
    }();
    return half;
}

QByteArray Utf8OfWindows1251(const QByteArray &aBytes) {
    const UpperHalf &half = Windows1251();
    qsizetype upper = 0;
    for (const char byte : aBytes) upper += static_cast<quint8>(byte) >> 7U;
    if (upper == 0) return aBytes;
    QByteArray result(aBytes.size() + 2 * upper, Qt::Uninitialized);
    char *end = result.data();
    for (const char byte : aBytes) {
        const auto code = static_cast<quint8>(byte);
        if (code < 128) {
            *end++ = byte;
            continue;
        }
        const UpperHalf::Form &form = half.Forms[code - 128U];
        std::memcpy(end, form.Bytes, form.Length);
        end += form.Length;
    }
    result.truncate(end - result.constData());
    return result;
}

/// The character set that the declaration names; empty without a declaration.
QByteArrayView DeclaredEncoding(QByteArrayView aBytes) {
    constexpr qsizetype longestDeclaration = 200;
    if (!aBytes.startsWith("<?xml")) return {};
    const QByteArrayView start = aBytes.first(std::min(aBytes.size(), longestDeclaration));
    const QByteArrayView declaration = start.first(std::max<qsizetype>(start.indexOf("?>"), 0));
    const qsizetype word = declaration.indexOf("encoding");
    if (word < 0) return {};
    QByteArrayView value = declaration.sliced(word + 8).trimmed();
    if (!value.startsWith('=')) return {};
    value = value.sliced(1).trimmed();
    if (value.isEmpty() || (value[0] != '"' && value[0] != '\'')) return {};
    const qsizetype end = value.indexOf(value[0], 1);
    return end < 0 ? QByteArrayView() : value.sliced(1, end - 1);
}

QString ReasonNoFile(const QFileInfo &aInfo) {
    if (aInfo.filePath().isEmpty()) return QStringLiteral("Имя файла не задано.");
    if (!aInfo.exists()) return QStringLiteral("Файл не найден.");
    if (aInfo.isDir()) return QStringLiteral("По этому пути находится папка, а не файл.");
    return QStringLiteral("По этому пути находится не обычный файл, а канал или устройство.");
}

QString ReasonNotOpened(const QFile &aFile, int aCode) {
    if (aCode == EACCES || aCode == EPERM || aFile.error() == QFileDevice::PermissionsError)
        return QStringLiteral("Нет прав на чтение файла.");
    return QStringLiteral("Файл не удалось открыть: %1.").arg(aFile.errorString());
}

/// How many bytes a character of the alphabet takes, and which of them is not zero.
struct CharacterForm {
    int Size = 1;
    int Place = 0;

    /// The character, or zero if it is one of those that take more.
    char Plain(const char *aCharacter) const {
        for (int i = 0; i < Size; ++i) {
            if (i != Place && aCharacter[i] != 0) return 0;
        }
        return aCharacter[Place];
    }
};

CharacterForm FormOf(const QByteArray &aBytes) {
    using namespace std::string_view_literals;
    const QByteArrayView bytes(aBytes);
    const auto begins = [&](std::string_view aStart) {
        return bytes.startsWith(QByteArrayView(aStart.data(), static_cast<int>(aStart.size())));
    };
    if (begins("<\0\0\0"sv)) return {4, 0};
    if (begins("\0\0\0<"sv)) return {4, 3};
    if (begins("<\0"sv)) return {2, 0};
    if (begins("\0<"sv)) return {2, 1};
    return {};
}

/// Where a start tag has its attribute number aMost + 1; -1 if none has so many. Plain bytes, a
/// Size of 1, are what nearly every file is made of.
template <int Size>
qsizetype EndOfFullTag(const QByteArray &aBytes, const CharacterForm &aForm, qint32 aMost) {
    const char *const bytes = aBytes.constData();
    const qsizetype step = Size == 1 ? 1 : aForm.Size;
    qint32 attributes = 0;
    bool isTag = false;
    char quote = 0;  // of the value that is open
    for (qsizetype i = 0; i + step <= aBytes.size(); i += step) {
        const char character = Size == 1 ? bytes[i] : aForm.Plain(bytes + i);
        if (character == '<') {  // nowhere but at the beginning of a tag
            isTag = true;
            quote = 0;
            attributes = 0;
        } else if (!isTag) {
            continue;
        } else if (quote != 0) {
            if (character == quote) quote = 0;
        } else if (character == '>') {
            isTag = false;
        } else if (character == '"' || character == '\'') {
            quote = character;
            if (++attributes > aMost) return i;
        }
    }
    return -1;
}

}  // namespace

QString ReadFileBytes(const QString &aFileName, qint64 aLargest, QByteArray &rBytes) {
    const QFileInfo info(aFileName);
    if (!info.isFile()) return ReasonNoFile(info);
    QFile file(aFileName);
    errno = 0;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return ReasonNotOpened(file, errno);
    const auto tooLarge = [=] {
        return QStringLiteral("Файл слишком велик: допускается не более %1 МБ.")
            .arg(aLargest / (qint64{1024} * 1024));
    };
    const qint64 size = info.size();
    if (size > aLargest) return tooLarge();
    rBytes =
        size > 0 ? file.read(size) : file.read(aLargest + 1);  // some file systems tell no size
    if (rBytes.size() > aLargest) return tooLarge();
    if (file.error() != QFileDevice::NoError || rBytes.size() < size)
        return QStringLiteral("Файл не удалось прочитать: %1.").arg(file.errorString());
    return QString();
}

QByteArray DecodedXmlBytes(const QByteArray &aBytes, bool &rDecoded) {
    rDecoded = true;
    if (aBytes.startsWith("\xEF\xBB\xBF")) return aBytes.mid(3);
    if (aBytes.startsWith("\xFF\xFE") || aBytes.startsWith("\xFE\xFF")) {
        QStringDecoder decoder(QStringDecoder::Utf16);
        const QString text = decoder.decode(aBytes);
        if (!decoder.hasError() && text.isValidUtf16()) return text.toUtf8();
    }
    const QByteArrayView encoding = DeclaredEncoding(aBytes);
    if (encoding.compare("windows-1251", Qt::CaseInsensitive) == 0 ||
        encoding.compare("cp1251", Qt::CaseInsensitive) == 0)
        return Utf8OfWindows1251(aBytes);
    rDecoded = false;
    return aBytes;
}

qint32 LineWithMoreAttributes(const QByteArray &aBytes, qint32 aMost) {
    // Most files have fewer in all.
    if (std::count(aBytes.cbegin(), aBytes.cend(), '=') <= aMost) return 0;
    const CharacterForm form = FormOf(aBytes);
    const qsizetype end = form.Size == 1 ? EndOfFullTag<1>(aBytes, form, aMost)
                                         : EndOfFullTag<0>(aBytes, form, aMost);
    qint32 line = 1;
    for (qsizetype i = 0; i < end; i += form.Size)
        line += form.Plain(aBytes.constData() + i) == '\n';
    return end < 0 ? 0 : line;
}

}  // namespace Vk_DocQuery
