// SPDX-License-Identifier: 0BSD
#include "game/Stage.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr uint32_t c_nMostNesting = 4;
constexpr uint32_t c_nMostEffects = 200;
constexpr uint32_t c_nMostKeys = 65536;
constexpr size_t c_nMostDots = 6000;
constexpr size_t c_nMostOthers = 256;
constexpr size_t c_nMostEnds = 3; // particles of an emitter that start effects where they end
constexpr double c_fSize = 50;    // metres of anything
constexpr double c_fTurn = 6.283185307179586;

bool Holds(std::string_view sText, std::string_view sPart)
{
    return sText.find(sPart) != std::string_view::npos;
}

ELook LookOf(std::string_view sTexture)
{
    if (Holds(sTexture, "flame") || Holds(sTexture, "fire"))
        return ELook::eFlame;
    if (Holds(sTexture, "smoke") || Holds(sTexture, "scorch"))
        return ELook::eSmoke;
    if (Holds(sTexture, "spark"))
        return ELook::eSpark;
    return Holds(sTexture, "drop") ? ELook::eDrop : ELook::eGlow;
}

EBlend BlendOf(std::string_view sBlend)
{
    if (sBlend == "Alpha")
        return EBlend::eAlpha;
    if (sBlend == "Multiply")
        return EBlend::eMultiply;
    if (sBlend == "Subtract")
        return EBlend::eSubtract;
    return sBlend == "Screen" ? EBlend::eScreen : EBlend::eAdd;
}

template <class TItem>
void AddTo(std::vector<TItem>& items, TItem item)
{
    if (items.size() < c_nMostOthers)
        items.push_back(std::move(item));
}

// How a particle comes, changes and goes. The key's curves tell how the whole does; without this every particle
// would pop into view and out.
void Age(CDot& dot, const CParticle& particle)
{
    const double fAge = particle.m_fAge;
    const double fIn = std::min(1.0, fAge / 0.12), fOut = 1 - fAge;
    switch (dot.m_eLook)
    {
    case ELook::eFlame: // yellow and broad at the bottom, red and small at the top
        dot.m_Tint.a *= fIn * std::pow(fOut, 1.2);
        dot.m_Tint.g *= 1 - 0.45 * fAge;
        dot.m_Tint.b *= (1 - fAge) * (1 - fAge);
        dot.m_fSize *= (0.75 + 0.5 * particle.m_fChance) * (0.55 + 0.45 * fOut);
        dot.m_fStretch = 1.5;
        dot.m_fAngle = 24 * (particle.m_fChance - 0.5);
        break;
    case ELook::eSmoke:
        dot.m_Tint.a *= std::min(1.0, fAge / 0.2) * fOut;
        dot.m_fSize *= (0.7 + 0.5 * particle.m_fChance) * (0.6 + 0.9 * fAge);
        dot.m_fAngle = 360 * particle.m_fChance + 40 * fAge;
        break;
    case ELook::eDrop:
        dot.m_Tint.a *= std::min(1.0, 8 * fOut);
        break;
    default: // embers and sparks flicker and cool down
        dot.m_Tint.a *=
            std::min(1.0, 2.5 * fOut) * (0.7 + 0.3 * std::sin(fAge * 40 + c_fTurn * particle.m_fChance));
        dot.m_Tint.g *= 1 - 0.5 * fAge;
        dot.m_Tint.b *= 1 - 0.8 * fAge;
        dot.m_fSize *= 0.6 + 0.8 * particle.m_fChance;
    }
}

// Fast and small things are seen as streaks along their way.
void Streak(CDot& dot, const CPoint& velocity)
{
    const double fSpeed = std::hypot(velocity.x, velocity.y);
    if (dot.m_eLook == ELook::eDrop)
        dot.m_fStretch = 12;
    else if (dot.m_eLook == ELook::eSpark && fSpeed > 1)
        dot.m_fStretch = std::clamp(0.03 * fSpeed / std::max(dot.m_fSize, 0.01), 1.0, 5.0);
    else
        return;
    dot.m_fAngle = std::atan2(velocity.y, velocity.x) * 360 / c_fTurn - 90;
}

