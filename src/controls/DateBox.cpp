#include "controls/DateBox.h"

#include <array>

#include <QAccessibleWidget>
#include <QApplication>
#include <QCalendarWidget>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

#include <Vk_DocQuery/Failure.h>

#include "foundation/Clock.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "DateBox";
constexpr int theButtonTwips = 255;
const QString theFormat = QStringLiteral("dd.MM.yyyy");

/// The locale writes the names of months and week days small.
QString Capitalised(const QString &aName) {
    return aName.left(1).toUpper() + aName.mid(1);
}

/// The names of the week days begin with a capital.
class WeekDayNames : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant &aValue, const QLocale & /*aLocale*/) const override {
        return Capitalised(aValue.toString());
    }
    void initStyleOption(QStyleOptionViewItem *rOption, const QModelIndex &aIndex) const override {
        QStyledItemDelegate::initStyleOption(rOption, aIndex);
        rOption->displayAlignment = Qt::AlignCenter;
    }
};

bool IsClosingKey(const QKeyEvent &aEvent) {
    return aEvent.key() == Qt::Key_Escape || aEvent.key() == Qt::Key_F4 ||
           (aEvent.key() == Qt::Key_Up && (aEvent.modifiers() & Qt::AltModifier) != 0);
}

}  // namespace

/// The drop-down calendar with a button that empties the box.
class DateBox::Popup : public QFrame {
public:
    explicit Popup(DateBox &aBox) : QFrame(&aBox, Qt::Popup), theBox(aBox) {
        setFrameShape(QFrame::StyledPanel);
        setFont(aBox.font());  // a window of its own does not take it over
        auto *layout = new QVBoxLayout(this);
        layout->setContentsMargins(1, 1, 1, 1);
        layout->setSpacing(2);
        Calendar = new QCalendarWidget(this);
        Calendar->setLocale(QLocale(QLocale::Russian, QLocale::Russia));
        Calendar->setFirstDayOfWeek(Qt::Sunday);
        Calendar->setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
        Calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
        Calendar->setDateRange(aBox.theEarliest, aBox.theLatest);
        auto *clear = new QPushButton(QStringLiteral("Очистить"), this);
        clear->setAutoDefault(false);
        layout->addWidget(Calendar);
        layout->addWidget(clear);

        auto *days = Calendar->findChild<QTableView *>();
        days->setItemDelegateForRow(0, new WeekDayNames(this));
        for (QWidget *part : findChildren<QWidget *>()) part->installEventFilter(this);
        connect(Calendar, &QCalendarWidget::clicked, this,
                [this](QDate aDate) { theBox.Take(aDate); });
        connect(Calendar, &QCalendarWidget::activated, this,
                [this](QDate aDate) { theBox.Take(aDate); });
        connect(clear, &QPushButton::clicked, this, [this] { theBox.Take(QDate()); });
        connect(Calendar, &QCalendarWidget::currentPageChanged, this, [this] { NameMonth(); });
        setFocusProxy(days);
        ColourWeekends();
    }

    void ShowDate(QDate aDate) {
        Calendar->setSelectedDate(aDate);
        Calendar->setCurrentPage(aDate.year(), aDate.month());
        NameMonth();
    }

protected:
    void changeEvent(QEvent *aEvent) override {
        QFrame::changeEvent(aEvent);
        if (Calendar && aEvent->type() == QEvent::PaletteChange) ColourWeekends();
    }
    bool eventFilter(QObject *aObject, QEvent *aEvent) override {
        if (aEvent->type() != QEvent::KeyPress) return QFrame::eventFilter(aObject, aEvent);
        const auto *key = static_cast<QKeyEvent *>(aEvent);
        if (IsClosingKey(*key)) {
            close();
            return true;
        }
        if (key->key() == Qt::Key_Delete || key->key() == Qt::Key_Backspace) {
            theBox.Take(QDate());
            return true;
        }
        return QFrame::eventFilter(aObject, aEvent);
    }

private:
    /// The red that a calendar has by itself cannot be read on a dark ground.
    void ColourWeekends() {
        const bool dark = palette().color(QPalette::Base).lightness() <
                          palette().color(QPalette::Text).lightness();
        QTextCharFormat format;
        format.setForeground(dark ? QColor(255, 128, 128) : QColor(200, 0, 0));
        Calendar->setWeekdayTextFormat(Qt::Saturday, format);
        Calendar->setWeekdayTextFormat(Qt::Sunday, format);
    }

