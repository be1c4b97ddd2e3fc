#pragma once

#include <Vk_DocQuery/LooseValue.h>

#include "controls/TextBox.h"

namespace Vk_DocQuery {

/// A box for whole numbers that may stay blank. Only what is on the way to a number within the
/// bounds can be typed or pasted; of what is pasted, blanks of any kind and a number sign before it
/// are left out, and a typographic minus is a minus.
class NumberBox : public TextBox {
    Q_OBJECT

public:
    explicit NumberBox(QWidget *aParent = nullptr);
    void SetBounds(double aLowest, double aHighest);
    /// Empty while blank, otherwise a double.
    LooseValue Value() const;
    /// Null and empty leave the box blank. Raises InvalidArgument for a number outside of the
    /// bounds.
    void SetValue(const LooseValue &aValue);

protected:
    void Enter(const QString &aForeign) override;
    void focusOutEvent(QFocusEvent *aEvent) override;

private:
    class Validator;
    Validator *theValidator;
};

}  // namespace Vk_DocQuery
