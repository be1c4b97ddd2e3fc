#include "controls/DateBox.h"

#include <array>

#include <QAccessibleWidget>
#include <QApplication>
#include <QCalendarWidget>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

#include <Vk_DocQuery/Failure.h>

#include "controls/AltKeys.h"
#include "controls/TextBox.h"
#include "foundation/Clock.h"
#include "look/Colours.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"
#include "windows/mVkGraphLight.h"

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

/// Where the parts of a date stand, and between what numbers each lies.
struct DatePart {
    int Start;
    int Length;
    int Lowest;
    int Highest;
};
enum PartIndex : std::size_t { DayPart, MonthPart, YearPart };
constexpr std::array theParts{DatePart{0, 2, 1, 31}, DatePart{3, 2, 1, 12},
                              DatePart{6, 4, 1000, 9999}};

PartIndex PartAt(int aPlace) {
    return aPlace < theParts[MonthPart].Start  ? DayPart
           : aPlace < theParts[YearPart].Start ? MonthPart
                                               : YearPart;
}

/// Years of one or two digits are of this century below 30 and of the last one from there.
int FullYear(int aYear) {
    constexpr int theFirstOfLastCentury = 30;
    if (aYear >= 100) return aYear;
    return aYear + (aYear < theFirstOfLastCentury ? 2000 : 1900);
}

QString DateText(int aDay, int aMonth, int aYear) {
    return QStringLiteral("%1.%2.%3")
        .arg(aDay, 2, 10, QChar(u'0'))
        .arg(aMonth, 2, 10, QChar(u'0'))
        .arg(aYear, 4, 10, QChar(u'0'));
}

/// A text from elsewhere in the form of the box if it is written like a date, year first or last,
/// with or without a time behind it; otherwise nothing. It need not be one: whoever leaves it is
/// told so.
QString DateWrittenIn(const QString &aForeign) {
    static const QRegularExpression form(QStringLiteral(
        "^(?:(?<year>[0-9]{4})[-./](?<month>[0-9]{1,2})[-./](?<day>[0-9]{1,2})|"
        "(?<day2>[0-9]{1,2})[-./](?<month2>[0-9]{1,2})[-./](?<year2>[0-9]{4}|[0-9]{1,2}))"
        "(?:[T ]+[0-9]{1,2}:[0-9:.]+Z?)?\\s*(?:г\\.?|года)?$"));
    const auto match = form.match(aForeign.trimmed());
    if (!match.hasMatch()) return QString();
    const auto number = [&](const QString &aName) {
        const QString first = match.captured(aName);
        return (first.isEmpty() ? match.captured(aName + u'2') : first).toInt();
    };
    return DateText(number(QStringLiteral("day")), number(QStringLiteral("month")),
                    FullYear(number(QStringLiteral("year"))));
}

QDate Stepped(QDate aDate, PartIndex aPart, int aBy) {
    switch (aPart) {
        case DayPart:
            return aDate.addDays(aBy);
        case MonthPart:
            return aDate.addMonths(aBy);
        case YearPart:
            return aDate.addYears(aBy);
    }
    Q_UNREACHABLE();
}

}  // namespace

/// Takes a whole date in the place of all that stands there, and other texts as far as the mask
/// lets them in.
class DateBox::Line : public TextBox {
public:
    explicit Line(QWidget *aParent) : TextBox(aParent) {
        setInputMask(QStringLiteral("99.99.9999;_"));
    }

protected:
    void Enter(const QString &aForeign) override {
        const QString date = DateWrittenIn(aForeign);
        if (!date.isEmpty()) selectAll();
        insert(date.isEmpty() ? OnOneLine(aForeign).trimmed() : date);
    }
};

/// The drop-down calendar with buttons for today and for no date.
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
        // Dates are typed in the box. The calendar would take digits in a form of its own, even
        // with Alt, and keep them to the end of the program when it is closed in the middle.
        Calendar->setDateEditEnabled(false);
        layout->addWidget(Calendar);
        auto *buttons = new QHBoxLayout;
        layout->addLayout(buttons);
        AddButton(*buttons, QStringLiteral("Сегодня"), u'С', Today);
        AddButton(*buttons, QStringLiteral("Очистить"), u'О', [] { return QDate(); });

        auto *days = Calendar->findChild<QTableView *>();
        days->setItemDelegateForRow(0, new WeekDayNames(this));
        for (QWidget *part : findChildren<QWidget *>()) part->installEventFilter(this);
        connect(Calendar, &QCalendarWidget::clicked, this,
                [this](QDate aDate) { theBox.Take(aDate); });
        connect(Calendar, &QCalendarWidget::activated, this,
                [this](QDate aDate) { theBox.Take(aDate); });
        connect(Calendar, &QCalendarWidget::currentPageChanged, this, [this] { NameMonth(); });
        setFocusProxy(days);
        ColourWeekends();
        KeepColoursReadable(*this);
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
    void AddButton(QLayout &aLayout, const QString &aCaption, char16_t aAltKey, QDate (*aDate)()) {
        auto *button = new QPushButton(aCaption, this);
        button->setAutoDefault(true);  // Enter presses the one that has the focus
        GiveAltKey(*button, aAltKey);
        connect(button, &QPushButton::clicked, this, [this, aDate] {
            const QDate date = aDate();
            theBox.Take(date.isValid() ? theBox.Bounded(date) : date);
        });
        aLayout.addWidget(button);
    }

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
    : QWidget(aParent), theEdit(new Line(this)), theButton(new QToolButton(this)) {
    static const bool theInterfaceIsEntered = [] {
        QAccessible::installFactory(Interface::Made);
        return true;
    }();
    Q_UNUSED(theInterfaceIsEntered)
    theEdit->installEventFilter(this);
    connect(theEdit, &QLineEdit::textChanged, this, [this] {
        const LooseValue value = Value();
        if (IsDate(value)) theLastWhole = std::get<QDate>(value);
    });
    theButton->setArrowType(Qt::DownArrow);
    theButton->setFocusPolicy(Qt::NoFocus);
    theButton->setAccessibleName(QStringLiteral("Календарь"));
    theButton->setToolTip(QStringLiteral("Календарь (Alt+↓, F4)"));
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
        theLastWhole = QDate();
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
    CompleteYear();
    if (IsAcceptable()) {
        Tidy();
        return true;
    }
    if (theWarning) return false;
    theWarning = true;
    const QPointer<DateBox> self(this);  // whoever owns the window may take it away under the box
    emit WrongText();
    theEdit->setFocus(Qt::OtherFocusReason);
    ShowWarningBox(Complaint(), QStringLiteral("Дата"));
    if (!self) return false;
    theWarning = false;
    window()->activateWindow();
    theEdit->setFocus(Qt::OtherFocusReason);
    SelectWrongPart();
    return false;
} catch (...) {
    theWarning = false;
    ReportErrorToUser(theModule, __func__);
    return false;
}

