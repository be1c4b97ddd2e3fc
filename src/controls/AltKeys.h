#pragma once

class QAbstractButton;
class QString;

namespace Vk_DocQuery {

/// Lets Alt with a letter of the Russian keyboard press the button, wherever the focus is in its
/// window. The Latin letter of the same key serves as well, so that it does not matter which layout
/// is on. The caption stays as it is; the tip tells the key, and aOtherKeys behind it.
void GiveAltKey(QAbstractButton &aButton, char16_t aLetter, const QString &aOtherKeys);
void GiveAltKey(QAbstractButton &aButton, char16_t aLetter);

}  // namespace Vk_DocQuery
