#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>

#include "desktop/Desktop.h"
#include "qt/toolkit/MenuStyle.h"
#include "support/TempDir.h"

namespace
{

// Nothing of the person who runs the tests, their settings or their screen.
void Isolate(const CTempDir& dir)
{
    for (const char* pszName : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        setenv(pszName, dir.path(pszName).c_str(), 1);
    for (const char* pszName :
         {"WAYLAND_DISPLAY", "QT_SCALE_FACTOR", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME",
          "XDG_CURRENT_DESKTOP", "DBUS_SESSION_BUS_ADDRESS", "XAUTHORITY", "QT_FONT_DPI"})
        unsetenv(pszName);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) // the build asks for the names, where no server may be
        return RUN_ALL_TESTS();
    const CTempDir dir;
    Isolate(dir);
    int nResult = 1;
    if (Desktop::Start())
    {
        QApplication app(argc, argv);
        QApplication::setEffectEnabled(Qt::UI_AnimateMenu, false);
        QApplication::setStyle(new MenuStyle);
        nResult = RUN_ALL_TESTS();
    }
    Desktop::Stop();
    return nResult;
}
