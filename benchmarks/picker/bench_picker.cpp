// The object picker over large numbers of taxpayers, each step until it is painted.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <malloc.h>

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "Figure.h"
#include "foundation/mVkDBProvider.h"
#include "LargeOffice.h"
#include "lists/ListView.h"
#include "lists/SearchTexts.h"
#include "panel/VkDocQueryCriteries.h"
#include "PeerTree.h"
#include "picker/SelectObjectsForm.h"

using namespace Vk_DocQuery;
using VkBench::PeerTree;

namespace {

constexpr qint32 theTaxpayers = 4;

void Check(bool aGood, const char *aWhat) {
    if (!aGood) qFatal("%s", aWhat);
}

/// Notes the paintings of a list.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QAbstractScrollArea &aList) : theViewport(aList.viewport()) {
        theViewport->installEventFilter(this);
    }
    int Paints = 0;

    void Until(int aPaints) {
        while (Paints < aPaints) QCoreApplication::processEvents();
    }

protected:
    bool eventFilter(QObject * /*aWatched*/, QEvent *aEvent) override {
        if (aEvent->type() == QEvent::Paint) ++Paints;
        return false;
    }

private:
    QWidget *theViewport;
};

/// Does something and waits until the list has painted it.
template <class Work>
void Painted(PaintWatch &aWatch, Work aWork) {
    const int before = aWatch.Paints;
    aWork();
    aWatch.Until(before + 1);
}

/// The picker that is up.
struct Picker {
    explicit Picker(QWidget &aWindow)
        : Window(aWindow),
          List(*aWindow.findChild<ListView *>()),
          Filter(*aWindow.findChild<QLineEdit *>()),
          Watch(List) {}

    QWidget &Window;
    ListView &List;
    QLineEdit &Filter;
    PaintWatch Watch;

    void Press(int aKey, Qt::KeyboardModifiers aModifiers) {
        QKeyEvent press(QEvent::KeyPress, aKey, aModifiers);
        Painted(Watch, [&] { QCoreApplication::sendEvent(&List, &press); });
    }
    /// One key press that sets the filter.
    void Paste() { Press(Qt::Key_V, Qt::ControlModifier); }
    void SetFilter(const QString &aText) {
        if (Filter.text() == aText) return;
        Painted(Watch, [&] { Filter.setText(aText); });
    }
    void Click(const char *aButton) {
        Window.findChild<QPushButton *>(QLatin1String(aButton))->click();
    }
};

/// Runs the function inside the picker's event loop, once it is painted.
template <class Work>
void InPicker(Work aWork) {
    QTimer::singleShot(0, qApp, [aWork] {
        QWidget *window = QApplication::activeModalWidget();
        Check(window, "no picker");
        Picker picker(*window);
        picker.List.viewport()->update();
        picker.Watch.Until(1);
        aWork(picker);
        window->close();
    });
    static_cast<void>(SelectObjectsForm().Execute(theTaxpayers, nullptr));
}

SearchTexts TextsOf(const RecordCollection &aPersons) {
    SearchTexts texts;
    for (const auto &person : aPersons) {
        texts.Begin();
        texts.AddField(person->Inn());
        texts.AddField(person->Kpp());
        texts.AddField(person->GetDisplayName());
        const auto parent = person->GetParentOrganization();
        if (parent->ID() != 0) texts.AddField(parent->GetDisplayNameAsAccPerson());
    }
    texts.Squeeze();
    return texts;
}

/// The digits that find nearest to that share of the objects.
QString FilterThatFinds(const SearchTexts &aTexts, double aShare) {
    QString best;
    double bestDistance = 1e9;
    for (int number = 10; number < 2000; ++number) {
        const QString filter = QString::number(number);
        const double found = static_cast<double>(aTexts.Matching(filter).size()) + 0.5;
        const double distance = std::abs(std::log(found / (aTexts.Count() * aShare)));
        if (distance < bestDistance) {
            bestDistance = distance;
            best = filter;
        }
        if (bestDistance < 0.05) break;
    }
    return best;
}

struct Narrowing {
    QString Name;
    double Share;  ///< of the objects; 1: the key press that clears the filter
};

