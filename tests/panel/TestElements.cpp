#include <algorithm>

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QTabBar>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "controls/DateBox.h"
#include "controls/Frame.h"
#include "controls/NumberBox.h"
#include "controls/ScrollBox.h"
#include "foundation/Clock.h"
#include "look/Fonts.h"
#include "look/Pictures.h"
#include "panel/OpenPanel.h"
#include "support/CellImage.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"
#include "windows/mVkGraphLight.h"

using namespace VkTests;

namespace {

/// A line of the list of elements, which was written down from the design of the panel.
struct Fact {
    QString Page, Name, Kind, Inside, Caption;
    int Index = -1;
    QRect Twips;
    int TabOrder = -1;
    QString ExplainedBy;

    QString ObjectName() const {
        return Index < 0 ? Name : QStringLiteral("%1(%2)").arg(Name).arg(Index);
    }
    QRect Pixels() const {
        const auto pixels = [](int twips) { return qRound(twips / 15.0); };
        return {pixels(Twips.x()), pixels(Twips.y()), pixels(Twips.width()),
                pixels(Twips.height())};
    }
};

QVector<Fact> ReadFacts() {
    QFile file(QStringLiteral(VK_TEST_DATA "/panel_elements.csv"));
    if (!file.open(QIODevice::ReadOnly)) qFatal("no list of elements");
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    lines.removeFirst();
    QVector<Fact> facts;
    for (const QString &line : lines) {
        const QStringList parts = line.split(u';');
        Fact fact;
        fact.Page = parts[0];
        fact.Name = parts[1];
        fact.Kind = parts[2];
        fact.Inside = parts[3];
        fact.Caption = parts[4];
        if (!parts[5].isEmpty()) fact.Index = parts[5].toInt();
        fact.Twips = {parts[6].toInt(), parts[7].toInt(), parts[8].toInt(), parts[9].toInt()};
        if (!parts[10].isEmpty()) fact.TabOrder = parts[10].toInt();
        fact.ExplainedBy = parts[11];
        facts << fact;
    }
    return facts;
}

const QVector<Fact> &Facts() {
    static const QVector<Fact> facts = ReadFacts();
    return facts;
}

QString CaptionOf(const QString &aName) {
    for (const Fact &fact : Facts()) {
        if (fact.Name == aName) return fact.Caption;
    }
    return QString();
}

/// Viewports and contents of scrolling boxes are no elements of the panel.
QString ParentElement(const QWidget &aWidget) {
    const QWidget *parent = aWidget.parentWidget();
    while (parent && (parent->objectName().isEmpty() || parent->objectName().startsWith(u"qt_")))
        parent = parent->parentWidget();
    return parent ? parent->objectName() : QString();
}

template <class Kind>
bool Is(const QWidget &aWidget) {
    return qobject_cast<const Kind *>(&aWidget) != nullptr;
}

bool IsOfKind(const QWidget &aWidget, const QString &aKind) {
    const auto *frame = qobject_cast<const Frame *>(&aWidget);
    const auto *combo = qobject_cast<const ComboBox *>(&aWidget);
    if (aKind == u"frame") return frame && frame->HasBorder() && !frame->isHidden();
    if (aKind == u"frame (hidden)") return frame && frame->HasBorder() && frame->isHidden();
    if (aKind == u"plain frame") return frame && !frame->HasBorder();
    if (aKind == u"check box") return Is<CheckBox>(aWidget);
    if (aKind == u"option button") return Is<OptionButton>(aWidget);
    if (aKind == u"button") return Is<QPushButton>(aWidget);
    if (aKind == u"list") return Is<ListView>(aWidget);
    if (aKind == u"text") return Is<QLineEdit>(aWidget) && !Is<NumberBox>(aWidget);
    if (aKind == u"label" || aKind == u"image") return Is<QLabel>(aWidget);
    if (aKind == u"scrolling box") return Is<ScrollBox>(aWidget);
    if (aKind == u"fixed combo") return combo && !combo->isEditable();
    if (aKind == u"editable combo") return combo && combo->isEditable();
    if (aKind == u"number box") return Is<NumberBox>(aWidget);
    if (aKind == u"date box") return Is<DateBox>(aWidget);
    return false;
}

QString ShownCaption(const QWidget &aWidget) {
    if (const auto *frame = qobject_cast<const Frame *>(&aWidget)) return frame->Caption();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&aWidget)) return button->text();
    if (const auto *label = qobject_cast<const QLabel *>(&aWidget)) return label->text();
    return QString();
}

