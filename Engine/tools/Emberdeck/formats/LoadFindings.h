#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "formats/EmberdeckQSA.h"
#include "model/Key.h"
#include "qsamgr/qsanode.h"
#include "qsamgr/qsatextloader.h"

// Tells an observer of what the loader repairs or leaves out, and where. Callers look first whether anybody listens.
// A build listens to every load: what is in order may cost next to nothing.
class CLoadFindings
{
public:
    explicit CLoadFindings(ILoadObserver* pObserver)
        : m_pObserver(pObserver),
          m_bAll(pObserver && pObserver->WantsAll())
    {
    }
    explicit operator bool() const { return m_bAll; }

    // Where the next findings belong. Both stay with the caller until the next call; no text is made of them before
    // there is something to tell.
    void EnterObject(const char* pszName) { m_pszObject = pszName; } // an effect or prefab; null: the file
    void EnterKey(const CKey* pKey) { m_pKey = pKey; }               // null: the effect itself

    void Tell(const std::string& sText, EFinding eKind = EFinding::eRepair);

    // What shows that the text isn't whole. From there on every repair is told, whatever the observer wants.
    void TellDamage(const CQSATextOutcome& outcome);
    // Whoever listens hears of this, since it fails the load.
    void TellMissingType(const char* pszType, const char* pszObject, const std::string& sKey);

    // What reading the text passes over: lists without a beginning, and texts that are cut, to their size, which
    // the file is read once more for, or at a NUL.
    void TellText(const CQSATextOutcome& outcome, const char* pszFilename);
    void TellLongTexts(const char* pszFilename);
    void TellSkipped(const CQSANode& node); // something that stands where nothing reads it
    // When a list has another number of atoms behind its name than are read.
    void TellCount(const CQSANode& list, uint32_t nAtoms = 1);
    // When a number isn't read as it stands, or isn't saved as it is read.
    void TellWholeNumber(const char* pszText, const char* pszField);
    void TellID(const char* pszText, const char* pszField); // 32 bits, signed or not
    void TellDecimalNumber(const char* pszText, const char* pszField);
    // All of these for the value of a kind, which takes nAtoms.
    void TellValue(const CQSANode& data, uint32_t eType, uint32_t nAtoms, const CEffectPropertyDesc& desc);
    // Validates a property, which may be null, and tells what that changed.
    void ValidateAndTell(CEffectProperty* pProp, const CPropRange& range);
    // Ids and links of an effect that was loaded.
    void TellLinks(const CSpell& spell);

private:
    void TellWholeNumber(const char* pszText, const char* pszField, int64_t nMax);
    void NoteIds(const CSpell& spell);
    void TellEqualIds(const CSpell& spell);

    ILoadObserver* m_pObserver;
    bool m_bAll;
    const char* m_pszObject = nullptr;
    const CKey* m_pKey = nullptr;
    std::vector<uint32_t> m_Ids; // of the effect at hand, sorted
};

// How a key is called in a finding: its display name and id.
std::string KeyTitle(const CKey& key);
