#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/EffectModule.h"
#include "model/Key.h"

// What Copy holds: at most one key and one curve, owned, deep copies. Survives New and Open; the
// plug-in that it points into does not, so FreezeForUnload turns the key into names and values, and
// Thaw binds it to the next plug-in's tables as the loader binds a file's. The curve needs no plug-in.
class CEditClipboard
{
public:
    CEditClipboard();
    ~CEditClipboard();
    CEditClipboard(const CEditClipboard&) = delete;
    CEditClipboard& operator=(const CEditClipboard&) = delete;

    // The key (with key id 0 and track 0). nEffectSerial tells which effect it came from: a paste elsewhere
    // drops the motion link. Null, or no memory, empties the slot.
    void CopyKey(const CKey* pKey, uint64_t nEffectSerial);
    CKey* GetKey() const { return m_pKey.get(); } // null while it is frozen
    uint64_t GetKeyEffectSerial() const { return m_nEffectSerial; }

    void CopyCurve(const CEffectProperty* pProp);           // null, or no memory, only clears
    bool CanPasteCurve(const CEffectProperty* pProp) const; // there is one, of the property's kind
    // Replaces the keys by the copied ones, selection flags included. Nothing when CanPasteCurve is false;
    // not brought in line with a descriptor of another form.
    void PasteCurve(CEffectProperty* pProp) const;
    bool HasCurve() const { return m_bHasCurve; }

    // Before the prefabs are destroyed: a key that stands on one takes its values.
    void FlattenKey();
    // Before the plug-in goes, with the prefabs still there or FlattenKey done.
    void FreezeForUnload();
    // After a plug-in was loaded. Each value goes to the property of its name, as the kind that it had; then
    // defaults and validation as for a file. A key whose type is gone is dropped; without a plug-in it stays
    // frozen.
    void Thaw(const CEffectModule& module);

    std::unique_ptr<CKey> m_pKey;

private:
    struct CFrozenKey;
    std::unique_ptr<CFrozenKey> m_pFrozenKey;
    uint64_t m_nEffectSerial = 0;
    bool m_bHasCurve = false;
    uint32_t m_eCurveType = 0; // kind and keys alone: the descriptor may be gone
    std::vector<CPropKey> m_CurveKeys;
};
