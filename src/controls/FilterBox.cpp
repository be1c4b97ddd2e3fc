#include "controls/FilterBox.h"

#include <QKeyEvent>
#include <QLabel>

#include "controls/TextBox.h"
#include "foundation/mErrorHandling.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkFilterBox";
constexpr int theLabelTwips = 900;

bool IsTyping(const QKeyEvent &aEvent) {
    const QString text = aEvent.text();
    if (text.isEmpty() || !text.at(0).isPrint() || text.at(0) == u' ') return false;
    // With both of them a third level of the keyboard is typed.
    const auto both = Qt::ControlModifier | Qt::AltModifier;
    const auto held = aEvent.modifiers() & both;
    return held == 0 || held == both;
}

bool IsEditing(const QKeyEvent &aEvent) {
    if (aEvent.key() == Qt::Key_Backspace) return (aEvent.modifiers() & Qt::AltModifier) == 0;
    return aEvent.matches(QKeySequence::Paste) || aEvent.matches(QKeySequence::Undo) ||
           aEvent.matches(QKeySequence::Redo);
}

}  // namespace

/// Takes keys that were sent to another element.
class VkFilterBox::Line : public TextBox {
public:
    using TextBox::TextBox;
    void TakeKey(QKeyEvent &aEvent) { keyPressEvent(&aEvent); }
};

VkFilterBox::VkFilterBox(QWidget *aParent)
    : QWidget(aParent), theLabel(nullptr), theLine(new Line(this)) {
    auto *label = new QLabel(QStringLiteral("Фильтр:"), this);
    label->setBuddy(theLine);
    theLabel = label;
    theLine->setAccessibleName(label->text());
    theLine->setClearButtonEnabled(true);
    connect(theLine, &QLineEdit::textChanged, this, &VkFilterBox::Change);
    setFocusProxy(theLine);
}

QString VkFilterBox::Text() const {
    return theLine->text();
}

void VkFilterBox::SetText(const QString &aText) {
    theLine->setText(aText);
}

QLineEdit *VkFilterBox::Edit() const {
    return theLine;
}

bool VkFilterBox::HandleKeyPress(QKeyEvent &aEvent) try {
    if (!IsTyping(aEvent) && !IsEditing(aEvent)) return false;
    theLine->TakeKey(aEvent);
    aEvent.accept();
    return true;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkFilterBox::resizeEvent(QResizeEvent * /*aEvent*/) {
    const int label = std::min(PixelsFromTwips(theLabelTwips), width());
    theLabel->setGeometry(0, 0, label, height());
    theLine->setGeometry(label, 0, width() - label, height());
}

}  // namespace Vk_DocQuery
