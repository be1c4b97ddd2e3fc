#pragma once

#include <QTest>

namespace VkTests {

/// Types a text of any letters; QTest::keyClicks knows the Latin ones alone.
inline void TypeText(QWidget *aWidget, const QString &aText) {
    for (const QChar letter : aText)
        QTest::sendKeyEvent(QTest::Click, aWidget, Qt::Key(letter.toUpper().unicode()),
                            QString(letter), Qt::NoModifier);
}

}  // namespace VkTests
