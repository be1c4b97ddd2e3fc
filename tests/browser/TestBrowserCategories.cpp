#include <QScrollBar>
#include <QTest>
#include <QTextCursor>

#include "foundation/mErrorHandling.h"
#include "OpenBrowser.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// Lines, each ended by CR LF.
QString Lines(const QStringList &aLines) {
    QString text;
    for (const QString &line : aLines) text += line + QStringLiteral("\r\n");
    return text;
}

const QString theHeads = QStringLiteral("Только головные организации:");
const QString theBranches = QStringLiteral("Только обособленные подразделения:");
const QString theBoth = QStringLiteral("Головные организации и обособленные подразделения:");

}  // namespace

Q_DECLARE_METATYPE(Rows)

class TestBrowserCategories : public QObject {
    Q_OBJECT

private slots:
    void init() {
        EmptyOffice();
        AddForm(1, QStringLiteral("1151001"), QStringLiteral("НДС"));
        AddForm(2, QStringLiteral("1151002"), QStringLiteral("Прибыль"));
    }

    void Text_data() {
        QTest::addColumn<Rows>("rows");
        QTest::addColumn<QString>("text");

        QTest::newRow("no rows") << Rows{} << QString();

        QTest::newRow("two categories in two streams, entrepreneurs in one")
            << Rows{CategoryRow(1, 1, 1, 0), CategoryRow(1, 2, 1, 0), CategoryRow(2, 1, 1, 0),
                    CategoryRow(2, 2, 1, 0), CategoryRow(6, 1, 1, 0)}
            << QStringLiteral(
                   "Только головные организации:\r\n"
                   "    Организации ОСНО\r\n"
                   "    Кредитные организации\r\n"
                   "        Отчетность в ИФНС\r\n"
                   "        РСВ, НДФЛ и отчетность в ПФР\r\n"
                   "\r\n"
                   "Индивидуальные предприниматели\r\n"
                   "    Отчетность в ИФНС\r\n"
                   "\r\n");

        QTest::newRow("every category as a head organisation, in bit order")
            << Rows{CategoryRow(9, 1, 1, 0), CategoryRow(8, 1, 1, 0), CategoryRow(7, 1, 1, 0),
                    CategoryRow(5, 1, 1, 0), CategoryRow(4, 1, 1, 0), CategoryRow(3, 1, 1, 0),
                    CategoryRow(2, 1, 1, 0), CategoryRow(1, 1, 1, 0)}
            << QStringLiteral(
                   "Только головные организации:\r\n"
                   "    Организации ОСНО\r\n"
                   "    Кредитные организации\r\n"
                   "    Страховые организации\r\n"
                   "    Бюджетные организации\r\n"
                   "    Представительства иностранных организаций\r\n"
                   "    Организации УСНО\r\n"
                   "    Негосударственные пенсионные фонды\r\n"
                   "        Отчетность в ИФНС\r\n"
                   "\r\n");

        QTest::newRow("every category as a subdivision, every stream")
            <<
            [] {
                Rows rows;
                for (int stream = 9; stream >= 1; --stream)
                    for (const int category : {9, 1, 8, 2, 5, 3, 4, 7})
                        rows.push_back(CategoryRow(category, stream, 0, 1));
                return rows;
            }()
            << QStringLiteral(
                   "Только обособленные подразделения:\r\n"
                   "    ОП организаций ОСНО\r\n"
                   "    ОП кредитной организации\r\n"
                   "    ОП страховой организации\r\n"
                   "    ОП бюджетной организации\r\n"
                   "    ОП представительства иностранной организации\r\n"
                   "    ОП организации УСНО\r\n"
                   "    ОП негосударственного пенсионного фонда\r\n"
                   "        Отчетность в ИФНС\r\n"
                   "        РСВ, НДФЛ и отчетность в ПФР\r\n"
                   "        Страховые взносы в ФСС\r\n"
                   "        Отчетность в Росстат\r\n"
                   "        Отчетность в Росалкогольрегулирование\r\n"
                   "        Отчетность в Росприроднадзор\r\n"
                   "        Комплект отчетности \"Госрегистрация\"\r\n"
                   "        Отчетность охотничьего хозяйства\r\n"
                   "        Отчетность организаций финансового рынка\r\n"
                   "\r\n");

        QTest::newRow("both, stream 4 before stream 3")
            << Rows{CategoryRow(5, 3, 1, 1), CategoryRow(5, 4, 1, 1)}
            << Lines({theBoth, QStringLiteral("    Представительства иностранных организаций"),
                      QStringLiteral("        Страховые взносы в ФСС"),
                      QStringLiteral("        Отчетность в Росстат"), QString()});

        QTest::newRow("entrepreneurs whatever their permissions")
            << Rows{CategoryRow(6, 1, 0, 0), CategoryRow(6, 5, 1, 1), CategoryRow(6, 4, 0, 1)}
            << Lines({QStringLiteral("Индивидуальные предприниматели"),
                      QStringLiteral("    Отчетность в ИФНС"),
                      QStringLiteral("    Страховые взносы в ФСС"),
                      QStringLiteral("    Отчетность в Росалкогольрегулирование"), QString()});

        QTest::newRow("no permission")
            << Rows{CategoryRow(1, 1, 0, 0), CategoryRow(2, 1, Null(), Null()),
                    CategoryRow(3, 1, QStringLiteral("да"), 0)}
            << QString();

        QTest::newRow("category 7 and numbers out of range disturb nobody")
            << Rows{CategoryRow(7, 1, 1, 1),  CategoryRow(0, 1, 1, 0),  CategoryRow(10, 1, 1, 0),
                    CategoryRow(1, 0, 1, 0),  CategoryRow(1, 10, 1, 0), CategoryRow(-1, 1, 1, 0),
                    CategoryRow(1, -3, 1, 0), CategoryRow(8, 2, 1, 0),  CategoryRow(7, 2, 1, 0),
                    CategoryRow(6, 0, 1, 0),  CategoryRow(1, 33, 1, 0)}
            << Lines({theHeads, QStringLiteral("    Организации УСНО"),
                      QStringLiteral("        РСВ, НДФЛ и отчетность в ПФР"), QString()});

        QTest::newRow("category 7 alone") << Rows{CategoryRow(7, 1, 1, 1)} << QString();

        QTest::newRow("head in two streams, subdivisions in one of them")
            << Rows{CategoryRow(1, 1, 1, 1), CategoryRow(1, 2, 1, 0)}
            << Lines({theHeads, QStringLiteral("    Организации ОСНО"),
                      QStringLiteral("        РСВ, НДФЛ и отчетность в ПФР"), QString(), theBoth,
                      QStringLiteral("    Организации ОСНО"),
                      QStringLiteral("        Отчетность в ИФНС"), QString()});

        QTest::newRow("the same stream under two branch types")
            << Rows{CategoryRow(3, 1, 0, 1), CategoryRow(3, 1, 1, 0)}
            << Lines({theHeads, QStringLiteral("    Страховые организации"),
                      QStringLiteral("        Отчетность в ИФНС"), QString(), theBranches,
                      QStringLiteral("    ОП страховой организации"),
                      QStringLiteral("        Отчетность в ИФНС"), QString()});

        QTest::newRow("1 and 3 share a block, 2 stands between with another set of streams")
            << Rows{CategoryRow(3, 1, 1, 0), CategoryRow(2, 1, 1, 0), CategoryRow(2, 9, 1, 0),
                    CategoryRow(1, 1, 1, 0)}
            << Lines({theHeads, QStringLiteral("    Организации ОСНО"),
                      QStringLiteral("    Страховые организации"),
                      QStringLiteral("        Отчетность в ИФНС"), QString(), theHeads,
                      QStringLiteral("    Кредитные организации"),
                      QStringLiteral("        Отчетность в ИФНС"),
                      QStringLiteral("        Отчетность организаций финансового рынка"),
                      QString()});

        QTest::newRow("blocks in order of the lowest category, then of the branch type")
            << Rows{CategoryRow(9, 6, 1, 1), CategoryRow(6, 7, 1, 0), CategoryRow(4, 8, 0, 1),
                    CategoryRow(4, 6, 1, 1), CategoryRow(4, 5, 1, 0)}
            << Lines({theHeads, QStringLiteral("    Бюджетные организации"),
                      QStringLiteral("        Отчетность в Росалкогольрегулирование"), QString(),
                      theBranches, QStringLiteral("    ОП бюджетной организации"),
                      QStringLiteral("        Отчетность охотничьего хозяйства"), QString(),
                      theBoth, QStringLiteral("    Бюджетные организации"),
                      QStringLiteral("    Негосударственные пенсионные фонды"),
                      QStringLiteral("        Отчетность в Росприроднадзор"), QString(),
                      QStringLiteral("Индивидуальные предприниматели"),
                      QStringLiteral("    Комплект отчетности \"Госрегистрация\""), QString()});

        QTest::newRow("values of other types")
            << Rows{CategoryRow(QStringLiteral("1"), 1.0, true, false),
                    CategoryRow(2.4, QStringLiteral(" 1 "), -1, Empty()),
                    CategoryRow(Null(), 1, true, true)}
            << Lines({theHeads, QStringLiteral("    Организации ОСНО"),
                      QStringLiteral("    Кредитные организации"),
                      QStringLiteral("        Отчетность в ИФНС"), QString()});
    }
    void Text() {
        QFETCH(Rows, rows);
        QFETCH(QString, text);
        MemoryOffice::The().Categories[1] = rows;
        OpenBrowser browser;
        browser.ClickForm(1);
        QCOMPARE(browser.Cats.Text(), text);
        QCOMPARE(browser.Cats.SelStart(), 0);  // the pane opens at its top
        QCOMPARE(browser.Cats.SelLength(), 0);
        QTRY_COMPARE(browser.Cats.toPlainText(), QString(text).remove(u'\r'));
        QCOMPARE(browser.Cats.textCursor().position(), 0);
        QCOMPARE(browser.Cats.verticalScrollBar()->value(), 0);
    }

