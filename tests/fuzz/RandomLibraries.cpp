// Random libraries on random tables of types: validation is done after one run, what was loaded and saved saves the same
// again at once, and packs into a file that both readers take.

#include <gtest/gtest.h>

#include "FuzzLibrary.h"
#include "formats/SharedValidation.h"
#include "support/RandomTexts.h"

namespace
{
void ExpectSettled(const CEffectPropertySet& set)
{
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
    {
        const CEffectProperty* pProp = set.GetProperty(i);
        ASSERT_TRUE(pProp);
        CEffectProperty again(*pProp);
        Validate(&again);
        ASSERT_TRUE(IsSameContent(*pProp, again)) << DescName(*pProp->GetDesc());
    }
}
} // namespace

TEST(RandomLibraries, LoadSaveAndPackAtOnce)
{
    for (uint32_t nRound = 0; nRound < 300; ++nRound)
    {
        CRandomTexts texts(nRound);
        CTestModule types([&](CTestPlugin& plugin) { texts.Table(plugin); });
        const std::string sText = texts.NextText();
        CFuzzLibrary library(types.m_Module), again(types.m_Module);
        ASSERT_TRUE(library.Load(sText)) << library.m_sError << sText;
        library.m_SpellMgr.ForEachKey([](CSpell&, CKey& key) { ExpectSettled(key); });
        ASSERT_FALSE(HasFatalFailure()) << sText;

        std::string sFirst, sSecond, sBytes, sError;
        ASSERT_TRUE(library.Save(sFirst) && again.Load(sFirst) && again.Save(sSecond))
            << again.m_sError << sFirst;
        ASSERT_EQ(sFirst, sSecond) << nRound;
        for (CFuzzLibrary* pLibrary : {&library, &again})
        {
            ASSERT_TRUE(pLibrary->Pack(sBytes));
            CPackedLibrary packed;
            CGameFile game, other;
            ASSERT_TRUE(ReadPackedLibrary(sBytes, types.m_Module, packed, sError))
                << nRound << sError << sText;
            const CEffectTypeTable& table = *types.m_Plugin.table();
            ASSERT_TRUE(game.Open(sBytes, table)) << nRound << game.Why() << sText;
            ASSERT_TRUE(other.Open(InOtherOrder(sBytes, game.m_File), table))
                << nRound << other.Why() << sText;
            ASSERT_EQ(game.Digest(), other.Digest()) << nRound << sText;
        }
    }
}
