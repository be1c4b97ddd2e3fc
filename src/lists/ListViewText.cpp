// What the ListView copies, and where typed letters lead.

#include <algorithm>

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QRegularExpression>

#include "lists/ListView.h"
#include "lists/ListViewRows.h"

namespace Vk_DocQuery {

namespace {

const QString &TextIn(const ListRow &aRow, int aColumn) {
    return aColumn == 0 ? aRow.Text() : aRow.CellText(aColumn);
}

/// A tab or a line end inside a text would part what is one cell.
QString AsOneCell(QString aText) {
    static const QRegularExpression parting(QStringLiteral("[\\t\\r\\n\\x{2028}\\x{2029}]+"));
    return aText.replace(parting, QStringLiteral(" "));
}

QChar Folded(QChar aLetter) {
    const QChar folded = aLetter.toCaseFolded();
    return folded == u'ё' ? QChar(u'е') : folded;
}

bool BeginsWith(const QString &aText, const QString &aTyped) {
    const auto same = [](QChar aLeft, QChar aRight) { return Folded(aLeft) == Folded(aRight); };
    return aText.size() >= aTyped.size() &&
           std::equal(aTyped.begin(), aTyped.end(), aText.begin(), same);
}

bool IsTyping(const QKeyEvent &aEvent) {
    // With both of them a third level of the keyboard is typed.
    const auto both = Qt::ControlModifier | Qt::AltModifier;
    const auto held = aEvent.modifiers() & (both | Qt::MetaModifier);
    const QString text = aEvent.text();
    return (held == 0 || held == both) && !text.isEmpty() && text.at(0).isPrint();
}

}  // namespace

void ListView::CopySelected() const {
    if (theRows->SelectedCount() > 0) QGuiApplication::clipboard()->setText(SelectedText());
}

QString ListView::SelectedText() const {
    const std::vector<ListRow *> rows = SelectedRows();
    std::vector<int> columns = ShownColumns();
    const auto hasText = [](const ListRow *aRow) { return !aRow->Text().isEmpty(); };
    if (std::ranges::none_of(rows, hasText)) std::erase(columns, 0);
    QStringList lines;
    for (const ListRow *row : rows) {
        QStringList cells;
        for (const int column : columns)
            cells << AsOneCell(column == 0 ? row->Text() : SpokenText(row, column));
        lines << cells.join(u'\t');
    }
    return lines.join(u'\n');
}

/// Letters typed in quick succession lead to the row that begins with them, a single one to the
/// next such row. The blank belongs to them once they have begun.
bool ListView::JumpByKey(const QKeyEvent &aEvent) {
    if (!IsTyping(aEvent)) return false;
    if (!theTypedAt.isValid() || theTypedAt.elapsed() >= QApplication::keyboardInputInterval())
        theTyped.clear();
    if (theTyped.isEmpty() && aEvent.key() == Qt::Key_Space) return false;
    const int column = JumpColumn();
    if (column < 0) return false;
    theTyped += aEvent.text();
    theTypedAt.start();
    const int target = JumpTarget(column);
    if (target >= 0) MoveCurrent(target, Qt::NoModifier);
    return true;
}

/// The column by which the list is sorted, or else the first one that shows a text; -1: none does.
int ListView::JumpColumn() const {
    const std::vector<int> shown = ShownColumns();
    const auto hasText = [this](int aColumn) {
        return std::ranges::any_of(theRows->Order(), [&](int aNumber) {
            return !TextIn(*theRows->ByNumber(aNumber), aColumn).isEmpty();
        });
    };
    if (IsSorted() && std::ranges::find(shown, SortKey()) != shown.end() && hasText(SortKey()))
        return SortKey();
    const auto first = std::ranges::find_if(shown, hasText);
    return first == shown.end() ? -1 : *first;
}

/// The position of the next row, round the end of the list, that begins with what was typed. One
/// letter typed again and again goes on from row to row.
int ListView::JumpTarget(int aColumn) const {
    const int count = RowCount();
    const int current = theRows->Current() < 0 ? -1 : theRows->PositionOf(theRows->Current());
    const auto find = [&](int aFrom, const QString &aTyped) {
        for (int i = 0; i < count; ++i) {
            const int position = (aFrom + i) % count;
            if (BeginsWith(TextIn(*theRows->At(position), aColumn), aTyped)) return position;
        }
        return -1;
    };
    const int found = find(theTyped.size() == 1 ? current + 1 : std::max(current, 0), theTyped);
    const bool oneLetter = theTyped.count(theTyped.front(), Qt::CaseInsensitive) == theTyped.size();
    return found < 0 && oneLetter ? find(current + 1, theTyped.first(1)) : found;
}

}  // namespace Vk_DocQuery
