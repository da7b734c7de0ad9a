// SPDX-License-Identifier: 0BSD
#include "make/LibraryText.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "make/ResourceList.h"

namespace
{
[[noreturn]] void Refuse(const std::string& sWhat)
{
    std::fprintf(stderr, "bonfire-make-libraries: %s\n", sWhat.c_str());
    std::exit(1);
}

// Six decimals of what a float makes of the number, as the editor writes it.
std::string Decimals(double f)
{
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%.6f", double(float(f)));
    return buffer;
}

const char* KindName(uint32_t eType)
{
    static const char* const c_Names[] = {nullptr, "String", "Filename", "Enum",      "Int",         "Float",
                                          "Color", "Vector", nullptr,    "Animation", "FireglassRef"};
    return eType < std::size(c_Names) ? c_Names[eType] : nullptr;
}

std::string DefaultAtoms(const CEffectPropertyDesc& desc)
{
    int32_t n = 0;
    float v[3];
    std::memcpy(&n, desc.m_Default, sizeof(n));
    std::memcpy(v, desc.m_Default, sizeof(v));
    switch (desc.m_eType)
    {
    case ePropType_Int:
        return Number(n);
    case ePropType_Float:
        return Number(double(v[0]));
    case ePropType_Vector:
        return Vector(v[0], v[1], v[2]);
    case ePropType_Color:
        return Color(n >> 16 & 255, n >> 8 & 255, n & 255, n >> 24 & 255);
    default:
        return Text(reinterpret_cast<const char*>(desc.m_Default));
    }
}

// A line for each call, at a depth, with the line end of the format.
class CLines
{
public:
    void Line(int nDepth, const std::string& sText)
    {
        m_s += std::string(size_t(nDepth), '\t') + sText + "\r\n";
    }
    void Field(int nDepth, const char* pszName, const std::string& sAtoms)
    {
        Line(nDepth, std::string("( ") + pszName + " " + sAtoms + " )");
    }

    void Properties(int d, const CSet& set)
    {
        Line(d, "( properties");
        for (const auto& [nSlot, values] : set.m_Values)
        {
            const CEffectPropertyDesc& desc = set.m_pType->m_pProps[nSlot];
            Line(d + 1, "( property");
            Field(d + 2, "name", Text(desc.m_szName));
            Field(d + 2, "type", Text(KindName(desc.m_eType)));
            Line(d + 2, "( value-list");
            for (const CTimed& value : values)
            {
                Line(d + 3, "( value");
                Field(d + 4, "time", Decimals(value.m_fTime));
                Field(d + 4, "data", value.m_sAtoms);
                Line(d + 3, ")");
            }
            Line(d + 2, ")");
            Line(d + 1, ")");
        }
        Line(d, ")");
    }

    void Leaf(int d, const CSet& prefab)
    {
        Line(d, "( prefab");
        Field(d + 1, "name", Text(prefab.m_sName));
        Field(d + 1, "type", Text(prefab.m_pType->m_szName));
        Properties(d + 1, prefab);
        Line(d, ")");
    }

    void Key(int d, const CKeyText& key)
    {
        Line(d, "( key");
        Field(d + 1, "name", Text(key.m_sName));
        Field(d + 1, "type", Text(key.m_pType->m_szName));
        Field(d + 1, "id", Number(key.m_nID));
        Field(d + 1, "start-time", Number(key.m_nStart));
        Field(d + 1, "end-time", Number(key.m_nEnd));
        Field(d + 1, "track", Number(key.m_nTrack));
        if (key.m_pPrefab)
            Field(d + 1, "parent", Text(key.m_pPrefab->m_sName));
        if (key.m_nLink)
        {
            Line(d + 1, "( motion-link");
            Field(d + 2, "id", Number(*key.m_nLink));
            Line(d + 1, ")");
        }
        Properties(d + 1, key);
        Line(d, ")");
    }

    void Leaf(int d, const CEffectText& effect)
    {
        Line(d, "( effect");
        Field(d + 1, "name", Text(effect.m_sName));
        Field(d + 1, "length", Number(effect.m_nLength));
        Line(d + 1, "( key-list");
        for (const CKeyText* pKey : effect.InFileOrder())
            Key(d + 2, *pKey);
        Line(d + 1, ")");
        Line(d, ")");
    }

