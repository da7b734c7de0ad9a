// Both readers of packed files, which share no code: the editor's strict one, and the one for games.

#include "FuzzLibrary.h"

namespace
{
bool IsSame(const CPackedValue& value, const CEmberdeckValue& other)
{
    const double* p = other.m_Numbers;
    // By bits: a number that is none equals itself.
    const auto same = [](float f, double fOther)
    {
        return std::bit_cast<uint32_t>(f) == std::bit_cast<uint32_t>(float(fOther)) ||
               (f != f && fOther != fOther);
    };
    if (const auto* pText = std::get_if<std::string>(&value.m_Value))
        return other.m_pszText && *pText == other.m_pszText;
    if (const auto* pInt = std::get_if<int32_t>(&value.m_Value))
        return *pInt == p[0];
    if (const auto* pIndex = std::get_if<uint32_t>(&value.m_Value))
        return *pIndex == p[0];
    if (const auto* pFloat = std::get_if<float>(&value.m_Value))
        return same(*pFloat, p[0]);
    if (const auto* pVector = std::get_if<CVector3>(&value.m_Value))
        return same(pVector->x, p[0]) && same(pVector->y, p[1]) && same(pVector->z, p[2]);
    const auto& color = std::get<CPackedColor>(value.m_Value);
    return same(color.r, p[0]) && same(color.g, p[1]) && same(color.b, p[2]) && same(color.a, p[3]);
}

void CompareProperties(const CPackedKey& key, const CEmberdeckKey& other)
{
    CEmberdeckProperty prop;
    bool bProp = EmberdeckFirstProperty(&other, &prop);
    for (const CPackedProperty& expected : key.m_Properties)
    {
        Require(bProp && expected.m_nOffset == prop.m_nOffset && expected.m_eType == prop.m_pDesc->m_eType &&
                    expected.m_bCurve == (prop.m_pDesc->m_bFunctionCurve != 0) &&
                    expected.m_nCurveOffset == prop.m_nCurve && expected.m_Keys.size() == prop.m_nNumValues,
                "the readers differ on a property");
        for (uint32_t i = 0; i < prop.m_nNumValues; ++i)
            Require(expected.m_Keys[i].m_fTime == EmberdeckTimeAt(&prop, i) &&
                        IsSame(expected.m_Keys[i].m_Value, EmberdeckValueAt(&prop, i)),
                    "the readers differ on a value");
        bProp = EmberdeckNextProperty(&prop);
    }
    Require(!bProp, "the readers differ on the end of a key");
}

void CompareKeys(const CPackedEffect& effect, const CEmberdeckEffect& other)
{
    CEmberdeckKey key;
    bool bKey = EmberdeckFirstKey(&other, &key);
    for (const CPackedKey& expected : effect.m_Keys)
    {
        Require(bKey && expected.m_nID == key.m_nID && expected.m_nLink == key.m_nLink &&
                    expected.m_nOffset == key.m_nOffset && expected.m_nTypeID == key.m_pType->m_nTypeID &&
                    expected.m_fStart == key.m_fStart && expected.m_fEnd == key.m_fEnd,
                "the readers differ on a key");
        CompareProperties(expected, key);
        bKey = EmberdeckNextKey(&key);
    }
    Require(!bKey, "the readers differ on the end of an effect");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CTestModule s_Types;
    const std::string sBytes(reinterpret_cast<const char*>(pData), nSize);
    CPackedLibrary library;
    CGameFile game;
    std::string sError;
    const bool bRead = ReadPackedLibrary(sBytes, s_Types.m_Module, library, sError);
    Require(bRead || !sError.empty(), "the editor's reader fails without a reason");
    if (!bRead)
        return 0;
    Require(game.Open(sBytes, *s_Types.m_Plugin.table()), "the game refuses what dump takes");
    Require(library.m_bBigEndian == game.m_File.m_bBigEndian &&
                library.m_Effects.size() == game.m_File.m_nNumEffects,
            "the readers differ on the tables");
    CEmberdeckEffect effect;
    for (uint32_t i = 0; EmberdeckGetEffect(&game.m_File, i, &effect); ++i)
    {
        const CPackedEffect& expected = library.m_Effects[i];
        Require(expected.m_sName == effect.m_pszName && expected.m_nOffset == effect.m_nOffset &&
                    expected.m_nPhaseLength == effect.m_nPhaseLength,
                "the readers differ on an effect");
        CompareKeys(expected, effect);
    }
    const char* psz = nullptr;
    for (const auto& [nOffset, sText] : library.m_Strings)
        Require((psz = EmberdeckNextText(&game.m_File, psz)) && sText == psz, "the readers differ on a text");
    return 0;
}
