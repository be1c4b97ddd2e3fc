#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include "look/ImageList.h"

class QTabBar;

namespace Vk_DocQuery {

/// Tabs found by key, each with a page and a picture. The pages lie at a fixed place under the tab
/// bar. Ctrl+Tab and Ctrl+PgDn go to the next tab, with Shift or Ctrl+PgUp to the one before, from
/// everywhere in the window; Alt with the number of a tab goes to that one.
class TabControl : public QWidget {
    Q_OBJECT

public:
    explicit TabControl(QWidget *aParent = nullptr);

    /// aLeft and aTop are the pages' place in pixels; the page takes the rest of the control, less
    /// aLeft at the right and at the bottom.
    void SetPagePlace(int aLeft, int aTop);
    void SetImages(std::shared_ptr<const ImageList> aPictures);
    void AddTab(const QString &aKey, const QString &aCaption, QWidget *aPage);

    int TabCount() const { return static_cast<int>(theTabs.size()); }
    /// aPosition counts from 0.
    const QString &TabKey(int aPosition) const;
    /// Raises InvalidArgument if no tab has the key, or the pictures lack theirs.
    void SetTabPicture(const QString &aKey, const QString &aPicture);
    const QString &TabPicture(const QString &aKey) const;
    /// What a screen reader says for the tab; its caption as long as nothing is set. Raises as
    /// SetTabPicture.
    void SetTabSpokenName(const QString &aKey, const QString &aName);

    /// Key of the selected tab. Raises ObjectNotSet if there is none.
    const QString &SelectedTab() const;
    /// Raises InvalidArgument if no tab has the key.
    void SetSelectedTab(const QString &aKey);

    QTabBar *Bar() const { return theBar; }

    /// Room for all tabs and a piece of their pages.
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *aEvent) override;
    void resizeEvent(QResizeEvent *aEvent) override;

private:
    struct Tab {
        QString Key;
        QWidget *Page = nullptr;
        QString Picture;
    };

    int PositionOf(const QString &aKey) const;
    void GiveTabKey(int aPosition);
    void GoBy(int aStep);
    void ShowPage(int aPosition);
    void FocusFirstOn(const QWidget &aPage);
    void PlacePages();

    QTabBar *theBar = nullptr;
    std::vector<Tab> theTabs;
    std::shared_ptr<const ImageList> thePictures;
    QPoint thePagePlace;
};

}  // namespace Vk_DocQuery
