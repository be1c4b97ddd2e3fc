#include <map>

#include <QMessageBox>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "foundation/Clock.h"
#include "lists/ListView.h"
#include "look/Pictures.h"
#include "picker/Picker.h"
#include "picker/SelectObjectsForm.h"
#include "support/CellImage.h"
#include "support/TestMain.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theMessageTitle = QStringLiteral("Выбор из списка");
const QDate theToday(2026, 3, 15);

QString D(const char *aText) {
    return QString::fromUtf8(aText);
}

/// Columns as "caption width; ...".
QString ColumnsOf(const ListView &aList) {
    QStringList columns;
    for (int i = 0; i < aList.ColumnCount(); ++i) {
        const ListColumn &column = aList.Column(i);
        columns << column.Caption + u' ' + QString::number(column.Width) + column.Key;
    }
    return columns.join(QStringLiteral("; "));
}

/// A row as "picture: cell {picture}; ...".
QString RowText(const ListRow &aRow) {
    QStringList cells;
    for (int i = 1; i <= aRow.CellCount(); ++i) {
        const QString &icon = aRow.CellIcon(i);
        cells << aRow.CellText(i) + (icon.isEmpty() ? QString() : u'{' + icon + u'}');
    }
    return aRow.Text() + aRow.Icon() + QStringLiteral(": ") + cells.join(QStringLiteral("; "));
}

QStringList RowTexts(const ListView &aList) {
    QStringList rows;
    for (int i = 0; i < aList.RowCount(); ++i) rows << RowText(*aList.Row(i));
    return rows;
}

void RaiseFrom(const QString &aMember) {
    MemoryOffice::The().OnCall = [aMember](const QString &aCalled) {
        if (aCalled == aMember)
            throw Failure(77, QStringLiteral("Supplier"), QStringLiteral("it fails"));
    };
}

}  // namespace

