// SPDX-License-Identifier: 0BSD
#include "game/GameWindow.h"

#include <cstdlib>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
bool Connects(const std::string& sPath, bool bAbstract)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const size_t nFirst = bAbstract ? 1 : 0; // a name in no folder begins with a NUL
    if (sPath.size() + nFirst >= sizeof(address.sun_path))
        return false;
    std::memcpy(address.sun_path + nFirst, sPath.data(), sPath.size());
    const int nSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (nSocket < 0)
        return false;
    const auto nLength =
        socklen_t(offsetof(sockaddr_un, sun_path) + nFirst + sPath.size() + (bAbstract ? 0 : 1));
    const bool bConnected = connect(nSocket, reinterpret_cast<const sockaddr*>(&address), nLength) == 0;
    close(nSocket);
    return bConnected;
}

std::string Environment(const char* pszName)
{
    const char* psz = std::getenv(pszName);
    return psz ? psz : "";
}
} // namespace

bool HasDisplay()
{
    if (!Environment("QT_QPA_PLATFORM").empty()) // someone knows what they want
        return true;
    if (const std::string sWayland = Environment("WAYLAND_DISPLAY"); !sWayland.empty())
        if (Connects(sWayland[0] == '/' ? sWayland : Environment("XDG_RUNTIME_DIR") + "/" + sWayland, false))
            return true;
    const std::string sX = Environment("DISPLAY");
    if (sX.empty() || sX[0] != ':')
        return !sX.empty(); // a display of another machine can't be tried so easily
    const std::string sSocket = "/tmp/.X11-unix/X" + sX.substr(1, sX.find('.') - 1);
    return Connects(sSocket, true) || Connects(sSocket, false);
}
