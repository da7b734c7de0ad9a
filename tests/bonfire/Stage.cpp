#include "game/Stage.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "SmallFile.h"
#include "game/Legend.h"

namespace
{
// A file of one's own, without bytes: the reader is tested elsewhere.
class CStageFile
{
public:
    CStageFile()
    {
        m_Types = {{"Emitter", 0, 0, nullptr}, {"Light", 1, 0, nullptr}, {"Nested Effect", 2, 0, nullptr},
                   {"Sound", 3, 0, nullptr},   {"Wind", 4, 0, nullptr},  {"Sprite", 5, 0, nullptr}};
        m_Descs.reserve(64);
    }
    CKey& Key(CEffect& effect, uint32_t nType, float fStart, float fEnd)
    {
        CKey& key = effect.m_Keys.emplace_back();
        key.m_pType = &m_Types[nType];
        key.m_fStart = fStart;
        key.m_fEnd = fEnd;
        key.m_nID = key.m_nLink = uint32_t(effect.m_Keys.size());
        return key;
    }
    void Set(CKey& key, const char* pszName, float f)
    {
        Add(key, pszName, ePropType_Float, {{0.0f, {Bits(f)}}});
    }
    void Set(CKey& key, const char* pszName, float x, float y, float z)
    {
        Add(key, pszName, ePropType_Vector, {{0.0f, {Bits(x), Bits(y), Bits(z)}}});
    }
    void SetText(CKey& key, const char* pszName, uint32_t eType, std::string_view s)
    {
        Add(key, pszName, eType, {{0.0f, {m_Values.Text(s)}}});
    }
    void SetLine(CKey& key, const char* pszName, const std::vector<std::pair<float, float>>& values)
    {
        std::vector<std::pair<float, std::vector<uint32_t>>> points;
        for (const auto& [fTime, fValue] : values)
            points.push_back({fTime, {Bits(fValue)}});
        Add(key, pszName, ePropType_Float, points, true);
    }

    CPackedFile m_File;
    CBirthsOfKeys m_Births;

private:
    void Add(CKey& key, const char* pszName, uint32_t eType,
             const std::vector<std::pair<float, std::vector<uint32_t>>>& points, bool bCurve = false)
    {
        m_Descs.push_back(Desc(pszName, eType, "", bCurve, bCurve));
        key.m_Properties.push_back(m_Values.Property(m_Descs.back(), points));
    }

    CLooseValues m_Values;
    std::vector<CEffectTypeDesc> m_Types;
    std::vector<CEffectPropertyDesc> m_Descs;
};

constexpr float c_fNan = std::numeric_limits<float>::quiet_NaN();
constexpr float c_fInf = std::numeric_limits<float>::infinity();
} // namespace

TEST(Stage, ParticlesFollowRateBurstAndLimit)
{
    CStageFile f;
    CEffect effect;
    effect.m_Keys.reserve(4);
    CKey& key = f.Key(effect, 0, 0, 10);
    f.SetLine(key, "Rate", {{0, 0}, {0.5f, 20}, {1, 0}}); // 100 in all
    f.SetLine(key, "Burst", {{0, 5}, {0.1f, 0}, {0.4f, 0}, {0.5f, 3}});
    f.Set(key, "Lifetime", 1.0f);
    const CBirths births(key);
    EXPECT_EQ(5.0, births.CountAt(0));
    EXPECT_NEAR(5 + 25 + 3, births.CountAt(5) - 25, 0.1);
    EXPECT_NEAR(108, births.CountAt(99), 0.1);
    for (const double fParticle : {0.0, 4.0, 5.0, 17.0, 60.0, 107.0})
    {
        const double fTime = births.TimeOf(fParticle);
        EXPECT_GE(births.CountAt(fTime) + 1e-6, fParticle);
        EXPECT_LE(births.CountAt(fTime - 0.02), fParticle);
    }
    // The same moment gives the same picture, and a particle is where it was, a little on.
    const auto now = ListParticles(key, births, 4.0, 1000);
    const auto again = ListParticles(key, births, 4.0, 1000);
    ASSERT_EQ(now.size(), again.size());
    EXPECT_GT(now.size(), 8u);
    EXPECT_LE(now.size(), 16u);
    EXPECT_EQ(now.back().m_fChance, again.back().m_fChance);
    for (const CParticle& particle : now)
        EXPECT_TRUE(particle.m_fAge >= 0 && particle.m_fAge < 1);
    EXPECT_TRUE(ListParticles(key, births, 11.01, 1000).empty()); // a lifetime after the end

    CKey& busy = f.Key(effect, 0, 0, 1e30f);
    f.Set(busy, "Rate", 1e30f);
    f.SetLine(busy, "Burst", {{0, 0}, {0.2f, 1e9f}, {0.3f, 0}, {0.4f, 1e9f}});
    f.Set(busy, "Max Particles", 30.0f);
    f.Set(busy, "Lifetime", 2.0f);
    const CBirths most(busy);
    for (const double t : {0.5, 3.0, 1e5, 3e5, 9e5, 1e25})
        EXPECT_LE(ListParticles(busy, most, t, 1000).size(), 30u) << t;
    EXPECT_GT(ListParticles(busy, most, 1e5, 1000).size(), 10u);
}

