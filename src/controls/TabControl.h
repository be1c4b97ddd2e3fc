#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include "controls/ImageList.h"

class QTabBar;

namespace Vk_DocQuery {

/// Tabs found by key, each with a page and a picture. The pages lie at a fixed place under the tab
/// bar.
class TabControl : public QWidget {
    Q_OBJECT

public:
    explicit TabControl(QWidget *aParent = nullptr);

    /// aLeft and aTop are the pages' place in pixels; the page takes the rest of the control, less
    /// aLeft at the right and at the bottom.
    void SetPagePlace(int aLeft, int aTop);
    void SetImages(std::shared_ptr<const ImageList> aPictures);
    void AddTab(const QString &aKey, const QString &aCaption, QWidget *aPage);

    int TabCount() const;
    /// aPosition counts from 0.
    const QString &TabKey(int aPosition) const;
    /// Raises InvalidArgument if no tab has the key.
    void SetTabPicture(const QString &aKey, const QString &aPicture);
    const QString &TabPicture(const QString &aKey) const;

    /// Key of the selected tab. Raises ObjectNotSet if there is none.
    const QString &SelectedTab() const;
    /// Raises InvalidArgument if no tab has the key.
    void SetSelectedTab(const QString &aKey);

    QTabBar *Bar() const { return theBar; }

private:
    QTabBar *theBar = nullptr;
};

}  // namespace Vk_DocQuery