    /// The heading begins with a capital, too. The arrow of its menu is drawn over the end of the
    /// text, so that blanks make room for it.
    void NameMonth() {
        auto *month = Calendar->findChild<QToolButton *>(QStringLiteral("qt_calendar_monthbutton"));
        if (month) month->setText(Capitalised(month->text().trimmed()) + QStringLiteral("   "));
    }

    DateBox &theBox;
    QCalendarWidget *Calendar = nullptr;
};

/// The calendar is a window of its own, which would be missing from the tree that a screen reader
/// walks.
class DateBox::Interface : public QAccessibleWidget {
public:
    explicit Interface(DateBox *aBox) : QAccessibleWidget(aBox), theBox(*aBox) {}

    int childCount() const override {
        return QAccessibleWidget::childCount() + (IsCalendarUp() ? 1 : 0);
    }
    QAccessibleInterface *child(int aIndex) const override {
        return IsCalendarUp() && aIndex == QAccessibleWidget::childCount()
                   ? QAccessible::queryAccessibleInterface(theBox.thePopup)
                   : QAccessibleWidget::child(aIndex);
    }
    int indexOfChild(const QAccessibleInterface *aChild) const override {
        return IsCalendarUp() && aChild->object() == theBox.thePopup
                   ? QAccessibleWidget::childCount()
                   : QAccessibleWidget::indexOfChild(aChild);
    }

    static QAccessibleInterface *Made(const QString &aClass, QObject *aObject) {
        if (aClass != QLatin1String("Vk_DocQuery::DateBox")) return nullptr;
        return new Interface(static_cast<DateBox *>(aObject));
    }

private:
    bool IsCalendarUp() const { return theBox.thePopup && theBox.thePopup->isVisible(); }

    DateBox &theBox;
};

DateBox::DateBox(QWidget *aParent)
    : QWidget(aParent), theEdit(new QLineEdit(this)), theButton(new QToolButton(this)) {
    static const bool theInterfaceIsEntered = [] {
        QAccessible::installFactory(Interface::Made);
        return true;
    }();
    Q_UNUSED(theInterfaceIsEntered)
    theEdit->setInputMask(QStringLiteral("99.99.9999;_"));
    theEdit->installEventFilter(this);
    theButton->setArrowType(Qt::DownArrow);
    theButton->setFocusPolicy(Qt::NoFocus);
    theButton->setAccessibleName(QStringLiteral("Календарь"));
    connect(theButton, &QToolButton::clicked, this, &DateBox::OpenCalendar);
    setFocusProxy(theEdit);
    setFocusPolicy(Qt::StrongFocus);
}

DateBox::~DateBox() = default;

void DateBox::SetBounds(QDate aEarliest, QDate aLatest) {
    theEarliest = aEarliest;
    theLatest = aLatest;
    delete thePopup;
    thePopup = nullptr;
}

LooseValue DateBox::Value() const {
    const QDate date = TypedDate();
    if (!date.isValid() || date < theEarliest || date > theLatest) return Empty();
    return date;
}

void DateBox::SetValue(const LooseValue &aValue) {
    if (IsNull(aValue) || IsEmpty(aValue)) {
        theEdit->clear();
        return;
    }
    const QDate date = ToDate(aValue);
    if (!date.isValid() || date < theEarliest || date > theLatest) {
        throw Failure(
            InvalidArgument, QStringLiteral("DateBox"),
            QStringLiteral("Недопустимое значение поля даты: \"%1\".").arg(ToText(aValue)));
    }
    theEdit->setText(date.toString(theFormat));
}

bool DateBox::IsAcceptable() const {
    return IsBlank() || IsDate(Value());
}

bool DateBox::CheckText() try {
    if (IsAcceptable()) {
        SetValue(Value());  // a day or month of one digit gets its zero
        return true;
    }
    if (theWarning) return false;
    theWarning = true;
    emit WrongText();
    ShowWarningBox(Complaint(), QStringLiteral("Дата"));
    theWarning = false;
    window()->activateWindow();
    theEdit->setFocus(Qt::OtherFocusReason);
    SelectWrongPart();
    return false;
} catch (...) {
    theWarning = false;
    ReportErrorToUser(theModule, "CheckText");
    return false;
}

QString DateBox::Complaint() const {
    if (TypedDate().isValid()) {
        return QStringLiteral("Дата \"%1\" должна быть в пределах от %2 до %3.")
            .arg(theEdit->displayText(), theEarliest.toString(theFormat),
                 theLatest.toString(theFormat));
    }
    return QStringLiteral("\"%1\" не является датой.").arg(theEdit->displayText());
}

