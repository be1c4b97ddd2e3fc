#include "look/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPointer>
#include <QScreen>

namespace Vk_DocQuery {

namespace {

constexpr double theSize = 8.25;
constexpr double thePointsPerInch = 72;
constexpr int theNarrowest = 50;
constexpr double theTolerance = 1.01;

/// What is measured, and how wide it is in Arial in units of the font's size.
const QString theSample = QStringLiteral(
    "Если в результаты поиска попадает документ отчетности, то добавлять весь комплект");
constexpr double theSampleWidth = 40.26;

double SampleWidth(const QFont &aFont) {
    const QFontMetricsF metrics(aFont);
    return metrics.horizontalAdvance(theSample);
}

/// Sizes are rounded to whole pixels, so that even a face with the right widths can come out wider
/// than the elements have room for.
QFont Narrowed(QFont aFont) {
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dots = screen ? screen->logicalDotsPerInchY() : 96.0;
    const double room = theSampleWidth * theSize * dots / thePointsPerInch;
    if (SampleWidth(aFont) <= room * theTolerance) return aFont;
    for (int stretch = 100; stretch > theNarrowest && SampleWidth(aFont) > room; --stretch)
        aFont.setStretch(stretch);
    return aFont;
}

/// The system takes as long to look a face up as a window to make dozens of elements. What it has
/// answered holds until fonts come or go.
bool IsInstalled(const QString &aFace) {
    static QHash<QString, bool> known;
    static QPointer<QCoreApplication> asked;
    if (asked != qApp) {
        known.clear();
        asked = qApp;
        QObject::connect(qApp, &QGuiApplication::fontDatabaseChanged, [] { known.clear(); });
    }
    const auto found = known.constFind(aFace);
    if (found != known.constEnd()) return *found;
    return *known.insert(aFace, QFontDatabase::hasFamily(aFace));
}

}  // namespace

QFont WindowFont() {
    return WindowFontOutOf(
        {QStringLiteral("Liberation Sans"), QStringLiteral("Arial"), QStringLiteral("Arimo")});
}

QFont WindowFontOutOf(const QStringList &aFaces) {
    for (const QString &face : aFaces) {
        if (!IsInstalled(face)) continue;
        QFont font(face);
        font.setPointSizeF(theSize);
        return Narrowed(font);
    }
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(theSize);
    return Narrowed(font);
}

}  // namespace Vk_DocQuery
