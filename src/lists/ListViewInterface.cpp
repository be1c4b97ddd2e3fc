#include "lists/ListViewInterface.h"

#include <utility>

#include <QCoreApplication>

#include "lists/ListView.h"

namespace Vk_DocQuery {

namespace {

QRect OnScreen(const QWidget &aArea, const QRect &aPlace) {
    return QRect(aArea.mapToGlobal(aPlace.topLeft()), aPlace.size());
}

/// What a header and a cell have in common: they belong to a list that may be gone before them.
class Part : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    Part(ListView &aList, int aColumn) : theList(&aList), theColumn(aColumn) {}

    ListView *List() const { return theList; }
    int Column() const { return theColumn; }

    QObject *object() const override { return nullptr; }
    QWindow *window() const override {
        const QAccessibleInterface *list = parent();
        return list ? list->window() : nullptr;
    }
    QAccessibleInterface *childAt(int /*aX*/, int /*aY*/) const override { return nullptr; }
    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(theList);
    }
    QAccessibleInterface *child(int /*aIndex*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface * /*aChild*/) const override { return -1; }
    void setText(QAccessible::Text /*aText*/, const QString & /*aNew*/) override {}
    QStringList keyBindingsForAction(const QString & /*aName*/) const override { return {}; }

private:
    QPointer<ListView> theList;
    int theColumn;
};

class Header : public Part {
public:
    using Part::Part;

    bool isValid() const override { return List() && Column() < List()->ColumnCount(); }
    QString text(QAccessible::Text aText) const override {
        if (!isValid()) return QString();
        if (aText == QAccessible::Name) return List()->Column(Column()).Caption;
        if (aText != QAccessible::Description || !List()->IsSorted() ||
            List()->SortKey() != Column())
            return QString();
        return List()->SortOrder() == 1 ? QStringLiteral("по убыванию")
                                        : QStringLiteral("по возрастанию");
    }
    QRect rect() const override {
        if (!isValid()) return QRect();
        const QHeaderView &header = *List()->header();
        return OnScreen(header, QRect(header.sectionViewportPosition(Column()), 0,
                                      header.sectionSize(Column()), header.height()));
    }
    QAccessible::Role role() const override { return QAccessible::ColumnHeader; }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.disabled = !List()->isEnabled();
        state.invisible = !List()->isVisible() || List()->header()->isSectionHidden(Column());
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType aType) override {
        return aType == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString &aName) override {
        if (isValid() && List()->isEnabled() && aName == pressAction())
            List()->ClickHeader(Column());
    }
};

class Cell : public Part, public QAccessibleTableCellInterface {
public:
    Cell(ListView &aList, int aRow, int aColumn) : Part(aList, aColumn), theRow(aRow) {}

    bool isValid() const override {
        return List() && theRow < List()->RowCount() && Column() < List()->ColumnCount();
    }
    QString text(QAccessible::Text aText) const override {
        return isValid() && aText == QAccessible::Name ? List()->SpokenText(Row(), Column())
                                                       : QString();
    }
    QRect rect() const override {
        return isValid() ? OnScreen(*List()->viewport(), List()->CellRect(Row(), Column()))
                         : QRect();
    }
    QAccessible::Role role() const override { return QAccessible::Cell; }
    QAccessible::State state() const override;

    void *interface_cast(QAccessible::InterfaceType aType) override {
        if (aType == QAccessible::TableCellInterface)
            return static_cast<QAccessibleTableCellInterface *>(this);
        if (aType == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface *>(this);
        return nullptr;
    }

    bool isSelected() const override { return isValid() && Row()->IsSelected(); }
    QList<QAccessibleInterface *> columnHeaderCells() const override {
        const QAccessibleInterface *list = isValid() ? parent() : nullptr;
        return list ? QList<QAccessibleInterface *>{list->child(Column())}
                    : QList<QAccessibleInterface *>{};
    }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return Column(); }
    int rowIndex() const override { return theRow; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return parent(); }

