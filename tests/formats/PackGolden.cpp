// The packed file, field by field, read here by hand and by the strict reader.

#include <bit>

#include "FormatsTest.h"
#include "formats/EmberdeckPacker.h"
#include "formats/PackedReader.h"
#include "support/ScriptedPrompts.h"

namespace
{

std::string Packed(CTestLibrary& library, const char* pszTarget = "PC")
{
    const CTempDir dir;
    CScriptedPrompts prompts;
    EXPECT_TRUE(PackEffectLibrary(dir.path("library.Fx00p").c_str(), library.m_SpellMgr, library.Module(),
                                  &prompts, pszTarget));
    EXPECT_EQ(1, prompts.m_nWaits);
    return ReadBytes(dir.path("library.Fx00p"));
}

CPackedLibrary Unpacked(const std::string& sBytes, const CEffectModule& module)
{
    CPackedLibrary packed;
    std::string sError;
    for (int i = 0; i < 2; ++i) // what the library held before is gone
        EXPECT_TRUE(ReadPackedLibrary(sBytes, module, packed, sError)) << sError;
    return packed;
}

// Bytes put together as the file has them.
struct CBytes
{
    CBytes& u32(std::initializer_list<uint32_t> values)
    {
        for (const uint32_t nValue : values)
            for (int i = 0; i < 4; ++i)
                m_s += char(nValue >> 8 * i);
        return *this;
    }
    CBytes& f32(std::initializer_list<float> values)
    {
        for (const float fValue : values)
            u32({std::bit_cast<uint32_t>(fValue)});
        return *this;
    }
    CBytes& text(const std::string& s)
    {
        m_s += s + std::string(4 - s.size() % 4, '\0');
        return *this;
    }
    uint32_t at() const { return uint32_t(m_s.size()); }
    std::string m_s;
};

} // namespace

TEST(PackGolden, EmptyLibrary)
{
    const auto pLibrary = aLibrary().build();
    EXPECT_EQ(CBytes().u32({0x58465351, 2, 42, 0, 0, 0, 0, 3, 52, 52, 0, 0, 0}).m_s, Packed(*pLibrary));
    const auto pNoKeys = aLibrary().effect("Smoke").length(77).build();
    EXPECT_EQ(CBytes()
                  .u32({0x58465351, 2, 42, 8, 0, 0, 1, 3, 52, 72, 0, 0, 0})
                  .text("Smoke")
                  .u32({0, 77, 0, 0})
                  .m_s,
              Packed(*pNoKeys));
}

