// Keys and mouse of the ListView.

#include <algorithm>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>

#include "controls/ListViewRows.h"
#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "ListView";
}  // namespace

void ListView::keyPressEvent(QKeyEvent *aEvent) try {
    Flush();
    aEvent->accept();
    if (aEvent->matches(QKeySequence::SelectAll)) {
        if (theMultiSelect) SelectRange(0, RowCount() - 1);
    } else if (aEvent->key() == Qt::Key_Space) {
        if ((aEvent->modifiers() & Qt::ControlModifier) != 0 || !theCheckBoxes) {
            if (theRows->Current() >= 0)
                SelectByUser(theRows->PositionOf(theRows->Current()), aEvent->modifiers());
        } else {
            ToggleByKey();
        }
    } else if (!MoveByKey(*aEvent) && !ActOnColumnByKey(*aEvent)) {
        aEvent->ignore();
    }
} catch (...) {
    ReportErrorToUser(theModule, "keyPressEvent");
}

bool ListView::MoveByKey(const QKeyEvent &aEvent) {
    const int last = RowCount() - 1;
    const int page = std::max(1, WholeRowsInSight() - 1);
    const int present = theRows->Current() < 0 ? -1 : theRows->PositionOf(theRows->Current());
    int target = 0;
    switch (aEvent.key()) {
        case Qt::Key_Up:
            target = present - 1;
            break;
        case Qt::Key_Down:
            target = present + 1;
            break;
        case Qt::Key_PageUp:
            target = present - page;
            break;
        case Qt::Key_PageDown:
            target = std::max(present, 0) + page;
            break;
        case Qt::Key_Home:
            target = 0;
            break;
        case Qt::Key_End:
            target = last;
            break;
        case Qt::Key_Left:
        case Qt::Key_Right:
            horizontalScrollBar()->triggerAction(aEvent.key() == Qt::Key_Left
                                                     ? QScrollBar::SliderSingleStepSub
                                                     : QScrollBar::SliderSingleStepAdd);
            return true;
        default:
            return false;
    }
    if (last >= 0) MoveCurrent(std::clamp(target, 0, last), aEvent.modifiers());
    return true;
}

/// Ctrl with a digit is a click on the header of that column, counted as they are seen; Ctrl with
/// the plus sign makes all columns as wide as their texts.
bool ListView::ActOnColumnByKey(const QKeyEvent &aEvent) {
    const auto modifiers = aEvent.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (modifiers != Qt::ControlModifier) return false;
    const std::vector<int> shown = ShownColumns();
    if (aEvent.key() == Qt::Key_Plus) {
        for (const int column : shown) FitColumn(column);
        return true;
    }
    const int number = aEvent.key() - Qt::Key_1;
    if (number < 0 || number >= std::min(9, static_cast<int>(shown.size()))) return false;
    ClickHeader(shown[static_cast<std::size_t>(number)]);
    return true;
}

void ListView::MoveCurrent(int aPosition, Qt::KeyboardModifiers aModifiers) {
    ListRow *row = theRows->At(aPosition);
    const bool moved = theRows->Current() != row->Number();
    const bool keepsMarks = theMultiSelect && (aModifiers & Qt::ControlModifier) != 0 &&
                            (aModifiers & Qt::ShiftModifier) == 0;
    if (keepsMarks)
        theRows->SetCurrent(row->Number());
    else
        SelectByUser(aPosition, aModifiers & Qt::ShiftModifier);
    EnsureVisible(row);
    if (moved) emit ItemClick(row);
}

/// What a click with these modifiers does to the marks; the row becomes the current one.
void ListView::SelectByUser(int aPosition, Qt::KeyboardModifiers aModifiers) {
    const int number = theRows->At(aPosition)->Number();
    const bool adds = theMultiSelect && (aModifiers & Qt::ControlModifier) != 0;
    const bool range = theMultiSelect && (aModifiers & Qt::ShiftModifier) != 0;
    if (range) {
        if (theRows->Anchor() < 0)
            theRows->SetAnchor(theRows->Current() < 0 ? number : theRows->Current());
        if (!adds) theRows->UnselectAll();
        SelectRange(theRows->PositionOf(theRows->Anchor()), aPosition);
    } else {
        if (!adds) theRows->UnselectAll();
        theRows->SetSelected(number, !adds || !theRows->IsSelected(number));
        theRows->SetAnchor(number);
    }
    theRows->SetCurrent(number);
}

/// Positions before the first row stand for none, as in a list without rows.
void ListView::SelectRange(int aFrom, int aTo) {
    if (aFrom < 0 || aTo < 0) return;
    const std::vector<int> &order = theRows->Order();
    for (int i = std::min(aFrom, aTo); i <= std::max(aFrom, aTo); ++i)
        theRows->SetSelected(order[static_cast<std::size_t>(i)], true);
}