    void APaneScrolledDownOpensTheNextFormAtItsTop() {
        for (int stream = 1; stream <= 9; ++stream)
            for (int category = 1; category <= 9; ++category)
                MemoryOffice::The().Categories[1].push_back(CategoryRow(category, stream, 1, 1));
        MemoryOffice::The().Categories[2] = MemoryOffice::The().Categories[1];
        OpenBrowser browser;
        browser.ClickForm(1);
        QTRY_VERIFY(browser.Cats.verticalScrollBar()->maximum() > 0);
        browser.Cats.moveCursor(QTextCursor::End);
        QVERIFY(browser.Cats.verticalScrollBar()->value() > 0);
        QScrollPrepareEvent finger(QPointF(9, 9));
        QCoreApplication::sendEvent(browser.Cats.viewport(), &finger);
        QCOMPARE(finger.contentPos().y(), double(browser.Cats.verticalScrollBar()->value()) *
                                              browser.Cats.fontMetrics().lineSpacing());
        browser.ClickForm(2);
        QTRY_COMPARE(browser.Cats.verticalScrollBar()->value(), 0);
    }

    void TextIsWrittenThroughTheSelection() {
        TextPane pane;
        pane.SetText(QStringLiteral("один\r\nдва\r\nтри"));
        QCOMPARE(pane.SelStart(), 0);
        pane.SetSelection(6, 3);
        pane.Flush();
        QCOMPARE(pane.textCursor().selectedText(), QStringLiteral("два"));
        pane.ReplaceSelection(QStringLiteral("два\r\nи ещё"));
        QCOMPARE(pane.Text(), QStringLiteral("один\r\nдва\r\nи ещё\r\nтри"));
        QCOMPARE(pane.SelStart(), 16);
        QCOMPARE(pane.SelLength(), 0);
        pane.Flush();
        QCOMPARE(pane.toPlainText(), QStringLiteral("один\nдва\nи ещё\nтри"));
        QCOMPARE(pane.textCursor().position(), 14);
        pane.SetSelection(20, 100);
        QCOMPARE(pane.SelLength(), 1);
        pane.SetSelection(-5, 2);
        QCOMPARE(pane.SelStart(), 0);
    }

