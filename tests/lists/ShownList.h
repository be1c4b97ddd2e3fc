#pragma once

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>

#include "lists/ListView.h"
#include "support/Keys.h"

namespace VkTests {

using namespace Vk_DocQuery;

/// A shown list of twenty rows "_1" to "_20" with check boxes and selection of several rows.
class ShownList {
public:
    explicit ShownList(bool aMulti = true, bool aCheckBoxes = true) {
        List.AddColumn(QStringLiteral("*"), 600);
        List.AddColumn(QStringLiteral("Название"), 3000);
        for (int i = 1; i <= 20; ++i)
            List.AddRow(QStringLiteral("_%1").arg(i))
                ->SetCell(1, QStringLiteral("Строка %1").arg(i));
        List.SetMultiSelect(aMulti);
        List.SetCheckBoxes(aCheckBoxes);
        List.resize(400, 250);
        List.show();
        List.setFocus();
        if (!QTest::qWaitForWindowActive(&List)) qFatal("the list does not come up");
        QObject::connect(&List, &ListView::ItemClick, &List, [this](ListRow *aRow) {
            Events << QStringLiteral("item ") + aRow->Key();
        });
        QObject::connect(&List, &ListView::Click, &List,
                         [this] { Events << QStringLiteral("click"); });
        QObject::connect(&List, &ListView::DblClick, &List,
                         [this] { Events << QStringLiteral("dbl"); });
        QObject::connect(&List, &ListView::ItemCheck, &List, [this](ListRow *aRow) {
            Events << QStringLiteral("check ") + aRow->Key();
        });
    }

    QPoint PlaceOf(int aRow) const {
        return QPoint(List.header()->sectionViewportPosition(1) + 20,
                      List.RowRect(List.Row(aRow)).center().y());
    }
    QPoint BoxOf(int aRow) const { return QPoint(8, List.RowRect(List.Row(aRow)).center().y()); }
    void ClickRow(int aRow, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) {
        QTest::mouseClick(List.viewport(), Qt::LeftButton, aModifiers, PlaceOf(aRow));
    }
    void Key(Qt::Key aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) {
        QTest::keyClick(&List, aKey, aModifiers);
    }
    QString Selected() const {
        QStringList keys;
        for (const ListRow *row : List.SelectedRows()) keys << row->Key();
        return keys.join(u' ');
    }
    QString Checked() const {
        QStringList keys;
        for (int i = 0; i < List.RowCount(); ++i)
            if (List.Row(i)->IsChecked()) keys << List.Row(i)->Key();
        return keys.join(u' ');
    }
    QString Current() const { return List.SelectedItem() ? List.SelectedItem()->Key() : QString(); }
    QString TakeEvents() {
        QString events = Events.join(QStringLiteral(", "));
        Events.clear();
        return events;
    }

    ListView List;
    QStringList Events;
};

}  // namespace VkTests
