#pragma once

#include <cstdint>
#include <memory>

#include "model/EffectPropertySet.h"

// Start and end of a key; what lies between has a length only when the end comes behind the start.
struct CKeySpan
{
    int32_t m_nStart = 0;
    int32_t m_nEnd = 0;
    bool HasLength() const { return m_nStart < m_nEnd; }
    friend bool operator==(const CKeySpan&, const CKeySpan&) = default;
};

// A property set with a place on the timeline. Times in whole milliseconds from the start of the phase.
class CKey : public CEffectPropertySet
{
public:
    explicit CKey(const CEffectTypeDesc* pTypeDesc) : CEffectPropertySet(pTypeDesc) {}
    CKey(const CKey&) = default; // every field, selection and drag fields included
    CKey& operator=(const CKey&) = default;

    std::unique_ptr<CKey> Clone() const; // null when out of memory
    void Link(uint32_t nID);             // 0 is an id like any other
    void Unlink();
    // Moves the start to the end of the key before, or to 0 without one (null), and cuts the end at the start
    // of the key behind, if there is one. The end may come to lie before the start.
    void FitBetween(const CKey* pPrev, const CKey* pNext);
    static CKeySpan Fit(CKeySpan span, const CKey* pPrev,
                        const CKey* pNext); // the same for a key of these times

    uint32_t m_nKeyID = 0; // unique within its effect
    uint32_t m_nTrack = 0; // number of the track that holds it
    int32_t m_nStartTime = 0;
    int32_t m_nEndTime = 0;
    bool m_bSelected = false; // on the timeline; in no file
    int32_t m_nDragStart = 0; // scratch of a gesture: pointer time minus start at the press
    int32_t m_nDragEnd = 0;   // scratch of a gesture: end minus start at the press
    bool m_bMotionLinked = false;
    uint32_t m_nMotionLinkID = 0; // key id in the same effect; may point nowhere
};
