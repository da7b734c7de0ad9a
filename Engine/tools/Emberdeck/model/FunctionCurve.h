#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "model/EffectProperty.h"

// The scalar of one axis of a value: Color 0 red, 1 green, 2 blue, above alpha (0 to 1); Vector 0 to
// 2; Int and Float the one value. Other kinds and axes read as 0 and are never written.
double GetAxisValue(const CEffectProperty& prop, const CPropKey& key, int nAxis);
// Writes the scalar into key, then runs ClampToRange on all keys of prop; key may be one of them, or one that
// isn't added yet, which isn't clamped then. A value that isn't finite counts as 0.
void SetAxisValue(float fValue, CPropKey& key, int nAxis, CEffectProperty& prop);

// The curve's scalar at a normalised time, stepped or linear as the descriptor says. A step is taken just
// after its key's time, the last one at it. 0 for a property without keys.
double EvaluateAxis(const CEffectProperty& prop, int nAxis, double fTime);
// The whole value there, on every axis: what a key added at that time needs for the curve to stay as it is. Numbers are
// rounded as the kind holds them; a text is that of the key that rules it. All zero for a property without keys.
CPropData EvaluateValue(const CEffectProperty& prop, double fTime);
// Red, green and blue of a colour curve at a time, as a colour to paint with: 0x00RRGGBB. 0 for other kinds.
// A sweep over times that never fall hands one number through, 0 at first, and walks over the keys once.
uint32_t EvaluateColor(const CEffectProperty& prop, float fTime, uint32_t* pnWalk = nullptr);

// The distinct curves of a library while it is packed, in the order of adding. The properties outlive it.
// A property may be validated while it is in the table, as long as FindProperty is the next to see it.
class CFunctionCurveData
{
public:
    struct CEntry
    {
        const CEffectProperty* m_pProp; // the first one seen with this curve; not owned
        uint32_t m_nOffset;             // in the packed table, once written
    };

    // Index of the first entry with an equal curve, whatever property it came from; -1. Kind, times and
    // values count, descriptors don't. Times and floats are equal by ==, so a curve with a value that is no
    // number is only equal to itself.
    int FindProperty(const CEffectProperty* pProp) const;
    int Add(const CEffectProperty* pProp); // the index; -1 for null and when out of memory
    std::vector<CEntry>& Entries() { return m_Entries; }

private:
    void Rehash(const CEffectProperty* pProp, uint64_t nHash) const;
    int FindNext(const CEffectProperty& prop, uint64_t nHash) const;

    std::vector<CEntry> m_Entries;
    struct CAdded
    {
        uint64_t m_nHash;
        bool m_bFirst; // no entry with this hash was there before
    };
    std::vector<CAdded> m_Added;   // with each entry, as it was then
    mutable uint32_t m_nNext = 0;  // entry that may be asked for next
    mutable bool m_bMoved = false; // an entry has left its bucket
    // Entries by a hash of kind and keys, each list in the order of adding.
    mutable std::unordered_map<uint64_t, std::vector<uint32_t>> m_Buckets;
    struct CHome
    {
        uint32_t m_nEntry;
        uint64_t m_nHash;
    };
    mutable std::unordered_map<const CEffectProperty*, CHome> m_ByProperty;
};
