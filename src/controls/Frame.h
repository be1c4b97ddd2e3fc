#pragma once

#include <QWidget>

namespace Vk_DocQuery {

/// A captioned group. The caption stands in a gap of the top edge; a caption of blanks keeps the
/// gap for the check box that lies on it.
class Frame : public QWidget {
    Q_OBJECT

public:
    explicit Frame(const QString &aCaption, QWidget *aParent = nullptr);
    const QString &Caption() const { return theCaption; }

protected:
    void paintEvent(QPaintEvent *aEvent) override;

private:
    QString theCaption;
};

}  // namespace Vk_DocQuery