    void TheNextFormTakesThePlaceOfTheLast() {
        MemoryOffice::The().Categories[1] = {CategoryRow(1, 1, 1, 0)};
        MemoryOffice::The().Categories[2] = {CategoryRow(6, 9, 1, 0)};
        OpenBrowser browser;
        browser.ClickForm(1);
        browser.ClickForm(2);
        QCOMPARE(
            browser.Cats.Text(),
            Lines({QStringLiteral("Индивидуальные предприниматели"),
                   QStringLiteral("    Отчетность организаций финансового рынка"), QString()}));
    }

    void ClustersAreKeyedByBranchTypeAndStreams() {
        MemoryOffice::The().Categories[1] = {CategoryRow(1, 1, 1, 0), CategoryRow(1, 3, 1, 0),
                                             CategoryRow(9, 1, 1, 0), CategoryRow(9, 3, 1, 0),
                                             CategoryRow(6, 9, 0, 0)};
        std::shared_ptr<Recordset> categories;
        std::shared_ptr<Recordset> times;
        OpenBrowser browser;
        CreateObjectAs<BlankQueries>(QStringLiteral("Vk_DBProvider.BlankQueries"))
            ->GetTemplTypeAvailability(1, 1, categories, times);
        CategoryClusters clusters;
        browser.Form.BuildCategoryMatrix(categories.get(), clusters);
        QCOMPARE(clusters.Count(), 2);
        QCOMPARE(clusters.KeyAt(0), QStringLiteral("_0_5"));
        QCOMPARE(clusters.At(0)->CatBits, 129);
        QCOMPARE(clusters.At(0)->AccBits, 5);
        QCOMPARE(clusters.At(0)->BranchType, 0);
        QCOMPARE(clusters.KeyAt(1), QStringLiteral("_3_256"));
        QCOMPARE(clusters.At(1)->CatBits, 32);
        QCOMPARE(clusters.At(1)->AccBits, 256);
        QCOMPARE(clusters.At(1)->BranchType, 3);
    }

