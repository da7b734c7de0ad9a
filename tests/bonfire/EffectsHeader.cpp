#include <cmath>

#include <gtest/gtest.h>

#include "SmallFile.h"

namespace
{
using CWords = std::vector<uint32_t>;

// A file of one effect with one key that holds the given properties, of a table with one type. A property is its
// name's offset and its data; the texts are "E" at 0, "V" at 4, "A" at 8, "B" at 12, "S" at 16, "I" at 20.
std::vector<uint8_t> Pack(const CWords& curves, const std::vector<CWords>& props, bool bBig = false)
{
    CSmallFile file(bBig);
    for (const uint32_t n :
         {EMBERDECK_MAGIC, 2u, 9u, 24u, 4 * uint32_t(curves.size()), 1u, 1u, 1u, 44u, 0u, 1u})
        file.U32(n);
    for (const char c : {'E', 'V', 'A', 'B', 'S', 'I'})
        file.m_Bytes.insert(file.m_Bytes.end(), {uint8_t(c), 0, 0, 0});
    for (const uint32_t n : curves)
        file.U32(n);
    for (const uint32_t n : {0u, 500u, 1u, 0u, Bits(0.25f), Bits(0.5f), 7u, 7u, uint32_t(props.size())})
        file.U32(n);
    for (const CWords& prop : props)
    {
        file.U32(prop[0]);
        file.U32(file.Here() + 4 * uint32_t(prop.size()));
        for (size_t i = 1; i < prop.size(); ++i)
            file.U32(prop[i]);
    }
    file.Patch(36, file.Here());
    file.U32(0);
    return file.m_Bytes;
}

const CEffectTypeTable& Types()
{
    static const CEffectPropertyDesc c_Props[] = {
        Desc("V", ePropType_Vector, "", true, true),        Desc("A", ePropType_Enum, "x, y", true, true),
        Desc("B", ePropType_Enum, "x,y , z,", true, false), Desc("N", ePropType_None, "", true),
        Desc("S", ePropType_Animation, "", true, true),     Desc("I", ePropType_Int, "", true, true)};
    static const CEffectTypeDesc c_Type = {"T", 0, 6, c_Props};
    static const CEffectTypeTable c_Table = {9, 1, &c_Type};
    return c_Table;
}

struct COpened
{
    // At an address that is so many bytes from an even one, with as much memory as is needed.
    explicit COpened(const std::vector<uint8_t>& bytes, size_t nShift = 0,
                     const CEffectTypeTable& types = Types())
        : m_Bytes(bytes)
    {
        m_Bytes.insert(m_Bytes.begin(), nShift, 0);
        m_Index.resize(EmberdeckIndexLength(m_Bytes.data() + nShift, bytes.size()));
        m_bOpen = EmberdeckOpen(&m_File, m_Bytes.data() + nShift, bytes.size(), &types, m_Index.data(),
                                m_Index.size(), &m_Error);
    }
    CEmberdeckProperty Property(const char* pszName) const
    {
        CEmberdeckEffect effect;
        CEmberdeckKey key;
        CEmberdeckProperty prop = {};
        EXPECT_TRUE(EmberdeckFindEffect(&m_File, "e", &effect) && EmberdeckFirstKey(&effect, &key) &&
                    EmberdeckFindProperty(&key, pszName, &prop));
        return prop;
    }

    std::vector<uint8_t> m_Bytes;
    std::vector<uint32_t> m_Index;
    CEmberdeckFile m_File;
    CEmberdeckError m_Error;
    bool m_bOpen;
};

// A text curve, one without values, one of enumerators, a vector's, and whole numbers: in another order than the
// properties refer to them.
const CWords c_Curves = {2,
                         Bits(0),
                         8,
                         Bits(1),
                         12,
                         2,
                         0,
                         Bits(1),
                         1,
                         Bits(0),
                         2,
                         2,
                         Bits(0),
                         Bits(0),
                         0,
                         0,
                         Bits(1),
                         Bits(1),
                         Bits(2),
                         Bits(NAN),
                         3,
                         Bits(0),
                         uint32_t(-10),
                         Bits(0.5f),
                         5,
                         Bits(0.5f),
                         0x7FFFFFFF};
const std::vector<CWords> c_Props = {{4, 44}, {8, 32}, {12, 32}, {16, 0}, {20, 80}};
} // namespace

