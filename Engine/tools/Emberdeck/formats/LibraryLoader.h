#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/LoadFindings.h"
#include "formats/NodeFields.h"
#include "formats/SharedValidation.h"
#include "model/EffectModule.h"
#include "model/LibraryTree.h"
#include "model/NameIndex.h"
#include "model/SpellMgr.h"
#include "model/TrackFill.h"
#include "qsamgr/qsanode.h"
#include "qsnumber.h"

// Turns the node tree of an effect file into the model. One object for each load; what it notes on the way
// belongs to that load. Memory that runs out gives the failure of the object that was being made.
class CLibraryLoader
{
public:
    // The trees may be null. Messages are added to sError, innermost first, one a line. goOn may be empty.
    CLibraryLoader(CSpellMgr& spellMgr, const CEffectModule& module, CLibraryTree* pEffectTree,
                   CLibraryTree* pPrefabTree, std::string& sError, ILoadObserver* pObserver,
                   const CLoadGoOn& goOn = {});

    // Before LoadRoot: what is wrong with the text that the nodes come from. pszFilename is where it can be read once
    // more; null: nowhere.
    void TellText(const CQSATextOutcome& outcome, const char* pszFilename);
    bool LoadRoot(const CQSANode& root);

    template <class... TArgs>
    void AppendError(const char* pszFormat, const TArgs&... args)
    {
        if constexpr (sizeof...(args) == 0)
            AddMessage(pszFormat);
        else
            AddMessage(QSFormat(pszFormat, args...));
    }

private:
    // The two walks over groups differ in their leaves.
    enum ESide
    {
        eSide_Prefabs,
        eSide_Effects
    };

    // Tracks without a key that one file may make, all effects together: a few bytes of text ask for up to
    // 65,536 of them.
    static constexpr uint64_t c_nMaxSpareTracks = 1u << 20;

    // What is looked up of a type's descriptors with each key, found out once.
    struct CTypeInfo
    {
        struct CProp
        {
            std::string_view m_sName;
            bool m_bFindable; // no property before it has this name
            CPropRange m_Range;
        };
        const CEffectTypeDesc* m_pTypeDesc = nullptr;
        std::vector<CProp> m_Props;
        uint32_t m_nNext = 0; // the property that comes next in a saved file
    };

    // Names without regard to case.
    struct CNameHash
    {
        using is_transparent = void;
        size_t operator()(std::string_view sName) const;
    };
    struct CNameEqual
    {
        using is_transparent = void;
        bool operator()(std::string_view sLeft, std::string_view sRight) const
        {
            return IsSameName(sLeft, sRight);
        }
    };

    void AddMessage(const std::string& sMessage);
    // What to do with a list of a node that isn't among its fields.
    auto TellingSkipped()
    {
        return [this](const CQSANode& skipped)
        {
            if (m_Findings)
                m_Findings.TellSkipped(skipped);
        };
    }
    // The value of a field; tells when its list holds anything else.
    template <size_t N>
    const char* FindValue(const CNodeFields<N>& fields, size_t nField)
    {
        const char* pszValue = fields.FindValue(nField);
        const CQSANode* pList = m_Findings ? fields.FindList(nField) : nullptr;
        if (pList && (!pszValue || pList->GetNumElements() != 2))
            m_Findings.TellCount(*pList);
        return pszValue;
    }
    void TellRoot(const CQSANode& root);
    void TellHeader(const CQSANode& header);
    bool LoadTree(const CQSANode& list, ESide eSide);
    bool LoadTreeNode(const CQSANode& node, HLibraryItem hParent, ESide eSide);
    bool LoadContainer(const CQSANode& node, HLibraryItem hParent, ESide eSide);

    bool LoadPrefab(const CQSANode& node, HLibraryItem hParent);
    bool FillPrefab(const char* pszName, const char* pszType, const CQSANode* pProperties,
                    HLibraryItem hParent);
    bool LoadEffect(const CQSANode& node, HLibraryItem hParent);
    bool FillEffect(CSpell& spell, const char* pszName, const char* pszLength, const CQSANode* pKeyList,
                    HLibraryItem hParent);

    using CTrackFills = std::vector<CTrackFill>; // by the tracks' numbers, up to the last that got a key
    struct CKeyFields;
    std::unique_ptr<CKey> LoadKey(const CQSANode& node);
    std::unique_ptr<CKey> FillKey(const CKeyFields& fields);
    bool SetKeyParent(CKey& key, const CKeyFields& fields);
    bool LoadKeys(CSpell& spell, const CQSANode& keyList);
    void TellIfTypeIsMissing(const CSpell& spell, const CQSANode& key);
    bool PlaceLoadedKey(CTrackList& tracks, CTrackFills& fills, std::unique_ptr<CKey> pKey);
    bool AddTracksFor(CTrackList& tracks, uint32_t nTrack);
    CEffectPropertySet* FindPrefab(std::string_view sName) const;
    void NotePrefabName(CEffectPropertySet* pPrefab);

    bool LoadProperties(const CQSANode* pProperties, CEffectPropertySet& set);
    bool LoadProperty(const CQSANode& node, CTypeInfo& type, std::unique_ptr<CEffectProperty>& pProp);
    CTypeInfo& TypeInfo(const CEffectTypeDesc* pTypeDesc);
    int FindProperty(CTypeInfo& type, const char* pszName) const;
    void LoadValues(const CQSANode& valueList, EEffectPropertyType eType, CEffectProperty& prop);
    bool LoadValue(const CQSANode& node, EEffectPropertyType eType, const CEffectProperty& prop,
                   CPropKey& key);
    void Finish(CEffectPropertySet& set);
    void TellMissing(const CEffectPropertySet& set);

    int32_t ReadInt(const char* pszText, const char* pszField);
    uint32_t ReadID(const char* pszText, const char* pszField);
    float ReadFloat(const char* pszText, const char* pszField);

    CSpellMgr& m_SpellMgr;
    const CEffectModule& m_Module;
    CLibraryTree* m_pEffectTree;
    CLibraryTree* m_pPrefabTree;
    std::string& m_sError;
    CLoadFindings m_Findings;
    const CLoadGoOn m_GoOn;

    // Prefabs by their name without regard to case; the first of a name in the library's order.
    std::unordered_map<std::string, CEffectPropertySet*, CNameHash, CNameEqual> m_PrefabsByName;
    std::unordered_map<const CEffectTypeDesc*, CTypeInfo> m_Types;
    CTypeInfo* m_pLastType = nullptr; // the one asked for last
    CSharedValidation m_Validation;
    uint64_t m_nTracksMade = 0;
    uint64_t m_nKeysLoaded = 0;
};

// Reads the atoms behind a "data" list's name into key, by the kind that the file names. False when there are
// too few, or a list among them; key is unchanged then. Further elements do no harm.
bool LoadPropertyValue(const CQSANode* pData, EEffectPropertyType eType, CPropKey& key);