    template <class TLeaf>
    void Group(int d, const CGroup<TLeaf>& group)
    {
        Line(d, "( container");
        Field(d + 1, "name", Text(group.m_sName));
        Line(d + 1, "( children");
        for (const auto& item : group.m_Items)
            if (item.m_pGroup)
                Group(d + 2, *item.m_pGroup);
            else
                Leaf(d + 2, *item.m_pLeaf);
        Line(d + 1, ")");
        Line(d, ")");
    }

    std::string m_s;
};

template <class TLeaf>
void ForEachLeaf(const CGroup<TLeaf>& group, const std::function<void(TLeaf&)>& visit)
{
    for (const auto& item : group.m_Items)
        if (item.m_pGroup)
            ForEachLeaf(*item.m_pGroup, visit);
        else
            visit(*item.m_pLeaf);
}
} // namespace

std::string Text(std::string_view s)
{
    if (s.size() > 255 || s.find('"') != std::string_view::npos)
        Refuse("a text that can't be saved: " + std::string(s));
    return "\"" + std::string(s) + "\"";
}
std::string Number(int32_t n)
{
    return std::to_string(n);
}
std::string Number(double f)
{
    return Decimals(f);
}
std::string Vector(double x, double y, double z)
{
    return Decimals(x) + " " + Decimals(y) + " " + Decimals(z);
}
std::string Color(int r, int g, int b, int a)
{
    return std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b) + " " + std::to_string(a);
}

CSet& CSet::Set(std::string_view sProperty, CTimedList values)
{
    for (uint32_t i = 0; i < m_pType->m_nNumProps; ++i)
        if (m_pType->m_pProps[i].m_szName == sProperty)
        {
            SetSlot(i, std::move(values));
            return *this;
        }
    Refuse(std::string(m_pType->m_szName) + " has no property " + std::string(sProperty));
}

CSet& CSet::Set(std::string_view sProperty, std::string sAtoms)
{
    for (uint32_t i = 0; i < m_pType->m_nNumProps; ++i)
        if (m_pType->m_pProps[i].m_szName == sProperty && m_pType->m_pProps[i].m_bInterpolate)
            return Set(sProperty, CTimedList{{0, sAtoms}, {1, sAtoms}});
    return Set(sProperty, CTimedList{{0, std::move(sAtoms)}});
}

CSet& CSet::Named(std::string_view sName)
{
    m_sName = sName;
    return *this;
}

void CSet::SetSlot(uint32_t nSlot, CTimedList values)
{
    const CEffectPropertyDesc& desc = m_pType->m_pProps[nSlot];
    const bool bSorted = std::is_sorted(
        values.begin(), values.end(), [](const CTimed& a, const CTimed& b) { return a.m_fTime < b.m_fTime; });
    bool bSuits = KindName(desc.m_eType) && !values.empty() && bSorted && values.front().m_fTime == 0;
    if (!desc.m_bFunctionCurve)
        bSuits = bSuits && values.size() == 1;
    else if (desc.m_bInterpolate)
        bSuits = bSuits && values.size() >= 2 && values.back().m_fTime == 1;
    if (!bSuits)
        Refuse(std::string("values that don't suit ") + m_pType->m_szName + ", " + desc.m_szName);
    m_Values[nSlot] = std::move(values);
}

void CSet::FillWithDefaults()
{
    for (uint32_t i = 0; i < m_pType->m_nNumProps; ++i)
    {
        const CEffectPropertyDesc& desc = m_pType->m_pProps[i];
        if (!KindName(desc.m_eType) || m_Values.count(i))
            continue;
        const std::string sAtoms = DefaultAtoms(desc);
        SetSlot(i, desc.m_bFunctionCurve && desc.m_bInterpolate ? CTimedList{{0, sAtoms}, {1, sAtoms}}
                                                                : CTimedList{{0, sAtoms}});
    }
}

