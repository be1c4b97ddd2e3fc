#pragma once

#include <QGuiApplication>
#include <QProcess>
#include <QScreen>
#include <QTest>

namespace VkTests {

/// Gives the display of an X server of the test's own that size, by xrandr; false if it stays.
inline bool SetScreenSize(QSize aSize) {
    if (QGuiApplication::primaryScreen()->size() == aSize) return true;
    const QString name = QStringLiteral("%1x%2").arg(aSize.width()).arg(aSize.height());
    const QString output = QStringLiteral("screen");
    const auto xrandr = [](const QStringList &aArguments) {
        return QProcess::execute(QStringLiteral("xrandr"), aArguments) == 0;
    };
    const auto number = [](int aNumber) { return QString::number(aNumber); };
    // The times of a mode mean nothing to a display in memory. The two fail for one that is there.
    const int width = aSize.width(), height = aSize.height();
    xrandr({QStringLiteral("--newmode"), name, QStringLiteral("60"), number(width),
            number(width + 8), number(width + 16), number(width + 24), number(height),
            number(height + 1), number(height + 2), number(height + 3)});
    xrandr({QStringLiteral("--addmode"), output, name});
    return xrandr({QStringLiteral("--output"), output, QStringLiteral("--mode"), name}) &&
           QTest::qWaitFor([&] { return QGuiApplication::primaryScreen()->size() == aSize; });
}

}  // namespace VkTests
