#pragma once

#include <unordered_map>
#include <unordered_set>

#include "changes/Apply.h"
#include "changes/Compare.h"

// Keeps what edits change: the old state of what is touched, and at the end of an edit what has come of it. Costs the
// edit no more than what it touches, however large the library.
class CChangeRecorder : public IEditRecorder
{
public:
    explicit CChangeRecorder(const CApplyTarget& target);
    ~CChangeRecorder() override;
    CChangeRecorder(const CChangeRecorder&) = delete;
    CChangeRecorder& operator=(const CChangeRecorder&) = delete;

    void OnTouching(const CTouch& touch) override;
    void Finish(CEdit& edit) override;
    bool PutBack(const CEdit& edit) override;

private:
    // What is touched of an effect that was there before, where it stands in memory. What has gone since is found by
    // the address alone.
    struct CTouchedSpell
    {
        const CSpell* m_pSpell = nullptr;
        std::string m_sName;
        std::vector<std::pair<const CKey*, uint64_t>> m_Keys; // with their serials
    };
    using CSide = std::unordered_map<uint32_t, const CItemImage*>; // by handle

    void Keep(const CTouch& touch);
    void KeepSpell(const CSpell& spell, const CTouch& touch);
    void KeepKey(CKnownSpell& known, CTouchedSpell& touched, const CKey& key);
    void KeepTrack(CKnownSpell& known, const CTrack& track);
    void KeepTree(ETreeSide eSide);
    void KeepGroup(ETreeSide eSide, HLibraryItem hItem);
    bool IsNewItem(ETreeSide eSide, HLibraryItem hItem) const;

    bool FindChange(CLibraryChange& change);
    CKnownLibrary LookAgain();
    void LookAtSpells(CKnownLibrary& after);
    void LookAtSpell(const CKnownSpell& before, CTouchedSpell& touched, CKnownSpell& after);
    void LookAtPrefabs(CKnownLibrary& after);
    void LookAtTree(ETreeSide eSide, CKnownLibrary& after) const;
    CChangeNames NamesWith(const CKnownLibrary& after) const;
    void Forget();

    CApplyTarget m_Target;
    CImageMaker m_Maker;
    CKnownLibrary m_Before;
    std::unordered_map<uint64_t, CTouchedSpell> m_Spells;
    std::unordered_map<uint64_t, const CEffectPropertySet*> m_Prefabs;
    std::vector<uint64_t>
        m_OldSpells; // ascending, once the list is touched: what isn't here is new, and needs no
    std::vector<uint64_t> m_OldPrefabs; // state of before
    CSide m_OldItems[c_nNumSides];      // children of the groups that are kept, as they were
    bool m_bLibrary = false;
    bool m_bFailed = false;
};
