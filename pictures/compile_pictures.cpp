// Composes the pictures by the table and writes them as a source file:
//   vk_compile_pictures FOLDER_OF_THE_PARTS SOURCE_FILE

#include <cmath>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <vector>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "PictureTable.h"

namespace {

constexpr int theSide = 16;
constexpr int theColourCount = 256;
/// 125, 150 and 200 %.
constexpr int theSharpSides[] = {20, 24, 32};
/// Title bars and task bars show the icon of a window larger.
constexpr int theWindowSides[] = {20, 24, 32, 48, 64, 128};
/// What stands for a transparent pixel.
constexpr QRgb theMaskColour = 0xFFC0C0C0;

struct Accents {
    Tone ForTone;
    const char *Light;
    const char *Middle;
    const char *Dark;
    const char *Paper;
};

/// The first row is what the parts are drawn in.
constexpr Accents theAccents[] = {
    {Tone::Blue, "#a9cdf5", "#3b7fd4", "#1c4f96", "#ffffff"},
    {Tone::Green, "#b5e3b8", "#3fa34d", "#1d6b2b", "#ffffff"},
    {Tone::Teal, "#a8e0e0", "#2a9d9d", "#136566", "#ffffff"},
    {Tone::Orange, "#fcd3a1", "#e8862a", "#9c4f0c", "#ffffff"},
    {Tone::Red, "#f6bab5", "#d9483b", "#8e1f16", "#ffffff"},
    {Tone::Violet, "#d6c2f2", "#8a5ccf", "#533091", "#ffffff"},
    {Tone::Brown, "#dfc7a8", "#a5763f", "#654318", "#ffffff"},
    {Tone::Grey, "#d3d8de", "#8b95a1", "#555e69", "#ffffff"},
    {Tone::Yellow, "#fdeaa0", "#ecbb35", "#7a5608", "#ffffff"},
    {Tone::Old, "#e0d5ba", "#b5a98a", "#665d47", "#f3ecd9"},
};

[[noreturn]] void Fail(const QString &aText) {
    throw std::runtime_error(aText.toStdString());
}

/// The parts by folder and name, read once.
class Parts {
public:
    explicit Parts(const QString &aFolder) : theFolder(aFolder) {}