bool DateBox::IsBlank() const {
    return theEdit->text() == QStringLiteral("..");
}

/// A day or month of one digit is taken; the year has its four digits.
QDate DateBox::TypedDate() const {
    const QStringList parts = theEdit->text().split(u'.');
    if (parts.size() != 3 || parts.at(2).size() != 4) return QDate();
    return QDate(parts.at(2).toInt(), parts.at(1).toInt(), parts.at(0).toInt());
}

void DateBox::SelectWrongPart() {
    struct Part {
        int Start;
        int Length;
        int Lowest;
        int Highest;
    };
    constexpr std::array theParts{Part{0, 2, 1, 31}, Part{3, 2, 1, 12}, Part{6, 4, 1000, 9999}};
    const QString shown = theEdit->displayText();
    for (const Part &part : theParts) {
        const int number = QString(shown.mid(part.Start, part.Length)).remove(u'_').toInt();
        if (number >= part.Lowest && number <= part.Highest) continue;
        theEdit->setSelection(part.Start, part.Length);
        return;
    }
    theEdit->setSelection(0, 2);  // the month has no such day
}

bool DateBox::eventFilter(QObject *aObject, QEvent *aEvent) {
    if (aObject != theEdit) return QWidget::eventFilter(aObject, aEvent);
    switch (aEvent->type()) {
        case QEvent::KeyPress:
            return EditKey(*static_cast<QKeyEvent *>(aEvent));
        case QEvent::FocusIn:
            // A click into the blank mask would leave the caret in its middle.
            if (IsBlank())
                QMetaObject::invokeMethod(
                    theEdit, [this] { theEdit->setCursorPosition(0); }, Qt::QueuedConnection);
            break;
        case QEvent::FocusOut: {
            const auto reason = static_cast<QFocusEvent *>(aEvent)->reason();
            if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
                reason != Qt::MenuBarFocusReason)
                QMetaObject::invokeMethod(this, &DateBox::FocusLeft, Qt::QueuedConnection);
            break;
        }
        default:
            break;
    }
    return QWidget::eventFilter(aObject, aEvent);
}

/// True if the key is used up.
bool DateBox::EditKey(const QKeyEvent &aEvent) {
    const bool opens = aEvent.key() == Qt::Key_F4 || (aEvent.key() == Qt::Key_Down &&
                                                      (aEvent.modifiers() & Qt::AltModifier) != 0);
    if (opens) {
        OpenCalendar();
        return true;
    }
    const bool enter = aEvent.key() == Qt::Key_Return || aEvent.key() == Qt::Key_Enter;
    return enter && !CheckText();
}

void DateBox::FocusLeft() {
    const QWidget *focus = QApplication::focusWidget();
    if (focus == theEdit) return;
    if (focus &&
        (focus->window() != window() || focus->property(theChecksProperty) == QVariant(false)))
        return;
    if (window()->isVisible()) CheckText();
}

void DateBox::resizeEvent(QResizeEvent * /*aEvent*/) {
    const int button = std::min(PixelsFromTwips(theButtonTwips), width());
    theEdit->setGeometry(0, 0, width() - button, height());
    theButton->setGeometry(width() - button, 0, button, height());
}

void DateBox::OpenCalendar() try {
    if (!thePopup) thePopup = new Popup(*this);
    const LooseValue value = Value();
    const auto *date = std::get_if<QDate>(&value);
    thePopup->ShowDate(date ? *date : Today());
    thePopup->adjustSize();
    const QRect room = screen()->availableGeometry();
    QPoint place = mapToGlobal(QPoint(0, height()));
    if (place.y() + thePopup->height() > room.bottom())
        place.setY(mapToGlobal(QPoint(0, 0)).y() - thePopup->height());
    place.setX(std::clamp(place.x(), room.left(),
                          std::max(room.left(), room.right() - thePopup->width())));
    thePopup->move(place);
    thePopup->show();
    thePopup->setFocus();
} catch (...) {
    ReportErrorToUser(theModule, "OpenCalendar");
}

/// An invalid date empties the box.
void DateBox::Take(QDate aDate) {
    thePopup->close();
    theEdit->setText(aDate.isValid() ? aDate.toString(theFormat) : QString());
    theEdit->setFocus(Qt::PopupFocusReason);
}

}  // namespace Vk_DocQuery
