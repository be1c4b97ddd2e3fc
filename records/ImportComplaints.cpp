#include "ImportComplaints.h"

#include <algorithm>
#include <tuple>

#include <QStringList>

#include <Vk_DocQuery/Failure.h>

namespace Vk_Records {

namespace {

constexpr std::size_t theMostKept = 100000;
constexpr std::size_t theMostTold = 1000;

QString PlaceOf(const QString &aFileName, int aLine) {
    if (aLine == 0) return aFileName;
    return QStringLiteral("%1, строка %2").arg(aFileName).arg(aLine);
}

}  // namespace

void ImportComplaints::Add(std::size_t aFile, const QString &aFileName, int aLine,
                           const QString &aReason) {
    ++theCount;
    if (theKept.size() == theMostKept) return;
    theKept.push_back({aFile, aLine, PlaceOf(aFileName, aLine) + QStringLiteral(": ") + aReason});
}

void ImportComplaints::RaiseIfAny() {
    if (theCount == 0) return;
    std::stable_sort(theKept.begin(), theKept.end(),
                     [](const Complaint &left, const Complaint &right) {
                         return std::tie(left.File, left.Line) < std::tie(right.File, right.Line);
                     });
    QStringList lines{QStringLiteral("Ничего не загружено, ошибок в файлах: %1.").arg(theCount)};
    const std::size_t told = std::min(theKept.size(), theMostTold);
    for (std::size_t i = 0; i < told; ++i) lines << theKept[i].Text;
    const auto untold = theCount - static_cast<qsizetype>(told);
    if (untold > 0) lines << QStringLiteral("... и еще %1.").arg(untold);
    throw Vk_DocQuery::Failure(Vk_DocQuery::InvalidArgument, QStringLiteral("Vk_Records"),
                               lines.join(QStringLiteral("\n")));
}

}  // namespace Vk_Records
