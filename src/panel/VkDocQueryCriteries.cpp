#include "panel/VkDocQueryCriteries.h"

#include <algorithm>
#include <vector>

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DateBox.h"
#include "controls/Frame.h"
#include "controls/NumberBox.h"
#include "controls/OptionButton.h"
#include "controls/ScrollBox.h"
#include "controls/Sheet.h"
#include "controls/TabControl.h"
#include "controls/TextBox.h"
#include "foundation/Clock.h"
#include "foundation/mVkRecords.h"
#include "look/Fonts.h"
#include "look/Pictures.h"
#include "windows/ErrorReport.h"
#include "windows/mVkGraphLight.h"
#include "windows/Placement.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

constexpr int thePageMargin = 120;  // twips

constexpr int theYearsBefore = 6;
constexpr int theYearsAfter = 3;
constexpr int theMonths = 12;
/// As the user reads them: each quarter behind its months.
constexpr qint32 thePeriodCodes[] = {1, 2,  3,  13, 4,  5,  6,  14, 19, 7, 8,
                                     9, 15, 10, 11, 12, 16, 20, 17, 21, 24};
constexpr ElementOf<ComboBox> theYearCombos[] = {"theOnePerYear", "thePerYear1", "thePerYear2"};
constexpr TabName theTabOfDates = "doc";
constexpr ElementOf<DateBox> theDateBoxes[] = {"theSignDate1", "theSignDate2"};

QSize DesignSize() {
    return SizeFromTwips(thePanelWidth, thePanelHeight);
}

QRect PixelRect(const ElementRow &aRow) {
    return Placement{aRow.Left, aRow.Top, aRow.Width, aRow.Height}.InPixels();
}

Frame *MadeFrame(const ElementRow &aRow, QWidget *aParent) {
    auto *frame = new Frame(QString::fromUtf16(aRow.Caption), aParent);
    frame->SetBorder(aRow.Kind != ElementKind::PlainFrame);
    if (aRow.Kind == ElementKind::HiddenFrame) frame->hide();
    return frame;
}

/// A check box on the edge of a frame covers the edge with the ground of the page.
CheckBox *MadeCheckBox(const ElementRow &aRow, QWidget *aParent) {
    auto *box = new CheckBox(QString::fromUtf16(aRow.Caption), aParent);
    const auto *frame = qobject_cast<Frame *>(aParent);
    box->setBackgroundRole(QPalette::Window);
    box->setAutoFillBackground(frame && frame->HasBorder());
    return box;
}

/// The four pictures are named theImage1 to theImage4, in the order of the document states.
QLabel *MadeImage(const ElementRow &aRow, QWidget *aParent) {
    auto *image = new QLabel(aParent);
    const int state = QString::fromLatin1(aRow.Name).back().digitValue() - 1;
    image->setPixmap(
        StatusPicture(state).pixmap(PixelRect(aRow).size(), image->devicePixelRatio()));
    return image;
}

/// What the nearest frame around an element is called.
QString CriterionAround(const QWidget &aElement) {
    for (const QWidget *around = aElement.parentWidget(); around; around = around->parentWidget()) {
        const auto *frame = qobject_cast<const Frame *>(around);
        if (frame && frame->HasBorder()) return frame->accessibleName().trimmed();
    }
    return QString();
}

}  // namespace

VkDocQueryCriteries::VkDocQueryCriteries(QWidget *aParent) try : QWidget(aParent) {
    setFont(WindowFont());
    theColours = QApplication::palette();
    MakeTabs();
    MakeElements();
    FitPages();
    SetTabOrder();
    NameForReaders();
    SetUpLists();
    SetUpDates();
    ConnectClicks();
    GiveKeys();
    resize(DesignSize());
} catch (...) {
    RaiseErrorUp(theModule, "Class_Initialize");
}

void VkDocQueryCriteries::MakeTabs() {
    theTabs = new TabControl(this);
    theTabs->setObjectName(QStringLiteral("theTabs"));
    theTabs->resize(DesignSize());
    theTabs->SetPagePlace(PixelsFromTwips(thePageLeft), PixelsFromTwips(thePageTop));
    theTabs->SetImages(TabImages());
    for (const TabRow &row : theTabRows) {
        auto *page = new Sheet;
        page->setObjectName(QString::fromLatin1(row.Page));
        page->setAccessibleName(QString::fromUtf16(row.Caption));
        theTabs->AddTab(QString::fromLatin1(row.Key), QString::fromUtf16(row.Caption), page);
        SetTabUsing(QString::fromLatin1(row.Key), false);
        theNamedWidgets.insert(page->objectName(), page);
    }
}

