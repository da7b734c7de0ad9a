// The two strict readers of packed files, which share no code: the editor's, and the one of the sample game.

#include "FuzzLibrary.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CTestModule s_Types;
    const std::string sBytes(reinterpret_cast<const char*>(pData), nSize);
    CPackedLibrary library;
    bonfire::CPackedFile file;
    std::string sError, sGameError;
    const bool bRead = ReadPackedLibrary(sBytes, s_Types.m_Module, library, sError);
    const bool bGame = ReadAsGame(sBytes, *s_Types.m_Plugin.table(), file, sGameError);
    Require(bRead || !sError.empty(), "the editor's reader fails without a reason");
    Require(bGame || !sGameError.empty(), "the game's reader fails without a reason");
    if (!bRead || !bGame)
        return 0;

    Require(library.m_bBigEndian == file.m_bBigEndian && library.m_KeyCounts == file.m_KeyCounts &&
                library.m_Strings.size() == file.m_Strings.size() &&
                library.m_EffectNames.size() == file.m_EffectNames.size() &&
                library.m_Effects.size() == file.m_Effects.size(),
            "the readers differ on the tables");
    for (size_t i = 0; i < library.m_Effects.size(); ++i)
    {
        const CPackedEffect& effect = library.m_Effects[i];
        const bonfire::CEffect& other = file.m_Effects[i];
        Require(effect.m_sName == other.m_sName && effect.m_nOffset == other.m_nOffset &&
                    effect.m_nPhaseLength == other.m_nPhaseLength &&
                    effect.m_Keys.size() == other.m_Keys.size(),
                "the readers differ on an effect");
        for (size_t k = 0; k < effect.m_Keys.size(); ++k)
            Require(effect.m_Keys[k].m_nID == other.m_Keys[k].m_nID &&
                        effect.m_Keys[k].m_nLink == other.m_Keys[k].m_nLink &&
                        effect.m_Keys[k].m_nOffset == other.m_Keys[k].m_nOffset &&
                        effect.m_Keys[k].m_Properties.size() == other.m_Keys[k].m_Properties.size(),
                    "the readers differ on a key");
    }
    return 0;
}
