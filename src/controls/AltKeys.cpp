#include "controls/AltKeys.h"

#include <QAbstractButton>
#include <QKeySequence>
#include <QShortcut>

namespace Vk_DocQuery {

namespace {

// The letters of one key stand at one place.
constexpr QStringView theRussianLetters = u"ЙЦУКЕНГШЩЗФЫВАПРОЛДЯЧСМИТЬ";
constexpr QStringView theLatinLetters = u"QWERTYUIOPASDFGHJKLZXCVBNM";
static_assert(theRussianLetters.size() == theLatinLetters.size());

QKeySequence WithAlt(QChar aLetter) {
    return {Qt::ALT | Qt::Key(aLetter.unicode())};
}

}  // namespace

void GiveAltKey(QAbstractButton &aButton, char16_t aLetter, const QString &aOtherKeys) {
    const QKeySequence russian = WithAlt(QChar(aLetter));
    const QKeySequence latin = WithAlt(theLatinLetters.at(theRussianLetters.indexOf(aLetter)));
    auto *shortcut = new QShortcut(&aButton);
    shortcut->setKeys({russian, latin});
    QObject::connect(shortcut, &QShortcut::activated, &aButton, &QAbstractButton::click);
    QString keys = russian.toString(QKeySequence::NativeText);
    if (!aOtherKeys.isEmpty()) keys += QStringLiteral(", ") + aOtherKeys;
    const QString tip = aButton.toolTip();
    aButton.setToolTip(tip.isEmpty() ? keys : tip + QStringLiteral(" (") + keys + u')');
}

void GiveAltKey(QAbstractButton &aButton, char16_t aLetter) {
    GiveAltKey(aButton, aLetter, QString());
}

}  // namespace Vk_DocQuery
