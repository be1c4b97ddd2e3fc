#include <cmath>
#include <functional>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTest>
#include <QTextLayout>

#include "browser/TemplateQuerierForm.h"
#include "browser/TextPane.h"
#include "controls/DateBox.h"
#include "controls/Frame.h"
#include "controls/NumberBox.h"
#include "controls/ScrollBox.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "lists/ListView.h"
#include "look/Colours.h"
#include "look/Overlaps.h"
#include "picker/SelectObjectsForm.h"
#include "support/Contrast.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// Room that a text needs from its baseline up and down, without the air that fonts keep around it.
constexpr double theInkOfLine = 1.1;  // of the font's size: a capital with its accent to a tail

bool IsDark(const QPalette &aPalette) {
    return aPalette.color(QPalette::Window).lightness() <
           aPalette.color(QPalette::WindowText).lightness();
}

QPalette DarkPalette() {
    QPalette palette(QColor(230, 230, 230), QColor(45, 45, 48), QColor(70, 70, 73),
                     QColor(25, 25, 28), QColor(35, 35, 38), QColor(230, 230, 230), Qt::red,
                     QColor(30, 30, 30), QColor(45, 45, 48));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(90, 90, 90));
    return palette;
}

/// Measures what a window writes against the room that its elements give.
class Measure {
public:
    explicit Measure(QWidget &aWindow) : theWindow(aWindow) {
        for (const QWidget *element : theWindow.findChildren<QWidget *>()) Look(*element);
    }
    /// The faults, parted by line ends.
    QByteArray Faults() const { return theFaults.join(u'\n').toUtf8(); }
    int Captions() const { return theCaptions; }

private:
    void Look(const QWidget &aElement) {
        if (const auto *label = qobject_cast<const QLabel *>(&aElement)) return Label(*label);
        if (const auto *frame = qobject_cast<const Frame *>(&aElement)) return FrameCaption(*frame);
        if (const auto *button = qobject_cast<const QPushButton *>(&aElement))
            return Button(*button);
        if (const auto *box = qobject_cast<const QCheckBox *>(&aElement))
            return Mark(*box, QStyle::SE_CheckBoxContents);
        if (const auto *option = qobject_cast<const QRadioButton *>(&aElement))
            return Mark(*option, QStyle::SE_RadioButtonContents);
        if (const auto *bar = qobject_cast<const QTabBar *>(&aElement)) return Tabs(*bar);
        if (const auto *combo = qobject_cast<const QComboBox *>(&aElement)) return Combo(*combo);
        if (const auto *box = qobject_cast<const DateBox *>(&aElement)) {
            Line(*box->Edit(), box->Edit()->displayText());
            return Line(*box->Edit(), QStringLiteral("28.08.2028"));
        }
        if (const auto *box = qobject_cast<const NumberBox *>(&aElement))
            return Line(*box, QStringLiteral("10000"));
        if (const auto *line = qobject_cast<const QLineEdit *>(&aElement))
            return Line(*line, QStringLiteral("Щ"));
        if (const auto *list = qobject_cast<const ListView *>(&aElement)) return List(*list);
        if (const auto *box = qobject_cast<const QScrollArea *>(&aElement)) return Scrolled(*box);
    }

    static double Width(const QWidget &aElement, const QString &aText) {
        return QFontMetricsF(aElement.font()).horizontalAdvance(aText);
    }
    static double InkHeight(const QWidget &aElement) {
        return theInkOfLine * QFontInfo(aElement.font()).pixelSize();
    }
    void Need(const QWidget &aElement, const QString &aText, QSizeF aNeeded, QSizeF aRoom) {
        ++theCaptions;
        // Half a pixel is lost when places are rounded.
        if (aNeeded.width() <= aRoom.width() + 0.5 && aNeeded.height() <= aRoom.height() + 0.5)
            return;
        Fault(aElement, QStringLiteral("\"%1\" takes %2 x %3 of %4 x %5")
                            .arg(aText)
                            .arg(aNeeded.width())
                            .arg(aNeeded.height())
                            .arg(aRoom.width())
                            .arg(aRoom.height()));
    }
    void Fault(const QWidget &aElement, const QString &aText) {
        theFaults << aElement.objectName() + QStringLiteral(": ") + aText;
    }