/// A day or month of one digit gets its zero. A text that is in order keeps what can be undone.
void DateBox::Tidy() {
    const LooseValue value = Value();
    const QDate date = IsDate(value) ? std::get<QDate>(value) : QDate();
    theLastWhole = date;
    if (date.isValid() && theEdit->text() != date.toString(theFormat)) PutDate(date);
}

/// A year of two digits that was typed is taken as one that was pasted. A single digit is more
/// likely the beginning of a year.
void DateBox::CompleteYear() {
    const QString year = theEdit->displayText().mid(theParts[YearPart].Start);
    const QStringList parts = theEdit->text().split(u'.');
    if (!year.endsWith(QStringLiteral("__")) || parts.size() != 3 || parts.at(2).size() != 2)
        return;
    const QDate date(FullYear(parts.at(2).toInt()), parts.at(1).toInt(), parts.at(0).toInt());
    if (date.isValid()) PutDate(date);
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

void DateBox::DropUnfinished() {
    if (IsAcceptable()) return;
    if (theLastWhole.isValid())
        SetValue(theLastWhole);
    else
        theEdit->clear();
}

void DateBox::SelectWrongPart() {
    const QString shown = theEdit->displayText();
    for (const DatePart &part : theParts) {
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
    const bool steps = aEvent.key() == Qt::Key_Up || aEvent.key() == Qt::Key_Down;
    if (steps && (aEvent.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) == 0) {
        StepPart(aEvent.key() == Qt::Key_Up ? 1 : -1);
        return true;
    }
    const bool enter = aEvent.key() == Qt::Key_Return || aEvent.key() == Qt::Key_Enter;
    return enter && !CheckText();
}

/// A blank box takes today's date. A date goes on to the next month or year and stops at the
/// bounds; of what is no date the part alone changes, and a part that is blank becomes today's.
void DateBox::StepPart(int aBy) {
    const PartIndex index =
        PartAt(theEdit->hasSelectedText() ? theEdit->selectionStart() : theEdit->cursorPosition());
    const DatePart &part = theParts[index];
    const QDate typed = TypedDate();
    if (IsBlank()) {
        PutDate(Bounded(Today()));
    } else if (typed.isValid()) {
        const QDate stepped = Stepped(typed, index, aBy);
        PutDate(stepped == Bounded(stepped) ? stepped : Bounded(typed));
    } else {
        const QString digits = theEdit->displayText().mid(part.Start, part.Length).remove(u'_');
        const QString today = Today().toString(theFormat).mid(part.Start, part.Length);
        const int present = index == YearPart ? FullYear(digits.toInt()) : digits.toInt();
        const int number =
            digits.isEmpty() ? today.toInt() : std::clamp(present + aBy, part.Lowest, part.Highest);
        theEdit->setSelection(part.Start, part.Length);
        theEdit->insert(QString::number(number).rightJustified(part.Length, u'0'));
    }
    theEdit->setSelection(part.Start, part.Length);
}

/// Not setText, which would forget what can be undone. An invalid date empties the box.
void DateBox::PutDate(QDate aDate) {
    theEdit->selectAll();
    if (aDate.isValid())
        theEdit->insert(aDate.toString(theFormat));
    else
        theEdit->del();
}

QDate DateBox::Bounded(QDate aDate) const {
    return std::clamp(aDate, theEarliest, theLatest);
}

void DateBox::FocusLeft() {
    const QWidget *focus = QApplication::focusWidget();
    if (focus == theEdit) return;
    if (focus && focus->window() != window()) return;
    if (focus && focus->property(theChecksProperty) == QVariant(false)) return CheckLater();
    if (window()->isVisible()) CheckText();
}

/// When the focus goes on within the window.
void DateBox::CheckLater() {
    disconnect(theWait);
    theWait =
        connect(qApp, &QApplication::focusChanged, this,
                [this](const QWidget * /*aOld*/, const QWidget *aNow) {
                    if (!aNow || aNow->window() != window()) return;
                    disconnect(theWait);
                    QMetaObject::invokeMethod(this, &DateBox::FocusLeft, Qt::QueuedConnection);
                });
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
    ReportErrorToUser(theModule, __func__);
}

/// An invalid date empties the box.
void DateBox::Take(QDate aDate) {
    thePopup->close();
    PutDate(aDate);
    theLastWhole = aDate;
    theEdit->setFocus(Qt::PopupFocusReason);
}

}  // namespace Vk_DocQuery
