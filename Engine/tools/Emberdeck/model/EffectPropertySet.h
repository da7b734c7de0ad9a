#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "effecttypes.h"
#include "model/EffectProperty.h"
#include "model/Serial.h"

// The values that one effect type asks for: one slot for each descriptor, owned. An empty slot
// means the parent's value. The base of CKey, and by itself a prefab. A parent outlives its
// children: DetachFromParent runs on all of them before a prefab goes. The destructor reads
// neither the parent nor the type, which may be gone by then.
class CEffectPropertySet
{
public:
    // All slots empty, no name, no parent. A null type is reported; the set has no slots then. May throw
    // std::bad_alloc, as the copies do: whoever must answer "out of memory" with null uses MakeOrNull.
    explicit CEffectPropertySet(const CEffectTypeDesc* pTypeDesc);
    CEffectPropertySet(const CEffectPropertySet& other);
    // Deep, but the parent is shared. Assigning a set to one that stands on it is reported, and changes
    // nothing. All properties of the target are new objects afterwards.
    CEffectPropertySet& operator=(const CEffectPropertySet& other);
    ~CEffectPropertySet() = default;

    uint32_t GetNumProps() const; // of the type; 0, reported, without one
    CEffectProperty*
    GetPropertyDirect(uint32_t nIndex) const; // own slot; null when empty or (reported) out of range
    CEffectProperty* GetProperty(uint32_t nIndex) const; // value in force along the chain, or null
    // Null clears the parent. False, nothing changed: another type, itself, or a set that stands on this one.
    bool SetParent(CEffectPropertySet* pParent);
    CEffectPropertySet* GetParent() const { return m_pParent; }
    // Takes the property, in place of what its slot held, when its descriptor is one of this type's; else
    // false and pProp stays with the caller.
    bool AddProperty(std::unique_ptr<CEffectProperty>& pProp);
    // Gives the slot a deep copy of the value that it inherits; a filled slot stays. False: no such slot,
    // or no memory.
    bool MakeLocal(uint32_t nIndex);
    // Empties a slot, so that it inherits again. False, nothing changed: no such slot, or no parent.
    bool ClearLocal(uint32_t nIndex);
    bool Flatten(); // MakeLocal on every slot, then no parent; always true
    // Takes pParent out of the chain above: the set that stands on it, this one or one further up, is
    // flattened, so all values stay. False, nothing changed: it isn't in the chain, or null.
    bool DetachFromParent(CEffectPropertySet* pParent);
    void ClearProperties();             // all slots empty; they stay as many
    std::string GetDisplayName() const; // "name - type", only the type without a name

    CSerial m_Serial;
    std::string m_sName;                     // may be empty
    CEffectPropertySet* m_pParent = nullptr; // not owned
    const CEffectTypeDesc* m_pTypeDesc;      // not owned, in the plug-in
    std::vector<std::unique_ptr<CEffectProperty>> m_Props;
};

// The value in force; null for a null set.
CEffectProperty* GetProperty(const CEffectPropertySet* pSet, uint32_t nIndex);
void EnsureComplete(CEffectPropertySet* pSet); // fills the empty slots of the chain's root with defaults
void ValidateSet(CEffectPropertySet* pSet);    // Validate on each value in force, a parent's included