    /// The size of a text in as many lines as the width asks for.
    static QSizeF Broken(const QWidget &aElement, const QString &aText, double aWidth) {
        QTextLayout layout(aText, aElement.font());
        layout.beginLayout();
        double width = 0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(aWidth);
            width = std::max(width, line.naturalTextWidth());
        }
        layout.endLayout();
        return {width, layout.lineCount() * InkHeight(aElement)};
    }

    void Label(const QLabel &aLabel) {
        if (aLabel.text().isEmpty()) return;
        const QSizeF room = aLabel.contentsRect().size();
        const QSizeF needed = aLabel.wordWrap()
                                  ? Broken(aLabel, aLabel.text(), room.width())
                                  : QSizeF(Width(aLabel, aLabel.text()), InkHeight(aLabel));
        Need(aLabel, aLabel.text(), needed, room);
    }

    void FrameCaption(const Frame &aFrame) {
        if (!aFrame.HasBorder()) return;
        const int left = PixelsFromTwips(120);
        const double end = left + Width(aFrame, aFrame.Caption());
        Need(aFrame, aFrame.Caption(), QSizeF(end + left, InkHeight(aFrame)), aFrame.size());
        // A caption of blanks keeps the edge open for the check box on it.
        if (!aFrame.Caption().trimmed().isEmpty()) return;
        for (const auto *box : aFrame.findChildren<QCheckBox *>(Qt::FindDirectChildrenOnly)) {
            if (box->y() != 0) continue;
            if (box->x() > end) Fault(aFrame, QStringLiteral("a piece of edge before the caption"));
            if (!box->autoFillBackground()) Fault(aFrame, QStringLiteral("the edge shows through"));
        }
    }

    void Button(const QPushButton &aButton) {
        QStyleOptionButton option;
        option.initFrom(&aButton);
        const QSizeF room = aButton.style()
                                ->subElementRect(QStyle::SE_PushButtonContents, &option, &aButton)
                                .size();
        const QString text = QString(aButton.text()).remove(u'&');
        constexpr double theGap = 4;
        const double picture = aButton.icon().isNull()
                                   ? 0
                                   : aButton.iconSize().width() + (text.isEmpty() ? 0 : theGap);
        Need(aButton, text, QSizeF(Width(aButton, text) + picture, InkHeight(aButton)), room);
        if (!aButton.icon().isNull() && aButton.iconSize().height() > room.height())
            Fault(aButton, QStringLiteral("the picture is cut"));
    }

    void Mark(const QAbstractButton &aBox, QStyle::SubElement aRoom) {
        QStyleOptionButton option;
        option.initFrom(&aBox);
        const QSizeF room = aBox.style()->subElementRect(aRoom, &option, &aBox).size();
        const QString text = aBox.text().trimmed();
        Need(aBox, text, Broken(aBox, text, room.width()), QSizeF(room.width(), aBox.height()));
    }

    void Tabs(const QTabBar &aBar) {
        for (int i = 0; i < aBar.count(); ++i) {
            const QRect place = aBar.tabRect(i);
            constexpr double theGap = 4;
            const double needed =
                Width(aBar, aBar.tabText(i)) + aBar.iconSize().width() + 3 * theGap;
            Need(aBar, aBar.tabText(i),
                 QSizeF(needed, std::max<double>(InkHeight(aBar), aBar.iconSize().height())),
                 place.size());
            if (!aBar.rect().contains(place)) Fault(aBar, QStringLiteral("a tab is out of sight"));
        }
    }

    void Combo(const QComboBox &aCombo) {
        QStyleOptionComboBox option;
        option.initFrom(&aCombo);
        option.editable = aCombo.isEditable();
        const QSizeF room = aCombo.style()
                                ->subControlRect(QStyle::CC_ComboBox, &option,
                                                 QStyle::SC_ComboBoxEditField, &aCombo)
                                .size();
        for (int i = 0; i < aCombo.count(); ++i) {
            const QString &text = aCombo.itemText(i);
            Need(aCombo, text, QSizeF(Width(aCombo, text), InkHeight(aCombo)), room);
        }
    }

    void Line(const QLineEdit &aLine, const QString &aText) {
        constexpr double theMargin = 4;  // a frame and a little air
        const QSizeF room(aLine.width() - 2 * theMargin, aLine.height() - theMargin);
        Need(aLine, aText, QSizeF(Width(aLine, aText), InkHeight(aLine)), room);
    }

    void List(const ListView &aList) {
        const QHeaderView &header = *aList.header();
        for (int i = 0; i < header.count(); ++i) {
            if (header.isSectionHidden(i)) continue;
            const QString text = aList.Column(i).Caption;
            // A column of a pixel or two only carries what the list sorts by.
            if (header.sectionSize(i) < PixelsFromTwips(100)) continue;
            Need(header, text, QSizeF(Width(header, text), InkHeight(header)),
                 QSizeF(header.sectionSize(i) - 2, header.height()));
        }
        if (aList.RowCount() > 0 && aList.RowRect(aList.Row(0)).height() < InkHeight(aList))
            Fault(aList, QStringLiteral("the rows are too low"));
    }

    void Scrolled(const QScrollArea &aBox) {
        if (aBox.verticalScrollBar()->maximum() > 0 || aBox.horizontalScrollBar()->maximum() > 0)
            Fault(aBox, QStringLiteral("what is in it does not fit"));
    }

    QWidget &theWindow;
    QStringList theFaults;
    int theCaptions = 0;
};