    QStringList actionNames() const override {
        QStringList names{pressAction(), setFocusAction()};
        if (isValid() && Column() == 0 && List()->HasCheckBoxes()) names.prepend(toggleAction());
        return names;
    }
    void doAction(const QString &aName) override {
        if (!isValid() || !List()->isEnabled()) return;
        if (aName == toggleAction() && List()->HasCheckBoxes())
            List()->ToggleRow(Row());
        else if (aName == pressAction())
            List()->ClickRow(Row());
        else if (aName == setFocusAction())
            List()->FocusRow(Row());
    }

private:
    ListRow *Row() const { return List()->Row(theRow); }

    int theRow;
};

QAccessible::State Cell::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const ListRow *row = Row();
    const QRect place = List()->CellRect(row, Column());
    state.disabled = !List()->isEnabled();
    state.invisible = !List()->isVisible() || place.isEmpty();
    state.offscreen = !place.intersects(List()->viewport()->rect());
    state.selectable = true;
    state.multiSelectable = List()->HasMultiSelect();
    state.selected = row->IsSelected();
    state.focusable = Column() == 0;
    state.focused = Column() == 0 && List()->hasFocus() && List()->SelectedItem() == row;
    state.readOnly = true;
    if (Column() == 0 && List()->HasCheckBoxes()) {
        state.checkable = true;
        state.checked = row->IsChecked();
    }
    return state;
}

QAccessibleInterface *Made(const QString &aClass, QObject *aObject) {
    auto *list = aClass == QLatin1String("Vk_DocQuery::ListView")
                     ? qobject_cast<ListView *>(aObject)
                     : nullptr;
    return list ? new ListViewInterface(list) : nullptr;
}

}  // namespace

void ListViewInterface::EnterFactory() {
    static const bool theFactoryIsEntered = [] {
        QAccessible::installFactory(Made);
        return true;
    }();
    Q_UNUSED(theFactoryIsEntered)
}

ListViewInterface::ListViewInterface(ListView *aList)
    : QAccessibleWidget(aList, QAccessible::Table), theList(aList) {}

ListViewInterface::~ListViewInterface() {
    Forget(theChildren);
}

/// A child may be the one whose question or action has changed the rows, so that they go later.
void ListViewInterface::Forget(const QHash<int, QAccessible::Id> &aChildren) {
    if (aChildren.isEmpty()) return;
    const auto forget = [aChildren] {
        for (const QAccessible::Id id : aChildren) QAccessible::deleteAccessibleInterface(id);
    };
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(QCoreApplication::instance(), forget, Qt::QueuedConnection);
    else
        forget();
}

void ListViewInterface::modelChange(QAccessibleTableModelChangeEvent * /*aEvent*/) {
    QHash<int, QAccessible::Id> headers;
    QHash<int, QAccessible::Id> others;
    for (auto child = theChildren.cbegin(); child != theChildren.cend(); ++child) {
        const auto *header = dynamic_cast<Header *>(QAccessible::accessibleInterface(*child));
        (header && header->isValid() ? headers : others).insert(child.key(), *child);
    }
    theChildren = headers;
    Forget(others);
}

void *ListViewInterface::interface_cast(QAccessible::InterfaceType aType) {
    return aType == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface *>(this)
                                                : QAccessibleWidget::interface_cast(aType);
}

// ---- Children

int ListViewInterface::ChildOf(const ListView &aList, int aRow, int aColumn) {
    return (aRow + 1) * aList.ColumnCount() + aColumn;
}

int ListViewInterface::childCount() const {
    return (rowCount() + 1) * columnCount();
}

QAccessibleInterface *ListViewInterface::child(int aIndex) const {
    if (aIndex < 0 || aIndex >= childCount()) return nullptr;
    const auto known = theChildren.constFind(aIndex);
    if (known != theChildren.constEnd()) return QAccessible::accessibleInterface(known.value());
    const int columns = columnCount();
    QAccessibleInterface *made = nullptr;
    if (aIndex < columns)
        made = new Header(*theList, aIndex);
    else
        made = new Cell(*theList, aIndex / columns - 1, aIndex % columns);
    theChildren.insert(aIndex, QAccessible::registerAccessibleInterface(made));
    return made;
}

