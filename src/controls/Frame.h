#pragma once

#include <QWidget>

namespace Vk_DocQuery {

/// A group of elements. With a border its caption stands in a gap of the top edge, and a caption of
/// blanks keeps the gap for the check box that lies on it. Without a border it shows nothing of its
/// own.
class Frame : public QWidget {
    Q_OBJECT

public:
    explicit Frame(const QString &aCaption, QWidget *aParent = nullptr);
    const QString &Caption() const { return theCaption; }
    bool HasBorder() const { return theBorder; }
    void SetBorder(bool aBorder);

protected:
    void paintEvent(QPaintEvent *aEvent) override;

private:
    QString theCaption;
    bool theBorder = true;
};

}  // namespace Vk_DocQuery