const Narrowing theNarrowings[] = {{QStringLiteral("narrow %1 to 10 %"), 0.1},
                                   {QStringLiteral("narrow %1 to 0.1 %"), 0.001},
                                   {QStringLiteral("clear the filter of %1"), 1}};

void MeasureKeys(const RecordCollection &aPersons, const QString &aCount, bool aBesideTree) {
    const SearchTexts texts = TextsOf(aPersons);
    PeerTree tree(true);
    PaintWatch treeWatch(tree);
    if (aBesideTree) tree.show();
    InPicker([&](Picker &picker) {
        for (const Narrowing &narrowing : theNarrowings) {
            const bool clears = narrowing.Share == 1;
            const QString filter = FilterThatFinds(texts, clears ? 0.1 : narrowing.Share);
            const auto found = texts.Matching(clears ? QString() : filter);
            const QString before = clears ? filter : QString();
            QGuiApplication::clipboard()->setText(filter);
            VkBench::Figure figure;
            figure.Name = narrowing.Name.arg(aCount);
            figure.BeforeOurs = [&] { picker.SetFilter(before); };
            figure.Ours = [&] {
                if (clears)
                    picker.Press(Qt::Key_Z, Qt::ControlModifier);
                else
                    picker.Paste();
            };
            if (clears) {
                // The paste stands in the filter's memory, so that one key takes it back.
                figure.BeforeOurs = [&] {
                    picker.SetFilter(QString());
                    picker.Paste();
                };
            }
            figure.BeforeOurs();
            figure.Ours();
            Check(picker.List.RowCount() == static_cast<int>(found.size()), "rows");
            figure.PeerName = QStringLiteral("bare scan and a repaint of the page");
            figure.Bar = 1.5;
            figure.Rounds = 31;
            figure.BeforePeer = [&] {
                picker.SetFilter(clears ? QString() : filter);
                QCoreApplication::processEvents();
            };
            figure.Peer = [&] {
                Check(!texts.Matching(filter).empty(), "scan");
                Painted(picker.Watch, [&] {
                    picker.List.viewport()->update();
                    picker.List.verticalScrollBar()->update();
                });
            };
            VkBench::Measure(figure);
            if (!aBesideTree) continue;
            figure.PeerName = QStringLiteral("QTreeWidget refilled");
            figure.Bar = 0.1;
            figure.Rounds = 5;
            figure.BeforePeer = [&] {
                Painted(treeWatch, [&] {
                    tree.Fill(aPersons, texts.Matching(before));
                    tree.viewport()->update();
                });
            };
            figure.Peer = [&] {
                Painted(treeWatch, [&] {
                    tree.Fill(aPersons, texts.Matching(clears ? QString() : filter));
                    tree.viewport()->update();
                });
            };
            VkBench::Measure(figure);
        }
    });
}

double Median(std::vector<double> aValues) {
    std::sort(aValues.begin(), aValues.end());
    return aValues[aValues.size() / 2];
}

void MeasureExecute() {
    const QString name =
        QStringLiteral("Execute over 100,000, from the call to the painted window");
    if (!VkBench::IsWanted(name)) return;
    std::vector<double> ours;
    std::vector<double> peer;
    for (int round = 0; round < 8; ++round) {
        QElapsedTimer timer;
        timer.start();
        auto loaded = GetPersonQueries().GetTaxpayers();
        peer.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        loaded.reset();
        timer.start();
        InPicker(
            [&](Picker &) { ours.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6); });
    }
    ours.erase(ours.begin());  // warms up
    peer.erase(peer.begin());
    VkBench::Report(name, Median(ours), QStringLiteral("loading the same objects"), Median(peer),
                    1.5, QStringLiteral("ms"));
}

double Mebibytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / (1024 * 1024);
}

