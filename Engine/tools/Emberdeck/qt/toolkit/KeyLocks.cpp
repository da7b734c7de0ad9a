#include "qt/toolkit/KeyLocks.h"

#include <QGuiApplication>

// Last, since its macros take common words away.
#if defined(EMBERDECK_X11) && QT_CONFIG(xcb)
#include <X11/XKBlib.h>
#endif

CKeyLocks ReadKeyLocks()
{
    CKeyLocks locks;
#if defined(EMBERDECK_X11) && QT_CONFIG(xcb)
    const auto* pNative = qApp->nativeInterface<QNativeInterface::QX11Application>();
    unsigned int nLights = 0;
    if (!pNative || !pNative->display() ||
        XkbGetIndicatorState(pNative->display(), XkbUseCoreKbd, &nLights) != Success)
        return locks;
    locks.m_bCaps = nLights & 1;
    locks.m_bNum = nLights & 2;
    locks.m_bScroll = nLights & 4;
#endif
    return locks;
}
