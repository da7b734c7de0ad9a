#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "bench/window/Bench.h"

double CWindowFigure::Quantile(double fPart) const
{
    if (m_Samples.empty())
        return 0.0;
    std::vector<double> sorted = m_Samples;
    std::sort(sorted.begin(), sorted.end());
    return sorted[static_cast<size_t>(std::lround(fPart * double(sorted.size() - 1)))];
}

int main(int argc, char** argv)
{
    std::vector<CWindowFigure> figures = {MeasureStartup(15)};
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    for (CWindowFigure& figure : MeasureTimelinePaint(300))
        figures.push_back(std::move(figure));

    std::printf(
        "| The window | median ms | 95 %% ms | at most | frames a second |\n|---|---:|---:|---:|---:|\n");
    bool bOk = true;
    for (const CWindowFigure& figure : figures)
    {
        const double fMedian = figure.Quantile(0.5);
        if (figure.m_Samples.empty())
        {
            std::printf("| %s | not measured | | | |\n", figure.m_sName.c_str());
            bOk = false;
            continue;
        }
        std::printf("| %s | %.1f | %.1f | %.1f | %.0f |\n", figure.m_sName.c_str(), fMedian,
                    figure.Quantile(0.95), figure.m_fLimit, 1000.0 / fMedian);
        bOk = bOk && fMedian < figure.m_fLimit;
    }
    return bOk ? 0 : 1;
}