int ListViewInterface::indexOfChild(const QAccessibleInterface *aChild) const {
    if (const auto *cell = dynamic_cast<const Cell *>(aChild))
        return theList && cell->List() == theList
                   ? ChildOf(*theList, cell->rowIndex(), cell->Column())
                   : -1;
    const auto *header = dynamic_cast<const Header *>(aChild);
    return header && theList && header->List() == theList ? header->Column() : -1;
}

QAccessibleInterface *ListViewInterface::childAt(int aX, int aY) const {
    if (!theList) return nullptr;
    const QPoint point = theList->viewport()->mapFromGlobal(QPoint(aX, aY));
    if (const ListRow *row = theList->HitTest(point))
        return cellAt(theList->PositionOf(row), theList->ColumnAt(point.x()));
    const QHeaderView &header = *theList->header();
    const QPoint above = header.mapFromGlobal(QPoint(aX, aY));
    const int column = theList->ColumnAt(above.x());
    return header.rect().contains(above) && column >= 0 ? child(column) : nullptr;
}

QAccessibleInterface *ListViewInterface::focusChild() const {
    const int position =
        theList && theList->hasFocus() ? theList->PositionOf(theList->SelectedItem()) : -1;
    return position < 0 ? QAccessibleWidget::focusChild() : cellAt(position, 0);
}

QAccessible::State ListViewInterface::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    if (!theList) return state;
    state.multiSelectable = theList->HasMultiSelect();
    state.readOnly = true;
    return state;
}

/// The order is said behind what the window says of the list.
QString ListViewInterface::text(QAccessible::Text aText) const {
    const QString text = QAccessibleWidget::text(aText);
    if (aText != QAccessible::Description || !theList) return text;
    QStringList texts{text, theList->SpokenSorting()};
    texts.removeAll(QString());
    return texts.join(QStringLiteral(", "));
}

// ---- The table

QAccessibleInterface *ListViewInterface::cellAt(int aRow, int aColumn) const {
    if (aRow < 0 || aRow >= rowCount() || aColumn < 0 || aColumn >= columnCount()) return nullptr;
    return child(ChildOf(*theList, aRow, aColumn));
}

int ListViewInterface::columnCount() const {
    return theList ? theList->ColumnCount() : 0;
}

int ListViewInterface::rowCount() const {
    return theList ? theList->RowCount() : 0;
}

QString ListViewInterface::columnDescription(int aColumn) const {
    return aColumn >= 0 && aColumn < columnCount() ? theList->Column(aColumn).Caption : QString();
}

QString ListViewInterface::rowDescription(int aRow) const {
    return aRow >= 0 && aRow < rowCount() ? theList->SpokenText(theList->Row(aRow), 0) : QString();
}

int ListViewInterface::selectedCellCount() const {
    return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface *> ListViewInterface::selectedCells() const {
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows())
        for (int column = 0; column < columnCount(); ++column) cells << cellAt(row, column);
    return cells;
}

int ListViewInterface::selectedRowCount() const {
    return theList ? static_cast<int>(theList->SelectedRows().size()) : 0;
}

QList<int> ListViewInterface::selectedRows() const {
    QList<int> positions;
    if (!theList) return positions;
    for (const ListRow *row : theList->SelectedRows()) positions << theList->PositionOf(row);
    return positions;
}

bool ListViewInterface::isRowSelected(int aRow) const {
    return aRow >= 0 && aRow < rowCount() && theList->Row(aRow)->IsSelected();
}

bool ListViewInterface::selectRow(int aRow) {
    if (aRow < 0 || aRow >= rowCount() || !theList->isEnabled()) return false;
    theList->AddToSelection(theList->Row(aRow));
    return true;
}

bool ListViewInterface::unselectRow(int aRow) {
    if (!isRowSelected(aRow) || !theList->isEnabled()) return false;
    theList->Row(aRow)->SetSelected(false);
    return true;
}

}  // namespace Vk_DocQuery
