#pragma once

#include <QRadioButton>

namespace Vk_DocQuery {

/// An option of a group; the options of one parent exclude each other. A group may stand without a
/// choice. The Tab key stops at the chosen one, or at each while there is none. A change of the
/// value raises Click at once, by the user and by program alike.
class OptionButton : public QRadioButton {
    Q_OBJECT

public:
    explicit OptionButton(const QString &aCaption, QWidget *aParent = nullptr);
    bool Value() const { return isChecked(); }
    /// False clears it even if it is the chosen one; the group then has no choice.
    void SetValue(bool aChosen);

signals:
    void Click();

protected:
    bool hitButton(const QPoint &aPoint) const override;
    void paintEvent(QPaintEvent *aEvent) override;

private:
    void ShareTabStop();
};

}  // namespace Vk_DocQuery
