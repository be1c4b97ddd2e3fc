#include <QApplication>
#include <QImage>
#include <QTest>

#include "lists/ListView.h"
#include "look/Pictures.h"
#include "support/Contrast.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

constexpr int theTwips = 600;  // of the column, which holds nothing but the picture

/// A list with a row for each picture of the shared list, as high as all of them.
struct PictureList {
    PictureList() {
        List.SetSmallIcons(SharedImages());
        List.SetMultiSelect(true);
        List.AddColumn(QString(), theTwips);
        for (int i = 0; i < SharedImages()->Count(); ++i)
            List.AddRow(QString())->SetIcon(SharedImages()->KeyAt(i));
        List.resize(200, 400);
        List.show();
        const QRect last = List.RowRect(List.Row(List.RowCount() - 1));
        List.resize(200, last.bottom() + 60);
        QApplication::processEvents();
    }
    void SelectAll() {
        for (int i = 0; i < List.RowCount(); ++i) List.Row(i)->SetSelected(true);
    }
    QImage Grab() {
        QApplication::processEvents();
        return List.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    QRect Cell(int aRow) const { return List.CellRect(List.Row(aRow), 0); }

    ListView List;
};

bool IsEmptyPicture(int aRow) {
    return SharedImages()->KeyAt(aRow) == QStringLiteral("empty");
}

}  // namespace

class TestPicturesInLists : public QObject {
    Q_OBJECT

private slots:
    void init() { theDesktop = QApplication::palette(); }
    void cleanup() { QApplication::setPalette(theDesktop); }

    /// As many pixels as every picture has to show on the ground of its list.
    void PicturesStandOutOnASelectedRow_data() {
        QTest::addColumn<QColor>("highlight");
        QTest::addColumn<QColor>("text");
        QTest::newRow("blue") << QColor(0x308CC6) << QColor(Qt::white);
        QTest::newRow("dark blue") << QColor(0x2A6CB0) << QColor(Qt::white);
        QTest::newRow("grey without the focus") << QColor(0xC8C8C8) << QColor(Qt::black);
        QTest::newRow("orange") << QColor(0xE95420) << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black) << QColor(Qt::white);
        QTest::newRow("white") << QColor(Qt::white) << QColor(Qt::black);
        QTest::newRow("yellow") << QColor(Qt::yellow) << QColor(Qt::black);
    }
    void PicturesStandOutOnASelectedRow() {
        QFETCH(QColor, highlight);
        QFETCH(QColor, text);
        QPalette palette = theDesktop;
        palette.setColor(QPalette::Highlight, highlight);
        palette.setColor(QPalette::HighlightedText, text);
        QApplication::setPalette(palette);
        PictureList pictures;
        pictures.SelectAll();
        const QImage image = pictures.Grab();
        QStringList weak;
        for (int row = 0; row < pictures.List.RowCount(); ++row) {
            const QRect cell = pictures.Cell(row);
            QCOMPARE(image.pixelColor(cell.right(), cell.center().y()), highlight);
            int count = 0;
            for (int y = cell.top(); y <= cell.bottom(); ++y)
                for (int x = cell.left(); x <= cell.right(); ++x)
                    if (Contrast(image.pixelColor(x, y), highlight) >= 3) ++count;
            if (IsEmptyPicture(row))
                QCOMPARE(count, 0);
            else if (count < 16)
                weak << QStringLiteral("%1: %2").arg(SharedImages()->KeyAt(row)).arg(count);
        }
        QVERIFY2(weak.isEmpty(), qPrintable(weak.join(u'\n')));
    }

    /// What it stands out by lies around the picture: in itself it looks as in the other rows.
    void SelectionChangesNothingOfAPicture() {
        PictureList pictures;
        const QImage plain = pictures.Grab();
        pictures.SelectAll();
        const QImage selected = pictures.Grab();
        const QColor ground = QApplication::palette().color(QPalette::Base);
        for (int row = 0; row < pictures.List.RowCount(); ++row) {
            const QRect cell = pictures.Cell(row);
            for (int y = cell.top(); y <= cell.bottom(); ++y)
                for (int x = cell.left(); x <= cell.right(); ++x)
                    if (plain.pixelColor(x, y) != ground)
                        QVERIFY2(plain.pixel(x, y) == selected.pixel(x, y),
                                 qPrintable(SharedImages()->KeyAt(row)));
        }
    }

private:
    QPalette theDesktop;
};

VK_TEST_CLASS(TestPicturesInLists);
#include "TestPicturesInLists.moc"