/// The blank turns the check mark of the current row, and gives the new mark to all selected rows
/// if the current one is among them.
void ListView::ToggleByKey() {
    const int current = theRows->Current();
    if (current < 0) return;
    std::vector<int> numbers;
    if (theRows->IsSelected(current))
        for (const ListRow *row : SelectedRows()) numbers.push_back(row->Number());
    else
        numbers.push_back(current);
    ToggleCheck(numbers, !theRows->IsChecked(current));
}

void ListView::ToggleCheck(const std::vector<int> &aNumbers, bool aChecked) {
    std::vector<ListRow *> changed;
    for (const int number : aNumbers) {
        if (theRows->IsChecked(number) == aChecked) continue;
        theRows->SetChecked(number, aChecked);
        changed.push_back(theRows->ByNumber(number));
    }
    TellOfMarks(changed);
    // Whoever hears of it may refill the list or take it away.
    std::vector<int> numbers;
    numbers.reserve(changed.size());
    for (const ListRow *row : changed) numbers.push_back(row->Number());
    const QPointer<ListView> self(this);
    for (const int number : numbers)
        if (self && theRows->Stands(number)) emit ItemCheck(theRows->ByNumber(number));
}

void ListView::mousePressEvent(QMouseEvent *aEvent) try {
    const QPoint point = aEvent->position().toPoint();
    ListRow *row = HitTest(point);
    thePressed = aEvent->button() == Qt::LeftButton;
    if (!thePressed && aEvent->button() != Qt::RightButton) return;
    if (!row) {
        theRows->UnselectAll();
        return;
    }
    if (thePressed && IsOnCheckBox(point)) {
        ToggleRow(row);
        thePressed = false;
        return;
    }
    if (!thePressed && row->IsSelected()) return;
    const bool moved = theRows->Current() != row->Number();
    SelectByUser(theRows->PositionOf(row->Number()), aEvent->modifiers());
    if (thePressed || moved) emit ItemClick(row);
} catch (...) {
    ReportErrorToUser(theModule, "mousePressEvent");
}

void ListView::mouseReleaseEvent(QMouseEvent *aEvent) try {
    if (aEvent->button() != Qt::LeftButton || !thePressed) return;
    thePressed = false;
    if (viewport()->rect().contains(aEvent->position().toPoint())) emit Click();
} catch (...) {
    ReportErrorToUser(theModule, "mouseReleaseEvent");
}

void ListView::mouseMoveEvent(QMouseEvent *aEvent) try {
    emit MouseMove(aEvent->position().toPoint());
} catch (...) {
    ReportErrorToUser(theModule, "mouseMoveEvent");
}

void ListView::mouseDoubleClickEvent(QMouseEvent *aEvent) try {
    thePressed = false;
    if (aEvent->button() != Qt::LeftButton) return;
    const QPoint point = aEvent->position().toPoint();
    ListRow *row = HitTest(point);
    if (row && IsOnCheckBox(point))
        ToggleRow(row);  // two quick clicks on a box turn it twice
    else
        emit DblClick();
} catch (...) {
    ReportErrorToUser(theModule, "mouseDoubleClickEvent");
}

bool ListView::IsOnCheckBox(QPoint aPoint) const {
    return theCheckBoxes && ColumnAt(aPoint.x()) == 0 &&
           CheckRect(CellRect(HitTest(aPoint), 0)).contains(aPoint);
}

void ListView::ClickRow(ListRow *aRow) try {
    SelectByUser(PositionOf(aRow), Qt::NoModifier);
    TellClick(aRow);
} catch (...) {
    ReportErrorToUser(theModule, "ClickRow");
}

/// A failure that is shown on the way may end with the window gone.
void ListView::TellClick(ListRow *aRow) {
    const QPointer<ListView> self(this);
    emit ItemClick(aRow);
    if (self) emit Click();
}

void ListView::AddToSelection(ListRow *aRow) try {
    if (aRow->IsSelected()) return;
    SelectByUser(PositionOf(aRow), Qt::ControlModifier);
    TellClick(aRow);
} catch (...) {
    ReportErrorToUser(theModule, "AddToSelection");
}

void ListView::ToggleRow(ListRow *aRow) try {
    theRows->SetCurrent(aRow->Number());
    ToggleCheck({aRow->Number()}, !aRow->IsChecked());
} catch (...) {
    ReportErrorToUser(theModule, "ToggleRow");
}

void ListView::FocusRow(ListRow *aRow) try {
    const bool moved = theRows->Current() != aRow->Number();
    theRows->SetCurrent(aRow->Number());
    EnsureVisible(aRow);
    setFocus(Qt::OtherFocusReason);
    if (moved) emit ItemClick(aRow);
} catch (...) {
    ReportErrorToUser(theModule, "FocusRow");
}

/// The focus alone makes no row the current one.
void ListView::focusInEvent(QFocusEvent *aEvent) {
    QAbstractScrollArea::focusInEvent(aEvent);
    TellOfSelection();
    update();  // the edges
    viewport()->update();
}

void ListView::focusOutEvent(QFocusEvent *aEvent) {
    QAbstractScrollArea::focusOutEvent(aEvent);
    update();
    viewport()->update();
}

}  // namespace Vk_DocQuery
