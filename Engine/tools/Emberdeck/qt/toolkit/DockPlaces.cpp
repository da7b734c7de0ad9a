#include "qt/toolkit/DockPlaces.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include <QDockWidget>
#include <QMainWindow>
#include <QTimer>

#include "qsnumber.h"
#include "qt/toolkit/DialogPlaces.h"

namespace
{

constexpr const char* c_szSection = "Window";
constexpr Qt::DockWidgetArea c_Areas[] = {Qt::LeftDockWidgetArea, Qt::RightDockWidgetArea,
                                          Qt::TopDockWidgetArea, Qt::BottomDockWidgetArea};
constexpr int c_nMostPixels = 32767;

std::string KeyOf(const QDockWidget& dock)
{
    return "Dock" + dock.objectName().toStdString();
}

bool IsBeside(int nArea)
{
    return nArea < 2;
}

} // namespace

void PlaceDock(const IProfile& profile, QMainWindow& window, QDockWidget& dock)
{
    int nArea = 0, nShown = 0, nFloating = 0, x = 0, y = 0, nWidth = 0, nHeight = 0;
    const std::string sValue = profile.GetString(c_szSection, KeyOf(dock));
    if (std::sscanf(sValue.c_str(), "%1d %1d %1d %6d %6d %6d %6d", &nArea, &nShown, &nFloating, &x, &y,
                    &nWidth, &nHeight) != 7 ||
        nArea < 0 || nArea >= int(std::size(c_Areas)) || nShown < 0 || nShown > 1 || nFloating < 0 ||
        nFloating > 1 || nWidth <= 0 || nWidth > c_nMostPixels || nHeight <= 0 || nHeight > c_nMostPixels)
        return;
    window.addDockWidget(c_Areas[nArea], &dock);
    if (nFloating)
    {
        dock.setFloating(true);
        dock.setGeometry(DialogPlaces::FitOnScreen(dock, QRect(x, y, nWidth, nHeight)));
    }
    dock.setVisible(nShown == 1);
    if (nFloating)
        return;
    const auto resize = [&window, &dock, nSize = IsBeside(nArea) ? nWidth : nHeight,
                         eWay = IsBeside(nArea) ? Qt::Horizontal : Qt::Vertical]
    { window.resizeDocks({&dock}, {nSize}, eWay); };
    // The window gives its docks their room when it is laid out with them for the first time.
    if (nShown)
        QTimer::singleShot(0, &dock, resize);
    else
        QObject::connect(
            &dock, &QDockWidget::visibilityChanged, &dock,
            [&dock, resize] { QTimer::singleShot(0, &dock, resize); }, Qt::SingleShotConnection);
}

bool SaveDockPlace(IProfile& profile, const QMainWindow& window, const QDockWidget& dock)
{
    const auto* pArea = std::find(std::begin(c_Areas), std::end(c_Areas),
                                  window.dockWidgetArea(const_cast<QDockWidget*>(&dock)));
    const int nArea = int(pArea - std::begin(c_Areas)) % int(std::size(c_Areas));
    const QRect rc = dock.geometry();
    return profile.WriteString(c_szSection, KeyOf(dock),
                               QSFormat("%d %d %d %d %d %d %d", nArea, int(!dock.isHidden()),
                                        int(dock.isFloating()), rc.x(), rc.y(), std::max(rc.width(), 1),
                                        std::max(rc.height(), 1)));
}
