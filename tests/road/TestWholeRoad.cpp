#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/TemplateQuerier.h>
#include <Vk_Records/Database.h>

#include "support/Keys.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theEnding = QStringLiteral(" \r\n\r\nТакой запрос вернет пустой список документов.");

/// A user before the dialog: everything is done with the mouse and the keys.
class Accountant {
public:
    Accountant(ModalDriver &aDriver, QWidget &aDialog) : theDriver(aDriver), theDialog(aDialog) {}

    void OpenTab(int aPosition) const {
        auto *bar = theDialog.findChild<QTabBar *>();
        if (!bar) return theDriver.Complain(QStringLiteral("no tab bar"));
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(aPosition).center());
    }
    /// Ticks a check box, chooses an option or presses a button.
    void Click(const QString &aName) const {
        auto *element = Shown<QAbstractButton>(aName);
        if (element)
            QTest::mouseClick(element, Qt::LeftButton, {}, QPoint(8, element->height() / 2));
    }
    /// Replaces the text of a text, number or date box or of an editable combo.
    void Type(const QString &aName, const QString &aText) const {
        QWidget *element = Shown<QWidget>(aName);
        if (!element) return;
        auto *line = qobject_cast<QLineEdit *>(element);
        if (!line) line = element->findChild<QLineEdit *>();
        if (!line) return theDriver.Complain(QStringLiteral("nothing to type into: ") + aName);
        line->setFocus();
        QTest::keySequence(line, QKeySequence::SelectAll);
        QTest::keyClick(line, Qt::Key_Delete);
        TypeText(line, aText);
    }
    /// Presses OK, reads the warning whole and closes it.
    void ExpectFault(const QString &aMessage) const {
        theDriver.ExpectBox(QMessageBox::Warning, QStringLiteral("Параметры критериев поиска"),
                            aMessage, QStringLiteral("OK"));
        Click(QStringLiteral("theOK"));
        if (!theDialog.isVisible())
            theDriver.Complain(QStringLiteral("the dialog closed after ") + aMessage);
    }
    void Answer(const QString &aButton) const {
        theDriver.ExpectBox(
            QMessageBox::Question, QStringLiteral("Норвик: Критерии поиска документов"),
            QStringLiteral(
                "Вы уверены, что ввели все критерии поиска и хотите выполнить поиск документов?"),
            aButton, QStringLiteral("Да"));
        Click(QStringLiteral("theOK"));
    }
    QString TextOf(const QString &aName) const {
        QWidget *element = theDialog.findChild<QWidget *>(aName);
        if (!element) return QString();
        if (auto *combo = qobject_cast<QComboBox *>(element)) return combo->currentText();
        auto *line = qobject_cast<QLineEdit *>(element);
        if (!line) line = element->findChild<QLineEdit *>();
        return line ? line->text() : QString();
    }
    const QWidget &Dialog() const { return theDialog; }

private:
    template <class Kind>
    Kind *Shown(const QString &aName) const {
        auto *element = theDialog.findChild<Kind *>(aName);
        if (!element || !element->isVisible() || !element->isEnabled()) {
            theDriver.Complain(QStringLiteral("cannot be used: ") + aName);
            return nullptr;
        }
        return element;
    }

    ModalDriver &theDriver;
    QWidget &theDialog;
};

template <class Provider>
std::shared_ptr<Provider> Made(const char *aClass) {
    return std::dynamic_pointer_cast<Provider>(ClassRegistry::Create(QString::fromLatin1(aClass)));
}

/// The first so many items of a collection.
std::shared_ptr<RecordCollection> FirstOf(const RecordCollection &aAll, qsizetype aCount) {
    auto result = std::make_shared<RecordCollection>();
    for (qsizetype i = 0; i < aCount; ++i) result->Add(aAll.At(i));
    return result;
}