TEST(EffectsHeader, ReadsEitherOrderAtAnyAddress)
{
    for (const bool bBig : {false, true})
        for (const size_t nShift : {0, 1, 2, 3})
        {
            const COpened file(Pack(c_Curves, c_Props, bBig), nShift);
            ASSERT_TRUE(file.m_bOpen) << EmberdeckErrorText(file.m_Error.m_eCode) << file.m_Error.m_nOffset;
            EXPECT_EQ(bBig, file.m_File.m_bBigEndian);
            const CEmberdeckProperty v = file.Property("V");
            const CEmberdeckValue middle = EmberdeckEvaluate(&v, 0.5);
            EXPECT_EQ(3u, middle.m_nNumNumbers);
            EXPECT_EQ(0.5, middle.m_Numbers[0]);
            EXPECT_EQ(1.0, middle.m_Numbers[1]);
            EXPECT_TRUE(std::isnan(middle.m_Numbers[2]));
            // Texts and enumerators are never mixed; a shared curve may go beyond a shorter list.
            const CEmberdeckProperty a = file.Property("A"), b = file.Property("B"), s = file.Property("S");
            EXPECT_EQ(a.m_nCurve, b.m_nCurve);
            size_t nLength = 0;
            EXPECT_EQ(nullptr, EmberdeckEnumerator(a.m_pDesc, 2, &nLength));
            const char* pName =
                EmberdeckEnumerator(b.m_pDesc, uint32_t(EmberdeckEvaluate(&b, 9).m_Numbers[0]), &nLength);
            ASSERT_TRUE(pName);
            EXPECT_EQ("z", std::string(pName, nLength));
            EXPECT_STREQ("A", EmberdeckEvaluate(&s, 0.99).m_pszText);
            EXPECT_STREQ("B", EmberdeckEvaluate(&s, 1).m_pszText);
            EXPECT_EQ(1.0f, EmberdeckTimeAt(&s, 1));
            // A line of whole numbers has fractions, jumps where two points have one time, and keeps every bit.
            const CEmberdeckProperty i = file.Property("I");
            EXPECT_EQ(-10.0, EmberdeckEvaluate(&i, NAN).m_Numbers[0]);
            EXPECT_EQ(-2.5, EmberdeckEvaluate(&i, 0.25).m_Numbers[0]);
            EXPECT_EQ(2147483647.0, EmberdeckEvaluate(&i, 0.5).m_Numbers[0]);
        }
}

TEST(EffectsHeader, WalksKeysTextsAndTypes)
{
    CSmallFile small;
    const COpened file(small.Bytes(), 0, SmallTypes());
    ASSERT_TRUE(file.m_bOpen);
    EXPECT_EQ(2u, EmberdeckKeyCount(&file.m_File, 1));
    EXPECT_EQ(0u, EmberdeckKeyCount(&file.m_File, 2)); // no such type
    std::string sTexts;
    for (const char* psz = nullptr; (psz = EmberdeckNextText(&file.m_File, psz));)
        sTexts += std::string(psz) + "|";
    EXPECT_EQ("Fire|UIType_TextLine|Texture|a\\b.dds|Blend|Size|Frame|Offset|Color|Words|hot||Count|Child|"
              "fire; Gone|D\xfcster|",
              sTexts);

    CEmberdeckEffect effect, other;
    ASSERT_TRUE(EmberdeckFindEffect(&file.m_File, "FIRE", &effect));
    EXPECT_FALSE(EmberdeckFindEffect(&file.m_File, "Fir", &other));
    EXPECT_TRUE(EmberdeckGetEffect(&file.m_File, 1, &other));
    EXPECT_FALSE(EmberdeckGetEffect(&file.m_File, 2, &other));
    CEmberdeckKey key, linked;
    EXPECT_FALSE(EmberdeckFirstKey(&other, &key)); // an effect without keys
    ASSERT_TRUE(EmberdeckFirstKey(&effect, &key));
    EXPECT_FALSE(EmberdeckFindLinkedKey(&effect, &key, &linked)); // its own id
    CEmberdeckProperty prop;
    std::string sNames;
    for (bool bProp = EmberdeckFirstProperty(&key, &prop); bProp; bProp = EmberdeckNextProperty(&prop))
        sNames += prop.m_pDesc->m_szName + std::string(" ");
    EXPECT_EQ("Texture Blend Size Frame Offset Color Words Count Child ", sNames);
    EXPECT_FALSE(EmberdeckFindProperty(&key, "size", &prop)); // case counts
    ASSERT_TRUE(EmberdeckNextKey(&key));
    EXPECT_FALSE(EmberdeckFirstProperty(&key, &prop));            // of a type without any
    EXPECT_FALSE(EmberdeckFindLinkedKey(&effect, &key, &linked)); // the other one is gone
    ASSERT_TRUE(EmberdeckNextKey(&key));
    ASSERT_TRUE(EmberdeckFindLinkedKey(&effect, &key, &key));
    EXPECT_EQ(5u, key.m_nID);
    EXPECT_TRUE(EmberdeckNextKey(&key) && EmberdeckNextKey(&key) && !EmberdeckNextKey(&key));
    EXPECT_FALSE(EmberdeckNextKey(&key) || EmberdeckNextProperty(&prop)); // once more: nothing
}

