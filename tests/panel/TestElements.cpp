#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>

#include "controls/DateBox.h"
#include "controls/Fonts.h"
#include "controls/Frame.h"
#include "controls/NumberBox.h"
#include "controls/ScrollBox.h"
#include "foundation/Clock.h"
#include "panel/OpenPanel.h"
#include "support/TestMain.h"

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

    void Pictures() {
        const QByteArray folder = qgetenv("VK_PANEL_PICTURES");
        if (folder.isEmpty()) QSKIP("no folder for pictures is named");
        SetTodayForTests(QDate(2026, 5, 1));
        OpenPanel panel;
        VkDocQueryData record;
        record.OnePeriodYear = record.RangePeriodYear1 = record.RangePeriodYear2 = 2026;
        record.TaxpayersList = Records({MakePerson(1), MakePerson(2), MakePerson(3)});
        record.AccStreamsList = Records({MakeStream(11), MakeStream(12), MakeStream(13)});
        record.Templates = Records({MakeVersion(31), MakeVersion(32), MakeVersion(34)});
        record.TemplatesMode = TemplateVersion;
        for (const bool dark : {false, true}) {
            if (dark) {
                QPalette p(QColor(45, 45, 48), QColor(45, 45, 48));
                p.setColor(QPalette::Base, QColor(30, 30, 30));
                QApplication::setPalette(p);
            }
            for (const bool on : {false, true}) {
                record.IsTaxpayers = record.IsAccStreamType = record.IsAccStreamOpeness = on;
                record.IsContoraPrefix1 = record.IsContoraPrefix2 = record.IsAccStreamsList = on;
                record.IsPeriods = record.IsPeriodTypes = record.IsTemplate = on;
                record.IsDocStatus = record.IsSignDate = record.IsSignerFio = record.IsNotes = on;
                record.IsDocNum = record.WholePfrCluster = on;
                record.PeriodCriterion = on ? RangePeriods : OnePeriod;
                record.NotesMode = on ? NotesLike : NotesEmpty;
                record.TaxpayersType = on && dark ? MainOrgs : Taxpayers;
                record.DocNumMode = on && dark ? DocNumRange : DocLastNums;
                panel.DistributeValues(record);
                panel.show();
                for (int i = 0; i < panel.Tabs().TabCount(); ++i) {
                    panel.Tabs().SetSelectedTab(panel.Tabs().TabKey(i));
                    QTest::qWait(20);
                    panel.grab().save(
                        QStringLiteral("%1/panel_%2_%3_%4.png")
                            .arg(QString::fromLocal8Bit(folder),
                                 dark ? QStringLiteral("dark") : QStringLiteral("light"),
                                 on ? QStringLiteral("on") : QStringLiteral("off"),
                                 panel.Tabs().TabKey(i)));
                }
            }
        }
    }

private:
    std::unique_ptr<OpenPanel> thePanel;
};

VK_TEST_CLASS(TestElements);

#include "TestElements.moc"
