#pragma once

#include <QLineEdit>

#include <Vk_DocQuery/LooseValue.h>

namespace Vk_DocQuery {

/// A box for whole numbers that may stay blank. Only what is on the way to a number within the
/// bounds can be typed or pasted.
class NumberBox : public QLineEdit {
    Q_OBJECT

public:
    explicit NumberBox(QWidget *aParent = nullptr);
    void SetBounds(double aLowest, double aHighest);
    /// Empty while blank, otherwise a double.
    LooseValue Value() const;
    void SetValue(const LooseValue &aValue);
};

}  // namespace Vk_DocQuery
