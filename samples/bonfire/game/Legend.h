// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>

#include "game/Player.h"
#include "game/Stage.h"

// The words in the game's window.

constexpr char c_szKeysHelp[] = "Left, Right: effect    Space: pause    R: from the start    Esc: close";

struct CLegend
{
    std::string m_sName; // "Campfire, 1 of 8"
    std::string m_sTime; // "2.4 of 10.0 s, paused"
};
CLegend MakeLegend(const CPlayer& player); // which must have an effect

// "crackle.wav, 80 %, loop": the file without its folder.
std::string SoundText(const CHeard& heard);

// What the window says instead of playing: what happened, the reason in the words of the reader, what to do.
struct CTrouble
{
    std::string m_sHead, m_sReason, m_sAdvice;
};
CTrouble ExplainTrouble(const std::string& sError, const std::string& sFile, bool bFileThere);
