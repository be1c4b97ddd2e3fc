#pragma once

class QEvent;
class QLineEdit;
class QWidget;

namespace Vk_DocQuery {

/// Input methods and on-screen keyboards type into the element that has the focus, without keys.
/// These two let a window give what they type to one of its text boxes, wherever the focus is.

/// Everything in the window that takes the focus is open for input methods.
void AcceptInputMethods(QWidget &aWindow);

/// For the window's event filter: the text box gets what is typed into another element, and answers
/// what the input method asks that element. A blank alone stays with the element, as its key does.
/// True if the event is used up.
bool GiveInputTo(QLineEdit &aText, QWidget &aFocused, QEvent &aEvent);

}  // namespace Vk_DocQuery
