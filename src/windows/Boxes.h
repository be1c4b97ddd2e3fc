#pragma once

#include <QString>

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

}  // namespace Vk_DocQuery
