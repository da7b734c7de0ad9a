#pragma once

#include <unordered_set>

#include "model/EffectPropertySet.h"

// Whether two lists of values are the same to the last bit, selection aside.
bool IsSameContent(const CEffectProperty& left, const CEffectProperty& right);

// Validates values that many keys share: a prefab's is validated again with each key that inherits it,
// which costs a library's keys times its prefabs' values. Validate depends on nothing but the property, so
// once a run has changed nothing, no further run will; such a property is passed over from then on, with the
// same outcome. (One run isn't always enough: a curve's end that is pinned may change places with another
// key.) Good as long as nobody else changes or destroys a property that was handed in. Memory that runs out
// throws.
class CSharedValidation
{
public:
    // Validate, as often as it is called, with the same outcome.
    void Run(CEffectProperty* pProp);
    bool IsStable(const CEffectProperty* pProp) const { return m_Stable.count(pProp) != 0; }

    // Notes what is in line already, changing nothing.
    void Note(const CEffectPropertySet& set);
    // Run on each value that the set inherits, in slot order.
    void RunInherited(const CEffectPropertySet& set);

private:
    std::unordered_set<const CEffectProperty*> m_Stable;
    std::unordered_set<const CEffectPropertySet*> m_StableSets; // all of whose values in force are stable
};
