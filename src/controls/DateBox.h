#pragma once

#include <QWidget>

#include <Vk_DocQuery/LooseValue.h>

namespace Vk_DocQuery {

/// A masked box for a date "dd.mm.yyyy" that may stay empty and then shows "__.__.____", with a
/// drop-down calendar. A text that is no date cannot be left standing unnoticed.
class DateBox : public QWidget {
    Q_OBJECT

public:
    explicit DateBox(QWidget *aParent = nullptr);
    void SetBounds(QDate aEarliest, QDate aLatest);
    /// A date, or empty while the box is blank.
    LooseValue Value() const;
    /// Null and empty leave the box blank.
    void SetValue(const LooseValue &aValue);
};

}  // namespace Vk_DocQuery
