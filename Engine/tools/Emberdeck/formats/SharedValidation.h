#pragma once

#include <unordered_set>

#include "model/EffectPropertySet.h"

// Whether two lists of values are the same to the last bit, selection aside.
bool IsSameContent(const CEffectProperty& left, const CEffectProperty& right);

// Validates values that many keys share: a prefab's would be validated again with each key that inherits it,
// which costs a library's keys times its prefabs' values. Validate depends on nothing but the property, and a
// second run changes nothing, so one is enough. Good as long as nobody else changes or destroys a property that
// was handed in. Memory that runs out throws.
class CSharedValidation
{
public:
    // Validate, as often as it is called, with the same outcome.
    void Run(CEffectProperty* pProp);

    // All that is in force in this set has been validated.
    void Note(const CEffectPropertySet& set);
    // Run on each value that the set inherits, in slot order.
    void RunInherited(const CEffectPropertySet& set);

private:
    std::unordered_set<const CEffectProperty*> m_Done;
    std::unordered_set<const CEffectPropertySet*> m_DoneSets;
};
