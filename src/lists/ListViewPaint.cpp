// How the ListView looks.

#include <algorithm>

#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>

#include "lists/ListView.h"
#include "lists/ListViewHeader.h"
#include "lists/ListViewRows.h"
#include "look/Colours.h"
#include "windows/ErrorReport.h"
#include "windows/mVkGraphLight.h"

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

/// In one line, and in several if that would be longer than a window is wide.
QString TipOf(const QString &aText, const QFont &aFont) {
    constexpr int theLongestLineTwips = 9000;
    const bool isLong =
        QFontMetrics(aFont).horizontalAdvance(aText) > PixelsFromTwips(theLongestLineTwips);
    return Qt::convertFromPlainText(aText, isLong ? Qt::WhiteSpaceNormal : Qt::WhiteSpacePre);
}

/// A picture whose colours come close to that of the selection keeps its shape by an outline.
void PaintOutline(QPainter &aPainter, const QIcon &aIcon, const QRect &aPlace,
                  const QColor &aColour) {
    QPixmap shape = aIcon.pixmap(aPlace.size(), aPainter.device()->devicePixelRatioF());
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), aColour);
    painter.end();
    for (const QPoint aside : {QPoint(-1, -1), QPoint(0, -1), QPoint(1, -1), QPoint(-1, 0),
                               QPoint(1, 0), QPoint(-1, 1), QPoint(0, 1), QPoint(1, 1)})
        aPainter.drawPixmap(aPlace.translated(aside), shape);
}

}  // namespace

bool ListView::event(QEvent *aEvent) {
    if (aEvent->type() != QEvent::Paint) return QAbstractScrollArea::event(aEvent);
    const bool handled = QAbstractScrollArea::event(aEvent);
    PaintEdgesOver(*this, *aEvent);
    return handled;
}

/// A change that nobody has shown yet may touch more than what is to be painted.
void ListView::paintEvent(QPaintEvent *aEvent) try {
    if (ShowChanges() && !aEvent->rect().contains(viewport()->rect())) viewport()->update();
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    option.initFrom(this);
    option.font = font();
    option.state.setFlag(QStyle::State_MouseOver, false);
    option.state.setFlag(QStyle::State_HasFocus, false);
    const int height = RowHeight();
    const int first = verticalScrollBar()->value();
    const int from = first + std::max(0, aEvent->rect().top()) / height;
    const int last = std::min(first + aEvent->rect().bottom() / height, RowCount() - 1);
    const int left = -horizontalScrollBar()->value();
    for (int position = from; position <= last; ++position) {
        option.rect = QRect(left, (position - first) * height, theHeader->length(), height);
        DrawRow(painter, option, *theRows->At(position));
    }
    // Without a current row the focus would not show.
    if (theRows->Current() < 0 && hasFocus() && isActiveWindow()) DrawFocusOnAll(painter);
} catch (...) {
    ReportErrorToUser(theModule, __func__, QString(), UseRepeatLimit);
}

void ListView::DrawFocusOnAll(QPainter &aPainter) const {
    aPainter.setPen(palette().color(QPalette::Highlight));
    aPainter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

bool ListView::viewportEvent(QEvent *aEvent) {
    if (aEvent->type() != QEvent::ToolTip) return QAbstractScrollArea::viewportEvent(aEvent);
    const auto *help = static_cast<QHelpEvent *>(aEvent);
    try {
        ShowTip(help->pos(), help->globalPos());
    } catch (...) {
        ReportErrorToUser(theModule, __func__);
    }
    return true;
}

/// The whole text of a cell that shows only a part of it.
void ListView::ShowTip(QPoint aPoint, QPoint aGlobal) {
    QString tip;
    QRect cell;
    if (const ListRow *row = HitTest(aPoint)) {
        const int column = ColumnAt(aPoint.x());
        const QString &text = column == 0 ? row->Text() : row->CellText(column);
        const bool picture = !(column == 0 ? row->Icon() : row->CellIcon(column)).isEmpty();
        cell = CellRect(row, column);
        const QRect room = TextRect(cell, column, picture) & viewport()->rect();
        if (fontMetrics().horizontalAdvance(text) > room.width()) tip = text;
    }
    if (tip.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(aGlobal, TipOf(tip, QToolTip::font()), viewport(), cell);
}

/// Of many rows those in sight count, which are the ones that the user wants to read.
void ListView::FitColumn(int aPosition) try {
    int width = theHeader->sectionSizeHint(aPosition);
    const int first = verticalScrollBar()->value();
    const int last = std::min(first + WholeRowsInSight(), RowCount() - 1);
    for (int position = first; position <= last; ++position) {
        const ListRow *row = theRows->At(position);
        const QString &text = aPosition == 0 ? row->Text() : row->CellText(aPosition);
        const bool picture = !(aPosition == 0 ? row->Icon() : row->CellIcon(aPosition)).isEmpty();
        const int beside = -TextRect(QRect(0, 0, 0, RowHeight()), aPosition, picture).width();
        width = std::max(width, beside + fontMetrics().horizontalAdvance(text) + 1);
    }
    theHeader->resizeSection(aPosition, width);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
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

void ListView::DrawRow(QPainter &aPainter, const QStyleOptionViewItem &aOption,
                       const ListRow &aRow) const {
    QStyleOptionViewItem option = aOption;
    const bool active = hasFocus() && isActiveWindow();
    const QPalette::ColorGroup group = !isEnabled() ? QPalette::Disabled
                                       : active     ? QPalette::Active
                                                    : QPalette::Inactive;
    const bool selected = aRow.IsSelected();
    if (selected) aPainter.fillRect(option.rect, palette().brush(group, QPalette::Highlight));
    aPainter.setPen(palette().color(group, selected ? QPalette::HighlightedText : QPalette::Text));
    option.state.setFlag(QStyle::State_Selected, selected);

    const QRect shown = viewport()->rect();
    for (int column = 0; column < ColumnCount(); ++column) {
        if (theHeader->isSectionHidden(column)) continue;
        QStyleOptionViewItem cell = option;
        cell.rect.setLeft(theHeader->sectionViewportPosition(column));
        cell.rect.setWidth(theHeader->sectionSize(column));
        if (cell.rect.left() <= shown.right() && cell.rect.right() >= shown.left())
            DrawCell(aPainter, cell, aRow, column);
    }
    if (theRows->Current() == aRow.Number() && active) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.state |= QStyle::State_KeyboardFocusChange | QStyle::State_HasFocus;
        focus.backgroundColor =
            palette().color(group, selected ? QPalette::Highlight : QPalette::Base);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &aPainter, this);
    }
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
        if (aRow.IsSelected()) PaintOutline(aPainter, *icon, picture, aPainter.pen().color());
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
