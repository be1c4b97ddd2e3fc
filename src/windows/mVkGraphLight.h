#pragma once

#include <QtGlobal>

class QComboBox;
class QWidget;

namespace Vk_DocQuery {

/// Twips per pixel of the screen, whole; read once.
qint32 GetTwipsPerPixel();
/// Screen geometry of windows is computed here and nowhere else.
int PixelsFromTwips(int aTwips);
int TwipsFromPixels(int aPixels);

/// Enables or disables an input element and gives it the window colour or that of a button face.
void EnableControl(QWidget &aControl, bool aEnabled, QWidget *aCompanion = nullptr);

/// Item data of a combo box are kept under Qt::UserRole.
void SelectComboByData(QComboBox &aCombo, qint32 aData, int aDefaultIndex);
qint32 GetComboData(const QComboBox &aCombo, qint32 aDefault);

}  // namespace Vk_DocQuery