bool AnyChosenBeside(const OptionButton &aOption) {
    for (const auto *other : aOption.parentWidget()->findChildren<OptionButton *>()) {
        if (other->Value()) return true;
    }
    return false;
}

/// Where the caption of the element stands; empty if it has none.
QRect CaptionRoom(const QWidget &aElement) {
    QStyleOptionButton option;
    option.initFrom(&aElement);
    const QStyle &style = *aElement.style();
    if (Is<CheckBox>(aElement))
        return style.subElementRect(QStyle::SE_CheckBoxContents, &option, &aElement);
    if (Is<OptionButton>(aElement))
        return style.subElementRect(QStyle::SE_RadioButtonContents, &option, &aElement);
    if (Is<QPushButton>(aElement))
        return style.subElementRect(QStyle::SE_PushButtonContents, &option, &aElement);
    const auto *label = qobject_cast<const QLabel *>(&aElement);
    if (label && !label->text().isEmpty()) return label->contentsRect();
    return {};
}

}  // namespace

class TestElements : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        MemoryOffice::Install();
        thePanel = std::make_unique<OpenPanel>();
        thePanel->show();
    }
    void cleanupTestCase() { thePanel.reset(); }

    void EveryElement_data() {
        QTest::addColumn<int>("fact");
        for (int i = 0; i < Facts().size(); ++i)
            QTest::newRow(qPrintable(Facts()[i].ObjectName())) << i;
    }

    void EveryElement() {
        QFETCH(int, fact);
        const Fact &wanted = Facts()[fact];
        const QList<QWidget *> found = thePanel->findChildren<QWidget *>(wanted.ObjectName());
        QCOMPARE(found.size(), 1);
        const QWidget &element = *found.first();
        QVERIFY(IsOfKind(element, wanted.Kind));
        QCOMPARE(ParentElement(element), wanted.Inside);
        QCOMPARE(ShownCaption(element), wanted.Caption);
        QCOMPARE(element.geometry(), wanted.Pixels());
        QCOMPARE(element.accessibleName(),
                 wanted.ExplainedBy.isEmpty() ? wanted.Caption : CaptionOf(wanted.ExplainedBy));
        QVERIFY(element.isEnabled());
        QCOMPARE(element.isHidden(), wanted.Kind == u"frame (hidden)");
    }

    void InputElementsTellWhatTheyAreFor() {
        for (const Fact &fact : Facts()) {
            if (fact.TabOrder < 0 || fact.Kind == u"plain frame") continue;
            const QString name = thePanel->Get(qPrintable(fact.ObjectName())).accessibleName();
            QVERIFY2(!name.trimmed().isEmpty(), qPrintable(fact.ObjectName()));
        }
    }

    void NothingElseIsOnThePanel() {
        QStringList names;
        for (const Fact &fact : Facts()) names << fact.ObjectName();
        for (const Fact &fact : Facts()) {
            if (!names.contains(fact.Page)) names << fact.Page;
        }
        names << QStringLiteral("theTabs") << QStringLiteral("theTabBar");
        for (const QWidget *widget : thePanel->findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            if (name.startsWith(u"the") || name.startsWith(u"Label"))
                QVERIFY2(names.contains(name), qPrintable(name));
        }
        QCOMPARE(Facts().size(), 150);
    }

    void Tabs() {
        const TabControl &tabs = thePanel->Tabs();
        QCOMPARE(tabs.geometry(), QRect(0, 0, 821, 589));
        const QStringList keys = {QStringLiteral("taxpayer"), QStringLiteral("accstream"),
                                  QStringLiteral("time"), QStringLiteral("template"),
                                  QStringLiteral("doc")};
        const QStringList captions = {
            QStringLiteral("Налогоплательщик"), QStringLiteral("Комплект отчетности"),
            QStringLiteral("Период отчетности"), QStringLiteral("Отчетная форма"),
            QStringLiteral("Свойства документов")};
        const QStringList pages = {
            QStringLiteral("theTaxpayerPanel"), QStringLiteral("theAccStreamPanel"),
            QStringLiteral("thePeriodPanel"), QStringLiteral("theTemplatePanel"),
            QStringLiteral("theDocPanel")};
        QCOMPARE(tabs.TabCount(), 5);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(tabs.TabKey(i), keys[i]);
            QCOMPARE(tabs.Bar()->tabText(i), captions[i]);
            const QWidget &page = thePanel->Get(qPrintable(pages[i]));
            QCOMPARE(page.parentWidget(), &tabs);
            QCOMPARE(page.geometry(), QRect(2, 24, 817, 563));
            QCOMPARE(page.isHidden(), i != 0);
        }
        QCOMPARE(tabs.Bar()->iconSize(), QSize(16, 16));
        QCOMPARE(tabs.Bar()->font().pointSizeF(), 8.25);
    }

    void PagesStretchAndElementsStay() {
        OpenPanel panel;
        panel.resize(1000, 700);
        panel.show();
        QCOMPARE(panel.Tabs().size(), QSize(1000, 700));
        QCOMPARE(panel.Get("theDocPanel").geometry(), QRect(2, 24, 996, 674));
        QCOMPARE(panel.Get("theTaxpayersFrame").geometry(), QRect(12, 12, 797, 505));
    }

    // Init.

    void YearCombos_data() {
        QTest::addColumn<QDate>("today");
        QTest::newRow("in the year") << QDate(2026, 5, 1);
        QTest::newRow("its first day") << QDate(2026, 1, 1);
        QTest::newRow("its last day") << QDate(2026, 12, 31);
    }
    void YearCombos() {
        QFETCH(QDate, today);
        SetTodayForTests(today);
        const OpenPanel panel;
        SetTodayForTests(QDate());
        for (const char *name : {"theOnePerYear", "thePerYear1", "thePerYear2"}) {
            const ComboBox &combo = panel.Combo(name);
            QCOMPARE(combo.count(), 10);
            for (int i = 0; i < 10; ++i) {
                QCOMPARE(combo.itemText(i), QString::number(2020 + i));
                QCOMPARE(combo.itemData(i).toInt(), 2020 + i);
            }
            QCOMPARE(combo.currentIndex(), 6);
            QCOMPARE(combo.currentText(), QStringLiteral("2026"));
        }
    }

    void PeriodCombos() {
        const OpenPanel panel;
        const QVector<int> codes = {1, 2,  3,  13, 4,  5,  6,  14, 19, 7, 8,
                                    9, 15, 10, 11, 12, 16, 20, 17, 21, 24};
        const ComboBox &periods = panel.Combo("thePeriodTime");
        QCOMPARE(periods.count(), 21);
        for (int i = 0; i < 21; ++i) {
            QCOMPARE(periods.itemData(i).toInt(), codes[i]);
            QCOMPARE(periods.itemText(i), QStringLiteral("период %1").arg(codes[i]));
        }
        for (const char *name : {"thePerMonth1", "thePerMonth2"}) {
            const ComboBox &months = panel.Combo(name);
            QCOMPARE(months.count(), 12);
            for (int i = 0; i < 12; ++i) {
                QCOMPARE(months.itemData(i).toInt(), i + 1);
                QCOMPARE(months.itemText(i), QStringLiteral("период %1").arg(i + 1));
            }
        }
        for (const char *name : {"thePeriodTime", "thePerMonth1", "thePerMonth2"}) {
            QCOMPARE(panel.Combo(name).currentIndex(), -1);
            QCOMPARE(GetComboData(panel.Combo(name), -77), -77);
        }
    }

    void FailingInit() {
        int calls = 0;
        MemoryOffice::The().OnCall = [&](const QString &aMember) {
            if (aMember == u"GetPeriodName" && ++calls == 3)
                throw Failure(70, QStringLiteral("S"), QStringLiteral("D"));
        };
        VkDocQueryCriteries panel;
        QString chain;
        try {
            panel.Init();
        } catch (const Failure &failure) {
            chain = failure.Description();
        }
        MemoryOffice::The().OnCall = nullptr;
        QCOMPARE(chain, QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.Init]\r\n[S]\r\nD"));
        QCOMPARE(panel.findChild<ComboBox *>(QStringLiteral("theOnePerYear"))->count(), 10);
        QCOMPARE(panel.findChild<ComboBox *>(QStringLiteral("thePeriodTime"))->count(), 2);
    }

    void ListColumns_data() {
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("width");
        const auto row = [](const char *list, int position, const char *caption, const char *key,
                            int width) {
            QTest::newRow(
                qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(list)).arg(position)))
                << position << QString::fromUtf8(caption) << QString::fromLatin1(key) << width;
        };
        row("theTaxpayersList", 0, "*", "icon", 300);
        row("theTaxpayersList", 1, "ИНН", "inn", 1500);
        row("theTaxpayersList", 2, "КПП", "kpp", 1200);
        row("theTaxpayersList", 3, "Наименование/ ФИО", "name", 6000);
        row("theTaxpayersList", 4, "Головная организация", "mainorg", 6000);
        row("theAccStreamsList", 0, "*", "", 300);
        row("theAccStreamsList", 1, "Название", "", 4500);
        row("theAccStreamsList", 2, "К.орг.", "", 1500);
        row("theAccStreamsList", 3, "КПП", "", 1200);
        row("theAccStreamsList", 4, "ИНН", "", 1500);
        row("theAccStreamsList", 5, "Организация/ Налогоплательщик", "", 6000);
        row("theTemplatesList", 0, "*", "", 300);
        row("theTemplatesList", 1, "Срок действия", "term", 2100);
        row("theTemplatesList", 2, "Наименование", "name", 9000);
    }
    void ListColumns() {
        QFETCH(int, position);
        QFETCH(QString, caption);
        QFETCH(QString, key);
        QFETCH(int, width);
        const QByteArray list = QByteArray(QTest::currentDataTag()).split(' ').first();
        const ListColumn column = thePanel->List(list.constData()).Column(position);
        QCOMPARE(column.Caption, caption);
        QCOMPARE(column.Key, key);
        QCOMPARE(column.Width, width);
    }

    void ListsAtFirst() {
        const auto check = [this](const char *name, int columns, int sortKey) {
            const ListView &list = thePanel->List(name);
            QCOMPARE(list.ColumnCount(), columns);
            QVERIFY(list.IsSorted());
            QCOMPARE(int(list.SortKey()), sortKey);
            QCOMPARE(list.SortOrder(), 0);
            QCOMPARE(list.RowCount(), 0);
        };
        check("theTaxpayersList", 5, 3);
        check("theAccStreamsList", 6, 3);
        check("theTemplatesList", 3, 2);
    }

    void ListsShowPictures_data() {
        QTest::addColumn<bool>("unused");
        for (const char *list : {"theTaxpayersList", "theAccStreamsList", "theTemplatesList"})
            QTest::newRow(list) << true;
    }
    void ListsShowPictures() {
        OpenPanel panel;
        ListView &list = panel.List(QTest::currentDataTag());
        for (const char *icon : {"org", "man_purple", "org"})
            list.AddRow(QString())->SetIcon(QString::fromLatin1(icon));
        QVERIFY(CellImage(list, 0) != CellImage(list, 1));
        QVERIFY(CellImage(list, 0) == CellImage(list, 2));
        // The picker alone has it.
        const auto foreign = [&] { list.Row(0)->SetIcon(QStringLiteral("acc_stream_rfm")); };
        QCOMPARE(RaisedBy(foreign).Source(), QStringLiteral("ImageList"));
    }

    void StatusesShowTheirPictures() {
        for (int i = 0; i < 4; ++i) {
            const auto &image =
                thePanel->Get<QLabel>(qPrintable(QStringLiteral("theImage%1").arg(i + 1)));
            const QImage shown = image.pixmap(Qt::ReturnByValue).toImage();
            QCOMPARE(shown, StatusPicture(i).pixmap(image.size(), 1).toImage());
            for (int other = 0; other < i; ++other)
                QVERIFY(shown != StatusPicture(other).pixmap(image.size(), 1).toImage());
        }
    }

    void NumbersAndDatesHaveTheirBounds() {
        for (const char *name : {"theDocNum1", "theDocNum2", "theDocLastNumCount"}) {
            auto &box = thePanel->Get<NumberBox>(name);
            for (const double number : {-999999999999999., 99999999999999.}) {
                box.SetValue(number);
                QVERIFY(box.Value() == LooseValue(number));
                const double beyond = number + (number < 0 ? -1 : 1);
                QCOMPARE(RaisedBy([&] { box.SetValue(beyond); }).Source(),
                         QStringLiteral("NumberBox"));
            }
        }
        for (const char *name : {"theSignDate1", "theSignDate2"}) {
            auto &box = thePanel->Get<DateBox>(name);
            for (const QDate date : {QDate(100, 1, 1), QDate(9999, 12, 31)}) {
                box.SetValue(date);
                QVERIFY(box.Value() == LooseValue(date));
                const QDate beyond = date.addDays(date.year() == 100 ? -1 : 1);
                QCOMPARE(RaisedBy([&] { box.SetValue(beyond); }).Source(),
                         QStringLiteral("DateBox"));
            }
        }
    }

    // Keys.

    void TabKeyWalksInOrder_data() {
        QTest::addColumn<QString>("page");
        QTest::newRow("taxpayer") << QStringLiteral("theTaxpayerPanel");
        QTest::newRow("accstream") << QStringLiteral("theAccStreamPanel");
        QTest::newRow("time") << QStringLiteral("thePeriodPanel");
        QTest::newRow("template") << QStringLiteral("theTemplatePanel");
        QTest::newRow("doc") << QStringLiteral("theDocPanel");
    }
    void TabKeyWalksInOrder() {
        QFETCH(QString, page);
        OpenPanel panel;
        for (auto *box : panel.findChildren<CheckBox *>()) box->SetValue(1);
        panel.Option("theOptMainOrgs").SetValue(true);
        panel.Option("theAccStreamClosed").SetValue(true);
        panel.Option("theContoraJoinAnd").SetValue(true);
        panel.Option("theOptTemplate").SetValue(true);
        panel.Option("theNotesLike").SetValue(true);
        panel.Option("theDocNumRange").SetValue(true);
        panel.Option("theRangePeriods").SetValue(true);
        panel.SetCurrentTab(QString::fromLatin1(QTest::currentDataTag()));
        panel.show();
        panel.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&panel));

        // An option group is one stop, on the chosen option; the arrow keys go on from there.
        QVector<Fact> stops;
        for (const Fact &fact : Facts()) {
            const QWidget &element = panel.Get(qPrintable(fact.ObjectName()));
            const bool passive = fact.Kind.contains(u"frame") || fact.Kind == u"label" ||
                                 fact.Kind == u"image" || fact.Kind == u"scrolling box";
            const auto *option = qobject_cast<const OptionButton *>(&element);
            const bool other = option && !option->Value() && AnyChosenBeside(*option);
            if (fact.Page == page && !passive && !other && element.isVisible() &&
                element.isEnabled())
                stops << fact;
        }
        std::sort(stops.begin(), stops.end(), [](const Fact &left, const Fact &right) {
            return left.TabOrder < right.TabOrder;
        });

        panel.Tabs().Bar()->setFocus();
        QStringList walked;
        QStringList wanted;
        for (const Fact &stop : stops) {
            wanted << stop.ObjectName();
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QWidget *reached = QApplication::focusWidget();
            while (reached && !reached->objectName().startsWith(u"the"))
                reached = reached->parentWidget();
            walked << (reached ? reached->objectName() : QString());
        }
        QCOMPARE(walked, wanted);
        QVERIFY(walked.size() >= 5);
    }

    /// The frames that nobody sees included.
    void FocusGoesInTheOrderOfTheElements() {
        QVector<Fact> stops;
        for (const Fact &fact : Facts())
            if (fact.TabOrder >= 0 &&
                thePanel->Get(qPrintable(fact.ObjectName())).focusPolicy() != Qt::NoFocus)
                stops << fact;
        std::sort(stops.begin(), stops.end(), [](const Fact &left, const Fact &right) {
            return left.TabOrder < right.TabOrder;
        });
        QStringList wanted;
        for (const Fact &stop : stops) wanted << stop.ObjectName();
        QStringList met;
        const QWidget *bar = thePanel->Tabs().Bar();
        for (const QWidget *next = bar->nextInFocusChain(); next != bar;
             next = next->nextInFocusChain())
            if (wanted.contains(next->objectName())) met << next->objectName();
        QCOMPARE(met, wanted);
    }

    void WhatStandsBehindThePanelComesBehindIt() {
        QWidget window;
        auto *panel = new OpenPanel;
        panel->setParent(&window);
        auto *button = new QPushButton(QStringLiteral("OK"), &window);
        QWidget::setTabOrder(panel, button);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        panel->setFocus();
        QCOMPARE(QApplication::focusWidget(), panel->Tabs().Bar());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &panel->Get("theIsTaxpayers"));
        panel->List("theTaxpayersList").setFocus();
        for (int i = 0; i < 3; ++i) QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &panel->Get("theTaxpayerDelete"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), button);
    }

    void ArrowsGoThroughAGroup() {
        OpenPanel panel;
        panel.Check("theIsDocNum").SetValue(1);
        panel.Check("theIsNotes").SetValue(1);
        panel.Option("theNotesEmpty").SetValue(true);
        panel.SetCurrentTab(QStringLiteral("doc"));
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        panel.Option("theNotesEmpty").setFocus();
        QTest::keyClick(&panel.Option("theNotesEmpty"), Qt::Key_Down);
        QVERIFY(panel.Option("theNotesNotEmpty").Value());
        QTest::keyClick(&panel.Option("theNotesNotEmpty"), Qt::Key_Down);
        QVERIFY(panel.Option("theNotesLike").Value());
        QVERIFY(panel.Get("theNotes").isVisible());
    }

    void KeysSwitchTabs_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        const auto row = [](const char *name, Qt::Key key, Qt::KeyboardModifiers modifiers,
                            const char *from, const char *to) {
            QTest::newRow(name) << int(key) << int(modifiers.toInt()) << QString::fromLatin1(from)
                                << QString::fromLatin1(to);
        };
        row("next", Qt::Key_Tab, Qt::ControlModifier, "taxpayer", "accstream");
        row("next by page", Qt::Key_PageDown, Qt::ControlModifier, "time", "template");
        row("behind the last", Qt::Key_Tab, Qt::ControlModifier, "doc", "taxpayer");
        row("before", Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier, "doc", "template");
        row("before as keyboards send it", Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier,
            "doc", "template");
        row("before by page", Qt::Key_PageUp, Qt::ControlModifier, "accstream", "taxpayer");
        row("before the first", Qt::Key_PageUp, Qt::ControlModifier, "taxpayer", "doc");
    }
    void KeysSwitchTabs() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(QString, from);
        QFETCH(QString, to);
        OpenPanel panel;
        for (auto *box : panel.findChildren<CheckBox *>()) box->SetValue(1);
        panel.SetCurrentTab(from);
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        panel.Tabs().Bar()->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);  // the first element of the page
        const QWidget *before = QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key),
                        Qt::KeyboardModifiers(modifiers));
        QCOMPARE(panel.GetCurrentTab(), to);
        const QWidget *now = QApplication::focusWidget();
        QVERIFY(now && now != before && now->isVisible());
    }

    void KeysSwitchTabsFromInsideAList() {
        OpenPanel panel;
        panel.Check("theIsTaxpayers").SetValue(1);
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        panel.List("theTaxpayersList").setFocus();
        QTest::keyClick(&panel.List("theTaxpayersList"), Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(panel.GetCurrentTab(), QStringLiteral("accstream"));
    }

    void TabIsChosenWithTheMouse() {
        OpenPanel panel;
        panel.show();
        QTabBar *bar = panel.Tabs().Bar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(3).center());
        QCOMPARE(panel.GetCurrentTab(), QStringLiteral("template"));
        QVERIFY(panel.Get("theTemplatePanel").isVisible());
        QVERIFY(!panel.Get("theTaxpayerPanel").isVisible());
    }

    void TabKeysCompareWithCase() {
        OpenPanel panel;
        panel.SetCurrentTab(QStringLiteral("Doc"));
        QCOMPARE(panel.GetCurrentTab(), QStringLiteral("taxpayer"));
        panel.SetCurrentTab(QStringLiteral("doc"));
        QCOMPARE(panel.GetCurrentTab(), QStringLiteral("doc"));
    }

    void NoSelectedTabIsAnEmptyKey() {
        OpenPanel panel;
        QTabBar *bar = panel.Tabs().Bar();
        while (bar->count() > 0) bar->removeTab(0);
        QCOMPARE(panel.GetCurrentTab(), QString());
        const Failure failure = RaisedBy([&] { panel.Tabs().SelectedTab(); });
        QCOMPARE(failure.Number(), qint32(ObjectNotSet));
        QCOMPARE(failure.Description(), QStringLiteral("Ни одна вкладка не выбрана."));
    }

    void UnknownTabAndElementAreNamed() {
        OpenPanel panel;
        QCOMPARE(
            RaisedBy([&] { panel.Tabs().SetSelectedTab(QStringLiteral("other")); }).Description(),
            QStringLiteral("Нет вкладки с ключом \"other\"."));
        QCOMPARE(RaisedBy([&] { RaiseWrongElement(QStringLiteral("theOther")); }).Description(),
                 QStringLiteral("На панели нет нужного элемента \"theOther\"."));
    }

    // Looks.

    void EveryCaptionFits_data() {
        QTest::addColumn<QStringList>("faces");
        QTest::newRow("window font") << QStringList();
        QTest::newRow("system font, narrowed")
            << QStringList(QStringLiteral("a face that nobody has"));
    }
    void EveryCaptionFits() {
        QFETCH(QStringList, faces);
        OpenPanel panel;
        if (!faces.isEmpty()) panel.setFont(WindowFontOutOf(faces));
        for (const Fact &fact : Facts()) {
            QWidget &element = panel.Get(qPrintable(fact.ObjectName()));
            const QRect room = CaptionRoom(element);
            if (room.isEmpty()) continue;
            const bool wraps = element.height() > 22;
            const int flags = wraps ? Qt::TextWordWrap : Qt::TextSingleLine;
            const QSize needed =
                element.fontMetrics().boundingRect(room, flags, fact.Caption.trimmed()).size();
            QVERIFY2(needed.width() <= room.width() && needed.height() <= element.height() + 1,
                     qPrintable(QStringLiteral("%1: %2 x %3 in %4 x %5")
                                    .arg(fact.ObjectName())
                                    .arg(needed.width())
                                    .arg(needed.height())
                                    .arg(room.width())
                                    .arg(element.height())));
        }
        const QTabBar *bar = panel.Tabs().Bar();
        QVERIFY(bar->tabRect(4).right() < bar->width());
    }

private:
    std::unique_ptr<OpenPanel> thePanel;
};

VK_TEST_CLASS(TestElements);

#include "TestElements.moc"
