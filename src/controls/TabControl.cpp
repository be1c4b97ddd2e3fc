#include "controls/TabControl.h"

#include <QAccessible>
#include <QApplication>
#include <QPainter>
#include <QShortcut>
#include <QTabBar>
#include <QWheelEvent>

#include <Vk_DocQuery/Failure.h>

#include "look/Colours.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr int thePictureTwips = 240;
constexpr int theLeastPageTwips = 1500;

/// The tabs are as high as the bar, whatever the style would give them, so that the pages keep
/// their place.
class FixedBar : public QTabBar {
public:
    using QTabBar::QTabBar;

protected:
    QSize tabSizeHint(int aIndex) const override {
        return {QTabBar::tabSizeHint(aIndex).width(), height()};
    }
    QSize minimumTabSizeHint(int aIndex) const override { return tabSizeHint(aIndex); }
    /// Who scrolls with the pointer on the tabs shall not find himself on another page.
    void wheelEvent(QWheelEvent *aEvent) override { aEvent->ignore(); }
};

[[noreturn]] void RaiseNoTab(const QString &aKey) {
    throw Failure(InvalidArgument, QStringLiteral("TabControl"),
                  QStringLiteral("Нет вкладки с ключом \"%1\".").arg(aKey));
}

}  // namespace

TabControl::TabControl(QWidget *aParent) : QWidget(aParent), theBar(new FixedBar(this)) {
    theBar->setObjectName(QStringLiteral("theTabBar"));
    const int picture = PixelsFromTwips(thePictureTwips);
    theBar->setIconSize({picture, picture});
    theBar->setElideMode(Qt::ElideNone);
    theBar->setExpanding(false);
    theBar->setDrawBase(false);
    connect(theBar, &QTabBar::currentChanged, this, &TabControl::ShowPage);

    const auto go = [this](const char *aKeys, int aStep) {
        auto *shortcut = new QShortcut(QKeySequence(QLatin1String(aKeys)), this);
        connect(shortcut, &QShortcut::activated, this, [this, aStep] { GoBy(aStep); });
    };
    go("Ctrl+Tab", 1);
    go("Ctrl+PgDown", 1);
    go("Ctrl+Shift+Tab", -1);
    go("Ctrl+PgUp", -1);
}

void TabControl::SetPagePlace(int aLeft, int aTop) {
    thePagePlace = {aLeft, aTop};
    PlacePages();
}

void TabControl::SetImages(std::shared_ptr<const ImageList> aPictures) {
    thePictures = std::move(aPictures);
}

void TabControl::AddTab(const QString &aKey, const QString &aCaption, QWidget *aPage) {
    aPage->setParent(this);
    aPage->setVisible(theTabs.empty());
    theTabs.push_back({aKey, aPage, QString()});
    theBar->addTab(aCaption);
    GiveTabKey(TabCount() - 1);
    PlacePages();
}

/// A digit is the same in all layouts of the keyboard.
void TabControl::GiveTabKey(int aPosition) {
    constexpr int theMostKeys = 9;
    if (aPosition >= theMostKeys) return;
    const QKeySequence key(Qt::ALT | Qt::Key(Qt::Key_1 + aPosition));
    auto *shortcut = new QShortcut(key, this);
    connect(shortcut, &QShortcut::activated, this,
            [this, aPosition] { theBar->setCurrentIndex(aPosition); });
    theBar->setTabToolTip(aPosition, key.toString(QKeySequence::NativeText));
}

const QString &TabControl::TabKey(int aPosition) const {
    return theTabs.at(static_cast<std::size_t>(aPosition)).Key;
}

void TabControl::SetTabPicture(const QString &aKey, const QString &aPicture) {
    const int position = PositionOf(aKey);
    if (position < 0) RaiseNoTab(aKey);
    if (thePictures) theBar->setTabIcon(position, thePictures->Picture(aPicture));
    theTabs[static_cast<std::size_t>(position)].Picture = aPicture;
}

const QString &TabControl::TabPicture(const QString &aKey) const {
    const int position = PositionOf(aKey);
    if (position < 0) RaiseNoTab(aKey);
    return theTabs[static_cast<std::size_t>(position)].Picture;
}

void TabControl::SetTabSpokenName(const QString &aKey, const QString &aName) {
    const int position = PositionOf(aKey);
    if (position < 0) RaiseNoTab(aKey);
    if (theBar->accessibleTabName(position) == aName) return;
    theBar->setAccessibleTabName(position, aName);
    QAccessibleEvent event(theBar, QAccessible::NameChanged);
    event.setChild(position);
    QAccessible::updateAccessibility(&event);
}

const QString &TabControl::SelectedTab() const {
    const int position = theBar->currentIndex();
    if (position < 0) {
        throw Failure(ObjectNotSet, QStringLiteral("TabControl"),
                      QStringLiteral("Ни одна вкладка не выбрана."));
    }
    return TabKey(position);
}

void TabControl::SetSelectedTab(const QString &aKey) {
    const int position = PositionOf(aKey);
    if (position < 0) RaiseNoTab(aKey);
    theBar->setCurrentIndex(position);
}

QSize TabControl::minimumSizeHint() const {
    return {theBar->sizeHint().width() + 2 * thePagePlace.x(),
            thePagePlace.y() + PixelsFromTwips(theLeastPageTwips)};
}

int TabControl::PositionOf(const QString &aKey) const {
    for (std::size_t i = 0; i < theTabs.size(); ++i) {
        if (theTabs[i].Key == aKey) return static_cast<int>(i);
    }
    return -1;
}

void TabControl::GoBy(int aStep) {
    if (theTabs.empty()) return;
    theBar->setCurrentIndex((theBar->currentIndex() + aStep + TabCount()) % TabCount());
}

void TabControl::ShowPage(int aPosition) {
    const QWidget *focused = QApplication::focusWidget();
    bool leaves = false;
    for (std::size_t i = 0; i < theTabs.size(); ++i) {
        QWidget *page = theTabs[i].Page;
        const bool shown = static_cast<int>(i) == aPosition;
        if (!shown && focused && page->isAncestorOf(focused)) leaves = true;
        page->setVisible(shown);
    }
    if (leaves && aPosition >= 0) FocusFirstOn(*theTabs[static_cast<std::size_t>(aPosition)].Page);
}

void TabControl::FocusFirstOn(const QWidget &aPage) {
    const auto takesTab = [](const QWidget *aWidget) {
        return aWidget->isVisible() && aWidget->isEnabled() && !aWidget->focusProxy() &&
               (aWidget->focusPolicy() & Qt::TabFocus) != 0;
    };
    for (QWidget *next = theBar->nextInFocusChain(); next != theBar;
         next = next->nextInFocusChain()) {
        if (!aPage.isAncestorOf(next) || !takesTab(next)) continue;
        next->setFocus(Qt::TabFocusReason);
        return;
    }
    theBar->setFocus(Qt::TabFocusReason);
}

void TabControl::PlacePages() {
    const QPoint place = thePagePlace;
    theBar->setGeometry(place.x(), 0, width() - 2 * place.x(), place.y());
    for (const Tab &tab : theTabs)
        tab.Page->setGeometry(place.x(), place.y(), width() - 2 * place.x(),
                              height() - place.y() - place.x());
}

void TabControl::paintEvent(QPaintEvent * /*aEvent*/) {
    QPainter painter(this);
    PaintEdges(painter, *this, rect().adjusted(0, thePagePlace.y() - 1, 0, 0));
}

void TabControl::resizeEvent(QResizeEvent *aEvent) {
    QWidget::resizeEvent(aEvent);
    PlacePages();
}

}  // namespace Vk_DocQuery
