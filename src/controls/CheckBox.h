#pragma once

#include <QCheckBox>

namespace Vk_DocQuery {

/// A check box whose caption wraps onto as many lines as its height gives room for. Its value is 0
/// clear, 1 ticked, 2 grey; a change of it raises Click at once, by the user and by program alike.
/// The user never makes it grey.
class CheckBox : public QCheckBox {
    Q_OBJECT

public:
    explicit CheckBox(const QString &aCaption, QWidget *aParent = nullptr);
    int Value() const;
    /// Raises InvalidArgument for another value than 0, 1 and 2.
    void SetValue(int aValue);

signals:
    void Click();

protected:
    bool hitButton(const QPoint &aPoint) const override;
    void nextCheckState() override;
    void paintEvent(QPaintEvent *aEvent) override;
};

}  // namespace Vk_DocQuery
