#include "bench/Generator.h"

#include <cstring>
#include <vector>

namespace
{
// A small generator of its own, so that the data doesn't depend on the standard library's.
class CRandom
{
public:
    explicit CRandom(uint64_t nSeed) : m_nState(nSeed * 0x9E3779B97F4A7C15u + 1) {}
    uint32_t Below(uint32_t nLimit)
    {
        m_nState ^= m_nState << 13;
        m_nState ^= m_nState >> 7;
        m_nState ^= m_nState << 17;
        return static_cast<uint32_t>((m_nState >> 33) % nLimit);
    }
    float Fraction() { return static_cast<float>(Below(1000000)) / 1000000.0f; }

private:
    uint64_t m_nState;
};

CEffectPropertyDesc Desc(const char* pszName, EEffectPropertyType eType, const char* pszData,
                         bool bCurve = false, bool bInterpolate = false)
{
    CEffectPropertyDesc desc = {};
    std::strncpy(desc.m_szName, pszName, sizeof(desc.m_szName) - 1);
    std::strncpy(desc.m_szData, pszData, sizeof(desc.m_szData) - 1);
    desc.m_eType = eType;
    desc.m_bFunctionCurve = bCurve;
    desc.m_bInterpolate = bInterpolate;
    return desc;
}

struct CTable
{
    std::vector<CEffectPropertyDesc> m_Props[4];
    CEffectTypeDesc m_Types[4] = {};
    CEffectTypeTable m_Table = {};

    CTable()
    {
        m_Props[0] = {Desc("Texture", ePropType_Filename, "Textures (*.dds)|*.dds||"),
                      Desc("Blend", ePropType_Enum, "Additive, Alpha, Multiply"),
                      Desc("Colour", ePropType_Color, "", true, true),
                      Desc("Size", ePropType_Float, "0;100", true, true),
                      Desc("Offset", ePropType_Vector, ""),
                      Desc("Frames", ePropType_Int, "1;64"),
                      Desc("Layer", ePropType_String, "")};
        m_Props[1] = {
            Desc("Texture", ePropType_Filename, ""),     Desc("Rate", ePropType_Float, "0;", true, true),
            Desc("Direction", ePropType_Vector, "-1;1"), Desc("Spread", ePropType_Float, "0;180"),
            Desc("Gravity", ePropType_Float, ""),        Desc("Colour", ePropType_Color, "", true, true),
            Desc("Lifetime", ePropType_Float, "0;60"),   Desc("Burst", ePropType_Int, "", true, false)};
        m_Props[2] = {Desc("Colour", ePropType_Color, "", true, true),
                      Desc("Radius", ePropType_Float, "0;", true, true),
                      Desc("Position", ePropType_Vector, ""), Desc("Shadows", ePropType_Enum, "No,Yes")};
        m_Props[3] = {Desc("Sound", ePropType_Filename, ""), Desc("Volume", ePropType_Float, "0;1"),
                      Desc("Animation", ePropType_Animation, ""), Desc("Then", ePropType_FireglassRef, "")};
        const char* const aNames[] = {"Sprite", "Emitter", "Light", "Sound"};
        for (uint32_t i = 0; i < 4; ++i)
        {
            std::strncpy(m_Types[i].m_szName, aNames[i], sizeof(m_Types[i].m_szName) - 1);
            m_Types[i].m_nTypeID = i;
            m_Types[i].m_nNumProps = static_cast<uint32_t>(m_Props[i].size());
            m_Types[i].m_pProps = m_Props[i].data();
        }
        m_Table.m_nVersion = 7;
        m_Table.m_nNumTypes = 4;
        m_Table.m_pTypes = m_Types;
    }
};

const char* const c_aFiles[] = {"fx\\fire\\flame_01.dds",   "fx\\fire\\flame_02.dds",
                                "fx\\smoke\\puff_soft.dds", "fx\\sparks\\spark.dds",
                                "fx\\sound\\crackle.wav",   "fx\\glow.Texture00a"};
const char* const c_aWords[] = {"Smoke", "Muzzle", "Flash",  "Sparks", "Plume",
                                "Glow",  "Trail",  "Impact", "Debris", "Rain"};

std::string Word(CRandom& random)
{
    return std::string(c_aWords[random.Below(10)]) + " " + c_aWords[random.Below(10)] + "_" +
           std::to_string(random.Below(100));
}

void FillValue(CPropData& data, const CEffectPropertyDesc& desc, CRandom& random)
{
    switch (desc.m_eType)
    {
    case ePropType_Int:
        data.SetInt(static_cast<int32_t>(random.Below(64)) + 1);
        break;
    case ePropType_Float:
        data.SetFloat(random.Fraction() * 10.0f);
        break;
    case ePropType_Color:
        data.SetColor(
            MakePropColor(random.Below(256), random.Below(256), random.Below(256), random.Below(256)));
        break;
    case ePropType_Vector:
        data.SetVector(CVector3{random.Fraction(), random.Fraction(), random.Fraction()});
        break;
    case ePropType_Filename:
        data.SetText(c_aFiles[random.Below(6)]);
        break;
    case ePropType_Enum:
        data.SetText(DescName(desc) == "Blend" ? (random.Below(2) ? "Additive" : "Alpha") : "No");
        break;
    default:
        data.SetText(c_aWords[random.Below(10)]);
        break;
    }
}

void FillProperty(CEffectPropertySet& set, uint32_t nIndex, CRandom& random)
{
    const CEffectPropertyDesc& desc = set.m_pTypeDesc->m_pProps[nIndex];
    auto pProp = std::make_unique<CEffectProperty>(&desc);
    const uint32_t nValues = desc.m_bFunctionCurve ? 2 + random.Below(4) : 1;
    for (uint32_t i = 0; i < nValues; ++i)
    {
        CPropKey key;
        key.m_fTime = nValues == 1 ? 0.0f : static_cast<float>(i) / static_cast<float>(nValues - 1);
        FillValue(key.m_Data, desc, random);
        pProp->AddKey(key);
    }
    set.AddProperty(pProp);
}

// About what a set costs in the file, to know when to stop.
size_t TextSize(const CEffectPropertySet& set)
{
    size_t nBytes = 320;
    for (const auto& pProp : set.m_Props)
        if (pProp)
            nBytes += 175 + pProp->GetNumKeys() * 120;
    return nBytes;
}

void AddPrefabs(CGeneratedLibrary& library, CRandom& random, uint32_t nCount)
{
    HLibraryItem hGroup = library.m_PrefabTree.GetRootItem();
    for (uint32_t i = 0; i < nCount; ++i)
    {
        if (i % 16 == 0)
            hGroup = library.m_PrefabTree.InsertGroup(Word(random), library.m_PrefabTree.GetRootItem());
        const CEffectTypeDesc* pType = library.m_Module.GetType(i % 4);
        CEffectPropertySet* pPrefab = library.m_SpellMgr.AddPrefab(pType);
        pPrefab->m_sName = Word(random) + "_p" + std::to_string(i);
        for (uint32_t j = 0; j < pType->m_nNumProps; ++j)
            FillProperty(*pPrefab, j, random);
        library.m_PrefabTree.InsertLeaf(pPrefab->m_sName, hGroup, pPrefab);
    }
}

size_t AddKeyTo(CGeneratedLibrary& library, CSpell& spell, uint32_t nTrack, int32_t& nTime, CRandom& random)
{
    const auto& prefabs = library.m_SpellMgr.Prefabs();
    CEffectPropertySet* pPrefab =
        random.Below(3) == 0 ? prefabs[random.Below(static_cast<uint32_t>(prefabs.size()))].get() : nullptr;
    const CEffectTypeDesc* pType = pPrefab ? pPrefab->m_pTypeDesc : library.m_Module.GetType(random.Below(4));
    auto pKey = std::make_unique<CKey>(pType);
    pKey->SetParent(pPrefab);
    if (random.Below(2))
        pKey->m_sName = Word(random);
    for (uint32_t j = 0; j < pType->m_nNumProps; ++j)
        if (!pPrefab || random.Below(4) == 0)
            FillProperty(*pKey, j, random);
    pKey->m_nKeyID = spell.m_Tracks.TakeKeyID();
    pKey->m_nTrack = nTrack;
    pKey->m_nStartTime = nTime + static_cast<int32_t>(random.Below(300));
    pKey->m_nEndTime = pKey->m_nStartTime + 100 + static_cast<int32_t>(random.Below(900));
    nTime = pKey->m_nEndTime;
    if (random.Below(8) == 0 && pKey->m_nKeyID > 0)
        pKey->Link(random.Below(pKey->m_nKeyID));
    const size_t nBytes = TextSize(*pKey);
    spell.m_Tracks.GetTrack(nTrack)->AppendKey(std::move(pKey));
    return nBytes;
}
} // namespace

