// Draws a vector picture as the pictures of a folder of icons:
//   vk_draw_icon PICTURE FOLDER NAME SIZE ...     leaves FOLDER/SIZE/NAME.png of each size in
//   pixels
#include <cstdio>
#include <cstdlib>

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

namespace {

[[noreturn]] void Refuse(const char *aWhat, const QString &aFile) {
    std::fprintf(stderr, "vk_draw_icon: %s %s\n", aWhat, qUtf8Printable(aFile));
    std::exit(1);
}

QImage Drawn(QSvgRenderer &aPicture, int aSize) {
    QImage image(aSize, aSize, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    aPicture.render(&painter);
    return image;
}

}  // namespace

int main(int aCount, char **aArguments) {
    if (aCount < 5) Refuse("wants", QStringLiteral("PICTURE FOLDER NAME SIZE ..."));
    const QString source = QString::fromLocal8Bit(aArguments[1]);
    QSvgRenderer picture;
    if (!picture.load(source)) Refuse("cannot read", source);
    const QDir folder(QString::fromLocal8Bit(aArguments[2]));
    for (int size = 4; size < aCount; ++size) {
        const QString pixels = QString::fromLocal8Bit(aArguments[size]);
        const QString file = folder.filePath(pixels + u'/' + QString::fromLocal8Bit(aArguments[3]) +
                                             QStringLiteral(".png"));
        if (!folder.mkpath(pixels) || !Drawn(picture, pixels.toInt()).save(file))
            Refuse("cannot write", file);
    }
}