class CBuilder
{
public:
    CBuilder(const CPackedFile& file, CBirthsOfKeys& births, CStage& stage)
        : m_File(file),
          m_Births(births),
          m_Stage(stage)
    {
    }

    // bTail: only what keys that are over have left behind.
    void AddEffect(const CEffect& effect, double fSeconds, const CPoint& origin, uint32_t nNesting,
                   bool bTail);

private:
    void AddKey(const CKey& key, double fSeconds, const CPoint& origin, uint32_t nNesting);
    void AddEmitter(const CKey& key, double fSeconds, const CPoint& place, uint32_t nNesting);
    void AddNested(const CKey& key, double fSeconds, const CPoint& place, uint32_t nNesting);
    void AddReferences(std::string_view sReference, double fSeconds, const CPoint& place, uint32_t nNesting);
    void AddSprite(const CKeyValues& values, const CPoint& place);
    void AddLamp(const CKey& key, const CKeyValues& values, double fSeconds, const CPoint& place);
    void AddShake(const CKeyValues& values, double fSeconds);
    void AddThing(const CKeyValues& values, double fShare, const CPoint& place);
    void AddShown(std::string_view sType, const CKeyValues& values, const CPoint& place);

    const CPackedFile& m_File;
    CBirthsOfKeys& m_Births;
    CStage& m_Stage;
    uint32_t m_nEffectsLeft = c_nMostEffects;
    uint32_t m_nKeysLeft = c_nMostKeys; // of nested effects, seen or not
};

void CBuilder::AddEffect(const CEffect& effect, double fSeconds, const CPoint& origin, uint32_t nNesting,
                         bool bTail)
{
    if (m_nEffectsLeft == 0)
        return;
    --m_nEffectsLeft;
    for (const CKey& key : effect.m_Keys)
    {
        if (m_nKeysLeft == 0)
            return;
        if (nNesting != 0)
            --m_nKeysLeft;
        const double fTime = fSeconds - double(key.m_fStart);
        const bool bEmitter = FieldText(key.m_pType->m_szName) == "Emitter";
        const bool bOver = bTail || fSeconds >= double(key.m_fEnd);
        if (fTime < 0 || (bOver && !bEmitter))
            continue;
        // A key moves with the one that it is linked to: it stands where that one stands.
        CPoint place = origin;
        if (const CKey* pOther = FindLinkedKey(effect, key))
            place = place + CKeyValues(*pOther, ShareOf(*pOther, fSeconds - double(pOther->m_fStart)))
                                .Point("Offset", {});
        if (bEmitter)
            AddEmitter(key, fTime, place, nNesting);
        else
            AddKey(key, fTime, place, nNesting);
    }
}

void CBuilder::AddKey(const CKey& key, double fSeconds, const CPoint& origin, uint32_t nNesting)
{
    const std::string_view sType = FieldText(key.m_pType->m_szName);
    const double fShare = ShareOf(key, fSeconds);
    const CKeyValues values(key, fShare);
    const CPoint place = origin + values.Point("Offset", {});
    if (sType == "Sprite")
        AddSprite(values, place);
    else if (sType == "Light")
        AddLamp(key, values, fSeconds, place);
    else if (sType == "Camera Shake")
        AddShake(values, fSeconds);
    else if (sType == "Model")
        AddThing(values, fShare, place);
    else if (sType == "Nested Effect")
        AddNested(key, fSeconds, place, nNesting);
    else
        AddShown(sType, values, place);
}

void CBuilder::AddShown(std::string_view sType, const CKeyValues& values, const CPoint& place)
{
    if (sType == "Sound")
        AddTo(m_Stage.m_Heard,
              CHeard{values.Text("File"), values.Number("Volume", 1, 0, 1), values.Number("Pitch", 1, 0, 100),
                     values.Enumerator("Loop") == "Loop"});
    else if (sType == "Decal")
    {
        const CPoint extent = values.Point("Extent", {1, 1, 1});
        AddTo(m_Stage.m_Stains, CStain{place, std::clamp(extent.x, 0.0, c_fSize),
                                       std::clamp(extent.y, 0.0, c_fSize), values.Tint("Color")});
    }
    else if (sType == "Text")
        AddTo(m_Stage.m_Words,
              CWords{values.Text("Message"), place + CPoint{0, 1.2, 0}, values.Number("Height", 0.3, 0.02, 5),
                     values.Tint("Color"), values.Enumerator("Align")});
    else
        AddTo(m_Stage.m_Others, sType);
}

