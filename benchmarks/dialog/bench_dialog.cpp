#include <algorithm>
#include <chrono>
#include <vector>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Providers.h>

#include "Figure.h"

using namespace Vk_DocQuery;

namespace {

using Clock = std::chrono::steady_clock;

/// All that the dialog asks of the records when it opens without a search.
class PeriodNames : public VkRecFactory {
public:
    QString GetPeriodName(qint32 aMonthID) override {
        return QStringLiteral("период %1").arg(aMonthID);
    }
};

/// Ends a modal dialog as soon as it is painted and keeps the moment.
class PaintWatch : public QObject {
public:
    PaintWatch() { qApp->installEventFilter(this); }

    bool eventFilter(QObject *aObject, QEvent *aEvent) override {
        if (aEvent->type() != QEvent::Paint || theSeen) return false;
        // The dialog itself is not painted where what lies in it covers it.
        auto *painted = qobject_cast<QWidget *>(aObject);
        auto *dialog = painted ? qobject_cast<QDialog *>(painted->window()) : nullptr;
        if (!dialog) return false;
        theSeen = true;
        // All of the dialog is painted in this turn of the event loop.
        QTimer::singleShot(0, dialog, [this, dialog] {
            thePainted = Clock::now();
            dialog->hide();
        });
        return false;
    }

    Clock::time_point thePainted;

private:
    bool theSeen = false;
};

double Milliseconds(Clock::duration aDuration) {
    return std::chrono::duration<double, std::milli>(aDuration).count();
}

double OpenOurs() {
    PaintWatch watch;
    const auto start = Clock::now();
    DocQueryEditor editor;
    editor.Execute();
    return Milliseconds(watch.thePainted - start);
}

enum class Kind {
    CheckBox,
    Option,
    Combo,
    Date,
    Line,
    Label,
    Button,
    Tool,
    Tree,
    TabBar,
    Scroll,
    Content,  ///< what a scroll area shows
    Group,
    Plain
};

/// A widget of the dialog as the bare one shall have it.
struct WidgetFacts {
    Kind What = Kind::Plain;
    int Parent = -1;
    QRect Place;
    QString Text;
    QStringList Columns;
    bool Hidden = false;
    bool Editable = false;
    bool Sheet = false;  ///< a scroll area without a frame, whose content fills it
};

bool IsOf(const QWidget &aWidget, const char *aClass) {
    return aWidget.inherits(QByteArray("Vk_DocQuery::").append(aClass).constData());
}

/// What a widget is, and whether what lies in it comes with it.
Kind KindOf(const QWidget &aWidget, bool &rWhole) {
    rWhole = true;
    if (qobject_cast<const QCheckBox *>(&aWidget)) return Kind::CheckBox;
    if (qobject_cast<const QRadioButton *>(&aWidget)) return Kind::Option;
    if (qobject_cast<const QComboBox *>(&aWidget)) return Kind::Combo;
    if (IsOf(aWidget, "DateBox")) return Kind::Date;
    if (qobject_cast<const QLineEdit *>(&aWidget)) return Kind::Line;
    if (qobject_cast<const QPushButton *>(&aWidget)) return Kind::Button;
    if (qobject_cast<const QToolButton *>(&aWidget)) return Kind::Tool;
    if (IsOf(aWidget, "ListView")) return Kind::Tree;
    if (qobject_cast<const QTabBar *>(&aWidget)) return Kind::TabBar;
    if (qobject_cast<const QLabel *>(&aWidget)) return Kind::Label;
    rWhole = false;
    if (qobject_cast<const QScrollArea *>(&aWidget)) return Kind::Scroll;
    if (IsOf(aWidget, "Frame")) return Kind::Group;
    return Kind::Plain;
}

void Describe(const QWidget &aWidget, int aParent, std::vector<WidgetFacts> &rFacts) {
    bool whole = false;
    WidgetFacts facts;
    facts.What = KindOf(aWidget, whole);
    facts.Parent = aParent;
    facts.Place = aWidget.geometry();
    facts.Hidden = aWidget.isHidden();
    facts.Text = aWidget.property("text").toString();
    if (const auto *combo = qobject_cast<const QComboBox *>(&aWidget))
        facts.Editable = combo->isEditable();
    if (facts.What == Kind::Tree) {
        const QAbstractItemModel *columns = aWidget.findChild<QHeaderView *>()->model();
        for (int i = 0; i < columns->columnCount(); ++i)
            facts.Columns << columns->headerData(i, Qt::Horizontal).toString();
    }
    if (const auto *bar = qobject_cast<const QTabBar *>(&aWidget)) {
        for (int i = 0; i < bar->count(); ++i) facts.Columns << bar->tabText(i);
    }
    rFacts.push_back(facts);
    if (whole) return;
    const int self = int(rFacts.size()) - 1;
    // The viewport and the bars come with the area.
    if (const auto *area = qobject_cast<const QScrollArea *>(&aWidget)) {
        rFacts.back().Sheet = area->widgetResizable() && area->frameShape() == QFrame::NoFrame;
        Describe(*area->widget(), self, rFacts);
        rFacts[std::size_t(self) + 1].What = Kind::Content;
        return;
    }
    for (const QObject *child : aWidget.children()) {
        const auto *widget = qobject_cast<const QWidget *>(child);
        if (widget && !widget->isWindow()) Describe(*widget, self, rFacts);
    }
}

/// Looks at the widgets of our dialog once, when it is up.
std::vector<WidgetFacts> DescribeOurs() {
    std::vector<WidgetFacts> facts;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        QWidget *dialog = QApplication::activeModalWidget();
        if (!dialog) return;  // events are also handled before it is up
        look.stop();
        Describe(*dialog, -1, facts);
        dialog->hide();
    });
    look.start();
    DocQueryEditor editor;
    editor.Execute();
    return facts;
}

