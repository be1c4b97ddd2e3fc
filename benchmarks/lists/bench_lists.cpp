// The list of all windows beside QTreeWidget: filled and sorted, each until painted.

#include <array>
#include <memory>
#include <random>

#include <QApplication>
#include <QTreeWidget>

#include "Figure.h"
#include "lists/ListView.h"

using Vk_DocQuery::ListRow;
using Vk_DocQuery::ListView;

namespace {

constexpr int theRows = 100000;
constexpr int theNameColumn = 3;
const QSize theSize(900, 600);

struct Company {
    std::array<QString, 5> Cells;
};

template <class Words>
QString Pick(const Words &aWords, std::mt19937 &rDice) {
    return QString::fromUtf8(aWords[rDice() % aWords.size()]);
}

QString Name(std::mt19937 &rDice) {
    static constexpr std::array theForms{"ООО", "АО", "ПАО", "ИП", "МУП", "ЗАО"};
    static constexpr std::array theFirst{"Строй", "Агро",  "Тех",  "Пром", "Энерго", "Транс",
                                         "Лес",   "Нефте", "Водо", "Гео",  "Метал",  "Торг"};
    static constexpr std::array theSecond{"сервис", "комплект", "снаб", "монтаж", "инвест",
                                          "проект", "ресурс",   "союз", "центр",  "импорт"};
    static constexpr std::array thePlaces{"Северный",  "Уральский",   "Южный",     "Волжский",
                                          "Сибирский", "Центральный", "Поморский", "Донской"};
    return QStringLiteral("%1 \"%2%3 %4 %5\"")
        .arg(Pick(theForms, rDice), Pick(theFirst, rDice), Pick(theSecond, rDice),
             Pick(thePlaces, rDice), QString::number(rDice() % 1000));
}

std::vector<Company> Companies() {
    std::mt19937 dice(2024);
    std::vector<Company> companies;
    companies.reserve(theRows);
    for (int i = 0; i < theRows; ++i) {
        companies.push_back({{QString::number(7700000000 + i), QString::number(770000000 + i % 997),
                              Name(dice), Name(dice), QStringLiteral("действует")}});
    }
    return companies;
}

const std::array<const char *, 6> theCaptions{
    "*", "ИНН", "КПП", "Наименование", "Головная организация", "Состояние"};

std::unique_ptr<ListView> MakeOurs() {
    auto list = std::make_unique<ListView>();
    for (const char *caption : theCaptions) list->AddColumn(QString::fromUtf8(caption), 2000);
    list->resize(theSize);
    list->show();
    QApplication::processEvents();
    return list;
}

std::unique_ptr<QTreeWidget> MakePeer() {
    auto tree = std::make_unique<QTreeWidget>();
    QStringList captions;
    for (const char *caption : theCaptions) captions << QString::fromUtf8(caption);
    tree->setHeaderLabels(captions);
    tree->setRootIsDecorated(false);
    tree->setUniformRowHeights(true);
    tree->resize(theSize);
    tree->show();
    QApplication::processEvents();
    return tree;
}

void FillOurs(ListView &aList, const std::vector<Company> &aCompanies) {
    aList.ReserveRows(static_cast<int>(aCompanies.size()));
    for (const Company &company : aCompanies) {
        ListRow *row = aList.AddRow(QString());  // the peer knows no keys
        int cell = 0;
        for (const QString &text : company.Cells) row->SetCell(++cell, text);
    }
}

void FillPeer(QTreeWidget &aTree, const std::vector<Company> &aCompanies) {
    QList<QTreeWidgetItem *> items;
    items.reserve(static_cast<qsizetype>(aCompanies.size()));
    for (const Company &company : aCompanies) {
        auto *item = new QTreeWidgetItem;
        int column = 0;
        for (const QString &text : company.Cells) item->setText(++column, text);
        items << item;
    }
    aTree.addTopLevelItems(items);
}

/// Both sides do their layout, which they put off, before they paint.
void Paint(QWidget &aViewport) {
    aViewport.repaint();
}

void MeasureFilling(const std::vector<Company> &aCompanies) {
    std::unique_ptr<ListView> ours;
    std::unique_ptr<QTreeWidget> peer;
    VkBench::Figure figure;
    figure.Name = QStringLiteral("list: fill 100,000 rows of 5 cells until painted");
    figure.PeerName = QStringLiteral("QTreeWidget addTopLevelItems");
    figure.Bar = 0.2;
    figure.BeforeOurs = [&] { ours = MakeOurs(); };
    figure.BeforePeer = [&] { peer = MakePeer(); };
    figure.Ours = [&] {
        FillOurs(*ours, aCompanies);
        Paint(*ours->viewport());
    };
    figure.Peer = [&] {
        FillPeer(*peer, aCompanies);
        Paint(*peer->viewport());
    };
    VkBench::Measure(figure);
}

void SortOurs(ListView &aList, int aOrder) {
    aList.SetSortKey(theNameColumn);
    aList.SetSortOrder(aOrder);
    aList.SetSorted(true);
    Paint(*aList.viewport());
}

void SortPeer(QTreeWidget &aTree, Qt::SortOrder aOrder) {
    aTree.sortItems(theNameColumn, aOrder);
    Paint(*aTree.viewport());
}

void MeasureSorting(const std::vector<Company> &aCompanies) {
    std::unique_ptr<ListView> ours;
    std::unique_ptr<QTreeWidget> peer;
    const auto makeOurs = [&] {
        ours = MakeOurs();
        FillOurs(*ours, aCompanies);
        Paint(*ours->viewport());
    };
    const auto makePeer = [&] {
        peer = MakePeer();
        FillPeer(*peer, aCompanies);
        Paint(*peer->viewport());
    };
    VkBench::Figure first;
    first.Name = QStringLiteral("list: sort 100,000 rows by name until painted");
    first.PeerName = QStringLiteral("QTreeWidget sortItems");
    first.Bar = 0.55;
    first.BeforeOurs = makeOurs;
    first.BeforePeer = makePeer;
    first.Ours = [&] { SortOurs(*ours, 0); };
    first.Peer = [&] { SortPeer(*peer, Qt::AscendingOrder); };
    VkBench::Measure(first);

    VkBench::Figure reversed = first;
    reversed.Name = QStringLiteral("list: reverse 100,000 sorted rows until painted");
    reversed.Bar = 0.1;
    reversed.BeforeOurs = [&] {
        makeOurs();
        SortOurs(*ours, 0);
    };
    reversed.BeforePeer = [&] {
        makePeer();
        SortPeer(*peer, Qt::AscendingOrder);
    };
    reversed.Ours = [&] { SortOurs(*ours, 1); };
    reversed.Peer = [&] { SortPeer(*peer, Qt::DescendingOrder); };
    VkBench::Measure(reversed);
}

}  // namespace

int main(int aCount, char **aArguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    const std::vector<Company> companies = Companies();
    MeasureFilling(companies);
    MeasureSorting(companies);
    return 0;
}