// One key with every kind, one on a prefab, by bytes.
TEST(PackGolden, OneOfEachKind)
{
    const auto pLibrary = aLibrary()
                              .prefab("Light", "Lamp")
                              .curve<CTestColor>("Color", {{0.0f, {255, 0, 128, 1}}, {1.0f, {2, 3, 4, 5}}})
                              .effect("Muz")
                              .length(2500)
                              .key("Sprite", 0, 1500)
                              .value("Texture", "a.TEXTURE00A")
                              .value("Blend", "multiply")
                              .curve<CTestColor>("Color", {{0.0f, {255, 0, 128, 1}}, {1.0f, {2, 3, 4, 5}}})
                              .curve<double>("Size", {{0.0f, 1.0}, {0.25f, 2.0}, {1.0f, 3.0}})
                              .curve<int>("Frame", {{0.0f, 1}, {0.5f, 2}})
                              .value("Count", 7)
                              .value("Velocity", CVector3{1, -2, 3})
                              .value("Label", "Muz")
                              .value("Child", "Spark")
                              .track()
                              .key("Light", 1, -33)
                              .onPrefab("Lamp")
                              .link(9)
                              .build();
    const std::string sBytes = Packed(*pLibrary);

    CBytes strings;
    std::map<std::string, uint32_t> at;
    for (const char* psz :
         {"Muz", "Texture", "a.TEXTURE00A", "a.dds", "Blend", "UIType_TextLine", "Color", "Size", "Count",
          "Frame", "Velocity", "Label", "Clip", "idle", "Child", "Spark", "Spare", "Radius", "Flicker"})
    {
        at[psz] = strings.at();
        strings.text(psz);
    }
    constexpr float f = 0.003921569f;
    ASSERT_EQ(0x3B808081u, std::bit_cast<uint32_t>(f));
    CBytes curves;
    curves.u32({2}).f32(
        {0, 255 * f, 0 * f, 128 * f, 1 * f, 1, 2 * f, 3 * f, 4 * f, 5 * f}); // shared with the prefab's
    const uint32_t nSize = curves.at();
    curves.u32({3}).f32({0, 1, 0.25f, 2, 1, 3});
    const uint32_t nFrame = curves.at();
    curves.u32({2}).f32({0}).u32({1}).f32({0.5f}).u32({2});
    const uint32_t nFlicker = curves.at();
    curves.u32({2}).f32({0, 0.25f, 1, 0.25f});

    const uint32_t nStrings = 52, nCurves = nStrings + strings.at(), nEffects = nCurves + curves.at();
    CBytes effects;
    const auto property = [&](const char* pszName, uint32_t nDataSize)
    {
        effects.u32({at.at(pszName), nEffects + effects.at() + 8 + nDataSize});
        return std::ref(effects);
    };
    effects.u32({0, 2500, 2});
    effects.u32({0}).f32({0.0f, 1500 * 0.001f}).u32({0, 0, 10});
    property("Texture", 4).get().u32({at["a.dds"]});
    property("Blend", 4).get().u32({2});
    property("Color", 4).get().u32({0});
    property("Size", 4).get().u32({nSize});
    property("Count", 4).get().u32({7});
    property("Frame", 4).get().u32({nFrame});
    property("Velocity", 12).get().f32({1, -2, 3});
    property("Label", 4).get().u32({0});
    property("Clip", 4).get().u32({at["idle"]});
    property("Child", 4).get().u32({at["Spark"]});
    effects.u32({1}).f32({1 * 0.001f, -33 * 0.001f}).u32({1, 9, 3});
    property("Color", 4).get().u32({0});
    property("Radius", 4).get().f32({5.0f});
    property("Flicker", 4).get().u32({nFlicker});

    CBytes file;
    file.u32(
        {0x58465351, 2, 42, strings.at(), curves.at(), 2, 1, 3, nStrings, nEffects + effects.at(), 1, 1, 0});
    file.m_s += strings.m_s + curves.m_s + effects.m_s;
    file.u32({0});
    EXPECT_EQ(file.m_s.size(), sBytes.size());
    EXPECT_TRUE(file.m_s == sBytes);
    EXPECT_EQ(0x3F800000u, std::bit_cast<uint32_t>(255 * f)); // full channels are 1.0

    // The other target differs in byte order alone.
    const std::string sXenon = Packed(*pLibrary, "xenon");
    ASSERT_EQ(sBytes.size(), sXenon.size());
    for (size_t i = 0; i < sBytes.size(); i += 4)
    {
        const std::string sWord = sXenon.substr(i, 4);
        EXPECT_EQ(sBytes.substr(i, 4),
                  i >= nStrings && i < nCurves ? sWord : std::string(sWord.rbegin(), sWord.rend()))
            << i;
    }
    const CPackedLibrary little = Unpacked(sBytes, pLibrary->Module());
    const CPackedLibrary big = Unpacked(sXenon, pLibrary->Module());
    EXPECT_TRUE(big.m_bBigEndian && !little.m_bBigEndian);
    for (const CPackedLibrary* pPacked : {&little, &big})
    {
        const CPackedKey& key = pPacked->m_Effects.at(0).m_Keys.at(0);
        EXPECT_EQ("a.dds", std::get<std::string>(key.m_Properties.at(0).m_Keys.at(0).m_Value.m_Value));
        EXPECT_EQ(2u, std::get<uint32_t>(key.m_Properties.at(1).m_Keys.at(0).m_Value.m_Value));
        EXPECT_EQ(2, std::get<int32_t>(key.m_Properties.at(5).m_Keys.at(1).m_Value.m_Value));
        EXPECT_EQ(0.25f, key.m_Properties.at(3).m_Keys.at(1).m_fTime);
        EXPECT_EQ((CVector3{1, -2, 3}),
                  std::get<CVector3>(key.m_Properties.at(6).m_Keys.at(0).m_Value.m_Value));
        EXPECT_EQ(1.0f, std::get<CPackedColor>(key.m_Properties.at(2).m_Keys.at(0).m_Value.m_Value).r);
        EXPECT_EQ(19u, pPacked->m_Strings.size());
    }
}

