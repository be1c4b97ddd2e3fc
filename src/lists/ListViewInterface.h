#pragma once

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

namespace Vk_DocQuery {

class ListView;

/// A ListView as assistive programs see it: a table whose children are the headers of the columns
/// and behind them the cells, row by row. Rows are known by their positions; when the rows change,
/// all cells are made anew.
class ListViewInterface : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit ListViewInterface(ListView *aList);
    ~ListViewInterface() override;

    /// Makes this the interface of every ListView.
    static void EnterFactory();
    /// Number of a cell among the children.
    static int ChildOf(const ListView &aList, int aRow, int aColumn);

    void *interface_cast(QAccessible::InterfaceType aType) override;

    int childCount() const override;
    QAccessibleInterface *child(int aIndex) const override;
    int indexOfChild(const QAccessibleInterface *aChild) const override;
    QAccessibleInterface *childAt(int aX, int aY) const override;
    QAccessibleInterface *focusChild() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text aText) const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int aRow, int aColumn) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override;
    QString columnDescription(int aColumn) const override;
    QString rowDescription(int aRow) const override;
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override;
    int columnCount() const override;
    int rowCount() const override;
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int /*aColumn*/) const override { return false; }
    bool isRowSelected(int aRow) const override;
    bool selectRow(int aRow) override;
    bool selectColumn(int /*aColumn*/) override { return false; }
    bool unselectRow(int aRow) override;
    bool unselectColumn(int /*aColumn*/) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *aEvent) override;

private:
    static void Forget(const QHash<int, QAccessible::Id> &aChildren);

    QPointer<ListView> theList;                       // null as soon as the list begins to go
    mutable QHash<int, QAccessible::Id> theChildren;  // by number
};

}  // namespace Vk_DocQuery