void MeasureMemory() {
    const QString name = QStringLiteral("memory of the picker with 100,000 objects");
    if (!VkBench::IsWanted(name)) return;
    InPicker([](Picker &) {});  // what is made once
    const double before = Mebibytes();
    double records = 0;
    {
        std::vector<std::shared_ptr<Record>> objects;
        auto loaded = GetPersonQueries().GetTaxpayers();
        objects.assign(loaded->begin(), loaded->end());
        loaded.reset();
        records = Mebibytes() - before;
    }
    double whole = 0;
    InPicker([&](Picker &) { whole = Mebibytes() - before; });
    VkBench::Report(name, whole - records, QStringLiteral("60 MiB above the records"), 60, 1,
                    QStringLiteral("MiB"));
}

class BenchPanel : public VkDocQueryCriteries {
public:
    BenchPanel() {
        Init();
        SetTaxpayersType(Taxpayers);
        SetTaxpayersTypeInList(Taxpayers, true, false);
        SetCurrentTab(QStringLiteral("taxpayer"));
        findChild<QAbstractButton *>(QStringLiteral("theIsTaxpayers"))->setChecked(true);
    }
    ListView &List() { return *findChild<ListView *>(QStringLiteral("theTaxpayersList")); }
    void Add() { findChild<QPushButton *>(QStringLiteral("theTaxpayerAdd"))->click(); }
};

void MeasureAdding(const RecordCollection &aPersons) {
    const QString name = QStringLiteral("mark 100,000, read them back and add them to the panel");
    if (!VkBench::IsWanted(name)) return;
    std::vector<int> all(static_cast<std::size_t>(aPersons.Count()));
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i);
    std::vector<double> ours;
    std::vector<double> peer;
    for (int round = 0; round < 6; ++round) {
        BenchPanel panel;
        panel.show();
        PaintWatch watch(panel.List());
        QElapsedTimer timer;
        QTimer::singleShot(0, qApp, [&] {
            Picker picker(*QApplication::activeModalWidget());
            picker.List.viewport()->update();
            picker.Watch.Until(1);
            timer.start();
            picker.Click("theCheckAll");
            picker.Click("theOK");
        });
        panel.Add();
        Painted(watch, [&] { panel.List().viewport()->update(); });
        ours.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        Check(panel.List().RowCount() == aPersons.Count(), "rows of the panel");
        Check(panel.List().SelectedRows().size() == all.size(), "selected rows of the panel");

        PeerTree picker(true);
        picker.Fill(aPersons, all);
        picker.show();
        PeerTree list(false);
        list.show();
        PaintWatch peerWatch(list);
        QCoreApplication::processEvents();
        timer.start();
        picker.CheckAll();
        const auto checked = picker.CheckedNumbers();
        list.AddSelected(aPersons, checked);
        Painted(peerWatch, [&] { list.viewport()->update(); });
        peer.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    ours.erase(ours.begin());
    peer.erase(peer.begin());
    VkBench::Report(name, Median(ours), QStringLiteral("the same with QTreeWidget"), Median(peer),
                    0.2, QStringLiteral("ms"));
}

void OpenOffice(const QTemporaryDir &aFolder, int aPersons) {
    const QString address =
        QStringLiteral("sqlite:") + aFolder.filePath(QStringLiteral("%1.db").arg(aPersons));
    Vk_Records::MakeLargeOffice(address, {aPersons, aPersons, 0});
    Vk_Records::OpenDatabase(address);
}

bool IsMillionWanted() {
    return std::any_of(
        std::begin(theNarrowings), std::end(theNarrowings), [](const Narrowing &narrowing) {
            return VkBench::IsWanted(narrowing.Name.arg(QStringLiteral("1,000,000")));
        });
}

}  // namespace

int main(int aCount, char **aArguments) {
    const QApplication application(aCount, aArguments);
    if (application.arguments().size() > 1) VkBench::SetFilter(application.arguments().at(1));
    const QTemporaryDir folder;

    OpenOffice(folder, 100000);
    {
        const auto persons = GetPersonQueries().GetTaxpayers();
        MeasureKeys(*persons, QStringLiteral("100,000"), true);
        MeasureAdding(*persons);
    }
    MeasureExecute();
    MeasureMemory();

    if (IsMillionWanted()) {
        OpenOffice(folder, 1000000);
        const auto persons = GetPersonQueries().GetTaxpayers();
        MeasureKeys(*persons, QStringLiteral("1,000,000"), false);
    }
    return 0;
}