TEST(EffectsHeader, TellsWhyAndWhere)
{
    const auto refused = [](const CWords& curves, const std::vector<CWords>& props)
    {
        const COpened file(Pack(curves, props));
        return std::pair(file.m_Error.m_eCode, file.m_bOpen ? 0 : file.m_Error.m_nOffset);
    };
    using CTold = std::pair<EEmberdeckError, uint32_t>;
    const uint32_t nCurves = 44 + 24;
    EXPECT_EQ(CTold(eEmberdeckError_None, 0), refused({}, {}));
    // A record that runs into one that was met before, and one that is entered from its inside.
    CWords curves = c_Curves;
    curves[5] = 8;
    EXPECT_EQ(CTold(eEmberdeckError_CurveUnused, nCurves + 20), refused(curves, c_Props));
    curves = c_Curves;
    curves[0] = 4;
    EXPECT_EQ(CTold(eEmberdeckError_CurveLong, nCurves), refused(curves, c_Props));
    const uint32_t nRecords = nCurves + 4 * uint32_t(c_Curves.size()) + 36;
    EXPECT_EQ(CTold(eEmberdeckError_CurveInside, nRecords + 20), refused(c_Curves, {{4, 44}, {8, 48}}));
    EXPECT_EQ(CTold(eEmberdeckError_CurveUnused, nCurves + 12), refused(c_Curves, {{4, 44}}));
    EXPECT_EQ(CTold(eEmberdeckError_CurvePlace, nRecords + 8), refused(c_Curves, {{4, 46}}));
    EXPECT_EQ(CTold(eEmberdeckError_CurvePlace, nCurves + 36 + 8), refused({}, {{4, 0}}));
    EXPECT_EQ(CTold(eEmberdeckError_NoText, nCurves + 8), refused({1, 0, 5}, {{16, 0}}));
    EXPECT_EQ(CTold(eEmberdeckError_PropUnknown, nCurves + 12 + 36 + 12),
              refused({1, 0, 0}, {{16, 0}, {4, 0}}));
}

TEST(EffectsHeader, TellsWhatTheGameDoesWrong)
{
    const std::vector<uint8_t> bytes = Pack(c_Curves, c_Props);
    const size_t nIndex = EmberdeckIndexLength(bytes.data(), bytes.size());
    EXPECT_EQ(1 + 2 + (c_Curves.size() + 3) / 4, nIndex);
    EXPECT_LE(4 * nIndex, 2 * bytes.size());
    EXPECT_EQ(0u, EmberdeckIndexLength(nullptr, 0));
    EXPECT_EQ(0u, EmberdeckIndexLength(bytes.data(), 39));
    std::vector<uint32_t> index(nIndex);
    CEmberdeckFile file;
    CEmberdeckError error;
    const auto open = [&](const CEffectTypeTable& types, uint32_t* pIndex, size_t nLength)
    {
        const bool bOpen = EmberdeckOpen(&file, bytes.data(), bytes.size(), &types, pIndex, nLength, &error);
        EXPECT_EQ(bOpen, error.m_eCode == eEmberdeckError_None);
        return error.m_eCode;
    };
    EXPECT_EQ(eEmberdeckError_IndexShort, open(Types(), nullptr, 0));
    EXPECT_EQ(eEmberdeckError_IndexShort, open(Types(), index.data(), nIndex - 1));
    EXPECT_EQ(eEmberdeckError_TypesVersion, open(SmallTypes(), index.data(), nIndex));
    EXPECT_EQ(9u, file.m_nTypeTableVersion);
    EXPECT_EQ(eEmberdeckError_TypesNumber, open({9, 2, Types().m_pTypes}, index.data(), nIndex));
    EXPECT_EQ(eEmberdeckError_KeyType, open({9, 1, nullptr}, index.data(), nIndex));
    EXPECT_EQ(eEmberdeckError_None, open(Types(), index.data(), nIndex));
    EXPECT_FALSE(EmberdeckOpen(&file, nullptr, 0, &Types(), nullptr, 0, nullptr));
    EXPECT_STREQ("unknown", EmberdeckErrorText(eEmberdeckError_Count));
}

TEST(EffectsHeader, EnumeratorsOfAList)
{
    const struct
    {
        const char* m_pszList;
        uint32_t m_nIndex;
        const char* m_pszFound; // null: none
    } c_Cases[] = {{"", 0, nullptr},     {"a", 0, "a"},
                   {"a", 1, nullptr},    {"a,", 1, nullptr},
                   {",b", 0, ""},        {",b", 1, "b"},
                   {"a,,c", 1, ""},      {" a b , c", 0, "a b"},
                   {" a b , c", 1, "c"}, {"a,b", 4294967295u, nullptr},
                   {" ", 0, ""}};
    for (const auto& c : c_Cases)
    {
        const CEffectPropertyDesc desc = Desc("E", ePropType_Enum, c.m_pszList);
        size_t nLength = 99;
        const char* p = EmberdeckEnumerator(&desc, c.m_nIndex, &nLength);
        ASSERT_EQ(c.m_pszFound == nullptr, p == nullptr) << c.m_pszList << c.m_nIndex;
        if (p)
        {
            EXPECT_EQ(c.m_pszFound, std::string(p, nLength)) << c.m_pszList << c.m_nIndex;
        }
    }
    CEffectPropertyDesc desc = Desc("E", ePropType_Enum);
    std::memset(desc.m_szData, ',', sizeof(desc.m_szData)); // without a NUL: the last byte doesn't count
    size_t nLength = 0;
    EXPECT_TRUE(EmberdeckEnumerator(&desc, 254, &nLength));
    EXPECT_FALSE(EmberdeckEnumerator(&desc, 255, &nLength));
}