CEffectTypeTable* BenchTypeTable()
{
    static CTable s_Table;
    return &s_Table.m_Table;
}

void GenerateLibrary(CGeneratedLibrary& library, size_t nTextBytes, uint64_t nSeed)
{
    CRandom random(nSeed);
    library.m_Module.Adopt(BenchTypeTable());
    library.m_EffectTree.InsertGroup("[Effects]", {});
    library.m_PrefabTree.InsertGroup("[Prefabs]", {});
    AddPrefabs(library, random, static_cast<uint32_t>(16 + nTextBytes / 100000));

    size_t nBytes = nTextBytes / 100000 * 1500;
    HLibraryItem hGroup = library.m_EffectTree.GetRootItem();
    for (uint32_t nEffect = 0; nBytes < nTextBytes; ++nEffect)
    {
        if (nEffect % 12 == 0)
            hGroup = library.m_EffectTree.InsertGroup(
                Word(random), random.Below(3) ? library.m_EffectTree.GetRootItem() : hGroup);
        CSpell* pSpell = library.m_SpellMgr.AddSpell();
        pSpell->SetName(Word(random) + "_" + std::to_string(nEffect));
        const uint32_t nTracks = 2 + random.Below(5);
        for (uint32_t nTrack = 0; nTrack < nTracks; ++nTrack)
        {
            pSpell->m_Tracks.AddTrack();
            int32_t nTime = 0;
            for (uint32_t nKeys = 1 + random.Below(6); nKeys > 0; --nKeys)
                nBytes += AddKeyTo(library, *pSpell, nTrack, nTime, random);
        }
        library.m_EffectTree.InsertLeaf(pSpell->m_szName, hGroup, pSpell);
    }
}