TEST(PackGolden, TextsEnumsAndShares)
{
    const auto pLibrary = aLibrary()
                              .effect("Same")
                              .key("Sprite")
                              .value("Label", "abcd")
                              .value("Texture", "dir.x\\noext")
                              .value("Blend", "")
                              .curve<double>("Size", {{0.0f, 0.25}, {1.0f, 0.25}})
                              .effect("Same")
                              .key("Light")
                              .build();
    const CPackedLibrary packed = Unpacked(Packed(*pLibrary), pLibrary->Module());
    EXPECT_EQ(packed.m_EffectNames, (std::vector<std::string>{"Same", "Same"}));
    const auto& strings = packed.m_Strings;
    const auto find = [&](const std::string& s)
    {
        return std::find_if(strings.begin(), strings.end(),
                            [&](const auto& entry) { return entry.second == s; });
    };
    ASSERT_NE(strings.end(), find("abcd"));
    EXPECT_EQ(8u, (find("abcd") + 1)->first - find("abcd")->first); // four bytes and a NUL take eight
    EXPECT_EQ("dir.x\\noext",
              std::get<std::string>(packed.m_Effects[0].m_Keys[0].m_Properties[0].m_Keys[0].m_Value.m_Value));
    EXPECT_EQ(1u,
              std::get<uint32_t>(
                  packed.m_Effects[0].m_Keys[0].m_Properties[1].m_Keys[0].m_Value.m_Value)); // the default's
    // Size and Flicker have equal curves.
    EXPECT_EQ(packed.m_Effects[0].m_Keys[0].m_Properties[3].m_nCurveOffset,
              packed.m_Effects[1].m_Keys[0].m_Properties[2].m_nCurveOffset);

    // A default that isn't in its own list gives 0, and no list at all does, too.
    const auto pOdd =
        aLibrary(
            std::make_shared<CTestModule>(
                [](CTestPlugin& plugin)
                {
                    plugin.type("T").prop(ePropType_Enum, "A").data("x,y").def("z").prop(ePropType_Enum, "B");
                    plugin.prop(ePropType_UI, "Row")
                        .step()
                        .prop(ePropType_None, "Nil")
                        .linear()
                        .prop(ePropType_Float, "C")
                        .linear();
                }))
            .effect("E")
            .key("T")
            .key("T")
            .build();
    const CPackedLibrary odd = Unpacked(Packed(*pOdd), pOdd->Module());
    EXPECT_EQ(3u, odd.m_Effects[0].m_Keys[1].m_Properties.size());
    EXPECT_EQ(0u, std::get<uint32_t>(odd.m_Effects[0].m_Keys[0].m_Properties[0].m_Keys[0].m_Value.m_Value));
    EXPECT_EQ(0u, std::get<uint32_t>(odd.m_Effects[0].m_Keys[0].m_Properties[1].m_Keys[0].m_Value.m_Value));
}

// What was packed after a reload is what was packed before, values that need validation included.
TEST(PackGolden, ValuesAreValidatedAsTheyAreWritten)
{
    const auto pLibrary = aLibrary()
                              .prefab("Sprite", "P")
                              .value("Count", 5000)
                              .effect("E")
                              .key()
                              .onPrefab("P")
                              .key()
                              .onPrefab("P")
                              .build();
    const CPackedLibrary packed = Unpacked(Packed(*pLibrary), pLibrary->Module());
    for (const CPackedKey& key : packed.m_Effects[0].m_Keys)
        EXPECT_EQ(1000, std::get<int32_t>(key.m_Properties[4].m_Keys[0].m_Value.m_Value));
    EXPECT_EQ(1000, IntOf(*pLibrary->m_SpellMgr.FindPrefab("P"), "Count"));
}

