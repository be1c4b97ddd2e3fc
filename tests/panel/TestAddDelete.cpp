#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "../picker/Picker.h"
#include "OpenPanel.h"
#include "ShownFailures.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theDeleteTitle = QStringLiteral("Удаление из списка");

QString D(const char *aText) {
    return QString::fromUtf8(aText);
}

QString SelectedKeys(const ListView &aList) {
    QStringList keys;
    for (const ListRow *row : aList.SelectedRows()) keys << row->Key();
    return keys.join(u' ');
}

std::vector<Object *> TagsOf(const ListView &aList) {
    std::vector<Object *> tags;
    tags.reserve(static_cast<std::size_t>(aList.RowCount()));
    for (int i = 0; i < aList.RowCount(); ++i) tags.push_back(aList.Row(i)->Tag().get());
    return tags;
}

}  // namespace

/// The commands "Добавить ..." and "Удалить" of the three lists, with the real picker.
class TestAddDelete : public QObject {
    Q_OBJECT

private:
    /// Clicks the add button and marks these rows in the picker that comes up, in this order.
    static void Add(OpenPanel &aPanel, const char *aButton, const QStringList &aKeys) {
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            for (const QString &key : aKeys) picker.ClickMark(key.toLatin1().constData());
            picker.Click("theOK");
        });
        aPanel.Get<QPushButton>(aButton).click();
        QVERIFY2(driver.Done(), driver.Complaint());
    }
    static void Delete(OpenPanel &aPanel, const char *aButton, const QString &aQuestion,
                       const QString &aAnswer) {
        ModalDriver driver;
        driver.ExpectBox(aAnswer == u"OK" ? QMessageBox::Warning : QMessageBox::Question,
                         theDeleteTitle, aQuestion, aAnswer, aAnswer == u"OK" ? D("OK") : D("Да"));
        aPanel.Get<QPushButton>(aButton).click();
        QVERIFY2(driver.Done(), driver.Complaint());
    }
    static void Fails(OpenPanel &aPanel, const char *aButton, const QString &aChain) {
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, D("Сбой программы"), aChain, D("OK"));
        aPanel.Get<QPushButton>(aButton).click();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void addOffersByModeAndType_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("templates");
        QTest::addColumn<int>("taxpayers");
        QTest::addColumn<QString>("title");
        QTest::newRow("versions") << D("theTemplatesAdd") << 2 << 1
                                  << D("Бланки отчетных документов в различных версиях");
        QTest::newRow("classes") << D("theTemplatesAdd") << 1 << 1
                                 << D("Добавление бланков отчетных документов");
        QTest::newRow("streams") << D("theAccStreamAdd") << 1 << 1
                                 << D("Добавление комплектов отчетности");
        QTest::newRow("taxpayers") << D("theTaxpayerAdd") << 1 << 1
                                   << D("Добавление налогоплательщиков, сдающих отчетность");
        QTest::newRow("head organisations")
            << D("theTaxpayerAdd") << 1 << 2 << D("Добавление головных организаций");
    }
    void addOffersByModeAndType() {
        QFETCH(QString, button);
        QFETCH(int, templates);
        QFETCH(int, taxpayers);
        QFETCH(QString, title);
        OpenPanel panel;
        panel.SetTemplatesMode(DocQueryTemplatesMode(templates));
        panel.SetTaxpayersType(DocQueryTaxpayersType(taxpayers));
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            QCOMPARE(picker.Window.windowTitle(), title);
            picker.Close();
        });
        panel.Get<QPushButton>(button.toLatin1().constData()).click();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The options are read, not what the list shows, and no choice counts as the first option.
    void addWithoutAChoiceOffersByTheFirstOption() {
        OpenPanel panel;
        panel.SetTemplatesMode(DocQueryTemplatesMode(7));
        panel.SetTaxpayersType(DocQueryTaxpayersType(7));
        panel.SetTaxpayersTypeInList(MainOrgs, true, false);
        ModalDriver driver;
        QStringList titles;
        for (int i = 0; i < 2; ++i)
            ExpectPicker(driver, [&](Picker &picker) { titles << picker.Window.windowTitle(); });
        panel.Get<QPushButton>("theTemplatesAdd").click();
        panel.Get<QPushButton>("theTaxpayerAdd").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(titles, (QStringList{D("Добавление бланков отчетных документов"),
                                      D("Добавление налогоплательщиков, сдающих отчетность")}));
    }

    void aButtonWhoseListTheHostHasTakenAwayTellsSo_data() {
        QTest::addColumn<QString>("list");
        for (const char *button : {"theTemplatesAdd", "theTemplatesDelete"})
            QTest::newRow(button) << D("theTemplatesList");
        for (const char *button : {"theAccStreamAdd", "theAccStreamDelete"})
            QTest::newRow(button) << D("theAccStreamsList");
        for (const char *button : {"theTaxpayerAdd", "theTaxpayerDelete"})
            QTest::newRow(button) << D("theTaxpayersList");
    }
    void aButtonWhoseListTheHostHasTakenAwayTellsSo() {
        QFETCH(QString, list);
        OpenPanel panel;
        delete &panel.List(qPrintable(list));
        const ShownFailures shown;
        panel.Get<QPushButton>(QTest::currentDataTag()).click();
        QCOMPARE(ShownFailures::Chains(),
                 QStringList(QLatin1String(QTest::currentDataTag()) + D("_Click")));
    }

    void exactlyTheNewRowsAreSelected() {
        OpenPanel panel;
        panel.resize(panel.sizeHint());
        panel.SetTaxpayersType(Taxpayers);
        panel.SetTaxpayersTypeInList(Taxpayers, true, false);
        auto &list = panel.List("theTaxpayersList");
        Add(panel, "theTaxpayerAdd", {D("_3")});
        QCOMPARE(Keys(list), D("_3"));
        QCOMPARE(SelectedKeys(list), D("_3"));
        list.SetSortOrder(1);
        const int refreshes = panel.Refreshes;
        Add(panel, "theTaxpayerAdd", {D("_2"), D("_1")});
        QCOMPARE(Keys(list), D("_2 _1 _3"));
        QCOMPARE(SelectedKeys(list), D("_2 _1"));
        QCOMPARE(list.SelectedItem()->Key(), D("_2"));  // the picker's list put it behind the other
        QVERIFY(list.IsSorted());
        QCOMPARE(list.SortKey(), qint16(3));
        QCOMPARE(list.SortOrder(), 1);
        QCOMPARE(panel.Refreshes, refreshes);
        QCOMPARE(panel.theCurTaxpayersType, Taxpayers);
    }

    void rowsAddedToAnUnsortedListStandInTheOrderOfTheChoice() {
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        list.SetSorted(false);
        Add(panel, "theAccStreamAdd", {D("_13"), D("_11")});
        QCOMPARE(Keys(list), D("_11 _13"));
        Add(panel, "theAccStreamAdd", {D("_12")});
        QCOMPARE(Keys(list), D("_11 _13 _12"));
        QVERIFY(!list.IsSorted());
    }

    void theLastNewRowIsVisible() {
        MemoryOffice &office = MemoryOffice::The();
        for (int i = 100; i < 400; ++i)
            office.Persons.push_back({double(i), QString::number(i), QString(),
                                      QStringLiteral("Организация %1").arg(i), true, 0, true, true,
                                      D("org")});
        OpenPanel panel;
        panel.SetCurrentTab(D("taxpayer"));
        panel.SetTaxpayersType(Taxpayers);
        panel.SetTaxpayersTypeInList(Taxpayers, true, false);
        panel.Check("theIsTaxpayers").SetValue(1);
        panel.show();
        auto &list = panel.List("theTaxpayersList");
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            picker.Click("theCheckAll");
            picker.Click("theOK");
        });
        QTest::mouseClick(&panel.Get<QPushButton>("theTaxpayerAdd"), Qt::LeftButton);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(list.RowCount(), 303);
        QCOMPARE(list.SelectedItem()->Key(), D("_399"));
        QVERIFY(list.isVisible());
        QVERIFY(list.viewport()->rect().contains(list.RowRect(list.SelectedItem()).center()));
        QCOMPARE(list.SelectedRows().size(), std::size_t(303));
    }

    void cancelLeavesTheSelection() {
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        Add(panel, "theAccStreamAdd", {D("_11"), D("_12")});
        list.UnselectAll();
        list.SetSelectedItem(list.RowByKey(D("_11")));
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            QCOMPARE(picker.Rows(), D("_13"));  // what is listed is not offered again
            picker.ClickMark("_13");
            picker.Press(Qt::Key_Escape);
        });
        panel.Get<QPushButton>("theAccStreamAdd").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(Keys(list), D("_11 _12"));
        QCOMPARE(SelectedKeys(list), D("_11"));
        QCOMPARE(list.SelectedItem()->Key(), D("_11"));
    }

    void anEmptyOfferChangesNothing() {
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        Add(panel, "theAccStreamAdd", {D("_11"), D("_12"), D("_13")});
        list.SetSelectedItem(list.RowByKey(D("_12")));
        const QString selected = SelectedKeys(list);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, D("Выбор из списка"),
                         D("Доступные для дальнейшего выбора комплекты отчетности отсутствуют."),
                         D("OK"));
        panel.Get<QPushButton>("theAccStreamAdd").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(list.RowCount(), 3);
        QCOMPARE(SelectedKeys(list), selected);
    }

    void deleteWithoutSelectionWarns_data() {
        QTest::addColumn<QString>("button");
        for (const char *name : {"theTemplatesDelete", "theAccStreamDelete", "theTaxpayerDelete"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void deleteWithoutSelectionWarns() {
        QFETCH(QString, button);
        OpenPanel panel;
        Add(panel, "theAccStreamAdd", {D("_11")});
        auto &list = panel.List("theAccStreamsList");
        list.UnselectAll();  // the current row alone is no selection
        QVERIFY(list.SelectedItem());
        Delete(panel, button.toLatin1().constData(),
               D("Необходимо выделить хотя бы одну запись, подлежащую удалению из списка."),
               D("OK"));
        QCOMPARE(Keys(list), D("_11"));
    }

    void oneRowIsDeleted() {
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        Add(panel, "theAccStreamAdd", {D("_11"), D("_12"), D("_13")});
        list.UnselectAll();
        list.RowByKey(D("_12"))->SetSelected(true);
        Delete(panel, "theAccStreamDelete", D("Удалить выделенную запись из списка?"), D("Нет"));
        QCOMPARE(list.RowCount(), 3);
        QCOMPARE(SelectedKeys(list), D("_12"));
        const int refreshes = panel.Refreshes;
        Delete(panel, "theAccStreamDelete", D("Удалить выделенную запись из списка?"), D("Да"));
        QCOMPARE(Keys(list), D("_13 _11"));
        QVERIFY(list.IsSorted());
        QCOMPARE(panel.Refreshes, refreshes);
    }

    void afterADeletionTheNextRowIsCurrent_data() {
        QTest::addColumn<QString>("deleted");
        QTest::addColumn<QString>("current");
        QTest::newRow("first") << D("_1") << D("_2");
        QTest::newRow("in the middle") << D("_3") << D("_4");
        QTest::newRow("last") << D("_5") << D("_4");
        QTest::newRow("several") << D("_2 _3") << D("_4");
        QTest::newRow("here and there") << D("_2 _4") << D("_3");
        QTest::newRow("the last ones") << D("_4 _5") << D("_3");
        QTest::newRow("all") << D("_1 _2 _3 _4 _5") << QString();
    }
    void afterADeletionTheNextRowIsCurrent() {
        QFETCH(QString, deleted);
        QFETCH(QString, current);
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        list.SetSorted(false);
        for (int i = 1; i <= 5; ++i) list.AddRow(QStringLiteral("_%1").arg(i));
        const QStringList keys = deleted.split(u' ');
        for (const QString &key : keys) list.SetSelectedItem(list.RowByKey(key));
        Delete(panel, "theAccStreamDelete",
               keys.size() == 1
                   ? D("Удалить выделенную запись из списка?")
                   : QStringLiteral("Удалить выделенные записи (%1) из списка?").arg(keys.size()),
               D("Да"));
        QCOMPARE(list.SelectedItem() ? list.SelectedItem()->Key() : QString(), current);
        QCOMPARE(SelectedKeys(list), QString());
    }

    void keysInAListDoWhatItsButtonsDo_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("tick");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("row");
        QTest::newRow("templates") << "template"
                                   << "theIsTemplate"
                                   << "theTemplatesList"
                                   << "_21";
        QTest::newRow("streams") << "accstream"
                                 << "theIsAccStreamsList"
                                 << "theAccStreamsList"
                                 << "_11";
        QTest::newRow("taxpayers") << "taxpayer"
                                   << "theIsTaxpayers"
                                   << "theTaxpayersList"
                                   << "_1";
    }
    void keysInAListDoWhatItsButtonsDo() {
        QFETCH(QString, tab);
        QFETCH(QString, tick);
        QFETCH(QString, list);
        QFETCH(QString, row);
        OpenPanel panel;
        VkDocQueryData record;
        panel.DistributeValues(record);
        panel.SetCurrentTab(tab);
        panel.Check(tick.toLatin1().constData()).SetValue(1);
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        auto &rows = panel.List(list.toLatin1().constData());
        rows.setFocus();
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            picker.ClickMark(row.toLatin1().constData());
            picker.Click("theOK");
        });
        QTest::keyClick(&rows, Qt::Key_Insert);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(Keys(rows), row);
        panel.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        driver.ExpectBox(QMessageBox::Question, theDeleteTitle,
                         D("Удалить выделенную запись из списка?"), D("Да"));
        QTest::keyClick(&rows, Qt::Key_Delete);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(rows.RowCount(), 0);
        // Elsewhere the keys are what they are there.
        panel.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        panel.Check(tick.toLatin1().constData()).setFocus();
        QTest::keyClick(panel.focusWidget(), Qt::Key_Delete);
        QTest::keyClick(panel.focusWidget(), Qt::Key_Insert);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The keys do what the buttons do, and so nothing where these cannot be pressed.
    void keysInAListNeedItsButtons_data() {
        QTest::addColumn<QString>("tab");
        QTest::addColumn<QString>("tick");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<QString>("how");
        for (const char *how : {"disabled", "hidden", "criterion off"}) {
            const auto row = [&](const char *aTab, const char *aTick, const char *aList,
                                 const char *aButtons) {
                QTest::addRow("%s, %s", aList, how)
                    << D(aTab) << D(aTick) << D(aList)
                    << QStringList{D(aButtons) + D("Add"), D(aButtons) + D("Delete")} << D(how);
            };
            row("taxpayer", "theIsTaxpayers", "theTaxpayersList", "theTaxpayer");
            row("accstream", "theIsAccStreamsList", "theAccStreamsList", "theAccStream");
            row("template", "theIsTemplate", "theTemplatesList", "theTemplates");
        }
    }
    void keysInAListNeedItsButtons() {
        QFETCH(QString, tab);
        QFETCH(QString, tick);
        QFETCH(QString, list);
        QFETCH(QStringList, buttons);
        QFETCH(QString, how);
        OpenPanel panel;
        VkDocQueryData record;
        panel.DistributeValues(record);
        panel.SetCurrentTab(tab);
        panel.Check(tick.toLatin1().constData()).SetValue(1);
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        auto &rows = panel.List(list.toLatin1().constData());
        rows.AddRow(D("_7"));
        rows.SetSelectedItem(rows.Row(0));
        rows.setFocus();
        for (const QString &name : buttons) {
            auto &button = panel.Get<QPushButton>(name.toLatin1().constData());
            QVERIFY(button.isVisible() && button.isEnabled());
            if (how == u"disabled") button.setEnabled(false);
            if (how == u"hidden") button.hide();
        }
        if (how == u"criterion off") panel.Check(tick.toLatin1().constData()).SetValue(0);
        const ModalDriver driver;
        QTest::sendKeyEvent(QTest::Click, &rows, Qt::Key_Insert, QString(), Qt::NoModifier);
        QTest::sendKeyEvent(QTest::Click, &rows, Qt::Key_Delete, QString(), Qt::NoModifier);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(Keys(rows), D("_7"));
    }

    void severalRowsAreDeleted() {
        OpenPanel panel;
        panel.SetTaxpayersType(Taxpayers);
        panel.SetTaxpayersTypeInList(Taxpayers, true, false);
        auto &list = panel.List("theTaxpayersList");
        Add(panel, "theTaxpayerAdd", {D("_1"), D("_2"), D("_3")});
        list.RowByKey(D("_2"))->SetSelected(false);
        Delete(panel, "theTaxpayerDelete", D("Удалить выделенные записи (2) из списка?"), D("Нет"));
        QCOMPARE(list.RowCount(), 3);
        Delete(panel, "theTaxpayerDelete", D("Удалить выделенные записи (2) из списка?"), D("Да"));
        QCOMPARE(Keys(list), D("_2"));
    }

    void yesIsTheDefault() {
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        Add(panel, "theAccStreamAdd", {D("_11")});
        ModalDriver driver;
        driver.Expect(
            [](QWidget &aWindow) { QTest::keyClick(aWindow.focusWidget(), Qt::Key_Return); });
        panel.Get<QPushButton>("theAccStreamDelete").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(list.RowCount(), 0);
    }

    void allRowsMayGo() {
        OpenPanel panel;
        panel.SetTemplatesMode(TemplateClass);
        panel.SetTemplatesModeInList(TemplateClass, true, false);
        Add(panel, "theTemplatesAdd", {D("_21"), D("_22")});
        Delete(panel, "theTemplatesDelete", D("Удалить выделенные записи (2) из списка?"), D("Да"));
        QCOMPARE(panel.List("theTemplatesList").RowCount(), 0);
        Add(panel, "theTemplatesAdd", {D("_21")});
        QCOMPARE(Keys(panel.List("theTemplatesList")), D("_21"));
    }

    void failuresLeaveThePanelAsItWas_data() {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QString>("procedure");
        QTest::newRow("the provider") << D("GetAccStreams") << D("LoadAllObjects");
        QTest::newRow("a record in the middle") << D("VkAccStream.Kpp") << D("FillList");
        QTest::newRow("the person of a stream") << D("VkAccStream.Person") << D("FillList");
    }
    void failuresLeaveThePanelAsItWas() {
        QFETCH(QString, member);
        QFETCH(QString, procedure);
        OpenPanel panel;
        auto &list = panel.List("theAccStreamsList");
        Add(panel, "theAccStreamAdd", {D("_12")});
        const auto tags = TagsOf(list);
        int calls = 0;
        const int failing = member == u"GetAccStreams" ? 1 : 2;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == member && ++calls == failing)
                throw Failure(77, D("Supplier"), D("it fails"));
        };
        Fails(panel, "theAccStreamAdd",
              D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n[Vk_DocQuery::SelectObjectsForm.") +
                  procedure + D("]\r\n[Supplier]\r\nit fails"));
        MemoryOffice::The().OnCall = {};
        QVERIFY(TagsOf(list) == tags);
        QCOMPARE(SelectedKeys(list), D("_12"));
        QCOMPARE(list.SelectedItem()->Key(), D("_12"));
    }

    void aStreamWithoutAPersonLeavesThePanelAsItWas() {
        OpenPanel panel;
        MemoryOffice::The().Streams[2].Person = 0;
        Fails(panel, "theAccStreamAdd",
              D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n"
                "[Vk_DocQuery::SelectObjectsForm.FillList]\r\n"
                "[MemoryRecords]\r\nthe stream has no person"));
        QCOMPARE(panel.List("theAccStreamsList").RowCount(), 0);
    }

    void aFailureWhileRowsAreAddedIsToldWithItsRoad() {
        OpenPanel panel;
        panel.SetTaxpayersType(Taxpayers);
        panel.SetTaxpayersTypeInList(Taxpayers, true, false);
        MemoryOffice::The().OnCall = [](const QString &aMember) {
            if (aMember == u"VkPerson.IsBranch") throw Failure(77, D("Supplier"), D("it fails"));
        };
        ModalDriver driver;
        ExpectPicker(driver, [](Picker &picker) {
            picker.ClickMark("_1");
            picker.Click("theOK");
        });
        driver.ExpectBox(QMessageBox::Critical, D("Сбой программы"),
                         D("[Vk_DocQuery::VkDocQueryCriteries.theTaxpayerAdd_Click]\r\n"
                           "[Vk_DocQuery::VkDocQueryCriteries.PerformAddItems]\r\n"
                           "[Vk_DocQuery::VkDocQueryCriteries.AddItemToTaxpayersList]\r\n"
                           "[Vk_DocQuery::VkDocQueryCriteries.RefreshItemInTaxpayersList]\r\n"
                           "[Supplier]\r\nit fails"),
                         D("OK"));
        panel.Get<QPushButton>("theTaxpayerAdd").click();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The picker does not offer it any more; who has it in the list keeps it.
    void aVersionThatEndedLongAgoStays() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(D("versions.qvk"));
        OpenPanel panel;
        VkDocQueryData record;
        record.IsTemplate = true;
        record.TemplatesMode = TemplateVersion;
        record.Templates = std::make_shared<RecordCollection>();
        record.Templates->Add(MakeVersion(31));
        panel.DistributeValues(record);
        ModalDriver driver;
        QString offered;
        ExpectPicker(driver, [&](Picker &picker) {
            offered = picker.Rows();
            picker.ClickMark("_32");
            picker.Click("theOK");
        });
        panel.Get<QPushButton>("theTemplatesAdd").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(offered, D("_32 _33 _34"));
        QCOMPARE(Keys(panel.List("theTemplatesList")), D("_31 _32"));
        panel.AssembleValuesTo(record);
        QVERIFY(record.WriteToXmlFile(path));
        VkDocQueryData reloaded;
        QVERIFY(reloaded.ReadFromXmlFile(path));
        OpenPanel other;
        other.DistributeValues(reloaded);
        QCOMPARE(Keys(other.List("theTemplatesList")), D("_31 _32"));
    }

    /// Assistive programs reach the panel past the box, so that the list is looked at afterwards.
    void rowsThatGoWhileTheQuestionIsUpAreNotAskedFor() {
        OpenPanel panel;
        panel.SetTaxpayersType(Taxpayers);
        panel.SetTaxpayersTypeInList(Taxpayers, true, false);
        auto &list = panel.List("theTaxpayersList");
        Add(panel, "theTaxpayerAdd", {D("_1"), D("_2"), D("_3")});
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            list.RemoveRow(D("_2"));
            QTest::keyClick(&aBox, Qt::Key_Return);
        });
        panel.Get<QPushButton>("theTaxpayerDelete").click();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(list.RowCount(), 0);
    }

    void listsAreSavedAndReloaded() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(D("lists.qvk"));
        OpenPanel panel;
        VkDocQueryData record;
        record.TemplatesMode = TemplateVersion;
        panel.DistributeValues(record);
        for (const char *name : {"theIsTaxpayers", "theIsAccStreamsList", "theIsTemplate"})
            panel.Check(name).SetValue(1);

        Add(panel, "theTaxpayerAdd", {D("_1"), D("_2"), D("_3")});
        Add(panel, "theAccStreamAdd", {D("_11"), D("_12"), D("_13")});
        Add(panel, "theTemplatesAdd", {D("_32"), D("_33"), D("_34")});
        panel.List("theTaxpayersList").RowByKey(D("_3"))->SetSelected(false);
        Delete(panel, "theTaxpayerDelete", D("Удалить выделенные записи (2) из списка?"), D("Да"));
        panel.List("theAccStreamsList").UnselectAll();
        panel.List("theAccStreamsList").RowByKey(D("_12"))->SetSelected(true);
        Delete(panel, "theAccStreamDelete", D("Удалить выделенную запись из списка?"), D("Да"));
        Delete(panel, "theTemplatesDelete", D("Удалить выделенные записи (3) из списка?"), D("Да"));
        Add(panel, "theTaxpayerAdd", {D("_2")});
        Add(panel, "theAccStreamAdd", {D("_12")});
        Add(panel, "theTemplatesAdd", {D("_34"), D("_32")});
        panel.AssembleValuesTo(record);
        QCOMPARE(KeysOf(record.TaxpayersList), D("_3 _2"));
        QCOMPARE(KeysOf(record.AccStreamsList), D("_13 _11 _12"));
        QCOMPARE(KeysOf(record.Templates), D("_32 _34"));
        QVERIFY(record.WriteToXmlFile(path));

        VkDocQueryData reloaded;
        QVERIFY(reloaded.ReadFromXmlFile(path));
        QCOMPARE(KeysOf(reloaded.TaxpayersList), D("_3 _2"));
        QCOMPARE(KeysOf(reloaded.AccStreamsList), D("_13 _11 _12"));
        QCOMPARE(KeysOf(reloaded.Templates), D("_32 _34"));
        OpenPanel other;
        other.DistributeValues(reloaded);
        for (const char *name : {"theTaxpayersList", "theAccStreamsList", "theTemplatesList"})
            QCOMPARE(Keys(other.List(name)), Keys(panel.List(name)));
    }
};

VK_TEST_CLASS(TestAddDelete);
#include "TestAddDelete.moc"