/// Shows each page once, so that each has been laid out.
void OpenEveryPage(QWidget &aDialog) {
    auto *bar = aDialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
    for (int i = 0; i < bar->count(); ++i) {
        bar->setCurrentIndex(i);
        QApplication::processEvents();
    }
}

/// Which sides of an element have no line of that colour from end to end, but for the corners.
QByteArray MissingEdges(const QImage &aImage, const QWidget &aElement, QRgb aColour) {
    const double scale = aElement.devicePixelRatioF();
    const QRectF place(QPointF(aElement.geometry().topLeft()) * scale,
                       QSizeF(aElement.size()) * scale);
    const int top =
        qobject_cast<const Frame *>(&aElement) ? aElement.fontMetrics().height() / 2 : 0;
    constexpr int theCorner = 3;
    const auto whole = [&](bool aUpright, int aAt) {
        const double from = aUpright ? place.top() + top * scale : place.left();
        const double to = aUpright ? place.bottom() : place.right();
        for (int i = qRound(from) + theCorner; i < qRound(to) - theCorner; ++i) {
            if (aImage.pixel(aUpright ? aAt : i, aUpright ? i : aAt) != aColour) return false;
        }
        return true;
    };
    QByteArray missing;
    const auto need = [&](const char *aSide, bool aUpright, double aAt) {
        // The side is somewhere within a pixel of its place.
        for (int at = qFloor(aAt) - 1; at <= qFloor(aAt) + 1; ++at)
            if (whole(aUpright, at)) return;
        missing += QByteArray(aSide) + " of " + aElement.metaObject()->className() + " at " +
                   QByteArray::number(aElement.x()) + "; ";
    };
    need("left", true, place.left());
    need("right", true, place.right() - 1);
    need("top", false, place.top() + top * scale);
    need("bottom", false, place.bottom() - 1);
    return missing;
}

}  // namespace

