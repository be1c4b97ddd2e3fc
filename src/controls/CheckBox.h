#pragma once

#include <QCheckBox>

namespace Vk_DocQuery {

/// A check box whose caption wraps onto as many lines as its height gives room for. Its value is 0
/// clear, 1 ticked, 2 grey; a change of it raises Click at once, by the user and by program alike.
class CheckBox : public QCheckBox {
    Q_OBJECT

public:
    explicit CheckBox(const QString &aCaption, QWidget *aParent = nullptr);
    int Value() const;
    void SetValue(int aValue);

signals:
    void Click();
};

}  // namespace Vk_DocQuery