    QByteArray Source(const QString &aName) {
        QByteArray &source = theSources[aName];
        if (source.isEmpty()) {
            QFile file(theFolder.filePath(aName + QStringLiteral(".svg")));
            if (!file.open(QIODevice::ReadOnly))
                Fail(file.fileName() + QStringLiteral(": ") + file.errorString());
            source = file.readAll();
        }
        return source;
    }

private:
    QDir theFolder;
    QHash<QString, QByteArray> theSources;
};

QByteArray InTone(QByteArray aSource, Tone aTone) {
    const Accents &from = theAccents[0];
    for (const Accents &to : theAccents) {
        if (to.ForTone != aTone || aTone == from.ForTone) continue;
        aSource.replace(from.Light, to.Light).replace(from.Middle, to.Middle);
        aSource.replace(from.Dark, to.Dark).replace(from.Paper, to.Paper);
    }
    return aSource;
}

QImage Blank(int aSide) {
    QImage image(aSide, aSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// The drawing with the edges of its rectangles moved to the nearest pixel, for 125 and 150 %:
/// digits, cells and frames stay crisp there.
QByteArray FittedToGrid(const QByteArray &aSource, double aScale) {
    QByteArray fitted;
    QXmlStreamReader reader(aSource);
    QXmlStreamWriter writer(&fitted);
    while (!reader.atEnd()) {
        reader.readNext();
        if (!reader.isStartElement() || reader.name() != u"rect") {
            if (reader.tokenType() > QXmlStreamReader::Invalid) writer.writeCurrentToken(reader);
            continue;
        }
        const auto attributes = reader.attributes();
        const bool isOutlined = attributes.hasAttribute(QStringLiteral("stroke"));
        const double outline = isOutlined ? 0.5 : 0;
        const double inner = isOutlined ? std::floor(aScale) / aScale / 2 : 0;
        // A half goes up at 125 % and down at 150 %, which keeps the strokes of the digits at one
        // pixel.
        const double half = aScale < 1.5 ? 0.5 : 0.499;
        const auto edge = [&](double aEdge) { return std::floor(aEdge * aScale + half) / aScale; };
        const auto put = [&](const char *aStart, const char *aLength) {
            const double start = attributes.value(QLatin1String(aStart)).toDouble();
            const double length = attributes.value(QLatin1String(aLength)).toDouble();
            const double from = edge(start - outline) + inner;
            const double to = edge(start + length + outline) - inner;
            writer.writeAttribute(QLatin1String(aStart), QString::number(from));
            writer.writeAttribute(QLatin1String(aLength), QString::number(to - from));
        };
        writer.writeStartElement(QStringLiteral("rect"));
        put("x", "width");
        put("y", "height");
        if (isOutlined)
            writer.writeAttribute(QStringLiteral("stroke-width"), QString::number(2 * inner));
        for (const char *name : {"rx", "fill", "stroke"}) {
            if (attributes.hasAttribute(QLatin1String(name)))
                writer.writeAttribute(QLatin1String(name),
                                      attributes.value(QLatin1String(name)).toString());
        }
    }
    if (reader.hasError())
        Fail(reader.errorString() + QStringLiteral(": ") + QString::fromUtf8(aSource));
    return fitted;
}

void Draw(QImage &aImage, const QByteArray &aSource, const QRectF &aPlace) {
    QSvgRenderer renderer(FittedToGrid(aSource, aImage.width() / double{theSide}));
    if (!renderer.isValid()) Fail(QStringLiteral("not a drawing: ") + QString::fromUtf8(aSource));
    QPainter painter(&aImage);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, aPlace);
}

/// Lays a part over the picture with a clear rim of one of its sixteen around it, so that both keep
/// their outlines on any ground.
void LayOver(QImage &aImage, const QByteArray &aSource, const QRectF &aPlace) {
    QImage part = Blank(aImage.width());
    Draw(part, aSource, aPlace);
    QPainter painter(&aImage);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    const int rim = aImage.width() / theSide;
    for (int dy = -rim; dy <= rim; ++dy)
        for (int dx = -rim; dx <= rim; ++dx) painter.drawImage(dx, dy, part);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(0, 0, part);
}

QImage Compose(Parts &aParts, const PictureRow &aRow, int aSide) {
    const double half = aSide / 2.0;
    const auto part = [&](const char *aFolder, const char *aName) {
        return aParts.Source(QLatin1String(aFolder) + QLatin1String(aName));
    };
    QImage image = Blank(aSide);
    Draw(image, InTone(part("subjects/", aRow.Subject), aRow.SubjectTone), image.rect());
    const struct {
        const char *Folder;
        const char *Name;
        QRectF Place;
    } overlays[] = {
        {"numbers/", aRow.UpperNumber, QRectF(0, 0, aSide, half)},
        {"numbers/", aRow.LowerNumber, QRectF(0, std::round(half + half / 8), aSide, half)},
        {"badges/", aRow.LeftBadge, QRectF(0, half, half, half)},
        {"badges/", aRow.Badge, QRectF(half, half, half, half)},
    };
    for (const auto &overlay : overlays) {
        if (*overlay.Name != '\0')
            LayOver(image, part(overlay.Folder, overlay.Name), overlay.Place);
    }
    return image;
}

void Append(QByteArray &rBytes, quint32 aValue, int aCount) {
    for (int i = 0; i < aCount; ++i) rBytes.append(static_cast<char>(aValue >> (8 * i) & 0xFFU));
}

/// The colour of a pixel where each is there or not: half covered counts as there.
QRgb Solid(QRgb aPixel) {
    if (qAlpha(aPixel) < 128) return theMaskColour;
    const QRgb solid = qUnpremultiply(aPixel) | 0xFF000000U;
    return solid == theMaskColour ? solid - 0x010101U : solid;
}

/// An icon with one image of 16 by 16 pixels and 8 bits each: 1406 bytes.
QByteArray IconFile(const QImage &aImage) {
    QList<QRgb> palette{theMaskColour};
    QByteArray pixels;
    QByteArray mask;
    for (int y = theSide - 1; y >= 0; --y) {
        quint32 row = 0;
        for (int x = 0; x < theSide; ++x) {
            const QRgb colour = Solid(aImage.pixel(x, y));
            qsizetype index = palette.indexOf(colour);
            if (index < 0) {
                index = palette.size();
                palette.append(colour);
            }
            if (index >= theColourCount) Fail(QStringLiteral("too many colours"));
            Append(pixels, static_cast<quint32>(index), 1);
            row = row << 1U | (colour == theMaskColour ? 1U : 0U);
        }
        Append(mask, row >> 8U, 1);
        Append(mask, row, 1);
        Append(mask, 0, 2);
    }
    QByteArray icon;
    for (const quint32 value : {0U, 1U, 1U})
        Append(icon, value, 2);  // reserved, an icon, one image
    for (const quint32 value : {16U, 16U, 0U, 0U}) Append(icon, value, 1);
    for (const quint32 value : {1U, 8U}) Append(icon, value, 2);  // planes, bits
    Append(icon, 1406 - 22, 4);
    Append(icon, 22, 4);
    for (const quint32 value : {40U, 16U, 32U})
        Append(icon, value, 4);  // pixels and mask: twice the height
    for (const quint32 value : {1U, 8U}) Append(icon, value, 2);
    for (const quint32 value : {0U, 256U + 64U, 0U, 0U, 256U, 0U}) Append(icon, value, 4);
    palette.resize(theColourCount, 0);
    for (const QRgb colour : palette) Append(icon, colour & 0xFFFFFFU, 4);
    icon += pixels + mask;
    return icon;
}

QByteArray PngFile(const QImage &aImage) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!aImage.convertToFormat(QImage::Format_ARGB32).save(&buffer, "PNG", 0))
        Fail(QStringLiteral("no PNG can be written"));
    return buffer.data();
}

