#pragma once

#include <QScrollArea>

namespace Vk_DocQuery {

/// What a window or one of its pages shows: as large as the place that it is given, and scrolled
/// where that is smaller than it needs.
class Sheet : public QScrollArea {
    Q_OBJECT

public:
    explicit Sheet(QWidget *aParent = nullptr);
    /// The parent of the elements on the sheet.
    QWidget *Content() const { return widget(); }
    /// Gives the sheet its place; the content gets its size at once, even before anything is shown.
    void Place(const QRect &aPlace);
    /// What the content needs, in pixels.
    void SetLeast(QSize aLeast) { Content()->setMinimumSize(aLeast); }

signals:
    /// The content has another size; its elements may be placed anew.
    void ContentResized();

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override;
};

}  // namespace Vk_DocQuery
