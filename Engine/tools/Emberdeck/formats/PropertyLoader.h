#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/LoadState.h"
#include "formats/SharedValidation.h"
#include "model/EffectPropertySet.h"

// Reads the properties of prefabs and keys, and brings them in line with their types.
class CPropertyLoader : private CLoadPart
{
public:
    explicit CPropertyLoader(CLoadState& load) : CLoadPart(load) {}

    // Adds those of the list to a set that has a type; null: none. False: a message tells why.
    bool LoadProperties(const CQSANode* pProperties, CEffectPropertySet& set);
    // Once all are there: what is missing takes its default, and all is validated.
    void Finish(CEffectPropertySet& set);
    // A prefab that is finished: what it gives to others needs no validation of its own again.
    void NotePrefab(const CEffectPropertySet& prefab) { m_Validation.Note(prefab); }

private:
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

    bool LoadProperty(const CQSANode& node, CTypeInfo& type, std::unique_ptr<CEffectProperty>& pProp);
    CTypeInfo& TypeInfo(const CEffectTypeDesc* pTypeDesc);
    int FindProperty(CTypeInfo& type, const char* pszName) const;
    void LoadValues(const CQSANode& valueList, EEffectPropertyType eType, CEffectProperty& prop);
    bool LoadValue(const CQSANode& node, EEffectPropertyType eType, const CEffectProperty& prop,
                   CPropKey& key);
    void TellMissing(const CEffectPropertySet& set);

    std::unordered_map<const CEffectTypeDesc*, CTypeInfo> m_Types;
    CTypeInfo* m_pLastType = nullptr; // the one asked for last
    CSharedValidation m_Validation;
};

// Reads the atoms behind a "data" list's name into key, by the kind that the file names. False when there are
// too few, or a list among them; key is unchanged then. Further elements do no harm.
bool LoadPropertyValue(const CQSANode* pData, EEffectPropertyType eType, CPropKey& key);
