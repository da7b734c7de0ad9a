// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>

#include "game/PackedFile.h"

// Which effect plays, and where in it: what the keys of the window and its clock act on.
class CPlayer
{
public:
    // Plays this file from now on, which must stay until another one is set; null for none. The effect goes on
    // where it is if the file has one of its name; else the first one starts, and the name is kept in mind, so
    // that it is back with a file that has it.
    void SetFile(const CPackedFile* pFile);

    // From its start. False, nothing changed, when the file has none of that name. Without a file the name is
    // kept for the one to come.
    bool Choose(const std::string& sName);
    // So many effects on in the file, round its ends.
    void Step(int nEffects);
    void Restart();
    void TogglePause();
    // So many seconds have passed. An effect that is over begins again.
    void Advance(double fSeconds);

    const CEffect* GetEffect() const;
    size_t GetIndex() const { return m_nIndex; }
    size_t GetCount() const;
    double GetTime() const { return m_fTime; }   // seconds in this round
    bool HasLooped() const { return m_bLooped; } // what the round before left may still be seen
    bool IsPaused() const { return m_bPaused; }
    double GetLength() const; // seconds of a round, never 0
    const std::string& GetWanted() const { return m_sWanted; }

private:
    void Start(size_t nIndex);

    const CPackedFile* m_pFile = nullptr;
    size_t m_nIndex = 0;
    std::string m_sWanted; // the effect that was chosen, whether the file has it or not
    double m_fTime = 0;
    bool m_bLooped = false;
    bool m_bPaused = false;
};