// A curve with times beyond its ends settles when it is loaded, so that it is packed as it was loaded, whichever
// keys share it.
TEST(PackGolden, CurvesBeyondTheirEndsArePackedAsTheyWereLoaded)
{
    const auto curve = [](std::initializer_list<const char*> times)
    {
        std::string sValues;
        for (const char* pszTime : times)
            sValues += "(value (time " + std::string(pszTime) + ") (data 1))";
        return "(properties " + PropText("Size", "Float", sValues) + ")";
    };
    for (const auto& times : {std::initializer_list<const char*>{"0.5", "1.5", "2"},
                              {"-5", "-4", "-3", "-2", "-1", "0"},
                              {"-2", "-1", "0.5", "1e39", "1e40"}})
    {
        const std::string sText = FileOf("(prefab (name \"P\") (type \"Sprite\") " + curve(times) + ")",
                                         EffectOf(KeyText("Sprite", "(parent \"P\")", 1) +
                                                  KeyText("Sprite", curve(times), 2, 0, 1000, 1) +
                                                  KeyText("Sprite", "(parent \"P\")", 3, 0, 1000, 2)));
        const CLoaded loaded = LoadText(sText);
        ASSERT_TRUE(loaded.m_bLoaded) << loaded.m_sError;
        const CPackedLibrary packed = Unpacked(Packed(*loaded.m_pLibrary), loaded.m_pLibrary->Module());
        const auto& keys = packed.m_Effects[0].m_Keys;
        EXPECT_EQ(keys[0].m_Properties[3].m_nCurveOffset, keys[1].m_Properties[3].m_nCurveOffset);
        EXPECT_EQ(keys[0].m_Properties[3].m_nCurveOffset, keys[2].m_Properties[3].m_nCurveOffset);
        const std::string sFirst = SavedBytes(*loaded.m_pLibrary);
        EXPECT_EQ(sFirst, SavedBytes(*LoadText(sFirst).m_pLibrary));
        EXPECT_EQ(loaded.Found("is too large"), sText.find("1e39") != std::string::npos);
    }
}

TEST(PackGolden, FailuresTouchNoFile)
{
    const auto pLibrary = aLibrary().effect("E").key().build();
    const CTempDir dir;
    const std::string sFile = dir.write("a.Fx00p", "old");
    const CEffectModule none;
    EXPECT_FALSE(PackEffectLibrary(sFile.c_str(), pLibrary->m_SpellMgr, none));
    EXPECT_FALSE(PackEffectLibrary(nullptr, pLibrary->m_SpellMgr, pLibrary->Module()));
    EXPECT_FALSE(PackEffectLibrary(dir.path("no/where").c_str(), pLibrary->m_SpellMgr, pLibrary->Module()));
    // A type number that counts nothing.
    const auto pWild =
        aLibrary(std::make_shared<CTestModule>([](CTestPlugin& plugin) { plugin.type("Wild", 1); }))
            .effect("E")
            .key("Wild")
            .build();
    EXPECT_FALSE(PackEffectLibrary(sFile.c_str(), pWild->m_SpellMgr, pWild->Module()));
    EXPECT_EQ("old", ReadBytes(sFile));
    // A target that nobody knows leaves the old file, too; a disk without room fails the pack.
    EXPECT_FALSE(PackEffectLibrary(sFile.c_str(), pLibrary->m_SpellMgr, pLibrary->Module(), nullptr, "Cube"));
    EXPECT_EQ("old", ReadBytes(sFile));
    if (std::filesystem::exists("/dev/full"))
    {
        EXPECT_FALSE(PackEffectLibrary("/dev/full", pLibrary->m_SpellMgr, pLibrary->Module()));
    }
    // Why an earlier pack failed is no matter of the next one.
    std::string sError = "too large";
    EXPECT_TRUE(
        PackEffectLibrary(sFile.c_str(), pLibrary->m_SpellMgr, pLibrary->Module(), nullptr, "PC", &sError));
    EXPECT_EQ("", sError);
}