void CBuilder::AddEmitter(const CKey& key, double fSeconds, const CPoint& place, uint32_t nNesting)
{
    const CBirths& births = BirthsOf(key, m_Births);
    const CKeyValues values(key, ShareOf(key, fSeconds));
    CDot dot;
    dot.m_eBlend = BlendOf(values.Enumerator("Blend"));
    dot.m_eLook = LookOf(values.Text("Texture"));
    dot.m_fSize = values.Number("Size", 0.1, 0, c_fSize);
    dot.m_Tint = values.Tint("Color");
    const std::string sOnDeath(values.Text("On Death"));
    const double fLength = double(key.m_fEnd) - double(key.m_fStart);
    if (fSeconds < fLength + births.Lifetime() && dot.m_Tint.a > 0)
    {
        const size_t nLeft = c_nMostDots - m_Stage.m_Dots.size();
        for (const CParticle& particle : ListParticles(key, births, fSeconds, nLeft))
        {
            CDot own = dot;
            own.m_At = place + particle.m_At;
            if (own.m_At.y < 0 && own.m_eLook != ELook::eFlame) // nothing is seen through the ground
                own.m_At.y = 0;
            Age(own, particle);
            Streak(own, particle.m_Velocity);
            m_Stage.m_Dots.push_back(own);
        }
    }
    if (sOnDeath.empty() || nNesting >= c_nMostNesting)
        return;
    // births may be gone once another emitter has been asked for.
    for (const CParticleEnd& end : ListEnds(key, births, fSeconds, c_nMostEnds))
        AddReferences(sOnDeath, fSeconds - end.m_fTime,
                      place + CPoint{end.m_At.x, std::max(0.0, end.m_At.y), end.m_At.z}, nNesting);
}

void CBuilder::AddNested(const CKey& key, double fSeconds, const CPoint& place, uint32_t nNesting)
{
    if (nNesting >= c_nMostNesting)
        return;
    const CKeyValues values(key, ShareOf(key, fSeconds));
    const double fRepeat = values.Number("Repeat", 1, 1, 1e6), fDelay = values.Number("Delay", 0, 0, 1e6);
    for (std::string_view sName : SplitReference(values.Text("Effect")))
    {
        const CEffect* pNested = m_File.FindEffect(sName);
        if (!pNested)
            continue;
        const double fRound = std::max(0.05, Duration(*pNested)) + fDelay;
        const double fRounds = std::min(std::floor(fSeconds / fRound), fRepeat - 1);
        AddEffect(*pNested, fSeconds - fRounds * fRound, place, nNesting + 1, false);
    }
}

void CBuilder::AddReferences(std::string_view sReference, double fSeconds, const CPoint& place,
                             uint32_t nNesting)
{
    for (std::string_view sName : SplitReference(sReference))
        if (const CEffect* pNested = m_File.FindEffect(sName))
            AddEffect(*pNested, fSeconds, place, nNesting + 1, false);
}

void CBuilder::AddSprite(const CKeyValues& values, const CPoint& place)
{
    if (m_Stage.m_Dots.size() == c_nMostDots)
        return;
    CDot dot;
    dot.m_At = place;
    dot.m_eBlend = BlendOf(values.Enumerator("Blend"));
    dot.m_eLook = LookOf(values.Text("Texture"));
    dot.m_fSize = values.Number("Size", 1, 0, c_fSize);
    dot.m_fAngle = values.Number("Rotation", 0, -1e6, 1e6);
    dot.m_nLayer = int(values.Number("Layer", 0, -8, 8));
    dot.m_Tint = values.Tint("Color");
    m_Stage.m_Dots.push_back(dot);
}

void CBuilder::AddLamp(const CKey& key, const CKeyValues& values, double fSeconds, const CPoint& place)
{
    CLamp lamp = {place, values.Number("Radius", 6, 0, 200), values.Tint("Color")};
    // Noise between fixed moments, fourteen in a second.
    const double fMoment = fSeconds * 14;
    const auto nMoment = uint64_t(fMoment);
    const double u = fMoment - double(nMoment);
    const double fNoise = (1 - u) * Chance(key.m_nID, nMoment) + u * Chance(key.m_nID, nMoment + 1);
    lamp.m_Tint.a *= 1 - values.Number("Flicker", 0, 0, 1) * fNoise;
    AddTo(m_Stage.m_Lamps, lamp);
}