class TestOffer : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        SetTodayForTests(theToday);
        MemoryOffice &office = MemoryOffice::The();
        office.Versions = {
            {31, 21, theToday.addYears(-8), theToday.addDays(-1462), D("НДС 1"), D("doc")},
            {32, 21, QDate(2023, 1, 1), Empty(), D("НДС 2"), D("docs")},
            {33, 22, QDate(2020, 1, 1), theToday.addDays(-1461), D("Прибыль 1"), D("")},
            {34, 23, Empty(), QDate(2027, 12, 31), D("РСВ без начала"), D("doc")},
        };
        office.Streams[0].Icon = D("acc_stream_ofr");  // the panel's list does not have it
        office.Streams[2].Icon = D("acc_stream_ofr");
    }
    void cleanup() {
        MemoryOffice::Clear();
        SetTodayForTests(QDate());
    }

    void showsType_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("columns");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("versions") << 1 << D("Бланки отчетных документов в различных версиях")
                                  << D("* 600; Срок действия 2100; Наименование 9000; КНД 2100")
                                  << D("_32 _33 _34")
                                  << QStringList{D("docs: 01.01.2023 - ; НДС 2; 1151001"),
                                                 D(": 01.01.2020 - 15.03.2022; Прибыль 1; 1151006"),
                                                 D("doc:  - 31.12.2027; РСВ без начала; 1151111")};
        QTest::newRow("classes") << 2 << D("Добавление бланков отчетных документов")
                                 << D("* 600; Наименование 9000; КНД 2100") << D("_21 _22 _23")
                                 << QStringList{D("doc_blank: НДС; 1151001"),
                                                D("doc_blank: Прибыль; 1151006"),
                                                D("doc_blank: РСВ; 1151111")};
        QTest::newRow("streams")
            << 3 << D("Добавление комплектов отчетности")
            << D("* 600; Название 4500; К.орг. 1500; КПП 1200; ИНН 1500; Организация/ФИО 6000")
            << D("_11 _12 _13")
            << QStringList{
                   D("acc_stream_ofr: ИФНС основной; 7701; 770101001; 7701000001; ООО "
                     "Ромашка{org}"),
                   D("acc_stream_pfr: ПФР; 087-101; 770101009; 7701000001; ООО Ромашка{org}"),
                   D("acc_stream_ofr: Предприниматель; 7703; ; 770300000003; Иванов Иван "
                     "Иванович{man_purple}")};
        QTest::newRow("taxpayers")
            << 4 << D("Добавление налогоплательщиков, сдающих отчетность")
            << D("* 600; ИНН 1500; КПП 1200; Наименование/ФИО 6000; Головная организация 6000")
            << D("_1 _2 _3")
            << QStringList{D("org: 7701000001; 770101001; ООО Ромашка; "),
                           D("branch: 7701000001; 770202002; ООО Ромашка, Тверской филиал; ООО "
                             "Ромашка (7701000001){org}"),
                           D("man_purple: 770300000003; ; Иванов Иван Иванович; ")};
        QTest::newRow("head organisations")
            << 5 << D("Добавление головных организаций")
            << D("* 600; ИНН 1500; КПП 1200; Наименование/ФИО 6000") << D("_1 _4")
            << QStringList{D("org: 7701000001; 770101001; ООО Ромашка"),
                           D("org: 7704000004; 770401001; АО Василёк")};
    }
    void showsType() {
        QFETCH(int, type);
        ModalDriver driver;
        bool shown = false;
        ExpectPicker(driver, [&](Picker &picker) {
            QTEST(picker.Window.windowTitle(), "title");
            QTEST(ColumnsOf(picker.List()), "columns");
            QTEST(picker.Rows(), "keys");
            QTEST(RowTexts(picker.List()), "rows");
            QCOMPARE(picker.Marked(), QString());
            QCOMPARE(picker.Filter().text(), QString());
            QVERIFY(!picker.List().IsSorted());
            shown = true;
        });
        QVERIFY(!SelectObjectsForm().Execute(type, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(shown);
        if (type > 2) return;
        QVERIFY(MemoryOffice::The().AskedFrom == LooseValue(QDate(2022, 3, 15)));
        QVERIFY(IsNull(MemoryOffice::The().AskedTo));
    }

    void rowsShowTheirPictures() {
        ModalDriver driver;
        ExpectPicker(driver, [](Picker &picker) {
            picker.Filter().setFocus();  // so that no row has the mark of the focus
            QVERIFY(CellImage(picker.List(), 0) != CellImage(picker.List(), 1));
            QVERIFY(CellImage(picker.List(), 0) == CellImage(picker.List(), 2));
        });
        QVERIFY(!SelectObjectsForm().Execute(3, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void everyFieldIsSearchedAndNoOther_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("key");
        const auto row = [](const char *aName, int aType, const char *aFields, const char *aKey) {
            QTest::newRow(aName) << aType << D(aFields) << D(aKey);
        };
        row("version", 1, "НДС 2|1151001", "_32");
        row("class", 2, "Прибыль|1151006", "_22");
        row("stream", 3, "ИФНС основной|7701|770101001|7701000001|ООО Ромашка", "_11");
        row("branch", 4,
            "7701000001|770202002|ООО Ромашка, Тверской филиал|ООО Ромашка (7701000001)", "_2");
        row("taxpayer without a parent", 4, "770300000003||Иванов Иван Иванович", "_3");
        row("head organisation", 5, "7704000004|770401001|АО Василёк", "_4");
    }
    void everyFieldIsSearchedAndNoOther() {
        QFETCH(int, type);
        QFETCH(QString, fields);
        QFETCH(QString, key);
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            picker.Filter().setText(fields);
            QCOMPARE(picker.Rows(), key);
            for (const QString &more : {u'|' + fields, fields + u'|'}) {
                picker.Filter().setText(more);
                QCOMPARE(picker.Rows(), QString());
            }
        });
        QVERIFY(!SelectObjectsForm().Execute(type, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The panel takes it for a failure.
    void aNullDateIsBlank() {
        MemoryOffice::The().Versions = {{31, 21, theToday, Null(), D("НДС 1"), D("doc")}};
        ModalDriver driver;
        QStringList rows;
        ExpectPicker(driver, [&](Picker &picker) { rows = RowTexts(picker.List()); });
        QVERIFY(!SelectObjectsForm().Execute(1, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(rows, QStringList{D("doc: 15.03.2026 - ; НДС 1; 1151001")});
    }

    void theWindowItself() {
        SelectObjectsForm form;
        QCOMPARE(form.objectName(), D("SelectObjectsForm"));
        QCOMPARE(form.windowTitle(), D("Добавление объектов"));
        QCOMPARE(form.size(), QSize(861, 581));
        QVERIFY(form.windowFlags() & Qt::WindowMaximizeButtonHint);
        QVERIFY(!(form.windowFlags() & Qt::WindowContextHelpButtonHint));
        QCOMPARE(form.windowIcon().cacheKey(), WindowIcon(D("picker")).cacheKey());
        QCOMPARE(form.font().pointSizeF(), 8.25);
        QVERIFY(form.findChild<ListView *>()->testAttribute(Qt::WA_InputMethodEnabled));
        // Where it has less room, what is in it keeps its least size and is scrolled.
        form.resize(300, 200);
        form.show();
        QCOMPARE(form.findChild<QPushButton *>(D("theOK"))->parentWidget()->size(),
                 QSize(806, 220));
    }

    void elementsStandAsDesigned_data() {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QRect>("twips");
        QTest::newRow("theFilter") << QString() << QRect(60, 60, 12855, 345);
        QTest::newRow("theList") << QString() << QRect(0, 480, 12915, 7395);
        QTest::newRow("theCheckAll") << D("Пометить всё") << QRect(120, 8100, 1635, 495);
        QTest::newRow("theUncheckAll") << D("Снять все отметки") << QRect(1800, 8100, 1875, 495);
        QTest::newRow("theCheckSelected")
            << D("Пометить выделенные") << QRect(3780, 8100, 2115, 495);
        QTest::newRow("theUncheckSelected")
            << D("Снять отметки с выделенного") << QRect(5940, 8100, 2715, 495);
        QTest::newRow("theOK") << D("OK") << QRect(9600, 8100, 1395, 495);
        QTest::newRow("theCancel") << D("Отмена") << QRect(11100, 8100, 1635, 495);
    }
    void elementsStandAsDesigned() {
        QFETCH(QString, caption);
        QFETCH(QRect, twips);
        SelectObjectsForm form;
        auto *element = form.findChild<QWidget *>(QLatin1String(QTest::currentDataTag()));
        QVERIFY(element);
        QCOMPARE(element->geometry(),
                 QRect(PixelsFromTwips(twips.left()), PixelsFromTwips(twips.top()),
                       PixelsFromTwips(twips.width()), PixelsFromTwips(twips.height())));
        const auto *button = qobject_cast<QPushButton *>(element);
        if (button) {
            QCOMPARE(button->text(), caption);
            QVERIFY(button->fontMetrics().horizontalAdvance(caption) < button->width() - 8);
            const int picture = caption == u"OK"       ? OkPicture
                                : caption == u"Отмена" ? CancelPicture
                                                       : 0;
            const QIcon wanted = picture == 0 ? QIcon() : StandardPicture(picture);
            QCOMPARE(button->icon().pixmap(16).toImage(), wanted.pixmap(16).toImage());
        }
        // What a larger window gives goes to the list; the buttons keep to the corners.
        const QRect before = element->geometry();
        form.resize(form.width() + 100, form.height() + 50);
        const QString name = element->objectName();
        const bool isList = name == u"theList";
        const bool follows = name == u"theOK" || name == u"theCancel";
        const bool wider = isList || name == u"theFilter";
        const QRect expected(before.left() + (follows ? 100 : 0), before.top() + (button ? 50 : 0),
                             before.width() + (wider ? 100 : 0),
                             before.height() + (isList ? 50 : 0));
        form.show();
        QCOMPARE(element->geometry(), expected);
    }

    void listedObjectsAreLeftOut() {
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) {
            QCOMPARE(picker.Rows(), D("_1 _3"));
            picker.Close();
        });
        SelectObjectsForm().Execute(4, Listed({MakePerson(2), MakePerson(4)}));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void listedObjectsThatFailOrRepeatAreSkipped() {
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) { QCOMPARE(picker.Rows(), D("_2 _3")); });
        SelectObjectsForm().Execute(4, Listed({nullptr, MakePerson(1), MakePerson(1)}));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void anIdentityIsOfferedOnce() {
        MemoryOffice &office = MemoryOffice::The();
        office.Persons.push_back(office.Persons[2]);
        office.OnCall = {};
        // The provider's collection is unkeyed here, so that the repetition reaches the picker.
        office.Unkeyed = true;
        ModalDriver driver;
        ExpectPicker(driver, [&](Picker &picker) { QCOMPARE(picker.Rows(), D("_1 _2 _3")); });
        SelectObjectsForm().Execute(4, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void emptyOfferIsTold_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("listed");
        QTest::addColumn<QString>("message");
        QTest::newRow("1") << 1 << false
                           << D("Доступные для выбора бланки отчетных документов отсутствуют.");
        QTest::newRow("1 listed")
            << 1 << true
            << D("Доступные для дальнейшего выбора бланки отчетных документов отсутствуют.");
        QTest::newRow("2") << 2 << false
                           << D("Доступные для выбора бланки отчетных документов отсутствуют.");
        QTest::newRow("2 listed")
            << 2 << true
            << D("Доступные для дальнейшего выбора бланки отчетных документов отсутствуют.");
        QTest::newRow("3") << 3 << false
                           << D("Доступные для выбора комплекты отчетности отсутствуют.");
        QTest::newRow("3 listed")
            << 3 << true << D("Доступные для дальнейшего выбора комплекты отчетности отсутствуют.");
        QTest::newRow("4") << 4 << false
                           << D("Доступные для выбора налогоплательщики отсутствуют.");
        QTest::newRow("4 listed")
            << 4 << true << D("Доступные для дальнейшего выбора налогоплательщики отсутствуют.");
        QTest::newRow("5") << 5 << false
                           << D("Доступные для выбора головные организации отсутствуют.");
        QTest::newRow("5 listed")
            << 5 << true << D("Доступные для дальнейшего выбора головные организации отсутствуют.");
        QTest::newRow("6") << 6 << false << D("Доступные для выбора объекты отсутствуют.");
        QTest::newRow("0 listed") << 0 << true
                                  << D("Доступные для дальнейшего выбора объекты отсутствуют.");
    }
    void emptyOfferIsTold() {
        QFETCH(int, type);
        QFETCH(bool, listed);
        QFETCH(QString, message);
        const auto person = MakePerson(1);
        MemoryOffice &office = MemoryOffice::The();
        office.Persons.clear();
        office.Streams.clear();
        office.Versions.clear();
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, theMessageTitle, message, D("OK"));
        SelectObjectsForm form;
        QVERIFY(!form.Execute(type, listed ? Listed({person}) : nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!form.isVisible());
    }

    void everythingListedIsAnEmptyOffer() {
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, theMessageTitle,
                         D("Доступные для дальнейшего выбора комплекты отчетности отсутствуют."),
                         D("OK"));
        QVERIFY(!SelectObjectsForm().Execute(
            3, Listed({MakeStream(11), MakeStream(12), MakeStream(13)})));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void anUnknownTypeSetsNeitherTitleNorColumns() {
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, theMessageTitle,
                         D("Доступные для выбора объекты отсутствуют."), D("OK"));
        SelectObjectsForm form;
        QVERIFY(!form.Execute(7, nullptr));
        QCOMPARE(form.windowTitle(), D("Добавление объектов"));
        QCOMPARE(form.findChild<ListView *>()->ColumnCount(), 0);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void membersAreAskedOnce() {
        std::map<QString, int> calls;
        MemoryOffice::The().OnCall = [&](const QString &aMember) { ++calls[aMember]; };
        ModalDriver driver;
        std::map<QString, int> atStart;
        ExpectPicker(driver, [&](Picker &picker) {
            atStart = calls;
            picker.Type(D("ром"));
            QCOMPARE(picker.Rows(), D("_1 _2"));
            picker.Press(Qt::Key_Backspace);
            picker.ClickHeader(3);
            picker.ClickHeader(3);
            picker.ClickHeader(3);
            picker.Press(Qt::Key_Backspace);
            picker.Press(Qt::Key_Backspace);
            QCOMPARE(picker.Rows(), D("_1 _2 _3"));
            QVERIFY(calls == atStart);
        });
        SelectObjectsForm().Execute(4, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(atStart[D("GetTaxpayers")], 1);
        QCOMPARE(atStart[D("VkPerson.Inn")], 3);
        QCOMPARE(atStart[D("VkPerson.GetParentOrganization")], 3);
        QCOMPARE(atStart[D("VkPerson.GetDisplayNameAsAccPerson")], 1);
    }

    void failuresAreShown_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("member");
        QTest::addColumn<QString>("chain");
        const QString execute = D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n");
        const QString load = D("[Vk_DocQuery::SelectObjectsForm.LoadAllObjects]\r\n");
        const QString fill = D("[Vk_DocQuery::SelectObjectsForm.FillList]\r\n");
        const QString failure = D("[Supplier]\r\nit fails");
        QTest::newRow("the provider") << 4 << D("GetTaxpayers") << execute + load + failure;
        QTest::newRow("all persons") << 5 << D("GetPersons") << execute + load + failure;
        QTest::newRow("versions") << 1 << D("GetTemplates") << execute + load + failure;
        QTest::newRow("the choice of heads")
            << 5 << D("VkPerson.IsMainOrganization") << execute + load + failure;
        QTest::newRow("an identity") << 3 << D("VkAccStream.ID") << execute + load + failure;
        QTest::newRow("a cell") << 4 << D("VkPerson.Kpp") << execute + fill + failure;
        QTest::newRow("the parent")
            << 4 << D("VkPerson.GetParentOrganization") << execute + fill + failure;
        QTest::newRow("a date") << 1 << D("VkTemplate.BegDate") << execute + fill + failure;
        QTest::newRow("the class") << 1 << D("VkTemplType.KND") << execute + fill + failure;
    }
    void failuresAreShown() {
        QFETCH(int, type);
        QFETCH(QString, member);
        QFETCH(QString, chain);
        RaiseFrom(member);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, D("Сбой программы"), chain, D("OK"));
        SelectObjectsForm form;
        QVERIFY(!form.Execute(type, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!form.isVisible());
    }

    void aSupplierThatGivesNothingFails_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("absent");
        QTest::addColumn<QString>("road");
        QTest::addColumn<QString>("told");
        const auto row = [](int aType, const char *aAbsent, const char *aRoad, const char *aTold) {
            QTest::addRow("%d %s", aType, aAbsent) << aType << D(aAbsent) << D(aRoad) << D(aTold);
        };
        row(1, "GetTemplates", "LoadAllObjects", "RecordCollection");
        row(2, "GetTemplates", "LoadAllObjects", "RecordCollection");
        row(3, "GetAccStreams", "LoadAllObjects", "RecordCollection");
        row(4, "GetTaxpayers", "LoadAllObjects", "RecordCollection");
        row(5, "GetPersons", "LoadAllObjects", "GetPersons");
        row(1, "VkTemplate.TemplateType", "FillList", "TemplateType");
        row(3, "VkAccStream.Person", "FillList", "Person");
        row(4, "VkPerson.GetParentOrganization", "FillList", "GetParentOrganization");
    }
    void aSupplierThatGivesNothingFails() {
        QFETCH(int, type);
        QFETCH(QString, absent);
        QFETCH(QString, road);
        QFETCH(QString, told);
        MemoryOffice::The().Absent = absent;
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, D("Сбой программы"),
                         D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n"
                           "[Vk_DocQuery::SelectObjectsForm.%1]\r\n[%2]\r\nОбъект не задан: %2.")
                             .arg(road, told),
                         D("OK"));
        SelectObjectsForm form;
        QVERIFY(!form.Execute(type, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!form.isVisible());
    }

    void aStreamWithoutAPersonFails() {
        MemoryOffice::The().Streams[1].Person = 0;
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, D("Сбой программы"),
                         D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n"
                           "[Vk_DocQuery::SelectObjectsForm.FillList]\r\n"
                           "[MemoryRecords]\r\nthe stream has no person"),
                         D("OK"));
        QVERIFY(!SelectObjectsForm().Execute(3, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void anUnknownPictureFails() {
        MemoryOffice::The().Persons[1].Icon = D("galka_green");  // the browser's
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            auto *box = qobject_cast<QMessageBox *>(&aWindow);
            QVERIFY(box);
            QVERIFY(box->text().startsWith(
                D("[Vk_DocQuery::SelectObjectsForm.Execute]\r\n"
                  "[Vk_DocQuery::SelectObjectsForm.FillList]\r\n[ImageList]\r\n")));
            QVERIFY(box->text().contains(D("galka_green")));
            box->accept();
        });
        QVERIFY(!SelectObjectsForm().Execute(4, nullptr));
        QVERIFY2(driver.Done(), driver.Complaint());
    }
};

VK_TEST_CLASS(TestOffer);
#include "TestOffer.moc"
