// SPDX-License-Identifier: 0BSD
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

#include "make/LibraryText.h"
#include "make/Resources.h"

// The large library: what a whole game may have gathered after some years. Drawn from a fixed seed, so the
// same file comes out everywhere; it takes nothing from the distributions of the standard library, which
// differ from one to the next.

namespace
{
constexpr int c_nPrefabs = 60;
constexpr int c_nEffects = 300;

class CInferno
{
public:
    explicit CInferno(const CEffectTypeTable& types) : m_Lib(types) {}

    CLibrary Make()
    {
        MakePrefabs();
        MakeEffects();
        return std::move(m_Lib);
    }

private:
    // 0 to n - 1.
    uint32_t Below(size_t n) { return uint32_t(m_Random() % n); }
    bool Chance(uint32_t nPercent) { return Below(100) < nPercent; }
    double Between(double fMin, double fMax) { return fMin + (fMax - fMin) * Below(10001) / 10000.0; }
    template <class T>
    const T& OneOf(const std::vector<T>& list)
    {
        return list[Below(list.size())];
    }

    const CEffectTypeDesc& RandomType()
    {
        // Emitters and sprites are the bread and butter of such a library.
        static const std::vector<std::string> c_Types = {"Emitter", "Emitter",      "Sprite",       "Sprite",
                                                         "Light",   "Sound",        "Decal",        "Model",
                                                         "Text",    "Camera Shake", "Nested Effect"};
        return m_Lib.Type(OneOf(c_Types));
    }

    void Range(const CEffectPropertyDesc& desc, double& fMin, double& fMax);
    double InRange(const CEffectPropertyDesc& desc);
    std::string Reference();
    std::string Value(const CEffectPropertyDesc& desc);
    CTimedList Values(const CEffectPropertyDesc& desc);
    void SetSome(CSet& set, uint32_t nPercent);
    void MakePrefabs();
    void MakeEffects();
    void FillEffect(CEffectText& effect);
    static void LinkToOneFrom(CEffectText& effect, CKeyText& key, size_t nFirst);
    void FillTrack(CEffectText& effect, int32_t nTrack);

