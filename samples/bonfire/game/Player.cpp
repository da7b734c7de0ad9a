// SPDX-License-Identifier: 0BSD
#include "game/Player.h"

#include <algorithm>
#include <cmath>

#include "game/Playback.h"

namespace
{
constexpr double c_fShortest = 0.5; // a round that can be seen, also of an effect without keys
} // namespace

void CPlayer::SetFile(const CPackedFile* pFile)
{
    m_pFile = pFile;
    if (!pFile || pFile->m_Effects.empty())
        return;
    const auto& effects = pFile->m_Effects;
    auto it = std::find_if(effects.begin(), effects.end(),
                           [&](const CEffect& effect) { return effect.m_sName == m_sWanted; });
    if (it == effects.end())
        if (const CEffect* pEffect = pFile->FindEffect(m_sWanted))
            it = effects.begin() + (pEffect - effects.data());
    if (it != effects.end())
    {
        m_nIndex = size_t(it - effects.begin());
        m_fTime = std::fmod(m_fTime, GetLength());
        return;
    }
    const std::string sWanted = m_sWanted;
    Start(0);
    if (!sWanted.empty())
        m_sWanted = sWanted;
}

bool CPlayer::Choose(const std::string& sName)
{
    if (!m_pFile)
    {
        m_sWanted = sName;
        return true;
    }
    const CEffect* pEffect = m_pFile->FindEffect(sName);
    if (!pEffect)
        return false;
    Start(size_t(pEffect - m_pFile->m_Effects.data()));
    return true;
}

void CPlayer::Step(int nEffects)
{
    const auto nCount = int64_t(GetCount());
    if (nCount != 0)
        Start(size_t(((int64_t(m_nIndex) + nEffects) % nCount + nCount) % nCount));
}

void CPlayer::Start(size_t nIndex)
{
    m_nIndex = nIndex;
    m_sWanted = m_pFile->m_Effects[nIndex].m_sName;
    Restart();
}

void CPlayer::Restart()
{
    m_fTime = 0;
    m_bLooped = false;
}

void CPlayer::TogglePause()
{
    m_bPaused = !m_bPaused;
}

void CPlayer::Advance(double fSeconds)
{
    if (m_bPaused || !GetEffect() || !(fSeconds > 0))
        return;
    m_fTime += fSeconds;
    if (m_fTime < GetLength())
        return;
    m_fTime = std::fmod(m_fTime, GetLength());
    m_bLooped = true;
}

const CEffect* CPlayer::GetEffect() const
{
    return m_nIndex < GetCount() ? &m_pFile->m_Effects[m_nIndex] : nullptr;
}

size_t CPlayer::GetCount() const
{
    return m_pFile ? m_pFile->m_Effects.size() : 0;
}

double CPlayer::GetLength() const
{
    const CEffect* pEffect = GetEffect();
    return pEffect ? std::max(c_fShortest, Duration(*pEffect)) : c_fShortest;
}