TEST(StrictReading, SaysWhatIsWrongAndWhere)
{
    const auto pLibrary = aLibrary().effect("Smoke").key("Light").value("Radius", 2.0).effect("Fog").build();
    const CEffectModule& module = pLibrary->Module();
    const std::string sGood = Packed(*pLibrary);
    const auto word = [&](uint32_t nAt)
    {
        uint32_t n;
        std::memcpy(&n, sGood.data() + nAt, 4);
        return n;
    };
    const auto with = [&](uint32_t nAt, uint32_t nValue)
    {
        std::string s = sGood;
        std::memcpy(s.data() + nAt, &nValue, 4);
        return s;
    };
    const auto error = [&](const std::string& sBytes)
    {
        CPackedLibrary packed;
        std::string sError;
        EXPECT_FALSE(ReadPackedLibrary(sBytes, module, packed, sError));
        return sError;
    };
    const uint32_t nStrings = word(32), nCurves = nStrings + word(12), nEffects = nCurves + word(16),
                   nNames = word(36);
    const uint32_t nKey = nEffects + 12, nProp = nKey + 24;
    const std::pair<std::string, const char*> c_Cases[] = {
        {"", "Byte 0: this is no packed effect file"},
        {with(0, 0x46585351), "Byte 0: this is no packed effect file"},
        {with(4, 1), "Byte 4: file version 1, expected 2"},
        {with(8, 1), "Byte 8: packed with version 1"},
        {with(28, 2), "Byte 28: 2 effect types"},
        {with(32, nStrings + 4), "Byte 32: string table at"},
        {with(12, word(12) + 2), "Byte 12: size of the string table"},
        {with(16, 0xFFFFFFF0), "Byte 36: effect names at"},
        {sGood + "x", "Byte 36: the effect names don't end with the file"},
        {with(24, 1), "Byte 36: the effect names don't end with the file"},
        {with(20, 2), "Byte 20: 2 keys, but the effects have 1"},
        {with(40, 1), "Byte 40: 1 keys of type 0, but the effects have 0"},
        {with(nStrings + 4, 0x41000000 | word(nStrings + 4)), "the padding of a text isn't zero"},
        {with(nCurves - 4, 0x41414141), "a text without an end"},
        {with(nEffects, 2), "no text begins at 2"},
        {with(nEffects + 8, 1000), "1000 keys, more than the file has room for"},
        {with(nKey, 0), "Radius is no property of type Sprite, or stands out of order"},
        {with(nKey, 2), "3 properties, more than there can be"},
        {with(nKey, 3), "the plug-in has no type 3"},
        {with(nKey + 20, 4), "4 properties, more than there can be"},
        {with(nProp, 0), "Smoke is no property of type Light"},
        {with(nProp + 4, 0), "end position 0, but the record ends at"},
        {with(nProp + 8, 0xFFFFFFFF), "no curve can begin at 4294967295"},
        {with(nProp + 8, 4), "a curve"},
        {with(nCurves, 0xFFFFFFFF), "a curve of 4294967295 keys"},
        {with(nCurves, 1), "bytes that belong to no curve"},
        {with(nNames, word(nNames + 4)), "name Fog, but the effect is called Smoke"},
    };
    for (const auto& [sBytes, pszExpected] : c_Cases)
        EXPECT_NE(std::string::npos, error(sBytes).find(pszExpected))
            << pszExpected << "\nis: " << error(sBytes);

    for (size_t i = 0; i < sGood.size(); ++i)
    {
        EXPECT_NE("", error(sGood.substr(0, i)));
        for (const char c : {'\0', '\xFF', '\x04'}) // any other byte is refused or read, in order
        {
            std::string s = sGood;
            s[i] = c;
            CPackedLibrary packed;
            std::string sError;
            const bool bRead = ReadPackedLibrary(s, module, packed, sError);
            EXPECT_EQ(bRead, sError.empty());
        }
    }
}
