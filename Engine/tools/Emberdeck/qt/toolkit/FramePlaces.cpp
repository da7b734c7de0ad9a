#include "qt/toolkit/FramePlaces.h"

#include <algorithm>
#include <cstdio>

#include <QMainWindow>
#include <QToolBar>

#include "qsnumber.h"
#include "qt/toolkit/DialogPlaces.h"

namespace
{

constexpr const char* c_szSection = "Window";
constexpr const char* c_szPlace = "Place";
constexpr const char* c_szMaximised = "Maximised";
constexpr const char* c_szDockWidth = "DockWidth";
constexpr const char* c_szDockFolded = "DockFolded";
constexpr const char* c_szStatusBar = "StatusBar";
constexpr int c_nMostPixels = 32767; // of a width that a screen may have

enum class ESide
{
    eTop,
    eBottom,
    eLeft,
    eRight,
    eSides
};

constexpr Qt::ToolBarArea c_Areas[] = {Qt::TopToolBarArea, Qt::BottomToolBarArea, Qt::LeftToolBarArea,
                                       Qt::RightToolBarArea};

// Where a bar stands. Row and place order the bars of a side; what a pixel of them is doesn't matter.
struct CBarPlace
{
    int m_nSide = 0;
    int m_nRow = 0;
    int m_nPlace = 0;
    bool m_bShown = true;
    bool m_bFloating = false;
    QPoint m_pt; // on the screen, when it floats
};

std::string KeyOf(const QToolBar& bar)
{
    return "Bar" + bar.objectName().toStdString();
}

// "0" or "1"; anything else leaves the default.
void ReadFlag(const IProfile& profile, const char* pszKey, bool& bValue)
{
    const std::string sValue = profile.GetString(c_szSection, pszKey);
    if (sValue == "0" || sValue == "1")
        bValue = sValue == "1";
}

CBarPlace PlaceOf(const QMainWindow& window, QToolBar& bar)
{
    CBarPlace place;
    const Qt::ToolBarArea eArea = window.toolBarArea(&bar);
    place.m_nSide = int(std::find(std::begin(c_Areas), std::end(c_Areas), eArea) - std::begin(c_Areas)) %
                    int(ESide::eSides);
    place.m_bShown = !bar.isHidden();
    place.m_bFloating = bar.isFloating();
    place.m_pt = place.m_bFloating ? bar.pos() : QPoint();
    const bool bAcross = place.m_nSide <= int(ESide::eBottom);
    const QPoint pt = place.m_bFloating ? QPoint() : bar.pos();
    place.m_nRow = bAcross ? pt.y() : pt.x();
    place.m_nPlace = bAcross ? pt.x() : pt.y();
    return place;
}

bool ReadBar(const IProfile& profile, const QToolBar& bar, CBarPlace& place)
{
    int nSide = 0, nRow = 0, nPlace = 0, nShown = 0, nFloating = 0, x = 0, y = 0;
    const std::string sValue = profile.GetString(c_szSection, KeyOf(bar));
    if (std::sscanf(sValue.c_str(), "%1d %6d %6d %1d %1d %6d %6d", &nSide, &nRow, &nPlace, &nShown,
                    &nFloating, &x, &y) != 7 ||
        nSide < 0 || nSide >= int(ESide::eSides) || nShown < 0 || nShown > 1 || nFloating < 0 ||
        nFloating > 1)
        return false;
    place = {nSide, nRow, nPlace, nShown == 1, nFloating == 1, QPoint(x, y)};
    return true;
}

// As the toolkit does it when a hand pulls a bar off.
void Float(QToolBar& bar, const QPoint& pt)
{
    bar.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    bar.setGeometry(DialogPlaces::FitOnScreen(bar, QRect(pt, bar.sizeHint())));
}

} // namespace

CFramePlaces LoadFramePlaces(const IProfile& profile)
{
    CFramePlaces places;
    DialogPlaces::ReadPlace(profile.GetString(c_szSection, c_szPlace), places.m_rc);
    ReadFlag(profile, c_szMaximised, places.m_bMaximised);
    ReadFlag(profile, c_szDockFolded, places.m_bDockFolded);
    ReadFlag(profile, c_szStatusBar, places.m_bStatusBar);
    int nWidth = 0;
    if (std::sscanf(profile.GetString(c_szSection, c_szDockWidth).c_str(), "%6d", &nWidth) == 1 &&
        nWidth > 0 && nWidth <= c_nMostPixels)
        places.m_nDockWidth = nWidth;
    return places;
}

bool SaveFramePlaces(IProfile& profile, const CFramePlaces& places, const QMainWindow& window,
                     const std::vector<QToolBar*>& bars)
{
    const auto flag = [](bool b) { return std::string(b ? "1" : "0"); };
    std::vector<IProfile::CEntry> entries = {
        {c_szSection, c_szPlace, DialogPlaces::WritePlace(places.m_rc)},
        {c_szSection, c_szMaximised, flag(places.m_bMaximised)},
        {c_szSection, c_szDockWidth, std::to_string(places.m_nDockWidth)},
        {c_szSection, c_szDockFolded, flag(places.m_bDockFolded)},
        {c_szSection, c_szStatusBar, flag(places.m_bStatusBar)},
    };
    for (QToolBar* pBar : bars)
    {
        const CBarPlace place = PlaceOf(window, *pBar);
        entries.push_back(
            {c_szSection, KeyOf(*pBar),
             QSFormat("%d %d %d %d %d %d %d", place.m_nSide, place.m_nRow, place.m_nPlace,
                      int(place.m_bShown), int(place.m_bFloating), place.m_pt.x(), place.m_pt.y())});
    }
    return profile.WriteStrings(entries);
}

void PlaceBars(const IProfile& profile, QMainWindow& window, const std::vector<QToolBar*>& bars)
{
    std::vector<std::pair<QToolBar*, CBarPlace>> placed;
    for (QToolBar* pBar : bars)
    {
        CBarPlace place;
        if (!placed.empty() && profile.GetString(c_szSection, KeyOf(*pBar)).empty())
        {
            const CBarPlace& before = placed.back().second;
            if (!before.m_bFloating)
                place = {before.m_nSide, before.m_nRow, before.m_nPlace + 1};
        }
        else if (!ReadBar(profile, *pBar, place))
            return;
        placed.emplace_back(pBar, place);
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const auto& left, const auto& right)
                     {
                         const CBarPlace &a = left.second, &b = right.second;
                         return std::tie(a.m_nSide, a.m_nRow, a.m_nPlace) <
                                std::tie(b.m_nSide, b.m_nRow, b.m_nPlace);
                     });
    const CBarPlace* pLast = nullptr;
    for (const auto& [pBar, place] : placed)
    {
        window.removeToolBar(pBar);
        if (pLast && pLast->m_nSide == place.m_nSide && pLast->m_nRow != place.m_nRow && !place.m_bFloating)
            window.addToolBarBreak(c_Areas[place.m_nSide]);
        window.addToolBar(c_Areas[place.m_nSide], pBar);
        if (place.m_bFloating)
            Float(*pBar, place.m_pt);
        pBar->setVisible(place.m_bShown);
        pLast = &place;
    }
}