bool CKeyText::Holds(const CKeyText& other) const
{
    constexpr int32_t nMargin = 50; // milliseconds
    return other.m_nStart >= m_nStart + nMargin && other.m_nEnd <= m_nEnd - nMargin;
}

CKeyText& CKeyText::LinkTo(const CKeyText& target)
{
    if (!target.Holds(*this))
        Refuse("the key " + std::to_string(m_nID) + " does not lie within its target");
    m_nLink = target.m_nID;
    return *this;
}

const CTimedList* CKeyText::InForce(uint32_t nSlot) const
{
    if (const auto it = m_Values.find(nSlot); it != m_Values.end())
        return &it->second;
    if (!m_pPrefab)
        return nullptr;
    const auto it = m_pPrefab->m_Values.find(nSlot);
    return it == m_pPrefab->m_Values.end() ? nullptr : &it->second;
}

CKeyText& CEffectText::Key(const CEffectTypeDesc& type, int32_t nTrack, int32_t nStart, int32_t nEnd)
{
    if (nStart < 0 || nEnd <= nStart || nEnd > m_nLength)
        Refuse("a key outside the phase of " + m_sName);
    CKeyText& key = *m_Keys.emplace_back(std::make_unique<CKeyText>());
    key.m_pType = &type;
    key.m_nID = int32_t(m_Keys.size());
    key.m_nTrack = nTrack;
    key.m_nStart = nStart;
    key.m_nEnd = nEnd;
    return key;
}

CKeyText& CEffectText::Key(const CSet& prefab, int32_t nTrack, int32_t nStart, int32_t nEnd)
{
    CKeyText& key = Key(*prefab.m_pType, nTrack, nStart, nEnd);
    key.m_pPrefab = &prefab;
    return key;
}

std::vector<const CKeyText*> CEffectText::InFileOrder() const
{
    std::vector<const CKeyText*> keys;
    for (const auto& pKey : m_Keys)
        keys.push_back(pKey.get());
    std::stable_sort(keys.begin(), keys.end(),
                     [](const CKeyText* a, const CKeyText* b)
                     { return std::pair(a->m_nTrack, a->m_nStart) < std::pair(b->m_nTrack, b->m_nStart); });
    for (size_t i = 1; i < keys.size(); ++i)
        if (keys[i]->m_nTrack == keys[i - 1]->m_nTrack && keys[i]->m_nStart < keys[i - 1]->m_nEnd)
            Refuse("keys that overlap in " + m_sName);
    return keys;
}

const CEffectTypeDesc& CLibrary::Type(std::string_view sName) const
{
    for (uint32_t i = 0; i < m_Types.m_nNumTypes; ++i)
        if (m_Types.m_pTypes[i].m_szName == sName)
            return m_Types.m_pTypes[i];
    Refuse("no effect type " + std::string(sName));
}

CSet& CLibrary::Prefab(CGroup<CSet>& group, std::string_view sName, std::string_view sType)
{
    CSet& prefab = group.Leaf(sName);
    prefab.m_pType = &Type(sType);
    return prefab;
}

CEffectText& CLibrary::Effect(CGroup<CEffectText>& group, std::string_view sName, int32_t nLength)
{
    CEffectText& effect = group.Leaf(sName);
    effect.m_nLength = nLength;
    return effect;
}

std::string CLibrary::Write()
{
    CResourceList resources;
    ForEachLeaf<CSet>(m_Prefabs, [](CSet& prefab) { prefab.FillWithDefaults(); });
    ForEachLeaf<CEffectText>(m_Effects,
                             [&](CEffectText& effect)
                             {
                                 for (const auto& pKey : effect.m_Keys)
                                     if (!pKey->m_pPrefab)
                                         pKey->FillWithDefaults();
                                 resources.AddEffect(effect);
                             });

    CLines lines;
    lines.m_s = resources.Write();
    lines.Line(0, "( header");
    lines.Field(1, "version", "1");
    lines.Line(0, ")");
    lines.Line(0, "( prefab-tree");
    lines.Group(1, m_Prefabs);
    lines.Line(0, ")");
    lines.Line(0, "( effect-tree");
    lines.Group(1, m_Effects);
    lines.Line(0, ")");
    return std::move(lines.m_s);
}