    CLibrary m_Lib;
    std::mt19937 m_Random{20061013};
    std::vector<const CSet*> m_Prefabs;
    std::vector<std::string> m_EffectNames;
};

// The range in which a value looks sensible: the descriptor's, but not wider than a thousand.
void CInferno::Range(const CEffectPropertyDesc& desc, double& fMin, double& fMax)
{
    const std::string sRange = desc.m_szData;
    const size_t nSplit = sRange.find(';');
    const std::string sMin = nSplit == std::string::npos ? "" : sRange.substr(0, nSplit);
    const std::string sMax = nSplit == std::string::npos ? "" : sRange.substr(nSplit + 1);
    fMin = sMin.empty() ? (sMax.empty() ? -100.0 : std::atof(sMax.c_str()) - 100) : std::atof(sMin.c_str());
    fMax = sMax.empty() ? fMin + 200 : std::atof(sMax.c_str());
    fMin = std::max(fMin, -500.0);
    fMax = std::min(fMax, 500.0);
}

double CInferno::InRange(const CEffectPropertyDesc& desc)
{
    double fMin = 0, fMax = 0;
    Range(desc, fMin, fMax);
    // Most hand-made numbers are round ones.
    const double f = Between(fMin, fMax);
    const double fRound = std::round(f * 20) / 20;
    return Chance(70) && fRound >= fMin && fRound <= fMax ? fRound : f;
}

// One to three effects that stand further up, so that no chain of references closes.
std::string CInferno::Reference()
{
    if (m_EffectNames.empty() || Chance(40))
        return Text("");
    std::string s = OneOf(m_EffectNames);
    for (uint32_t n = Below(3); n != 0; --n)
        s += (Chance(50) ? "; " : ";") + OneOf(m_EffectNames);
    return Text(s);
}

std::string CInferno::Value(const CEffectPropertyDesc& desc)
{
    static const std::vector<std::string> c_Messages = {
        "Run!",
        "The roof is coming down",
        "Feuer im Gew\xc3\xb6lbe",
        "\xe7\x81\xab",
        "",
        "Level 3 (of 7)",
        "A long line that somebody typed to see how far the box goes, and that nobody ever took out again, "
        "since "
        "it does no harm where it is; it ends here, after one more word."};
    static const std::vector<std::string> c_Clips = {"idle", "glow", "fall apart", "roll", "burn_loop", ""};
    const std::string_view sFilter = desc.m_szData;
    switch (desc.m_eType)
    {
    case ePropType_Filename:
        return Text(OneOf(ResourceNames(sFilter.find("wav") != std::string_view::npos     ? "sounds\\"
                                        : sFilter.find("Model") != std::string_view::npos ? "models\\"
                                                                                          : "textures\\")));
    case ePropType_Enum:
    {
        std::vector<std::string> list(1);
        for (const char c : sFilter)
            if (c == ',')
                list.emplace_back();
            else if (c != ' ' || !list.back().empty())
                list.back() += c;
        return Text(OneOf(list));
    }
    case ePropType_Int:
        return Number(int32_t(std::floor(InRange(desc))));
    case ePropType_Float:
        return Number(InRange(desc));
    case ePropType_Vector:
    {
        const double x = InRange(desc), y = InRange(desc), z = InRange(desc);
        return Vector(x, y, z);
    }
    case ePropType_Color:
    {
        const int r = int(Below(256)), g = int(Below(256)), b = int(Below(256)), a = int(Below(256));
        return Color(r, g, b, a);
    }
    case ePropType_Animation:
        return Text(OneOf(c_Clips));
    case ePropType_FireglassRef:
        return Reference();
    default:
        return Text(OneOf(c_Messages));
    }
}

CTimedList CInferno::Values(const CEffectPropertyDesc& desc)
{
    CTimedList values = {{0, Value(desc)}};
    if (!desc.m_bFunctionCurve)
        return values;
    std::vector<double> times;
    for (uint32_t n = Chance(50) ? 0 : Below(Chance(5) ? 40 : 5); n != 0; --n)
        times.push_back(Chance(60) ? Below(21) / 20.0 : Between(0, 1));
    std::sort(times.begin(), times.end()); // equal times stay: a line that jumps
    for (const double fTime : times)
        values.push_back({fTime, Value(desc)});
    if (desc.m_bInterpolate)
        values.push_back({1, Chance(40) ? values.front().m_sAtoms : Value(desc)});
    return values;
}

void CInferno::SetSome(CSet& set, uint32_t nPercent)
{
    for (uint32_t i = 0; i < set.m_pType->m_nNumProps; ++i)
    {
        const CEffectPropertyDesc& desc = set.m_pType->m_pProps[i];
        if (desc.m_eType != ePropType_None && desc.m_eType != ePropType_UI && Chance(nPercent))
            set.SetSlot(i, Values(desc));
    }
}

void CInferno::MakePrefabs()
{
    static const std::vector<std::string> c_Shelves = {"Fire", "Smoke", "Water", "Magic", "Machines"};
    static const std::vector<std::string> c_Boxes = {"Common", "Level 1", "Level 2", "Bosses"};
    std::vector<CGroup<CSet>*> groups = {&m_Lib.m_Prefabs};
    for (const std::string& sShelf : c_Shelves)
    {
        groups.push_back(&m_Lib.m_Prefabs.Group(sShelf));
        CGroup<CSet>& shelf = *groups.back();
        for (const std::string& sBox : c_Boxes)
            groups.push_back(&shelf.Group(sBox));
        groups.push_back(&groups.back()->Group("Old").Group("Do not use"));
    }
    for (int i = 0; i < c_nPrefabs; ++i)
    {
        const std::string sType = RandomType().m_szName;
        CSet& prefab = m_Lib.Prefab(*OneOf(groups), "Std " + sType + " " + std::to_string(i + 1), sType);
        SetSome(prefab, 60);
        m_Prefabs.push_back(&prefab);
    }
}

void CInferno::MakeEffects()
{
    static const std::vector<std::string> c_Places = {"Forge", "Crypt", "Harbour", "Tower", "Mine", "Market"};
    static const std::vector<std::string> c_Things = {"Blaze", "Vent",   "Lava Pool", "Lantern", "Collapse",
                                                      "Steam", "Ritual", "Impact",    "Trail",   "Ambience"};
    std::vector<CGroup<CEffectText>*> groups;
    for (const std::string& sPlace : c_Places)
    {
        CGroup<CEffectText>& place = m_Lib.m_Effects.Group(sPlace);
        groups.push_back(&place);
        groups.push_back(&place.Group("Props"));
        groups.push_back(&place.Group("Combat"));
        groups.push_back(&groups.back()->Group("Projectiles"));
    }
    for (int i = 0; i < c_nEffects; ++i)
    {
        const size_t nGroup = Below(groups.size());
        const std::string sName = c_Places[nGroup / 4] + " " + OneOf(c_Things) + " " + std::to_string(i + 1);
        CEffectText& effect = m_Lib.Effect(*groups[nGroup], sName, int32_t(1000 * (1 + Below(20))));
        FillEffect(effect);
        m_EffectNames.push_back(sName);
    }
}

void CInferno::FillEffect(CEffectText& effect)
{
    const uint32_t nTracks = Chance(3) ? 0 : 1 + Below(Chance(5) ? 12 : 5);
    for (uint32_t i = 0; i < nTracks; ++i)
        if (!Chance(5) || i + 1 == nTracks) // now and then a track stays empty
            FillTrack(effect, int32_t(i));
    for (const auto& pKey : effect.m_Keys)
        if (pKey->m_nID > 1 && Chance(25))
            LinkToOneFrom(effect, *pKey, Below(size_t(pKey->m_nID) - 1));
}

// To the first key that can be its target, from one on and round. Where there is none it stays unlinked.
void CInferno::LinkToOneFrom(CEffectText& effect, CKeyText& key, size_t nFirst)
{
    for (size_t i = 0; i < effect.m_Keys.size(); ++i)
    {
        const CKeyText& target = *effect.m_Keys[(nFirst + i) % effect.m_Keys.size()];
        if (!target.Holds(key))
            continue;
        key.LinkTo(target);
        return;
    }
}

void CInferno::FillTrack(CEffectText& effect, int32_t nTrack)
{
    static const std::vector<std::string> c_Names = {"",    "",           "",       "Core",
                                                     "Rim", "Late smoke", "test 2", "copy of Core"};
    const uint32_t nKeys = 1 + Below(Chance(10) ? 12 : 5);
    const int32_t nRoom = effect.m_nLength / int32_t(nKeys);
    for (uint32_t i = 0; i < nKeys; ++i)
    {
        // Each key has its own share of the phase; some fill it and touch the next one.
        const int32_t nFrom = int32_t(i) * nRoom;
        const int32_t nStart = Chance(30) ? nFrom : nFrom + int32_t(Below(size_t(nRoom) / 2));
        const int32_t nEnd =
            Chance(30) ? nFrom + nRoom : nStart + 1 + int32_t(Below(size_t(nFrom + nRoom - nStart)));
        if (Chance(2))
        {
            effect.Key(m_Lib.Type("Marker"), nTrack, nStart, nEnd);
            continue;
        }
        const bool bPrefab = Chance(80);
        CKeyText& key = bPrefab ? effect.Key(*OneOf(m_Prefabs), nTrack, nStart, nEnd)
                                : effect.Key(RandomType(), nTrack, nStart, nEnd);
        key.Named(OneOf(c_Names));
        SetSome(key, bPrefab ? 12 : 50);
    }
}
} // namespace

CLibrary MakeInferno(const CEffectTypeTable& types)
{
    return CInferno(types).Make();
}
