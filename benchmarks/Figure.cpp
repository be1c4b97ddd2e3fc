#include "Figure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace VkBench {

namespace {

QString theFilter;

double Milliseconds(const std::function<void()> &aBefore, const std::function<void()> &aWork) {
    if (aBefore) aBefore();
    const auto start = std::chrono::steady_clock::now();
    aWork();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

double Median(std::vector<double> aValues) {
    std::sort(aValues.begin(), aValues.end());
    return aValues[aValues.size() / 2];
}

}  // namespace

void Measure(const Figure &aFigure) {
    if (!IsWanted(aFigure.Name)) return;
    std::vector<double> ours;
    std::vector<double> peer;
    Milliseconds(aFigure.BeforeOurs, aFigure.Ours);  // warm up both sides
    Milliseconds(aFigure.BeforePeer, aFigure.Peer);
    for (int round = 0; round < aFigure.Rounds; ++round) {
        ours.push_back(Milliseconds(aFigure.BeforeOurs, aFigure.Ours));
        peer.push_back(Milliseconds(aFigure.BeforePeer, aFigure.Peer));
    }
    Report(aFigure.Name, Median(ours), aFigure.PeerName, Median(peer), aFigure.Bar,
           QStringLiteral("ms"));
}

void Report(const QString &aName, double aOurs, const QString &aPeerName, double aPeer, double aBar,
            const QString &aUnit) {
    if (!IsWanted(aName)) return;
    const double ratio = aPeer > 0 ? aOurs / aPeer : 0;
    std::printf("%s;%.3f %s;%s;%.3f %s;%.2f;%.2f;%s\n", qUtf8Printable(aName), aOurs,
                qUtf8Printable(aUnit), qUtf8Printable(aPeerName), aPeer, qUtf8Printable(aUnit),
                ratio, aBar, ratio <= aBar ? "ok" : "over");
    std::fflush(stdout);
}

void SetFilter(const QString &aText) {
    theFilter = aText;
}

bool IsWanted(const QString &aName) {
    return theFilter.isEmpty() || aName.contains(theFilter);
}

}  // namespace VkBench