/// All windows in the resolution and with the fonts that this run was started for, which the
/// environment tells.
class TestCaptions : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        theLightPalette = QApplication::palette();
        MemoryOffice::Install();
    }
    void cleanup() { QApplication::setPalette(theLightPalette); }

    /// Without this the other tests could pass in a run that was not set up.
    void RunIsSetUp() {
        const QByteArray fonts = qgetenv("VK_FONTS");
        if (!fonts.isEmpty())
            QCOMPARE(QFontDatabase::hasFamily(QStringLiteral("Liberation Sans")),
                     fonts == "present");
        bool told = false;
        const int percent = qEnvironmentVariableIntValue("VK_RESOLUTION", &told);
        if (told) {
            const QWidget window;
            QCOMPARE(std::lround(window.devicePixelRatioF() * window.logicalDpiX() * 100 / 96),
                     percent);
        }
    }

    void NothingOfTheDialogIsCut_data() { Palettes(); }
    void NothingOfTheDialogIsCut() {
        UsePalette();
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        TurnEverythingOn(dialog);
        OpenEveryPage(dialog);
        const Measure measure(dialog);
        QVERIFY2(measure.Faults().isEmpty(), measure.Faults());
        QVERIFY(measure.Captions() > 200);
    }

    void NothingOfTheDialogOverlaps() {
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        TurnEverythingOn(dialog);
        auto *bar = dialog.findChild<QTabBar *>(QStringLiteral("theTabBar"));
        for (int i = 0; i < bar->count(); ++i) {
            bar->setCurrentIndex(i);
            const QByteArray overlaps = Overlaps(dialog);
            QVERIFY2(overlaps.isEmpty(), overlaps);
        }
    }

    void ACaptionThatIsTooLongIsFound_data() {
        QTest::addColumn<QString>("name");
        for (const char *name : {"theIsTaxpayers", "theOptTaxpayers", "theTaxpayerAdd", "theOK",
                                 "theWholePfrCluster", "Label3"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void ACaptionThatIsTooLongIsFound() {
        QFETCH(QString, name);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        TurnEverythingOn(dialog);
        OpenEveryPage(dialog);
        auto *element = dialog.findChild<QWidget *>(name);
        QVERIFY(element);
        const QByteArray property = "text";
        QString text = element->property(property).toString();
        text += QStringLiteral(" и еще что-то") + text;
        QVERIFY(element->setProperty(property, text));
        const QString faults = QString::fromUtf8(Measure(dialog).Faults());
        QVERIFY2(faults.count(u'\n') == 0, qPrintable(faults));
        QVERIFY2(faults.startsWith(name + u':'), qPrintable(faults));
    }

    void NothingOfTheBrowserIsCut_data() { Palettes(); }
    void NothingOfTheBrowserIsCut() {
        UsePalette();
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        QApplication::processEvents();
        const Measure measure(browser);
        QVERIFY2(measure.Faults().isEmpty(), measure.Faults());
        QVERIFY(measure.Captions() > 25);
        const QByteArray overlaps = Overlaps(browser);
        QVERIFY2(overlaps.isEmpty(), overlaps);
    }

    void NothingOfThePickerIsCut_data() {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<qint32>("type");
        for (qint32 type = 1; type <= 5; ++type) {
            QTest::addRow("light, type %d", type) << false << type;
            QTest::addRow("dark, type %d", type) << true << type;
        }
    }
    void NothingOfThePickerIsCut() {
        QFETCH(qint32, type);
        UsePalette();
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            const Measure measure(aWindow);
            const QByteArray faults = measure.Faults() + Overlaps(aWindow);
            if (!faults.isEmpty()) driver.Complain(QString::fromUtf8(faults));
            if (measure.Captions() < 9) driver.Complain(QStringLiteral("nothing was measured"));
            aWindow.close();
        });
        SelectObjectsForm().Execute(type, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void NothingOfABoxIsCut_data() { Palettes(); }
    void NothingOfABoxIsCut() {
        UsePalette();
        ModalDriver driver;
        driver.Expect([&](QWidget &aBox) {
            const Measure measure(aBox);
            if (!measure.Faults().isEmpty()) driver.Complain(QString::fromUtf8(measure.Faults()));
            if (measure.Captions() < 3) driver.Complain(QStringLiteral("nothing was measured"));
            aBox.close();
        });
        AskYesNo(QStringLiteral("Вы уверены, что ввели все критерии поиска и хотите выполнить "
                                "поиск документов?"),
                 QStringLiteral("Норвик: Критерии поиска документов"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// Places on all fractions of a pixel that a scale can lead to.
    void EdgesAreWhole_data() { Palettes(); }
    void EdgesAreWhole() {
        UsePalette();
        QWidget window;
        QList<QWidget *> elements;
        for (int i = 0; i < 8; ++i) {
            QWidget *const column[] = {new Frame(QString(), &window), new ScrollBox(&window),
                                       new TextPane(&window), new ListView(&window)};
            for (int row = 0; row < 4; ++row) {
                column[row]->setGeometry(10 + 61 * i, 10 + 80 * row + 3 * i, 50 + i, 40 + i);
                column[row]->setFocusPolicy(Qt::NoFocus);
                elements << column[row];
            }
        }
        window.resize(520, 330);
        window.show();
        const QImage image = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(image.devicePixelRatio(), window.devicePixelRatioF());
        const QColor edge = EdgeColour(window.palette());
        for (const QWidget *element : elements) {
            const QByteArray missing = MissingEdges(image, *element, edge.rgb());
            QVERIFY2(missing.isEmpty(), missing);
        }
    }

    void DisabledTextsCanBeRead_data() { Palettes(); }
    void DisabledTextsCanBeRead() {
        UsePalette();
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        TurnEverythingOn(dialog);
        auto *range = dialog.findChild<QRadioButton *>(QStringLiteral("theRangePeriods"));
        range->setChecked(true);
        int disabled = 0;
        for (const char *name :
             {"theOnePerYear", "theOnePerYearLabel", "thePeriodTime", "thePeriodTimeLabel"}) {
            const auto *element = dialog.findChild<QWidget *>(QString::fromLatin1(name));
            QVERIFY2(element && !element->isEnabled(), name);
            const QPalette palette = element->palette();
            const bool label = qobject_cast<const QLabel *>(element) != nullptr;
            const QColor text =
                palette.color(QPalette::Disabled, label ? QPalette::WindowText : QPalette::Text);
            const QColor ground =
                palette.color(QPalette::Disabled, label ? QPalette::Window : QPalette::Base);
            QVERIFY2(Contrast(text, ground) >= 3, name);
            // and yet is seen to be disabled
            const QColor enabled =
                palette.color(QPalette::Active, label ? QPalette::WindowText : QPalette::Text);
            QVERIFY2(Contrast(text, enabled) >= 1.5, name);
            ++disabled;
        }
        QCOMPARE(disabled, 4);
    }

private:
    static void Palettes() {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    static void UsePalette() {
        QFETCH(bool, dark);
        if (dark) QApplication::setPalette(DarkPalette());
        QCOMPARE(IsDark(QApplication::palette()), dark);
    }

    QPalette theLightPalette;
};

VK_TEST_CLASS(TestCaptions);
#include "TestCaptions.moc"
