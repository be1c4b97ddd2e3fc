// Keys and mouse of the ListView.

#include <algorithm>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>

#include "lists/ListView.h"
#include "lists/ListViewRows.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "ListView";
}  // namespace

void ListView::keyPressEvent(QKeyEvent *aEvent) try {
    Flush();
    aEvent->accept();
    if (aEvent->matches(QKeySequence::SelectAll)) {
        if (theMultiSelect) SelectRange(0, RowCount() - 1);
    } else if (aEvent->matches(QKeySequence::Copy)) {
        CopySelected();
    } else if (JumpByKey(*aEvent)) {
        return;
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
    ReportErrorToUser(theModule, __func__);
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
/// the plus sign, which on the main keyboard takes Shift, makes all columns as wide as their texts.
bool ListView::ActOnColumnByKey(const QKeyEvent &aEvent) {
    const auto modifiers = aEvent.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    const std::vector<int> shown = ShownColumns();
    if (aEvent.key() == Qt::Key_Plus &&
        (modifiers & ~Qt::KeyboardModifiers(Qt::ShiftModifier)) == Qt::ControlModifier) {
        for (const int column : shown) FitColumn(column);
        return true;
    }
    if (modifiers != Qt::ControlModifier) return false;
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
        // Without a row to start from the range begins with the first one.
        if (theRows->Anchor() < 0)
            theRows->SetAnchor(theRows->Current() < 0 ? theRows->Order().front()
                                                      : theRows->Current());
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
/// if the current one is among them. Without a current row it marks the selected rows, or clears
/// them if all are marked.
void ListView::ToggleByKey() {
    const int current = theRows->Current();
    std::vector<int> numbers;
    if (current < 0 || theRows->IsSelected(current))
        for (const ListRow *row : SelectedRows()) numbers.push_back(row->Number());
    else
        numbers.push_back(current);
    const auto isChecked = [this](int aNumber) { return theRows->IsChecked(aNumber); };
    const bool checked =
        current < 0 ? std::ranges::all_of(numbers, isChecked) : theRows->IsChecked(current);
    ToggleCheck(numbers, !checked);
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
    StopDrag();
    if (!row) return PressBeside(*aEvent);
    if (thePressed && IsOnCheckBox(point)) {
        ToggleRow(row);
        thePressed = false;
        return;
    }
    if (!thePressed && row->IsSelected()) return;
    const bool moved = theRows->Current() != row->Number();
    SelectByUser(theRows->PositionOf(row->Number()), aEvent->modifiers());
    if (thePressed) StartDrag(*aEvent, row);
    if (thePressed || moved) emit ItemClick(row);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

/// In a list of several the selection goes. In one of a single row that is also the chosen one,
/// which goes with the click, so that whoever shows it hears of that.
void ListView::PressBeside(const QMouseEvent &aEvent) {
    const bool holds = (aEvent.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
    thePressedBeside = thePressed && !holds;
    if (!theMultiSelect) return;
    if (thePressed) StartDrag(aEvent, nullptr);
    if (!holds) theRows->UnselectAll();
}

void ListView::mouseReleaseEvent(QMouseEvent *aEvent) try {
    if (aEvent->button() != Qt::LeftButton || !thePressed) return;
    StopDrag();
    thePressed = false;
    const QPoint point = aEvent->position().toPoint();
    if (!viewport()->rect().contains(point)) return;
    if (thePressedBeside && !theMultiSelect && !HitTest(point)) SetSelectedItem(nullptr);
    emit Click();
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void ListView::mouseMoveEvent(QMouseEvent *aEvent) try {
    const QPoint point = aEvent->position().toPoint();
    if (theDragFrom >= 0 && (aEvent->buttons() & Qt::LeftButton) != 0) DragTo(point);
    emit MouseMove(point);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

// ---- Dragging over rows

/// Null: the button was pressed beside the rows. A finger scrolls by dragging.
void ListView::StartDrag(const QMouseEvent &aEvent, ListRow *aRow) {
    if (!theMultiSelect || RowCount() == 0 || aEvent.source() != Qt::MouseEventNotSynthesized)
        return;
    const int last = RowCount() - 1;
    const int under = verticalScrollBar()->value() + aEvent.position().toPoint().y() / RowHeight();
    theDragFrom = aRow ? theRows->Anchor() : theRows->At(std::min(under, last))->Number();
    theDragEnd = aRow ? theRows->PositionOf(aRow->Number()) : -1;
    theKeptByDrag.clear();
    if ((aEvent.modifiers() & Qt::ControlModifier) == 0) return;
    for (const ListRow *row : SelectedRows()) theKeptByDrag.push_back(row->Number());
}

void ListView::DragTo(QPoint aPoint) {
    constexpr int theScrollInterval = 50;  // ms
    theDragPoint = aPoint;
    const bool outside = aPoint.y() < 0 || aPoint.y() >= viewport()->height();
    if (!outside)
        theDragTimer.stop();
    else if (!theDragTimer.isActive())
        theDragTimer.start(theScrollInterval, this);
    if (theDragEnd < 0 && !HitTest(aPoint)) return;
    const int first = verticalScrollBar()->value();
    const int last = std::min(first + std::max(1, WholeRowsInSight()), RowCount()) - 1;
    const int under = first + aPoint.y() / RowHeight() - (aPoint.y() < 0 ? 1 : 0);
    const int position = std::clamp(under, std::min(first, last), last);
    if (last < 0 || position == theDragEnd) return;
    theDragEnd = position;
    SelectDragged();
}

void ListView::SelectDragged() {
    if (!theRows->Stands(theDragFrom)) return StopDrag();  // the list was refilled meanwhile
    theRows->UnselectAll();
    for (const int number : theKeptByDrag)
        if (theRows->Stands(number)) theRows->SetSelected(number, true);
    SelectRange(theRows->PositionOf(theDragFrom), theDragEnd);
    theRows->SetAnchor(theDragFrom);
    theRows->SetCurrent(theRows->At(theDragEnd)->Number());
}

void ListView::StopDrag() {
    theDragTimer.stop();
    theDragFrom = theDragEnd = -1;
    theKeptByDrag.clear();
}

void ListView::timerEvent(QTimerEvent *aEvent) try {
    if (aEvent->timerId() != theDragTimer.timerId()) return QAbstractScrollArea::timerEvent(aEvent);
    verticalScrollBar()->triggerAction(theDragPoint.y() < 0 ? QScrollBar::SliderSingleStepSub
                                                            : QScrollBar::SliderSingleStepAdd);
    DragTo(theDragPoint);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
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
    ReportErrorToUser(theModule, __func__);
}

bool ListView::IsOnCheckBox(QPoint aPoint) const {
    return theCheckBoxes && ColumnAt(aPoint.x()) == 0 &&
           CheckRect(CellRect(HitTest(aPoint), 0)).contains(aPoint);
}

void ListView::ClickRow(ListRow *aRow) try {
    SelectByUser(PositionOf(aRow), Qt::NoModifier);
    TellClick(aRow);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
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
    ReportErrorToUser(theModule, __func__);
}

void ListView::ToggleRow(ListRow *aRow) try {
    theRows->SetCurrent(aRow->Number());
    ToggleCheck({aRow->Number()}, !aRow->IsChecked());
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

void ListView::FocusRow(ListRow *aRow) try {
    const bool moved = theRows->Current() != aRow->Number();
    theRows->SetCurrent(aRow->Number());
    EnsureVisible(aRow);
    setFocus(Qt::OtherFocusReason);
    if (moved) emit ItemClick(aRow);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
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