    void BlocksOfClustersThatNoRecordsetGives_data() {
        QTest::addColumn<int>("categories");
        QTest::addColumn<int>("streams");
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown branch type")
            << 1 << 1 << 7 << QStringLiteral("? (7)\r\n    Отчетность в ИФНС\r\n\r\n");
        QTest::newRow("negative branch type") << 1 << 0 << -1 << QStringLiteral("? (-1)\r\n\r\n");
        QTest::newRow("entrepreneurs without their bit")
            << 1 << 1 << 3 << QStringLiteral("    Отчетность в ИФНС\r\n\r\n");
        QTest::newRow("entrepreneurs among subdivisions")
            << 33 << 1 << 1
            << QStringLiteral(
                   "Только обособленные подразделения:\r\n    ОП организаций ОСНО\r\n"
                   "        Отчетность в ИФНС\r\n\r\n");
    }
    void BlocksOfClustersThatNoRecordsetGives() {
        QFETCH(int, categories);
        QFETCH(int, streams);
        QFETCH(int, type);
        QFETCH(QString, text);
        QCOMPARE(CategoryBlock({categories, streams, type}), text);
    }

    void ThePaneIsReadOnly() {
        MemoryOffice::The().Categories[1] = {CategoryRow(6, 1, 0, 0)};
        OpenBrowser browser;
        browser.ClickForm(1);
        const QString text = browser.Cats.Text();
        browser.Cats.setFocus();
        QTest::keyClick(&browser.Cats, Qt::Key_Delete);
        QTest::keyClick(&browser.Cats, Qt::Key_Return);
        QTest::keyClick(&browser.Cats, Qt::Key_Space);
        QTest::keyClick(&browser.Cats, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(browser.Cats.Text(), text);
    }
};

VK_TEST_CLASS(TestBrowserCategories);
#include "TestBrowserCategories.moc"
