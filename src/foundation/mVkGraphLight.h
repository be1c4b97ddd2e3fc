#pragma once

#include <QString>

class QComboBox;
class QWidget;

namespace Vk_DocQuery {

/// Shows the default mouse pointer while it lives, so that a busy pointer does not stand over a
/// box.
class NormalPointer {
public:
    NormalPointer();
    ~NormalPointer();
    NormalPointer(const NormalPointer &) = delete;
    NormalPointer &operator=(const NormalPointer &) = delete;
};

/// Boxes with an OK button. The owner is the active modal window.
void ShowWarningBox(const QString &aText, const QString &aTitle);
void ShowInfoBox(const QString &aText, const QString &aTitle);
/// The box with the stop icon that shows a failure when the host has no error window of its own.
/// False if it went without its user: with its owner, or with an application that is ending.
bool ShowFailureBox(const QString &aText, const QString &aTitle);

/// Flags of AskYesNo.
constexpr qint32 theSecondButtonIsDefault = 0x100;

/// A question with "Да" and "Нет"; "Да" is the default unless the flags say otherwise.
bool AskYesNo(const QString &aText, const QString &aTitle, qint32 aFlags = 0);

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
