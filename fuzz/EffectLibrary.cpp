// An effect library on the standard test types: what loads can be saved, loads again to the same bytes, and
// packs into a file that both readers take.

#include "FuzzLibrary.h"

namespace
{
struct CCountingObserver : ILoadObserver
{
    void OnFinding(const CLoadFinding& finding) override { m_nBytes += finding.m_sText.size(); }
    size_t m_nBytes = 0;
};

void CheckPacked(CFuzzLibrary& library, const CEffectTypeTable& types, const char* pszTarget)
{
    std::string sBytes, sError;
    Require(library.Pack(sBytes, pszTarget), "a loaded library doesn't pack");
    CPackedLibrary packed;
    CGameFile game;
    const bool bGame = game.Open(sBytes, types);
    if (!ReadPackedLibrary(sBytes, library.m_Module, packed, sError) || !bGame)
    {
        std::fprintf(stderr, "%s, %s\n", sError.c_str(), game.Why().c_str());
        Require(false, "a packed library can't be read");
    }
    Require(packed.m_Effects.size() == library.m_SpellMgr.Spells().size() &&
                game.m_File.m_nNumEffects == packed.m_Effects.size() &&
                game.m_File.m_nNumKeys == packed.m_Header.m_nNumKeys,
            "the packed library holds something else");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CTestModule s_Types;
    const CEffectModule& module = s_Types.m_Module;
    const std::string_view sText(reinterpret_cast<const char*>(pData), nSize);

    CFuzzLibrary library(module), watched(module);
    CCountingObserver observer;
    const bool bLoaded = library.Load(sText);
    Require(watched.Load(sText, &observer) == bLoaded && watched.m_sError == library.m_sError,
            "an observer changed the load");
    Require(bLoaded == library.m_sError.empty(), "a failure without a reason, or a reason without one");
    if (!bLoaded)
        return 0;

    std::string sFirst, sSecond;
    if (library.Save(sFirst)) // groups may nest too deep to be loaded again
    {
        Require(watched.Save(sSecond) && sSecond == sFirst, "an observer changed the library");
        CFuzzLibrary again(module);
        Require(again.Load(sFirst) && again.Save(sSecond), "what was saved doesn't load");
        Require(sSecond == sFirst, "what was saved and loaded saves differently");
    }
    CheckPacked(library, *s_Types.m_Plugin.table(), "PC");
    CheckPacked(watched, *s_Types.m_Plugin.table(), "Xenon");
    return 0;
}
