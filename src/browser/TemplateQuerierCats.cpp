// The lower left pane: who may hand in a form, and in which reporting streams.

#include <array>

#include "browser/RowNumber.h"
#include "browser/TemplateQuerierForm.h"
#include "browser/TextPane.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "TemplateQuerierForm";
constexpr qint32 theHighestID = 9;  // of categories and of streams
constexpr qint32 theEntrepreneurs = 6;

enum BranchTypes : qint32 { HeadOnly = 0, BranchOnly = 1, HeadAndBranch = 2, Entrepreneurs = 3 };

struct Category {
    qint32 ID;
    qint32 Bit;
    QStringView HeadText;
    QStringView BranchText;
};

// Category 7 is not known here: its rows count for nothing.
constexpr Category theCategories[] = {
    {1, 1, u"Организации ОСНО", u"ОП организаций ОСНО"},
    {2, 2, u"Кредитные организации", u"ОП кредитной организации"},
    {3, 4, u"Страховые организации", u"ОП страховой организации"},
    {4, 8, u"Бюджетные организации", u"ОП бюджетной организации"},
    {5, 16, u"Представительства иностранных организаций",
     u"ОП представительства иностранной организации"},
    {theEntrepreneurs, 32, u"Индивидуальные предприниматели", {}},
    {8, 64, u"Организации УСНО", u"ОП организации УСНО"},
    {9, 128, u"Негосударственные пенсионные фонды", u"ОП негосударственного пенсионного фонда"},
};

struct Stream {
    qint32 Bit;
    QStringView Text;
};

// In the order of printing; the bit is 2 to the power of the stream's number less one.
constexpr Stream theStreams[] = {
    {1, u"Отчетность в ИФНС"},
    {2, u"РСВ, НДФЛ и отчетность в ПФР"},
    {8, u"Страховые взносы в ФСС"},
    {4, u"Отчетность в Росстат"},
    {16, u"Отчетность в Росалкогольрегулирование"},
    {32, u"Отчетность в Росприроднадзор"},
    {64, u"Комплект отчетности \"Госрегистрация\""},
    {128, u"Отчетность охотничьего хозяйства"},
    {256, u"Отчетность организаций финансового рынка"},
};

const QString theLineEnd = QStringLiteral("\r\n");
const QString theIndent = QStringLiteral("    ");

/// Sets of stream bits by category and branch type.
using Matrix = std::array<std::array<qint32, Entrepreneurs + 1>, theHighestID + 1>;

bool IsKnownID(qint32 aID) {
    return aID >= 1 && aID <= theHighestID;
}

void AddToMatrix(const Recordset &aRow, Matrix &rMatrix) {
    const qint32 category = RowNumber(aRow, QStringLiteral("TPCategory_ID"));
    const qint32 stream = RowNumber(aRow, QStringLiteral("AccStreamType"));
    const bool head = RowNumber(aRow, QStringLiteral("AllowedForMainOrg")) != 0;
    const bool branch = RowNumber(aRow, QStringLiteral("AllowedForBranch")) != 0;
    if (!IsKnownID(category) || !IsKnownID(stream)) return;
    BranchTypes type = Entrepreneurs;
    if (category != theEntrepreneurs) {  // entrepreneurs count whatever their permissions say
        if (!head && !branch) return;
        type = head && branch ? HeadAndBranch : branch ? BranchOnly : HeadOnly;
    }
    rMatrix[static_cast<std::size_t>(category)][static_cast<std::size_t>(type)] |= 1
                                                                                   << (stream - 1);
}

Matrix ReadMatrix(Recordset *aCategories) {
    if (!aCategories) {
        throw Failure(ObjectNotSet, QStringLiteral("GetTemplTypeAvailability"),
                      QStringLiteral("Объект не задан: GetTemplTypeAvailability."));
    }
    Matrix matrix{};
    IgnoringFailures([&] { aCategories->MoveFirst(); });  // fails where there are no rows
    for (; !aCategories->EndOfData(); aCategories->MoveNext()) AddToMatrix(*aCategories, matrix);
    return matrix;
}

/// The cluster with this branch type and these streams; made if it is not there yet.
IntCategoryCluster &ClusterOf(CategoryClusters &rClusters, qint32 aBranchType, qint32 aAccBits) {
    const QString key = QStringLiteral("_%1_%2").arg(aBranchType).arg(aAccBits);
    if (const auto *found = rClusters.Find(key)) return **found;
    const auto made =
        std::make_shared<IntCategoryCluster>(IntCategoryCluster{0, aAccBits, aBranchType});
    rClusters.Add(made, key);
    return *made;
}

/// A block while it grows.
struct Block {
    QString Text;
    QString Indent;
    void Line(const QString &aText) { Text += Indent + aText + theLineEnd; }
};

/// The heading and, below it, the categories by the text that the column has for them.
void AddCategories(Block &rBlock, const QString &aHeading, qint32 aCatBits,
                   QStringView Category::*aText) {
    rBlock.Line(aHeading);
    rBlock.Indent = theIndent;
    for (const Category &category : theCategories)
        if (category.ID != theEntrepreneurs && (aCatBits & category.Bit) != 0)
            rBlock.Line((category.*aText).toString());
}

}  // namespace

void TemplateQuerierForm::BuildCategoryMatrix(Recordset *aCategories,
                                              CategoryClusters &rClusters) try {
    const Matrix matrix = ReadMatrix(aCategories);
    rClusters = CategoryClusters();
    for (const Category &category : theCategories) {
        const auto &streamsByType = matrix[static_cast<std::size_t>(category.ID)];
        for (qint32 type = HeadOnly; type <= Entrepreneurs; ++type) {
            const qint32 streams = streamsByType[static_cast<std::size_t>(type)];
            if (streams != 0) ClusterOf(rClusters, type, streams).CatBits |= category.Bit;
        }
    }
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

QString CategoryBlock(const IntCategoryCluster &aCluster) {
    Block block;
    switch (aCluster.BranchType) {
        case HeadOnly:
            AddCategories(block, QStringLiteral("Только головные организации:"), aCluster.CatBits,
                          &Category::HeadText);
            break;
        case BranchOnly:
            AddCategories(block, QStringLiteral("Только обособленные подразделения:"),
                          aCluster.CatBits, &Category::BranchText);
            break;
        case HeadAndBranch:
            AddCategories(block,
                          QStringLiteral("Головные организации и обособленные подразделения:"),
                          aCluster.CatBits, &Category::HeadText);
            break;
        case Entrepreneurs:
            if ((aCluster.CatBits & 32) != 0)
                block.Line(QStringLiteral("Индивидуальные предприниматели"));
            break;
        default:
            block.Line(QStringLiteral("? (%1)").arg(aCluster.BranchType));
    }
    block.Indent += theIndent;
    for (const Stream &stream : theStreams)
        if ((aCluster.AccBits & stream.Bit) != 0) block.Line(stream.Text.toString());
    return block.Text + theLineEnd;
}

void TemplateQuerierForm::DrawCats(Recordset *aCategories) try {
    CategoryClusters clusters;
    BuildCategoryMatrix(aCategories, clusters);
    theCatInfo->SetText(QString());
    for (const auto &cluster : clusters) theCatInfo->ReplaceSelection(CategoryBlock(*cluster));
    theCatInfo->SetSelection(0, 0);  // the pane opens at its top
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
