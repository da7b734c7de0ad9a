// SPDX-License-Identifier: 0BSD
#include "game/Legend.h"

#include <charconv>
#include <cmath>

namespace
{
// One decimal and a point, whatever the locale.
std::string Seconds(double f)
{
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof(buffer), std::floor(f * 10) / 10, std::chars_format::fixed, 1);
    return result.ec == std::errc() ? std::string(buffer, result.ptr) : std::string("many");
}

bool Holds(const std::string& sText, const char* pszPart)
{
    return sText.find(pszPart) != std::string::npos;
}
} // namespace

CLegend MakeLegend(const CPlayer& player)
{
    CLegend legend;
    legend.m_sName = std::string(player.GetEffect()->m_sName) + ", " + std::to_string(player.GetIndex() + 1) +
                     " of " + std::to_string(player.GetCount());
    legend.m_sTime = Seconds(player.GetTime()) + " of " + Seconds(player.GetLength()) + " s";
    if (player.IsPaused())
        legend.m_sTime += ", paused";
    return legend;
}

std::string SoundText(const CHeard& heard)
{
    const size_t nFolder = heard.m_sFile.find_last_of("\\/");
    std::string s(heard.m_sFile.substr(nFolder == std::string_view::npos ? 0 : nFolder + 1));
    s += ", " + std::to_string(int(heard.m_fVolume * 100 + 0.5)) + " %";
    if (std::abs(heard.m_fPitch - 1) > 0.005)
        s += ", pitch " + std::to_string(int(heard.m_fPitch * 100 + 0.5)) + " %";
    return heard.m_bLoop ? s + ", loop" : s;
}

CTrouble ExplainTrouble(const std::string& sError, const std::string& sFile, bool bFileThere)
{
    CTrouble trouble;
    trouble.m_sReason = sError;
    if (!bFileThere)
    {
        trouble.m_sHead = "Nothing is packed yet";
        trouble.m_sReason = sFile + " is not there.";
        trouble.m_sAdvice =
            "Pack the library in the editor. This window goes on as soon as the file is there.";
    }
    else if (Holds(sError, "is no packed effect file"))
    {
        trouble.m_sHead = "This is no packed file";
        trouble.m_sAdvice = "The game plays what Pack makes of a library, a file that ends in .Fx00p.";
    }
    else if (Holds(sError, "effect types"))
    {
        trouble.m_sHead = "The effect types don't match";
        trouble.m_sAdvice =
            "Pack the library again in a project with the game's own plug-in, or name the plug-in "
            "that it was packed with: --plugin PATH.";
    }
    else if (Holds(sError, "holds no effects"))
    {
        trouble.m_sHead = "The packed file is empty";
        trouble.m_sAdvice = "Add an effect to the library and pack it again.";
    }
    else
    {
        trouble.m_sHead = "The packed file can't be played";
        trouble.m_sAdvice = "Pack the library again. This window goes on as soon as the file has changed.";
    }
    return trouble;
}