QList<double> IdentitiesOf(const std::shared_ptr<RecordCollection> &aItems) {
    QList<double> ids;
    if (aItems) {
        for (const auto &item : *aItems) ids << item->ID();
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

QByteArray Bytes(const QString &aPath) {
    QFile file(aPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WalkThroughTheFaults(const Accountant &user) {
    const QString accStreamTab =
        QStringLiteral("Закладка \"Комплект отчетности\": отмечен флажок ");
    const QString docTab = QStringLiteral("Закладка \"Свойства документов\": ");
    const QString docTabOther = QStringLiteral("Закладка \"Свойства документа\": ");

    user.OpenTab(0);
    user.Click(QStringLiteral("theIsTaxpayers"));
    user.ExpectFault(
        QStringLiteral("Закладка \"Налогоплательщик\": отмечен флажок \"Список "
                       "налогоплательщиков\", однако не указан ни один налогоплательщик.") +
        theEnding);
    user.Click(QStringLiteral("theIsTaxpayers"));

    user.OpenTab(1);
    user.Click(QStringLiteral("theIsAccStreamType"));
    user.ExpectFault(
        accStreamTab +
        QStringLiteral("\"Тип комплекта отчетности\", однако не указано ни одного типа.") +
        theEnding);
    user.Click(QStringLiteral("theAccStreamTypes(5)"));
    user.Click(QStringLiteral("theIsContoraPrefix1"));
    user.ExpectFault(
        accStreamTab +
        QStringLiteral("\"Код первого контролирующего органа начинается на\", однако не "
                       "указано на что должен начинаться код контролирующего органа.") +
        theEnding);
    user.Type(QStringLiteral("theContoraPrefix1"), QStringLiteral("77, 78"));
    user.Click(QStringLiteral("theIsContoraPrefix2"));
    user.ExpectFault(
        accStreamTab +
        QStringLiteral("\"Код второго контролирующего органа начинается на\", однако не "
                       "указано на что должен начинаться код контролирующего органа.") +
        theEnding);
    user.Type(QStringLiteral("theContoraPrefix2"), QStringLiteral("087"));
    user.Click(QStringLiteral("theContoraJoinOr"));
    user.Click(QStringLiteral("theIsAccStreamsList"));
    user.ExpectFault(
        accStreamTab +
        QStringLiteral("\"Список конкретных комплектов отчетности\", однако не указано ни "
                       "одного комплекта отчетности.") +
        theEnding);
    user.Click(QStringLiteral("theIsAccStreamsList"));

    user.OpenTab(2);
    user.Click(QStringLiteral("theIsPeriods"));
    user.Click(QStringLiteral("theRangePeriods"));
    user.Type(QStringLiteral("thePerYear1"), QStringLiteral("2025"));
    user.Type(QStringLiteral("thePerYear2"), QStringLiteral("2024"));
    user.ExpectFault(
        QStringLiteral("Закладка \"Период отчетности\": в диапазоне периодов начало "
                       "отбираемого периода больше его окончания."));
    user.Type(QStringLiteral("thePerYear2"), QStringLiteral("2025"));
    user.Click(QStringLiteral("theIsPeriodTypes"));
    user.ExpectFault(
        QStringLiteral("Закладка \"Период отчетности\": отмечен флажок \"только периоды "
                       "следующего типа:\", однако не указано ни одного типа периодов.") +
        theEnding);
    user.Click(QStringLiteral("thePeriodTypes(1)"));

    user.OpenTab(3);
    user.Click(QStringLiteral("theIsTemplate"));
    user.ExpectFault(
        QStringLiteral("Закладка \"Отчетная форма\": отмечен флажок \"Список отчетных форм "
                       "(бланков)\", однако не указано ни одной отчетной формы.") +
        theEnding);
    user.Click(QStringLiteral("theIsTemplate"));

    user.OpenTab(4);
    user.Click(QStringLiteral("theIsDocStatus"));
    user.ExpectFault(docTab +
                     QStringLiteral("отмечен флажок \"Состояние документа\", однако не указано "
                                    "ни одного состояния.") +
                     theEnding);
    user.Click(QStringLiteral("theDocStatuses(2)"));
    user.Click(QStringLiteral("theIsSignDate"));
    user.ExpectFault(docTabOther +
                     QStringLiteral("выбрана опция поиска по \"Дате документа\", однако не "
                                    "задан искомый период дат.") +
                     theEnding);
    user.Type(QStringLiteral("theSignDate2"), QStringLiteral("05032024"));
    user.Type(QStringLiteral("theSignerSurname"), QString());  // the loaded query switched it on
    user.ExpectFault(docTabOther +
                     QStringLiteral("выбрана опция поиска по \"Фамилии подписанта\", однако "
                                    "фамилия не задана.") +
                     theEnding);
    user.Type(QStringLiteral("theSignerSurname"), QStringLiteral("Иванов"));
    user.Click(QStringLiteral("theIsNotes"));
    user.Click(QStringLiteral("theNotesLike"));
    user.ExpectFault(docTabOther +
                     QStringLiteral("выбран поиск по контексту в поле \"Примечание\", "
                                    "однако не указан искомый контекст.") +
                     theEnding);
    user.Type(QStringLiteral("theNotes"), QStringLiteral("сверка"));
    user.Click(QStringLiteral("theIsDocNum"));
    user.Click(QStringLiteral("theDocNumRange"));
    user.ExpectFault(docTab +
                     QStringLiteral("отмечен флажок \"Диапазон номеров документов\", однако не "
                                    "указаны границы диапазона.") +
                     theEnding);
    user.Type(QStringLiteral("theDocNum1"), QStringLiteral("5"));
    user.ExpectFault(docTab +
                     QStringLiteral("ошибка в указании границ диапазона номеров документов.") +
                     theEnding);
    user.Type(QStringLiteral("theDocNum2"), QStringLiteral("7"));
    user.Click(QStringLiteral("theDocLastNumMode"));
    user.Type(QStringLiteral("theDocLastNumCount"), QString());
    user.ExpectFault(docTab +
                     QStringLiteral("отмечен флажок \"Последние созданные документы\", однако не "
                                    "указано их количество.") +
                     theEnding);
    user.Type(QStringLiteral("theDocLastNumCount"), QStringLiteral("-3"));
    user.ExpectFault(
        docTab + QStringLiteral("ошибка в количестве последних созданных документов.") + theEnding);
    user.Type(QStringLiteral("theDocLastNumCount"), QStringLiteral("25"));
}

}  // namespace

class TestWholeRoad : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(theFolder.isValid());
        Vk_Records::OpenDatabase(
            QStringLiteral("sqlite:") + theFolder.filePath(QStringLiteral("office.db")),
            Vk_Records::NewDatabase::WithSampleOffice);
        const auto persons = Made<PersonQueries>("Vk_DBProvider.PersonQueries");
        const auto streams = Made<DBQAccStream>("Vk_DBProvider.DBQAccStream");
        const auto blanks = Made<BlankQueries>("Vk_DBProvider.BlankQueries");
        theTaxpayers = FirstOf(*persons->GetTaxpayers(), 3);
        theStreams = FirstOf(*streams->GetAccStreams(QString(), 0), 2);
        theVersions = FirstOf(*blanks->GetTemplates(Null(), Null(), false), 4);
    }

    void SearchIsStatedSavedLoadedCheckedAndHandedOver() {
        const QString saved = theFolder.filePath(QStringLiteral("Мои критерии.qvk"));
        const QString other = theFolder.filePath(QStringLiteral("other.qvk"));
        WriteTheOtherQuery(other);

        const auto record = std::make_shared<VkDocQueryData>();
        record->IsTaxpayers = true;
        record->TaxpayersList = theTaxpayers;
        record->AccStreamsList = theStreams;
        record->TemplatesMode = TemplateVersion;
        record->Templates = theVersions;

        DocQueryEditor editor;
        editor.SetRecord(record);
        bool confirmed = false;
        {
            ModalDriver driver;
            driver.Expect([&](QWidget &window) {
                const Accountant user(driver, window);
                ChangeSomethingOnEachTab(user);
                driver.ExpectFileDialog(QStringLiteral("Сохранить файл критериев поиска"),
                                        QStringLiteral("Query.qvk"), saved);
                user.Click(QStringLiteral("theSaveAs"));
                driver.ExpectFileDialog(QStringLiteral("Открыть файл критериев поиска"), QString(),
                                        other);
                user.Click(QStringLiteral("theLoad"));
                if (user.TextOf(QStringLiteral("theSignerSurname")) != QStringLiteral("Петров"))
                    driver.Complain(QStringLiteral("the other query is not shown"));
                WalkThroughTheFaults(user);
                user.Answer(QStringLiteral("Нет"));
                if (!window.isVisible())
                    driver.Complain(QStringLiteral("closed in spite of the refusal"));
                user.Answer(QStringLiteral("Да"));
                if (window.isVisible()) {
                    driver.Complain(QStringLiteral("still open"));
                    window.close();
                }
            });
            confirmed = editor.Execute();
            QVERIFY2(driver.Done(), driver.Complaint());
        }
        QVERIFY(confirmed);
        CheckTheSavedFile(saved);
        CheckTheRecord(*editor.Record(), other);
        QVERIFY(editor.Record() != record);
        QCOMPARE(record->FileName, saved);
    }

    void FormsAreBrowsed() {
        ModalDriver driver;
        QString streams;
        driver.Expect([&](QWidget &window) {
            auto *filter = window.findChild<QLineEdit *>(QStringLiteral("theFilterA"));
            auto *forms = window.findChild<QWidget *>(QStringLiteral("theFormList"));
            auto *times = window.findChild<QWidget *>(QStringLiteral("theTimeList"));
            TypeText(filter, QStringLiteral("1151001"));
            forms->setFocus();
            QTest::keyClick(forms, Qt::Key_Down);
            QTest::keyClick(forms, Qt::Key_C, Qt::ControlModifier);
            QCOMPARE(QGuiApplication::clipboard()->text(),
                     QStringLiteral("Декларация по НДС\t1151001\t"
                                    "Налоговая декларация по налогу на добавленную стоимость"));
            times->setFocus();
            QTest::keyClick(times, Qt::Key_Down);
            QTest::keyClick(times, Qt::Key_C, Qt::ControlModifier);
            QVERIFY(QGuiApplication::clipboard()->text().endsWith(
                QStringLiteral("\t\t\t\t1 кв\t\t\t\t2 кв\t\t\t\t3 кв\t\t\t\t4 кв\t\t\t\t\t")));
            auto *pane = window.findChild<QPlainTextEdit *>(QStringLiteral("theCatInfo"));
            QTRY_VERIFY(!pane->toPlainText().isEmpty());
            streams = pane->toPlainText();
            driver.Click(window.findChild<QPushButton *>(QStringLiteral("theClose")));
        });
        TemplateQuerier().Execute();
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(streams, QStringLiteral("Только головные организации:\n"
                                         "    Организации ОСНО\n"
                                         "    Кредитные организации\n"
                                         "    Страховые организации\n"
                                         "    Бюджетные организации\n"
                                         "    Представительства иностранных организаций\n"
                                         "    Организации УСНО\n"
                                         "    Негосударственные пенсионные фонды\n"
                                         "        Отчетность в ИФНС\n"
                                         "\n"
                                         "Индивидуальные предприниматели\n"
                                         "    Отчетность в ИФНС\n\n"));
    }

private:
    static void WriteTheOtherQuery(const QString &aPath) {
        VkDocQueryData other;
        other.IsSignerFio = true;
        other.SignerSurname = QStringLiteral("Петров");
        other.WriteToFile(aPath);
    }

    static void ChangeSomethingOnEachTab(const Accountant &user) {
        user.OpenTab(0);
        user.Click(QStringLiteral("theOptMainOrgs"));
        user.Click(QStringLiteral("theIncludeMainOrgDocs"));
        user.Click(QStringLiteral("theOptTaxpayers"));
        user.OpenTab(1);
        user.Click(QStringLiteral("theIsAccStreamsList"));
        user.Click(QStringLiteral("theIsAccStreamOpeness"));
        user.Click(QStringLiteral("theAccStreamClosed"));
        user.OpenTab(2);
        user.Click(QStringLiteral("theIsPeriods"));
        user.Type(QStringLiteral("theOnePerYear"), QStringLiteral("1999"));
        user.OpenTab(3);
        user.Click(QStringLiteral("theIsTemplate"));
        user.OpenTab(4);
        user.Click(QStringLiteral("theIsSignerFio"));
        user.Type(QStringLiteral("theSignerSurname"), QStringLiteral("О'Нил & <сын>"));
    }

    void CheckTheSavedFile(const QString &aPath) const {
        QVERIFY(Bytes(aPath).startsWith("<?xml version=\"1.0\" encoding=\"windows-1251\"?>\r\n"));
        DocQueryEditor editor;
        ModalDriver driver;
        driver.ExpectFileDialog(QStringLiteral("Открыть файл критериев поиска"), QString(), aPath);
        const auto read = editor.AskAndLoadQuery(0);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(read);
        QVERIFY(read->IncludeMainOrgDocs);
        QCOMPARE(qint32(read->TaxpayersType), 1);
        QVERIFY(read->IsAccStreamsList);
        QCOMPARE(IdentitiesOf(read->AccStreamsList), IdentitiesOf(theStreams));
        QCOMPARE(qint32(read->AccStreamOpen), 2);
        QCOMPARE(read->OnePeriodYear, 1999);
        QCOMPARE(qint32(read->TemplatesMode), 2);
        QCOMPARE(IdentitiesOf(read->Templates), IdentitiesOf(theVersions));
        QCOMPARE(read->SignerSurname, QStringLiteral("О'Нил & <сын>"));
        QCOMPARE(read->LastTab, QStringLiteral("doc"));
    }

    static void CheckTheRecord(const VkDocQueryData &aRecord, const QString &aFileName) {
        QCOMPARE(aRecord.FileName, aFileName);
        QVERIFY(!aRecord.IsTaxpayers);
        QCOMPARE(qint32(aRecord.AccStreamTypes), 256);
        QCOMPARE(aRecord.ContoraPrefix1, QStringLiteral("77, 78"));
        QCOMPARE(aRecord.ContoraPrefix2, QStringLiteral("087"));
        QCOMPARE(qint32(aRecord.ContoraJoining), 1);
        QCOMPARE(qint32(aRecord.PeriodCriterion), 2);
        QCOMPARE(aRecord.RangePeriodYear1, 2025);
        QCOMPARE(aRecord.RangePeriodYear2, 2025);
        QVERIFY(aRecord.IsPeriodTypes);
        QCOMPARE(qint32(aRecord.PeriodTypes), 2);
        QVERIFY(!aRecord.IsTemplate);
        QCOMPARE(qint32(aRecord.DocStatuses), 4);
        QVERIFY(aRecord.IsSignDate);
        QVERIFY(IsEmpty(aRecord.SignDate1));
        QCOMPARE(std::get<QDate>(aRecord.SignDate2), QDate(2024, 3, 5));
        QCOMPARE(aRecord.SignerSurname, QStringLiteral("Иванов"));
        QCOMPARE(qint32(aRecord.NotesMode), 2);
        QCOMPARE(aRecord.Notes, QStringLiteral("сверка"));
        QCOMPARE(qint32(aRecord.DocNumMode), 1);
        QCOMPARE(aRecord.DocNum1, 5);
        QCOMPARE(aRecord.DocNum2, 7);
        QCOMPARE(aRecord.LastDocNumsCount, 25);
        QCOMPARE(aRecord.LastTab, QStringLiteral("doc"));
    }

    QTemporaryDir theFolder;
    std::shared_ptr<RecordCollection> theTaxpayers;
    std::shared_ptr<RecordCollection> theStreams;
    std::shared_ptr<RecordCollection> theVersions;
};

VK_TEST_CLASS(TestWholeRoad);

#include "TestWholeRoad.moc"