void CBuilder::AddShake(const CKeyValues& values, double fSeconds)
{
    const CPoint strength = values.Point("Strength", {});
    const double fPhase = c_fTurn * values.Number("Frequency", 12, 0, 60) * fSeconds;
    m_Stage.m_Shake =
        m_Stage.m_Shake + CPoint{std::clamp(strength.x, -2.0, 2.0) * std::sin(fPhase),
                                 std::clamp(strength.y, -2.0, 2.0) * std::sin(1.3 * fPhase + 1), 0};
}

void CBuilder::AddThing(const CKeyValues& values, double fShare, const CPoint& place)
{
    CPoint scale = values.Point("Scale", {1, 1, 1});
    scale = {std::clamp(scale.x, 0.0, c_fSize), std::clamp(scale.y, 0.0, c_fSize),
             std::clamp(scale.z, 0.0, c_fSize)};
    const std::string_view sClip = values.Text("Clip");
    const double fHeat = sClip == "glow" ? 1 : sClip == "idle" ? 0.25 : std::max(0.0, 0.6 - fShare * 0.4);
    AddTo(m_Stage.m_Things, CThing{values.Text("Model"), sClip, place, scale, fHeat});
}
} // namespace

CStage BuildStage(const CPackedFile& file, const CEffect& effect, double fSeconds, double fBefore,
                  CBirthsOfKeys& births)
{
    CStage stage;
    CBuilder builder(file, births, stage);
    builder.AddEffect(effect, fSeconds, {}, 0, false);
    if (fBefore > 0)
        builder.AddEffect(effect, fSeconds + fBefore, {}, 0, true);
    // Within a layer what covers comes before what shines, or smoke would put the fire out.
    std::stable_sort(stage.m_Dots.begin(), stage.m_Dots.end(),
                     [](const CDot& a, const CDot& b)
                     {
                         if (a.m_nLayer != b.m_nLayer)
                             return a.m_nLayer < b.m_nLayer;
                         return a.m_eBlend == EBlend::eAlpha && b.m_eBlend != EBlend::eAlpha;
                     });
    return stage;
}

CView FitView(const CPackedFile& file, const CEffect& effect, double fLength, CBirthsOfKeys& births)
{
    constexpr int c_nMoments = 24;
    std::vector<double> tops, sides;
    double fTop = 0, fSide = 0;
    for (int i = 0; i < c_nMoments; ++i)
    {
        const CStage stage = BuildStage(file, effect, fLength * (i + 0.5) / c_nMoments, 0, births);
        for (const CDot& dot : stage.m_Dots)
        {
            if (dot.m_eLook == ELook::eDrop)
                continue; // rain fills any view
            tops.push_back(dot.m_At.y + dot.m_fSize / 2);
            sides.push_back(std::abs(dot.m_At.x) + dot.m_fSize / 2);
        }
        for (const CWords& words : stage.m_Words) // whole, since nobody guesses the rest of a word
        {
            fTop = std::max(fTop, std::min(words.m_At.y + 1, 20.0));
            fSide = std::max(fSide, std::min(words.m_fHeight * 0.33 * double(words.m_sText.size()), 14.0));
        }
        for (const CThing& thing : stage.m_Things)
            tops.push_back(thing.m_At.y + 1.2 * thing.m_Scale.y);
    }
    const auto nearly = [](std::vector<double>& values)
    {
        if (values.empty())
            return 0.0;
        const auto it = values.begin() + std::ptrdiff_t(values.size() * 95 / 100);
        std::nth_element(values.begin(), it, values.end());
        return *it;
    };
    CView view;
    fTop = std::max(fTop, nearly(tops));
    fSide = std::max(fSide, nearly(sides));
    view.m_fHeight = std::clamp(std::max(fTop * 1.35, fSide * 1.5) + 0.6, 2.6, 24.0);
    view.m_fBelow = view.m_fHeight * 0.2;
    return view;
}
