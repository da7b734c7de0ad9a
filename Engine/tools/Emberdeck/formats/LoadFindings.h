#pragma once

#include <cstdint>
#include <string>

#include "formats/EmberdeckQSA.h"
#include "formats/TextDamage.h"
#include "model/Key.h"
#include "qsamgr/qsanode.h"

// Tells an observer of what the loader repairs or leaves out, and where. Every call is for a caller that has
// looked first whether anybody listens: without an observer nothing here may cost time.
class CLoadFindings
{
public:
    explicit CLoadFindings(ILoadObserver* pObserver)
        : m_pObserver(pObserver),
          m_bAll(pObserver && pObserver->WantsAll())
    {
    }
    explicit operator bool() const { return m_bAll; }

    // Where the next findings belong.
    void EnterObject(const char* pszName); // an effect or prefab; null: the file
    void EnterKey(const CKey* pKey);       // null: the effect itself

    void Tell(const std::string& sText, EFinding eKind = EFinding::eRepair);

    // What shows that the text isn't whole. From there on every repair is told, whatever the observer wants.
    void TellDamage(const CTextDamage& damage);
    // Whoever listens hears of this, since it fails the load.
    void TellMissingType(const char* pszType, const char* pszObject, const std::string& sKey);

    // What reading the text passes over: lists without a beginning, and texts that are cut to their size.
    void TellText(const char* pszFilename);
    void TellSkipped(const CQSANode& node); // something that stands where nothing reads it
    void TellWholeNumber(const char* pszText, const char* pszField);   // when it isn't read as it stands
    void TellDecimalNumber(const char* pszText, const char* pszField); // likewise
    void TellValue(const CQSANode& data, uint32_t eType, const std::string& sProp); // likewise, by kind
    // Validates a property, and tells what that changed.
    void ValidateAndTell(CEffectProperty* pProp);
    // Ids and links of an effect that was loaded.
    void TellLinks(const CSpell& spell);

private:
    ILoadObserver* m_pObserver;
    bool m_bAll;
    std::string m_sObject;
    std::string m_sKey;
};

// How a key is called in a finding: its display name and id.
std::string KeyTitle(const CKey& key);
