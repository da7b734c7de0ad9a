#pragma once

#include <string>
#include <vector>

// What was measured, in milliseconds.
struct CWindowFigure
{
    std::string m_sName;
    std::vector<double> m_Samples; // empty: it couldn't be measured
    double m_fLimit = 0.0;         // what it is to stay below; 0: none

    double Quantile(double fPart) const; // 0.5 is the median
};

// From the start of the program on the sample until its window has been painted, on an X server of its own.
CWindowFigure MeasureStartup(int nRounds);

// A drag over 200 tracks with 10,000 keys in the real timeline: from the pointer's move until the picture
// stands. Needs the application object.
std::vector<CWindowFigure> MeasureTimelinePaint(int nFrames);
