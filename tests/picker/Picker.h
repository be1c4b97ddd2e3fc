#pragma once

#include <functional>
#include <memory>

#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <Vk_DocQuery/Records.h>

#include "lists/ListView.h"
#include "picker/SelectObjectsForm.h"
#include "support/Keys.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"

namespace VkTests {

/// The picker that is up, as a user has it: keys, mouse, and what can be read on it.
class Picker {
public:
    explicit Picker(QWidget &aWindow) : Window(aWindow) {}

    QWidget &Window;

    Vk_DocQuery::ListView &List() const { return Get<Vk_DocQuery::ListView>("theList"); }
    QLineEdit &Filter() const { return *Get<QWidget>("theFilter").findChild<QLineEdit *>(); }
    QPushButton &Button(const char *aName) const { return Get<QPushButton>(aName); }

    /// Keys of the rows, from the first to the last, parted by blanks.
    QString Rows() const {
        return Those([](const Vk_DocQuery::ListRow &) { return true; });
    }
    QString Marked() const {
        return Those([](const Vk_DocQuery::ListRow &row) { return row.IsChecked(); });
    }
    QString Selected() const {
        return Those([](const Vk_DocQuery::ListRow &row) { return row.IsSelected(); });
    }
    QString Current() const {
        const auto *row = List().SelectedItem();
        return row ? row->Key() : QString();
    }

    /// A key for the element that has the focus.
    void Press(Qt::Key aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) const {
        QTest::keyClick(Focused(), aKey, aModifiers);
    }
    /// Letters, each for the element that has the focus by then.
    void Type(const QString &aText) const {
        for (const QChar letter : aText) TypeText(Focused(), letter);
    }
    void Click(const char *aButton) const { QTest::mouseClick(&Button(aButton), Qt::LeftButton); }
    void ClickHeader(int aColumn) const {
        QHeaderView *header = List().header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          {header->sectionViewportPosition(aColumn) + 8, header->height() / 2});
    }
    void ClickRow(const char *aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) const {
        ClickInRow(aKey, 80, aModifiers);
    }
    void ClickMark(const char *aKey) const { ClickInRow(aKey, 10, Qt::NoModifier); }
    void Close() const { Click("theCancel"); }

private:
    template <class Kind>
    Kind &Get(const char *aName) const {
        auto *element = Window.findChild<Kind *>(QString::fromLatin1(aName));
        if (!element) qFatal("no element %s", aName);
        return *element;
    }
    QWidget *Focused() const { return Window.focusWidget() ? Window.focusWidget() : &Window; }
    QString Those(const std::function<bool(const Vk_DocQuery::ListRow &)> &aWanted) const {
        QStringList keys;
        for (int i = 0; i < List().RowCount(); ++i)
            if (aWanted(*List().Row(i))) keys << List().Row(i)->Key();
        return keys.join(u' ');
    }
    void ClickInRow(const char *aKey, int aX, Qt::KeyboardModifiers aModifiers) const {
        const auto *row = List().RowByKey(QString::fromLatin1(aKey));
        if (!row) qFatal("no row %s", aKey);
        const QRect rect = List().RowRect(row);
        QTest::mouseClick(List().viewport(), Qt::LeftButton, aModifiers,
                          {rect.left() + aX, rect.center().y()});
    }
};

/// The next modal window is the picker; the function works on it. A picker that it leaves open is
/// closed.
inline void ExpectPicker(ModalDriver &aDriver, std::function<void(Picker &)> aWork) {
    aDriver.Expect([work = std::move(aWork)](QWidget &aWindow) {
        Picker picker(aWindow);
        work(picker);
        if (aWindow.isVisible()) aWindow.close();
    });
}

inline QString KeysOf(const std::shared_ptr<Vk_DocQuery::RecordCollection> &aRecords) {
    if (!aRecords) return QStringLiteral("nothing");
    QStringList keys;
    for (const auto &record : *aRecords) keys << Vk_DocQuery::ObjectKey(record->ID());
    return keys.join(u' ');
}

/// Runs the picker over taxpayers and gives the keys of the result, or what went otherwise.
inline QString Chosen(const std::function<void(ModalDriver &, Picker &)> &aWork) {
    ModalDriver driver;
    ExpectPicker(driver, [&](Picker &picker) { aWork(driver, picker); });
    const auto result = Vk_DocQuery::SelectObjectsForm().Execute(4, nullptr);
    return driver.Done() ? KeysOf(result) : QString::fromUtf8(driver.Complaint());
}

inline std::shared_ptr<const Vk_DocQuery::RecordCollection> Listed(
    const std::vector<std::shared_ptr<Vk_DocQuery::Record>> &aRecords) {
    auto collection = std::make_shared<Vk_DocQuery::RecordCollection>();
    for (const auto &record : aRecords) collection->Add(record);
    return collection;
}

}  // namespace VkTests
