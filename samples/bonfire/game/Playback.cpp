// SPDX-License-Identifier: 0BSD
#include "game/Playback.h"

#include <algorithm>
#include <tuple>

namespace
{
constexpr uint32_t c_nMaxNesting = 4;
constexpr size_t c_nMaxVisible = 4096;

struct CScene
{
    const CPackedFile& m_File;
    std::vector<CVisibleKey> m_Visible;
    size_t m_nStepsLeft = 16 * c_nMaxVisible; // nested keys and names looked at, seen or not

    void Add(const CEffect& effect, double fSeconds, uint32_t nNesting)
    {
        for (const CKey& key : effect.m_Keys)
        {
            const double fStart = key.m_fStart, fEnd = key.m_fEnd;
            if (m_nStepsLeft == 0 || m_Visible.size() == c_nMaxVisible)
                return;
            if (nNesting != 0)
                --m_nStepsLeft;
            if (fSeconds < fStart || fSeconds >= fEnd)
                continue;
            const double fTime = (fSeconds - fStart) / (fEnd - fStart);
            m_Visible.push_back({&effect, &key, FindLinkedKey(effect, key), fTime, nNesting});
            if (nNesting < c_nMaxNesting)
                AddReferences(key, fSeconds - fStart, fTime, nNesting);
        }
    }

    void AddReferences(const CKey& key, double fSeconds, double fTime, uint32_t nNesting)
    {
        for (const CProperty& prop : key.m_Properties)
            if (prop.m_pDesc->m_eType == ePropType_FireglassRef)
                for (std::string_view sName : SplitReference(Evaluate(prop, fTime).m_sText))
                {
                    if (m_nStepsLeft == 0)
                        return;
                    --m_nStepsLeft;
                    if (const CEffect* pNested = m_File.FindEffect(sName))
                        Add(*pNested, fSeconds, nNesting + 1);
                }
    }
};
} // namespace

size_t NumberCount(uint32_t eType)
{
    switch (eType)
    {
    case ePropType_Int:
    case ePropType_Enum:
    case ePropType_Float:
        return 1;
    case ePropType_Vector:
        return 3;
    case ePropType_Color:
        return 4;
    default:
        return 0;
    }
}

CSample Evaluate(const CProperty& prop, double fTime)
{
    const CEmberdeckValue value = EmberdeckEvaluate(&prop, fTime);
    CSample sample;
    sample.m_eType = value.m_eType;
    if (value.m_pszText)
        sample.m_sText = value.m_pszText;
    std::copy_n(value.m_Numbers, sample.m_Numbers.size(), sample.m_Numbers.begin());
    return sample;
}

const CKey* FindLinkedKey(const CEffect& effect, const CKey& key)
{
    if (key.m_nLink == key.m_nID)
        return nullptr;
    for (const CKey& other : effect.m_Keys)
        if (other.m_nID == key.m_nLink)
            return &other;
    return nullptr;
}

std::vector<CEvent> ListEvents(const CEffect& effect)
{
    enum
    {
        eEnd,
        eStart,
        eEndOfNoLength
    };
    std::vector<std::pair<int, CEvent>> events;
    for (const CKey& key : effect.m_Keys)
    {
        const bool bLength = key.m_fEnd > key.m_fStart;
        events.push_back({eStart, {key.m_fStart, true, &key}});
        events.push_back(
            {bLength ? eEnd : eEndOfNoLength, {bLength ? key.m_fEnd : key.m_fStart, false, &key}});
    }
    std::stable_sort(events.begin(), events.end(),
                     [](const auto& a, const auto& b)
                     { return std::tie(a.second.m_fTime, a.first) < std::tie(b.second.m_fTime, b.first); });
    std::vector<CEvent> sorted;
    for (const auto& [nOrder, event] : events)
        sorted.push_back(event);
    return sorted;
}

std::vector<std::string_view> SplitReference(std::string_view sReference)
{
    constexpr std::string_view c_sBlanks = " \t\r\n\v\f";
    std::vector<std::string_view> pieces;
    while (!sReference.empty())
    {
        std::string_view sPiece = sReference.substr(0, sReference.find(';'));
        sReference.remove_prefix(std::min(sPiece.size() + 1, sReference.size()));
        const size_t nFirst = sPiece.find_first_not_of(c_sBlanks);
        if (nFirst != std::string_view::npos)
            pieces.push_back(sPiece.substr(nFirst, sPiece.find_last_not_of(c_sBlanks) + 1 - nFirst));
    }
    return pieces;
}

std::vector<CVisibleKey> ListVisible(const CPackedFile& file, const CEffect& effect, double fSeconds)
{
    CScene scene = {file, {}};
    scene.Add(effect, fSeconds, 0);
    return std::move(scene.m_Visible);
}

double Duration(const CEffect& effect)
{
    double fEnd = effect.m_nPhaseLength * 0.001;
    for (const CKey& key : effect.m_Keys)
        fEnd = std::max(fEnd, double(key.m_fEnd));
    return fEnd;
}
