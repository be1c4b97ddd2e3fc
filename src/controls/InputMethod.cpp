#include "controls/InputMethod.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace Vk_DocQuery {

namespace {

const QString theBlank = QStringLiteral(" ");

void PressBlank(QWidget &aElement) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent key(type, Qt::Key_Space, Qt::NoModifier, theBlank);
        QCoreApplication::sendEvent(&aElement, &key);
    }
}

void Type(QLineEdit &aText, QWidget &aFocused, QInputMethodEvent &aEvent) {
    if (aEvent.commitString() == theBlank && aEvent.preeditString().isEmpty())
        return PressBlank(aFocused);
    QCoreApplication::sendEvent(&aText, &aEvent);
    // The box tells of its caret only while it has the focus itself.
    QGuiApplication::inputMethod()->update(Qt::ImQueryInput);
}

/// Places are told as the focused element would see them.
void Answer(QLineEdit &aText, const QWidget &aFocused, QInputMethodQueryEvent &aEvent) {
    QCoreApplication::sendEvent(&aText, &aEvent);
    const QPointF aside = aFocused.mapFromGlobal(aText.mapToGlobal(QPointF()));
    for (const auto query :
         {Qt::ImCursorRectangle, Qt::ImAnchorRectangle, Qt::ImInputItemClipRectangle})
        if (aEvent.queries() & query)
            aEvent.setValue(query, aEvent.value(query).toRectF().translated(aside));
}

}  // namespace

void AcceptInputMethods(QWidget &aWindow) {
    for (QWidget *element : aWindow.findChildren<QWidget *>())
        if (element->focusPolicy() != Qt::NoFocus) element->setAttribute(Qt::WA_InputMethodEnabled);
}

bool GiveInputTo(QLineEdit &aText, QWidget &aFocused, QEvent &aEvent) {
    if (&aFocused == &aText) return false;
    if (aEvent.type() == QEvent::InputMethod)
        Type(aText, aFocused, static_cast<QInputMethodEvent &>(aEvent));
    else if (aEvent.type() == QEvent::InputMethodQuery)
        Answer(aText, aFocused, static_cast<QInputMethodQueryEvent &>(aEvent));
    else
        return false;
    return true;
}

}  // namespace Vk_DocQuery
