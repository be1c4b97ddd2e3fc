// How the ListView looks.

#include <algorithm>

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>

#include "controls/Colours.h"
#include "controls/ListViewRows.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "ListView";
constexpr int thePictureTwips = 240;
constexpr int theCheckGap = 3;    // before and behind a check box
constexpr int thePictureGap = 2;  // before a picture
constexpr int theTextGap = 4;     // before and behind a text

int PictureSize() {
    return PixelsFromTwips(thePictureTwips);
}

}  // namespace

void ListView::paintEvent(QPaintEvent *aEvent) {
    Flush();
    QTreeView::paintEvent(aEvent);
    // Without a current row the focus would not show.
    if (theRows->Current() < 0 && hasFocus() && isActiveWindow()) DrawFocusOnAll();
}

void ListView::DrawFocusOnAll() const {
    QPainter painter(viewport());
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = viewport()->rect();
    focus.state |= QStyle::State_KeyboardFocusChange;
    focus.backgroundColor = palette().color(QPalette::Base);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

void ListView::resizeEvent(QResizeEvent *aEvent) {
    Flush();
    QTreeView::resizeEvent(aEvent);
}

bool ListView::viewportEvent(QEvent *aEvent) {
    if (aEvent->type() != QEvent::ToolTip) return QTreeView::viewportEvent(aEvent);
    const auto *help = static_cast<QHelpEvent *>(aEvent);
    try {
        ShowTip(help->pos(), help->globalPos());
    } catch (...) {
        ReportErrorToUser(theModule, "viewportEvent");
    }
    return true;
}

/// The whole text of a cell that shows only a part of it.
void ListView::ShowTip(QPoint aPoint, QPoint aGlobal) {
    const ListRow *row = HitTest(aPoint);
    const QModelIndex index = row ? indexAt(aPoint) : QModelIndex();
    QString tip;
    if (index.isValid()) {
        const int column = index.column();
        const QString &text = column == 0 ? row->Text() : row->CellText(column);
        const bool picture = !(column == 0 ? row->Icon() : row->CellIcon(column)).isEmpty();
        const QRect room = TextRect(visualRect(index), column, picture) & viewport()->rect();
        if (fontMetrics().horizontalAdvance(text) > room.width()) tip = text;
    }
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(aGlobal, tip.toHtmlEscaped(), viewport(), visualRect(index));
}

int ListView::RowHeight() const {
    return std::max(PictureSize(), fontMetrics().height()) + 2;
}

QRect ListView::CheckRect(const QRect &aCell) const {
    const int width = style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, this);
    const int height = style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this);
    return QRect(aCell.left() + theCheckGap, aCell.top() + (aCell.height() - height) / 2, width,
                 height);
}

QRect ListView::TextRect(const QRect &aCell, int aColumn, bool aHasPicture) const {
    int left = aCell.left();
    if (aColumn == 0 && theCheckBoxes) left = CheckRect(aCell).right() + 1;
    if (aHasPicture) left += thePictureGap + PictureSize();
    return QRect(QPoint(left + theTextGap, aCell.top()),
                 QPoint(aCell.right() - theTextGap, aCell.bottom()));
}

void ListView::drawRow(QPainter *aPainter, const QStyleOptionViewItem &aOption,
                       const QModelIndex &aIndex) const try {
    if (aIndex.row() >= RowCount()) return;
    const ListRow *row = theRows->At(aIndex.row());
    QStyleOptionViewItem option = aOption;
    const bool active = hasFocus() && isActiveWindow();
    const QPalette::ColorGroup group = !isEnabled() ? QPalette::Disabled
                                       : active     ? QPalette::Active
                                                    : QPalette::Inactive;
    option.rect = QRect(header()->sectionViewportPosition(header()->logicalIndex(0)),
                        aOption.rect.top(), header()->length(), aOption.rect.height());
    const bool selected = row->IsSelected();
    if (selected) aPainter->fillRect(option.rect, palette().brush(group, QPalette::Highlight));
    aPainter->setPen(palette().color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    option.state.setFlag(QStyle::State_Selected, selected);

    const QRect shown = viewport()->rect();
    for (int column = 0; column < ColumnCount(); ++column) {
        if (header()->isSectionHidden(column)) continue;
        QStyleOptionViewItem cell = option;
        cell.rect.setLeft(header()->sectionViewportPosition(column));
        cell.rect.setWidth(header()->sectionSize(column));
        if (cell.rect.left() <= shown.right() && cell.rect.right() >= shown.left())
            DrawCell(*aPainter, cell, *row, column);
    }
    if (theRows->Current() == row->Number() && active) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_HasFocus;
        focus.backgroundColor =
            palette().color(group, selected ? QPalette::Highlight : QPalette::Base);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, aPainter, this);
    }
} catch (...) {
    ReportErrorToUser(theModule, "drawRow", QString(), UseRepeatLimit);
}

void ListView::DrawCell(QPainter &aPainter, const QStyleOptionViewItem &aOption,
                        const ListRow &aRow, int aColumn) const {
    const QString &text = aColumn == 0 ? aRow.Text() : aRow.CellText(aColumn);
    const QString &key = aColumn == 0 ? aRow.Icon() : aRow.CellIcon(aColumn);
    const bool checkBox = aColumn == 0 && theCheckBoxes;
    QRect place = TextRect(aOption.rect, aColumn, !key.isEmpty());
    if (checkBox) {
        QStyleOptionViewItem box = aOption;
        box.rect = CheckRect(aOption.rect);
        box.state.setFlag(QStyle::State_Selected, false);
        box.state |= aRow.IsChecked() ? QStyle::State_On : QStyle::State_Off;
        style()->drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &box, &aPainter, this);
        // The style's own edge cannot be seen on a dark ground.
        aPainter.save();
        aPainter.setPen(EdgeColour(palette()));
        aPainter.setBrush(Qt::NoBrush);
        aPainter.drawRect(box.rect.adjusted(0, 0, -1, -1));
        aPainter.restore();
    }
    if (const QIcon *icon = key.isEmpty() ? nullptr : theRows->Picture(key)) {
        const int side = PictureSize();
        QRect picture(place.left() - theTextGap - side,
                      aOption.rect.top() + (aOption.rect.height() - side) / 2, side, side);
        // A picture that stands alone follows the alignment of its column.
        if (text.isEmpty() && !checkBox &&
            (theColumns[static_cast<std::size_t>(aColumn)].Alignment & Qt::AlignHCenter) != 0)
            picture.moveLeft(aOption.rect.left() + (aOption.rect.width() - side) / 2);
        aPainter.save();
        aPainter.setClipRect(aOption.rect, Qt::IntersectClip);
        icon->paint(&aPainter, picture, Qt::AlignCenter,
                    isEnabled() ? QIcon::Normal : QIcon::Disabled);
        aPainter.restore();
    }
    if (text.isEmpty() || place.width() <= 0) return;
    const Qt::Alignment alignment = theColumns[static_cast<std::size_t>(aColumn)].Alignment;
    aPainter.drawText(place, static_cast<int>(alignment | Qt::AlignVCenter | Qt::TextSingleLine),
                      aOption.fontMetrics.elidedText(text, Qt::ElideRight, place.width()));
}

}  // namespace Vk_DocQuery
