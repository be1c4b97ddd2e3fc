#pragma once

#include <QWidget>

#include <Vk_DocQuery/LooseValue.h>

class QLineEdit;
class QToolButton;

namespace Vk_DocQuery {

/// A masked box for a date "dd.mm.yyyy" that may stay empty and then shows "__.__.____", with a
/// drop-down calendar. A text that is no date cannot be left standing unnoticed: when the focus
/// leaves it, a box says so and the focus comes back. A year of two digits is completed then. A
/// pasted date may have other forms; Up and Down step the part under the caret.
class DateBox : public QWidget {
    Q_OBJECT

public:
    explicit DateBox(QWidget *aParent = nullptr);
    ~DateBox() override;
    void SetBounds(QDate aEarliest, QDate aLatest);
    /// A date, or empty while the box is blank. Empty also while the text is no date: ask
    /// IsAcceptable or call CheckText before the value counts.
    LooseValue Value() const;
    /// Null and empty leave the box blank. Raises InvalidArgument for a date outside of the bounds.
    void SetValue(const LooseValue &aValue);

    /// The box is blank or holds a date within the bounds.
    bool IsAcceptable() const;
    /// Warns the user of a text that is no date and puts the focus back on it; true if there is
    /// nothing to warn of. For the default button, which Enter presses without moving the focus.
    bool CheckText();
    /// Puts the last whole date, or blank, in the place of a text that is no date.
    void DropUnfinished();

    QLineEdit *Edit() const { return theEdit; }

    /// A widget with this property set to false takes the focus without a check, as a cancel button
    /// must. The check comes when the focus goes on from there.
    static constexpr char theChecksProperty[] = "causesValidation";

signals:
    /// Comes before the warning, so that a window can bring up the page on which the box lies.
    void WrongText();

protected:
    bool eventFilter(QObject *aObject, QEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;

private:
    class Line;
    class Popup;
    class Interface;

    bool EditKey(const QKeyEvent &aEvent);
    void OpenCalendar();
    void Take(QDate aDate);
    void FocusLeft();
    void CheckLater();
    void StepPart(int aBy);
    void PutDate(QDate aDate);
    void CompleteYear();
    void Tidy();
    QDate Bounded(QDate aDate) const;
    bool IsBlank() const;
    QDate TypedDate() const;
    QString Complaint() const;
    void SelectWrongPart();

    QLineEdit *theEdit;
    QToolButton *theButton;
    Popup *thePopup = nullptr;
    QDate theEarliest{100, 1, 1};
    QDate theLatest{9999, 12, 31};
    QDate theLastWhole;  // invalid: blank
    QMetaObject::Connection theWait;
    bool theWarning = false;
};

}  // namespace Vk_DocQuery
