#include <QFile>
#include <QRegularExpression>
#include <QTabBar>
#include <QTest>

#include "browser/TemplateQuerierForm.h"
#include "controls/Sheet.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

QString TheScript() {
    QFile file(QStringLiteral(VK_TOUR));
    return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// What a pattern finds in the script, whole matches first.
QList<QRegularExpressionMatch> Found(const char *aPattern) {
    static const QString script = TheScript();
    QList<QRegularExpressionMatch> found;
    auto match =
        QRegularExpression(QString::fromUtf8(aPattern), QRegularExpression::MultilineOption)
            .globalMatch(script);
    while (match.hasNext()) found << match.next();
    return found;
}

QPoint PixelsOf(int aLeft, int aTop) {
    return {PixelsFromTwips(aLeft), PixelsFromTwips(aTop)};
}

/// A place in the script and the element that is named behind it.
struct PlaceInScript {
    explicit PlaceInScript(const QRegularExpressionMatch &aMatch)
        : Left(aMatch.captured(1).toInt()),
          Top(aMatch.captured(2).toInt()),
          Element(aMatch.captured(3)) {}
    int Left, Top;
    QString Element;
};

void AddPlaces(const char *aPattern) {
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("top");
    QTest::addColumn<QString>("element");
    const auto found = Found(aPattern);
    for (const auto &match : found) {
        const PlaceInScript place(match);
        QTest::addRow("%s at %d, %d", qPrintable(place.Element), place.Left, place.Top)
            << place.Left << place.Top << place.Element;
    }
}

/// The page of the dialog on which the element lies.
const Sheet *PageOf(const QWidget *aElement) {
    const QWidget *around = aElement;
    while (around && !around->objectName().endsWith(QStringLiteral("Panel")))
        around = around->parentWidget();
    return qobject_cast<const Sheet *>(around);
}

/// The tour that plays the windows clicks at places that stand in its script.
class TestTour : public QObject {
    Q_OBJECT

private slots:
    void init() {
        MemoryOffice::Install();
        theDialog = std::make_unique<DocQueryOptionsFrm>();
        theDialog->SetRecord(nullptr);
        theDialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(theDialog.get()));
    }
    void cleanup() { theDialog.reset(); }

    void ElementOnAPage_data() {
        AddPlaces(R"(^\s*(?:on_page|look_at_picker) (\d+) (\d+)[^#\n]*# (the\w+(?:\(\d+\))?))");
    }
    void ElementOnAPage() {
        QFETCH(int, left);
        QFETCH(int, top);
        QFETCH(QString, element);
        const auto *found = theDialog->findChild<QWidget *>(element);
        QVERIFY(found);
        const Sheet *page = PageOf(found);
        QVERIFY(page);
        const QPoint place = PixelsOf(left + 120, top + 120);  // a little inside
        const QPoint inside = place - found->mapTo(page->Content(), QPoint(0, 0));
        QVERIFY2(found->rect().contains(inside), qPrintable(element));
    }

    void EveryPlaceOnAPageNamesItsElement() {
        const auto places = Found(R"(^\s*(?:on_page|look_at_picker) \d.*$)");
        QVERIFY(places.size() > 30);
        for (const auto &line : places)
            QVERIFY2(line.captured().contains(QStringLiteral("# the")),
                     qPrintable(line.captured()));
    }

    /// What a page needs; the script scrolls one that has less.
    void PageHeight_data() {
        QTest::addColumn<QString>("page");
        QTest::addColumn<int>("height");
        const char *const pages[] = {"theTaxpayerPanel", "theAccStreamPanel", "thePeriodPanel",
                                     "theTemplatePanel", "theDocPanel"};
        const auto found = Found(R"((?<=[( ])\[(\w+)\]=(\d+)(?=[^\n]*\)$))");
        for (int i = 0; i < 5; ++i)
            QTest::addRow("%s", pages[i])
                << QString::fromUtf8(pages[i]) << found.value(i).captured(2).toInt();
    }
    void PageHeight() {
        QFETCH(QString, page);
        QFETCH(int, height);
        const auto *sheet = theDialog->findChild<Sheet *>(page);
        QVERIFY(sheet);
        QCOMPARE(TwipsFromPixels(sheet->Content()->minimumHeight()), height);
    }

    void Tab_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("position");
        int position = 0;
        const auto found = Found(R"((?<=[( ])\[(\w+)\]=(\d+)(?=[^\n]*\)$))");
        for (const auto &match : found.mid(found.size() - 5))
            QTest::addRow("%s", qPrintable(match.captured(1)))
                << match.captured(2).toInt() << position++;
    }
    void Tab() {
        QFETCH(int, left);
        QFETCH(int, position);
        const auto *bar = theDialog->findChild<QTabBar *>();
        QVERIFY(bar);
        const QPoint place = PixelsOf(left, 180) - bar->mapTo(theDialog.get(), QPoint(0, 0));
        QCOMPARE(bar->tabAt(place), position);
    }

    void ButtonBelow_data() {
        QTest::addColumn<int>("left");
        QTest::addColumn<QString>("button");
        const struct {
            const char *Word;
            const char *Button;
        } buttons[] = {{"load", "theLoad"},
                       {"save", "theSave"},
                       {"save_as", "theSaveAs"},
                       {"ok", "theOK"},
                       {"cancel", "theCancel"}};
        for (const auto &button : buttons) {
            const QByteArray pattern = QByteArray("(?:^|\\s)") + button.Word + "=(-?\\d+)";
            QTest::addRow("%s", button.Word)
                << Found(pattern.constData()).value(0).captured(1).toInt()
                << QString::fromUtf8(button.Button);
        }
    }
    void ButtonBelow() {
        QFETCH(int, left);
        QFETCH(QString, button);
        const auto *found = theDialog->findChild<QWidget *>(button);
        QVERIFY(found);
        const int width = TwipsFromPixels(theDialog->width());
        const int height = TwipsFromPixels(theDialog->height());
        const QPoint place =
            PixelsOf((left < 0 ? width + left : left) + 600, height - 855 + 180 + 240);
        QVERIFY(found->rect().contains(found->mapFrom(theDialog.get(), place)));
    }

    void ElementOfTheBrowser_data() { AddPlaces(R"(^\s*click (\d+) (\d+)[^#\n]*# (the\w+))"); }
    void ElementOfTheBrowser() {
        QFETCH(int, left);
        QFETCH(int, top);
        QFETCH(QString, element);
        const TemplateQuerierForm browser;
        const auto *found = browser.findChild<QWidget *>(element);
        QVERIFY(found);
        QVERIFY(found->rect().contains(found->mapFrom(&browser, PixelsOf(left, top))));
    }

private:
    std::unique_ptr<DocQueryOptionsFrm> theDialog;
};

}  // namespace

VK_TEST_CLASS(TestTour);

#include "TestTour.moc"
