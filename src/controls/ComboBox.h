#pragma once

#include <QComboBox>

class QStylePainter;

namespace Vk_DocQuery {

/// A drop-down list of texts with item numbers. A fixed one takes only what is listed; an editable
/// one takes any text, and what is typed stays as it is typed. The wheel over it scrolls what is
/// around it.
class ComboBox : public QComboBox {
    Q_OBJECT

public:
    enum Kind { Fixed, Editable };

    explicit ComboBox(Kind aKind, QWidget *aParent = nullptr);
    /// The item number is kept under Qt::UserRole. The selection stays as it is, none included.
    void AddItem(const QString &aText, qint32 aItemData);
    QString Text() const { return currentText(); }
    /// A listed text selects its entry as well. A fixed combo without such an entry stays as it is.
    void SetText(const QString &aText);

protected:
    void initStyleOption(QStyleOptionComboBox *aOption) const override;
    void paintEvent(QPaintEvent *aEvent) override;
    void wheelEvent(QWheelEvent *aEvent) override;

private:
    void TakeTexts();
    void PaintArrow(QStylePainter &aPainter, const QStyleOptionComboBox &aOption) const;
};

}  // namespace Vk_DocQuery
