// A table of types that only its counts can be trusted of: texts without a NUL, any kind, any number, wild
// defaults. Whatever its library holds is validated, saved, loaded, packed and read.

#include "FuzzLibrary.h"
#include "model/EffectProperty.h"

namespace
{
struct CWildTable
{
    explicit CWildTable(CFuzzInput& input)
    {
        m_Types.resize(input.Below(6));
        m_Props.resize(m_Types.size());
        for (size_t i = 0; i < m_Types.size(); ++i)
        {
            m_Props[i].resize(input.Below(8));
            for (CEffectPropertyDesc& desc : m_Props[i])
                Fill(input, desc);
            Text(input, m_Types[i].m_szName);
            m_Types[i].m_nTypeID = Number(input, static_cast<uint32_t>(i));
            m_Types[i].m_nNumProps = static_cast<uint32_t>(m_Props[i].size());
            m_Types[i].m_pProps = m_Props[i].empty() ? nullptr : m_Props[i].data();
        }
        m_Table = {input.U32(), static_cast<uint32_t>(m_Types.size()),
                   m_Types.empty() ? nullptr : m_Types.data()};
    }

    // Counts that no array stands behind. False: the table stays as it was.
    bool Spoil(CFuzzInput& input)
    {
        const uint32_t nHow = input.Below(8);
        if (nHow == 1)
            m_Table.m_nNumTypes = std::max(input.U32(), CEffectModule::c_nMaxTypes + 1);
        else if (nHow == 2 && !m_Types.empty())
            m_Table.m_pTypes = nullptr;
        else if (nHow == 3 && !m_Types.empty())
            m_Types.back().m_nNumProps = std::max(input.U32(), CEffectModule::c_nMaxProps + 1);
        else if (nHow == 4 && !m_Types.empty() && m_Types.back().m_nNumProps != 0)
            m_Types.back().m_pProps = nullptr;
        else
            return false;
        return true;
    }

    CEffectTypeTable m_Table = {};
    std::vector<CEffectTypeDesc> m_Types;
    std::vector<std::vector<CEffectPropertyDesc>> m_Props;

private:
    static uint32_t Number(CFuzzInput& input, uint32_t nSane)
    {
        return input.Below(16) == 0 ? input.U32() : nSane;
    }
    template <class T, size_t N>
    static void Text(CFuzzInput& input, T (&szText)[N])
    {
        const uint8_t nLen = input.Byte();
        if (nLen == 255) // to its last byte
            std::memset(szText, 'A' + input.Below(26), N);
        else
        {
            const std::string_view s = input.Take(std::min<size_t>(nLen % 40, N));
            std::memcpy(szText, s.data(), s.size());
        }
    }
    static void Fill(CFuzzInput& input, CEffectPropertyDesc& desc)
    {
        Text(input, desc.m_szName);
        Text(input, desc.m_szData);
        desc.m_eType = Number(input, input.Below(12));
        desc.m_bFunctionCurve = input.Below(2) ? input.Byte() : 0;
        desc.m_bInterpolate = input.Byte();
        Text(input, desc.m_Default);
    }
};

// A prefab and two keys of each type, one of them standing on the prefab; further values from the input.
bool Build(CFuzzLibrary& library, CFuzzInput& input)
{
    const HLibraryItem hEffects = library.m_EffectTree.InsertGroup("[Effects]", {});
    const HLibraryItem hPrefabs = library.m_PrefabTree.InsertGroup("[Prefabs]", {});
    CSpell* pSpell = library.m_SpellMgr.AddSpell();
    pSpell->SetName("Wild");
    library.m_EffectTree.InsertLeaf("Wild", hEffects, pSpell);
    CTrack* pTrack = pSpell->m_Tracks.AddTrack();
    for (uint32_t i = 0; i < library.m_Module.GetNumTypes(); ++i)
    {
        CEffectPropertySet* pPrefab = library.m_SpellMgr.AddPrefab(library.m_Module.GetType(i));
        pPrefab->m_sName = "Prefab" + std::to_string(i);
        EnsureComplete(pPrefab);
        library.m_PrefabTree.InsertLeaf(pPrefab->m_sName, hPrefabs, pPrefab);
        for (const bool bOnPrefab : {false, true})
        {
            auto pKey = std::make_unique<CKey>(library.m_Module.GetType(i));
            pKey->m_nKeyID = pSpell->m_Tracks.TakeKeyID();
            pKey->m_nEndTime = 1000;
            if (bOnPrefab)
                pKey->SetParent(pPrefab);
            else
                EnsureComplete(pKey.get());
            for (uint32_t n = 0; n < pKey->GetNumProps(); ++n)
            {
                CEffectProperty* pProp = pKey->GetPropertyDirect(n);
                if (!pProp || input.Below(2) == 0)
                    continue;
                CPropKey value;
                value.m_fTime = static_cast<float>(input.Byte()) / 255.0f;
                value.m_Data.SetText(input.Take(input.Below(24)));
                pProp->AddKey(value);
            }
            pTrack->AppendKey(std::move(pKey));
        }
    }
    return true;
}

void Exercise(CFuzzLibrary& library)
{
    library.m_SpellMgr.ForEachKey(
        [](CSpell&, CKey& key)
        {
            ValidateSet(&key);
            key.GetDisplayName();
            for (uint32_t n = 0; n < key.GetNumProps(); ++n)
            {
                const CEffectPropertyDesc& desc = key.m_pTypeDesc->m_pProps[n];
                Require(DescName(desc).size() < EMBERDECK_NAME_SIZE &&
                            DescHelp(desc).size() < EMBERDECK_TEXT_SIZE,
                        "a text without an end");
                SplitEnumList(DescData(desc).c_str());
                GetPropTypeName(desc.m_eType);
            }
        });
    std::string sText, sBytes, sError;
    if (library.Save(sText))
    {
        // Names that no file can hold don't load again.
        CFuzzLibrary again(library.m_Module);
        if (again.Load(sText))
            again.Save(sBytes);
    }
    for (const char* pszTarget : {"PC", "Xenon"})
    {
        if (!library.Pack(sBytes, pszTarget))
            continue;
        CPackedLibrary packed;
        ReadPackedLibrary(sBytes, library.m_Module, packed, sError);
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts(FUZZ_GO_ON);
    CFuzzInput input(pData, nSize);
    CWildTable wild(input);
    const bool bSpoiled = wild.Spoil(input);
    CEffectModule module;
    const bool bAdopted = module.Adopt(&wild.m_Table);
    Require(bAdopted == !bSpoiled, "a table is taken, or refused, against its counts");
    if (!bAdopted)
        return 0;
    for (const CEffectTypeDesc& type : wild.m_Types)
    {
        const CEffectTypeDesc* pFound = module.FindType(TypeName(type).c_str());
        Require(pFound && TypeName(*pFound).size() == TypeName(type).size(),
                "a type isn't found by its name");
        for (const CEffectPropertyDesc& desc : wild.m_Props[size_t(pFound - wild.m_Types.data())])
            Require(module.FindPropertyIndex(pFound, DescName(desc)) >= 0,
                    "a property isn't found by its name");
    }
    {
        CFuzzLibrary library(module);
        Build(library, input);
        Exercise(library);
        CFuzzLibrary loaded(module);
        if (loaded.Load(input.Rest()))
            Exercise(loaded);
    }
    return 0;
}
