#pragma once

#include <QString>

class QWidget;

namespace Vk_DocQuery {

/// What a text of Qt's own ("Cut", in whatever language the application has its Qt speak) is called
/// in Russian; any other text as it is.
QString InRussian(const QString &aShown);

/// Has all that Qt itself puts into a window of ours speak Russian: context menus, the file dialog,
/// dates and numbers. The translators and the default locale of the application are the host's and
/// stay alone. Once for a window, when its elements are there; what comes later follows by itself.
void SpeakRussian(QWidget &aWindow);

}  // namespace Vk_DocQuery