QWidget *MakeBare(const WidgetFacts &aFacts, QWidget *aParent) {
    switch (aFacts.What) {
        case Kind::CheckBox:
            return new QCheckBox(aFacts.Text, aParent);
        case Kind::Option:
            return new QRadioButton(aFacts.Text, aParent);
        case Kind::Combo: {
            auto *combo = new QComboBox(aParent);
            combo->setEditable(aFacts.Editable);
            return combo;
        }
        case Kind::Date: {
            auto *date = new QDateEdit(aParent);
            date->setCalendarPopup(true);
            return date;
        }
        case Kind::Line:
            return new QLineEdit(aParent);
        case Kind::Label:
            return new QLabel(aFacts.Text, aParent);
        case Kind::Button:
            return new QPushButton(aFacts.Text, aParent);
        case Kind::Tool:
            return new QToolButton(aParent);
        case Kind::Tree: {
            auto *tree = new QTreeWidget(aParent);
            tree->setHeaderLabels(aFacts.Columns);
            return tree;
        }
        case Kind::TabBar: {
            auto *bar = new QTabBar(aParent);
            for (const QString &caption : aFacts.Columns) bar->addTab(caption);
            return bar;
        }
        case Kind::Scroll: {
            auto *area = new QScrollArea(aParent);
            if (aFacts.Sheet) area->setFrameShape(QFrame::NoFrame);
            area->setWidgetResizable(aFacts.Sheet);
            return area;
        }
        case Kind::Content: {
            auto *content = new QWidget;
            static_cast<QScrollArea *>(aParent)->setWidget(content);
            return content;
        }
        case Kind::Group:
            return new QGroupBox(aParent);
        case Kind::Plain:
            return new QWidget(aParent);
    }
    Q_UNREACHABLE();
}

double OpenBare(const std::vector<WidgetFacts> &aFacts) {
    PaintWatch watch;
    const auto start = Clock::now();
    QDialog dialog;
    dialog.resize(aFacts.front().Place.size());
    std::vector<QWidget *> made{&dialog};
    for (std::size_t i = 1; i < aFacts.size(); ++i) {
        const WidgetFacts &facts = aFacts[i];
        QWidget *widget = MakeBare(facts, made[std::size_t(facts.Parent)]);
        widget->setGeometry(facts.Place);
        if (facts.Hidden) widget->hide();
        made.push_back(widget);
    }
    dialog.exec();
    return Milliseconds(watch.thePainted - start);
}

double Median(std::vector<double> aValues) {
    std::sort(aValues.begin(), aValues.end());
    return aValues[aValues.size() / 2];
}

}  // namespace

int main(int aCount, char **aArguments) {
    QApplication application(aCount, aArguments);
    RegisterClass<PeriodNames>(QStringLiteral("Vk_Records.VkRecFactory"));
    const QString name = QStringLiteral("open the query dialog until painted");
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    if (!VkBench::IsWanted(name)) return 0;

    const std::vector<WidgetFacts> facts = DescribeOurs();
    if (facts.size() < 100) {
        qCritical("the dialog did not come up");
        return 1;
    }
    std::vector<double> ours;
    std::vector<double> bare;
    OpenOurs();
    OpenBare(facts);
    for (int round = 0; round < 21; ++round) {
        ours.push_back(OpenOurs());
        bare.push_back(OpenBare(facts));
    }
    VkBench::Report(name, Median(ours),
                    QStringLiteral("bare dialog of the same %1 widgets").arg(facts.size()),
                    Median(bare), 1.5, QStringLiteral("ms"));
    return 0;
}
