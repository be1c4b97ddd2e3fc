// Writes a contact sheet of all pictures on a white, a grey and a dark ground:
//   vk_pictures_sheet FILE.png [PERCENT]
// PERCENT is the scale of the screen that the sheet is for, 100 if none is given.

#include <cstdio>
#include <vector>

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>

#include "look/CompiledPictures.h"
#include "look/Pictures.h"

using namespace Vk_DocQuery;

namespace {

constexpr int theSide = 16;
constexpr int theCellWidth = 176;
constexpr int theCellHeight = 22;
constexpr int theMargin = 8;
constexpr int theRowCount = 57;

struct Ground {
    QColor Paper;
    QColor Ink;
};

const Ground theGrounds[] = {
    {QColor(255, 255, 255), QColor(0, 0, 0)},
    {QColor(200, 200, 200), QColor(0, 0, 0)},
    {QColor(35, 38, 41), QColor(235, 235, 235)},
};

struct Caption {
    QString Key;
    QIcon Picture;
};

std::vector<Caption> AllPictures() {
    std::vector<Caption> all;
    const auto shared = SharedImages();
    all.reserve(static_cast<std::size_t>(shared->Count()) + 16);
    for (int i = 0; i < shared->Count(); ++i)
        all.push_back({shared->KeyAt(i), shared->Picture(shared->KeyAt(i))});
    const auto tabs = TabImages();
    for (int i = 0; i < tabs->Count(); ++i)
        all.push_back({QStringLiteral("tab: ") + tabs->KeyAt(i), tabs->Picture(tabs->KeyAt(i))});
    for (int i = 0; i < 4; ++i)
        all.push_back({QStringLiteral("status %1").arg(i), StatusPicture(i)});
    for (const int number : {OkPicture, CancelPicture, HelpPicture})
        all.push_back({QStringLiteral("standard picture %1").arg(number), StandardPicture(number)});
    for (const char *name : {"dialog", "picker", "browser"})
        all.push_back(
            {QStringLiteral("window: ") + QLatin1String(name), WindowIcon(QLatin1String(name))});
    return all;
}

void DrawGround(QPainter &aPainter, const QRect &aArea, const Ground &aGround, double aScale,
                const std::vector<Caption> &aPictures) {
    aPainter.fillRect(aArea, aGround.Paper);
    aPainter.setPen(aGround.Ink);
    int number = 0;
    for (const Caption &caption : aPictures) {
        const int x = aArea.x() + theMargin + number / theRowCount * theCellWidth;
        const int y = aArea.y() + theMargin + number % theRowCount * theCellHeight;
        aPainter.drawPixmap(x, y, caption.Picture.pixmap(QSize(theSide, theSide), aScale));
        aPainter.drawText(QRect(x + theSide + 6, y, theCellWidth - theSide - 8, theSide),
                          Qt::AlignVCenter | Qt::AlignLeft, caption.Key);
        ++number;
    }
}

}  // namespace

int main(int aCount, char **aArguments) {
    QApplication application(aCount, aArguments);
    const QStringList arguments = QApplication::arguments();
    const double scale = arguments.size() > 2 ? arguments[2].toDouble() / 100 : 1.0;
    if (arguments.size() < 2 || scale < 1.0) {
        std::fprintf(stderr, "vk_pictures_sheet FILE.png [PERCENT]\n");
        return 2;
    }
    const auto pictures = AllPictures();
    const int columns = (static_cast<int>(pictures.size()) + theRowCount - 1) / theRowCount;
    const QSize size(columns * theCellWidth + 2 * theMargin,
                     theRowCount * theCellHeight + 2 * theMargin);
    QImage sheet((QSizeF(size.width() * 3, size.height()) * scale).toSize(), QImage::Format_RGB32);
    sheet.setDevicePixelRatio(scale);
    QPainter painter(&sheet);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(11);
    painter.setFont(font);
    int left = 0;
    for (const Ground &ground : theGrounds) {
        DrawGround(painter, QRect(QPoint(left, 0), size), ground, scale, pictures);
        left += size.width();
    }
    painter.end();
    if (!sheet.save(arguments[1])) {
        std::fprintf(stderr, "vk_pictures_sheet: %s cannot be written\n",
                     QFile::encodeName(arguments[1]).constData());
        return 1;
    }
    return 0;
}