TEST(Stage, ShowsWhatRunsAndWhatIsLeftInTheAir)
{
    CStageFile f;
    f.m_File.m_Effects.resize(2);
    CEffect& fire = f.m_File.m_Effects[0];
    CEffect& child = f.m_File.m_Effects[1];
    fire.m_sName = "Fire";
    child.m_sName = "Child";
    fire.m_Keys.reserve(8);
    CKey& emitter = f.Key(fire, 0, 0, 1);
    f.Set(emitter, "Rate", 50.0f);
    f.Set(emitter, "Lifetime", 2.0f);
    f.SetText(emitter, "On Death", ePropType_FireglassRef, "Child");
    CKey& sound = f.Key(fire, 3, 0, 2);
    f.SetText(sound, "File", ePropType_Filename, "sounds\\boom.wav");
    f.SetLine(sound, "Volume", {{0, 0}, {1, 1}});
    f.Key(fire, 4, 0, 1); // a type that the game doesn't know
    CKey& nested = f.Key(fire, 2, 4, 8);
    f.SetText(nested, "Effect", ePropType_FireglassRef, "Child; Fire; Gone");
    f.Set(nested, "Repeat", 2.0f);
    f.Key(child, 5, 0, 1.5f);

    const auto at = [&](double t, double fBefore = 0)
    { return BuildStage(f.m_File, fire, t, fBefore, f.m_Births); };
    CStage stage = at(0.5);
    EXPECT_GT(stage.m_Dots.size(), 15u);
    ASSERT_EQ(1u, stage.m_Heard.size());
    EXPECT_EQ("boom.wav, 25 %", SoundText(stage.m_Heard[0]));
    EXPECT_EQ((std::vector<std::string_view>{"Wind"}), stage.m_Others);
    // Over, but in the air; where the first three ended, something else begins.
    stage = at(2.1);
    EXPECT_TRUE(stage.m_Heard.empty());
    size_t nSprites = 0;
    for (const CDot& dot : stage.m_Dots)
        nSprites += dot.m_fSize == 1;
    EXPECT_EQ(3u, nSprites);
    // The child plays twice, the effect in itself ends at four levels.
    EXPECT_FALSE(at(4.1).m_Dots.empty());
    EXPECT_FALSE(at(6.0).m_Dots.empty());
    // The round before has left its particles, and nothing else of it.
    EXPECT_TRUE(at(0, 2.5).m_Heard.size() == 1);
    EXPECT_GT(at(0, 2.0).m_Dots.size(), at(0).m_Dots.size());
}

TEST(Stage, NumbersThatAreNoneDoNoHarm)
{
    CStageFile f;
    f.m_File.m_Effects.resize(1);
    CEffect& effect = f.m_File.m_Effects[0];
    effect.m_sName = "Odd";
    effect.m_Keys.reserve(8);
    CKey& emitter = f.Key(effect, 0, -5, 3);
    for (const char* psz : {"Rate", "Lifetime", "Size", "Spread", "Max Particles", "Turbulence"})
        f.Set(emitter, psz, c_fNan);
    f.Set(emitter, "Velocity", c_fNan, c_fInf, -c_fInf);
    CKey& light = f.Key(effect, 1, 0, 2);
    f.Set(light, "Radius", c_fInf);
    f.Set(light, "Offset", c_fNan, c_fInf, -c_fInf);
    f.Set(light, "Flicker", c_fNan);
    f.Key(effect, 5, 2, 1); // ends before it starts
    for (const double t : {0.0, 1.0, 2.5, 1e30})
        for (const CLamp& lamp : BuildStage(f.m_File, effect, t, 3, f.m_Births).m_Lamps)
            EXPECT_TRUE(std::isfinite(lamp.m_At.x + lamp.m_At.y + lamp.m_fRadius + lamp.m_Tint.a));
    const CView view = FitView(f.m_File, effect, 3, f.m_Births);
    EXPECT_TRUE(view.m_fHeight > 1 && view.m_fHeight < 100);
}

TEST(Stage, SaysWhatIsWrongAndWhatToDo)
{
    EXPECT_EQ("Nothing is packed yet", ExplainTrouble("cannot read a: No such file", "a", false).m_sHead);
    EXPECT_EQ("This is no packed file",
              ExplainTrouble("a: damaged at offset 0: this is no packed effect file", "a", true).m_sHead);
    EXPECT_EQ("The effect types don't match",
              ExplainTrouble("a: packed with version 2 of the effect types, the plug-in offers version 1",
                             "a", true)
                  .m_sHead);
    const CTrouble damaged = ExplainTrouble("a: damaged at offset 48: a key is cut off", "a", true);
    EXPECT_EQ("The packed file can't be played", damaged.m_sHead);
    EXPECT_NE(std::string::npos, damaged.m_sReason.find("offset 48"));
}