QByteArray ArrayOf(const QByteArray &aName, const QByteArray &aBytes) {
    QByteArray text = "constexpr unsigned char " + aName + "[] = {";
    for (qsizetype i = 0; i < aBytes.size(); ++i) {
        if (i % 32 == 0) text += '\n';
        text += QByteArray::number(static_cast<unsigned char>(aBytes[i])) + ',';
    }
    return text + "\n};\n";
}

QByteArray GroupName(Group aGroup) {
    switch (aGroup) {
        case Group::Listed:
            return "Listed";
        case Group::SharedOnly:
            return "SharedOnly";
        case Group::Window:
            break;
    }
    return "Window";
}

QByteArray SourceText(Parts &aParts) {
    QByteArray arrays;
    QByteArray rows;
    int number = 0;
    for (const PictureRow &row : PictureTable()) {
        const QByteArray name = "thePicture" + QByteArray::number(number++);
        arrays += ArrayOf(name, IconFile(Compose(aParts, row, theSide)));
        QByteArray sharp;
        const bool isOfWindow = qstrncmp(row.Key, "window_", 7) == 0;
        const auto sides = isOfWindow ? std::span<const int>(theWindowSides) : theSharpSides;
        for (const int side : sides) {
            const QByteArray sharpName = name + '_' + QByteArray::number(side);
            arrays += ArrayOf(sharpName, PngFile(Compose(aParts, row, side)));
            sharp += sharpName + ", ";
        }
        arrays += "constexpr CompiledPicture::Bytes " + name + "Sharp[] = {" + sharp + "};\n";
        rows += "    {\"" + QByteArray(row.Key) + "\", PictureGroup::" + GroupName(row.ListGroup) +
                ", " + name + ", " + name + "Sharp},\n";
    }
    return "// Made by vk_compile_pictures.\n// NOLINTBEGIN\n"
           "#include \"look/CompiledPictures.h\"\n\nnamespace Vk_DocQuery {\nnamespace {\n\n" +
           arrays + "constexpr CompiledPicture thePictures[] = {\n" + rows +
           "};\n\n}  // namespace\n\n"
           "std::span<const CompiledPicture> CompiledPictures() { return thePictures; }\n\n"
           "}  // namespace Vk_DocQuery\n// NOLINTEND\n";
}

}  // namespace

int main(int aCount, char **aArguments) try {
    if (aCount != 3) Fail(QStringLiteral("arguments: FOLDER_OF_THE_PARTS SOURCE_FILE"));
    Parts parts(QFile::decodeName(aArguments[1]));
    QSaveFile file(QFile::decodeName(aArguments[2]));
    const QByteArray text = SourceText(parts);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        Fail(file.fileName() + QStringLiteral(": ") + file.errorString());
    return 0;
} catch (const std::exception &exception) {
    std::fprintf(stderr, "vk_compile_pictures: %s\n", exception.what());
    return 1;
}