void VkDocQueryCriteries::MakeElements() {
    theNamedWidgets.reserve(std::ssize(theElementRows) + std::ssize(theTabRows));
    for (const ElementRow &row : theElementRows) {
        QWidget *parent = &Named(QString::fromLatin1(row.Inside));
        if (auto *area = qobject_cast<QScrollArea *>(parent)) parent = area->widget();
        QWidget *element = MadeElement(row, parent);
        element->setObjectName(ObjectName(row.Name, row.Index));
        element->setGeometry(PixelRect(row));
        theNamedWidgets.insert(element->objectName(), element);
    }
}

/// A page is scrolled where it has less room than what is on it takes. The margin behind that may
/// be a pixel short at the design size, where places are rounded one by one.
void VkDocQueryCriteries::FitPages() {
    const int margin = PixelsFromTwips(thePageMargin);
    for (const TabRow &row : theTabRows) {
        auto &page = NamedAs<Sheet>(QString::fromLatin1(row.Page));
        QRect used;
        for (const QWidget *element :
             page.Content()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
            if (!element->isHidden()) used |= element->geometry();
        const QSize needed(used.right() + 1, used.bottom() + 1);
        page.SetLeast((needed + QSize(margin, margin)).boundedTo(page.size()).expandedTo(needed));
    }
}

QWidget *VkDocQueryCriteries::MadeElement(const ElementRow &aRow, QWidget *aParent) {
    const QString caption = QString::fromUtf16(aRow.Caption);
    switch (aRow.Kind) {
        case ElementKind::Frame:
        case ElementKind::HiddenFrame:
        case ElementKind::PlainFrame:
            return MadeFrame(aRow, aParent);
        case ElementKind::CheckBox:
            return MadeCheckBox(aRow, aParent);
        case ElementKind::Option:
            return new OptionButton(caption, aParent);
        case ElementKind::Button:
            return new QPushButton(caption, aParent);
        case ElementKind::List:
            return new ListView(aParent);
        case ElementKind::Text:
            return new TextBox(aParent);
        case ElementKind::Label:
            return new QLabel(caption, aParent);
        case ElementKind::ScrollBox:
            return new ScrollBox(aParent);
        case ElementKind::FixedCombo:
            return new ComboBox(ComboBox::Fixed, aParent);
        case ElementKind::EditableCombo:
            return new ComboBox(ComboBox::Editable, aParent);
        case ElementKind::NumberBox:  // the bounds of both are those that such boxes begin with
            return new NumberBox(aParent);
        case ElementKind::DateBox:
            return new DateBox(aParent);
        case ElementKind::Image:
            return MadeImage(aRow, aParent);
    }
    Q_UNREACHABLE();
}

void VkDocQueryCriteries::SetTabOrder() {
    std::vector<const ElementRow *> rows;
    for (const ElementRow &row : theElementRows) {
        if (row.TabOrder != theNoTabOrder) rows.push_back(&row);
    }
    std::ranges::sort(rows, {}, [](const ElementRow *row) { return row->TabOrder; });
    // By the proxy the panel counts as one widget for who orders what stands behind it.
    setFocusProxy(theTabs->Bar());
    QWidget *last = theTabs->Bar();
    for (const ElementRow *row : rows) {
        QWidget *next = &Named(ObjectName(row->Name, row->Index));
        if (next->focusPolicy() == Qt::NoFocus) continue;
        setTabOrder(last, next);
        last = next;
    }
}

void VkDocQueryCriteries::NameForReaders() {
    QHash<QString, QString> captions;
    for (const ElementRow &row : theElementRows)
        captions.insert(QString::fromLatin1(row.Name), QString::fromUtf16(row.Caption));
    for (const ElementRow &row : theElementRows) {
        QWidget &element = Named(ObjectName(row.Name, row.Index));
        const QString caption = *row.ExplainedBy
                                    ? captions.value(QString::fromLatin1(row.ExplainedBy))
                                    : QString::fromUtf16(row.Caption);
        element.setAccessibleName(caption);
        if (*row.ExplainedBy) DescribeForReaders(row, element, caption);
    }
}

/// A label such as "по:" tells little without the criterion that it belongs to.
void VkDocQueryCriteries::DescribeForReaders(const ElementRow &aRow, QWidget &aElement,
                                             const QString &aCaption) {
    auto *label = qobject_cast<QLabel *>(&Named(QString::fromLatin1(aRow.ExplainedBy)));
    if (!label) return;
    if (!label->buddy()) label->setBuddy(&aElement);
    const QString criterion = CriterionAround(aElement);
    // A combo is called by its value, so that the label is told here.
    const bool combo = qobject_cast<ComboBox *>(&aElement);
    aElement.setAccessibleDescription(combo ? criterion + QStringLiteral(", ") + aCaption
                                            : criterion);
    // Of a box with a line inside, the line has the focus.
    auto *line = aElement.findChild<QLineEdit *>();
    if (!line) return;
    line->setAccessibleName(aCaption);
    line->setAccessibleDescription(criterion);
}

/// A text that is no date brings its page up before the user is asked. Whoever is on the way to
/// switch the criterion off is not asked, and what is switched off keeps its last whole date.
void VkDocQueryCriteries::SetUpDates() {
    The<CheckBox>("theIsSignDate").setProperty(DateBox::theChecksProperty, false);
    for (const auto name : theDateBoxes) {
        DateBox *box = &The(name);
        connect(box, &DateBox::WrongText, this,
                [this] { SetCurrentTab(QString::fromLatin1(theTabOfDates.Text())); });
        connect(this, &VkDocQueryCriteries::Refreshed, box, [box] {
            if (box->parentWidget()->isHidden()) box->DropUnfinished();
        });
    }
}

void VkDocQueryCriteries::Init() try {
    for (const auto list : theObjectLists) The(list).SetSmallIcons(PanelImages());

    for (const auto combo : theYearCombos) The(combo).clear();
    const int year = Today().year();
    for (int y = year - theYearsBefore; y <= year + theYearsAfter; ++y) {
        for (const auto combo : theYearCombos) The(combo).AddItem(QString::number(y), y);
    }
    for (const auto combo : theYearCombos) The(combo).setCurrentIndex(theYearsBefore);

    auto &periods = The<ComboBox>("thePeriodTime");
    periods.clear();
    for (const qint32 code : thePeriodCodes)
        periods.AddItem(GetRecFactory().GetPeriodName(code), code);

    auto &firstMonths = The<ComboBox>("thePerMonth1");
    auto &lastMonths = The<ComboBox>("thePerMonth2");
    firstMonths.clear();
    lastMonths.clear();
    for (qint32 month = 1; month <= theMonths; ++month) {
        firstMonths.AddItem(GetRecFactory().GetPeriodName(month), month);
        lastMonths.AddItem(GetRecFactory().GetPeriodName(month), month);
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QWidget &VkDocQueryCriteries::Element(ElementName aName) const {
    return Named(ObjectName(aName.Text()));
}

QWidget &VkDocQueryCriteries::Named(const QString &aObjectName) const {
    QWidget *element = theNamedWidgets.value(aObjectName);
    if (!element) RaiseWrongElement(aObjectName);
    return *element;
}

bool VkDocQueryCriteries::IsTicked(ElementOf<CheckBox> aCheckBox) const {
    return The(aCheckBox).Value() == 1;
}

bool VkDocQueryCriteries::IsChosen(ElementOf<OptionButton> aOption) const {
    return The(aOption).Value();
}

void VkDocQueryCriteries::SetTabUsing(const QString &aTabKey, bool aUsed) try {
    theTabs->SetTabPicture(aTabKey, aUsed ? QStringLiteral("active") : QStringLiteral("passive"));
    // The picture alone would tell it to those who see only.
    const auto row = std::ranges::find(
        theTabRows, aTabKey, [](const TabRow &aRow) { return QString::fromLatin1(aRow.Key); });
    if (row != std::end(theTabRows))
        theTabs->SetTabSpokenName(aTabKey, QString::fromUtf16(row->Caption) +
                                               (aUsed ? QStringLiteral(", критерий задан")
                                                      : QStringLiteral(", критерий не задан")));
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetCurrentTab(const QString &aTabKey) try {
    for (int i = 0; i < theTabs->TabCount(); ++i) {
        if (theTabs->TabKey(i) != aTabKey) continue;
        IgnoringFailures([&] { theTabs->SetSelectedTab(aTabKey); });
        return;
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString VkDocQueryCriteries::GetCurrentTab() const {
    QString key;
    IgnoringFailures([&] { key = theTabs->SelectedTab(); });
    return key;
}

QSize VkDocQueryCriteries::sizeHint() const {
    return DesignSize();
}

QSize VkDocQueryCriteries::minimumSizeHint() const {
    return theTabs->minimumSizeHint();
}

/// The rules give elements colours of the desktop, which may have changed.
void VkDocQueryCriteries::changeEvent(QEvent *aEvent) try {
    QWidget::changeEvent(aEvent);
    if (aEvent->type() != QEvent::PaletteChange || theColours == QApplication::palette()) return;
    theColours = QApplication::palette();
    RefreshControls(false);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void VkDocQueryCriteries::resizeEvent(QResizeEvent *aEvent) {
    QWidget::resizeEvent(aEvent);
    theTabs->setGeometry(rect());
}

void RaiseWrongElement(const QString &aName) {
    throw Failure(InvalidArgument, QStringLiteral("VkDocQueryCriteries"),
                  QStringLiteral("На панели нет нужного элемента \"%1\".").arg(aName));
}

bool VkDocQueryCriteries::FinishInput() try {
    for (const auto name : theDateBoxes) {
        DateBox &box = The(name);
        if (!box.IsAcceptable() && !box.parentWidget()->isHidden() && !box.CheckText())
            return false;
    }
    return true;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
