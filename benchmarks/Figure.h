#pragma once

#include <functional>

#include <QString>

namespace VkBench {

/// One figure: what we do beside what it is measured against.
struct Figure {
    QString Name;      ///< what is measured
    QString PeerName;  ///< what it is measured beside
    double Bar = 0;    ///< highest ratio of ours to the peer's that is in order
    int Rounds = 9;    ///< how often each side runs; the medians count
    std::function<void()> Ours;
    std::function<void()> Peer;
    std::function<void()> BeforeOurs;  ///< not measured, optional
    std::function<void()> BeforePeer;
};

/// Runs both sides in turn, so that a noisy moment of the machine meets both, and prints one line
/// "figure;ours;peer;peer's value;ratio;bar;ok or over". Times are medians in milliseconds.
void Measure(const Figure &aFigure);

/// Prints the line of a figure that was measured otherwise, such as memory.
void Report(const QString &aName, double aOurs, const QString &aPeerName, double aPeer, double aBar,
            const QString &aUnit);

/// Keeps the figures whose name holds the text; an empty text keeps all. Measure leaves out the
/// others.
void SetFilter(const QString &aText);
bool IsWanted(const QString &aName);

}  // namespace VkBench
