#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/NodeFields.h"
#include "formats/PropertyLoader.h"
#include "model/LibraryTree.h"
#include "model/NameIndex.h"
#include "model/SpellMgr.h"
#include "model/TrackFill.h"

// Loads what stands in the leaves of one tree. The walk over the groups is the same for both.
class ILeafLoader
{
public:
    virtual ~ILeafLoader() = default;
    virtual const CFieldName& ListName() const = 0; // of a leaf's list
    virtual CLibraryTree* Tree() const = 0;         // null: nobody asked for one
    // False: a message tells why.
    virtual bool LoadLeaf(const CQSANode& node, HLibraryItem hParent) = 0;
};

class CPrefabLoader final : public ILeafLoader, private CLoadPart
{
public:
    // The tree may be null.
    CPrefabLoader(CLoadState& load, CPropertyLoader& properties, CSpellMgr& spellMgr, CPrefabTree* pTree);

    const CFieldName& ListName() const override;
    CLibraryTree* Tree() const override { return m_pTree; }
    bool LoadLeaf(const CQSANode& node, HLibraryItem hParent) override;

    // The first of the name in the library's order, without regard to case; null.
    CEffectPropertySet* FindPrefab(std::string_view sName) const;

private:
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

    bool LoadPrefab(const CQSANode& node, HLibraryItem hParent);
    bool FillPrefab(const char* pszName, const char* pszType, const CQSANode* pProperties,
                    HLibraryItem hParent);
    void NoteName(CEffectPropertySet* pPrefab);

    CPropertyLoader& m_Properties;
    CSpellMgr& m_SpellMgr;
    CPrefabTree* m_pTree;
    // Prefabs by their name without regard to case; the first of a name in the library's order.
    std::unordered_map<std::string, CEffectPropertySet*, CNameHash, CNameEqual> m_ByName;
};

// Effects with their tracks and keys. The prefabs are loaded before, since keys refer to them by name.
class CEffectLoader final : public ILeafLoader, private CLoadPart
{
public:
    CEffectLoader(CLoadState& load, CPropertyLoader& properties, const CPrefabLoader& prefabs,
                  CSpellMgr& spellMgr, CEffectTree* pTree)
        : CLoadPart(load),
          m_Properties(properties),
          m_Prefabs(prefabs),
          m_SpellMgr(spellMgr),
          m_pTree(pTree)
    {
    }

    const CFieldName& ListName() const override;
    CLibraryTree* Tree() const override { return m_pTree; }
    bool LoadLeaf(const CQSANode& node, HLibraryItem hParent) override;

private:
    // Tracks without a key that one file may make, all effects together: a few bytes of text ask for up to
    // 65,536 of them.
    static constexpr uint64_t c_nMaxSpareTracks = 1u << 20;

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

    CPropertyLoader& m_Properties;
    const CPrefabLoader& m_Prefabs;
    CSpellMgr& m_SpellMgr;
    CEffectTree* m_pTree;
    uint64_t m_nTracksMade = 0;
    uint64_t m_nKeysLoaded = 0;
};
