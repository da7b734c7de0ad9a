// An effect library on the standard test types: what loads can be saved, loads again to the same bytes, and
// packs into a file that both readers take.

#include "FuzzLibrary.h"

#include "changes/Compare.h"
#include "changes/ImageReader.h"
#include "changes/Merge.h"

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

bool SavePicture(const CLibraryImage& image, std::string& sText)
{
    const CMemoryFile file;
    if (!SaveLibraryImage(file.Path(), image))
        return false;
    sText = file.Read();
    return true;
}

// The reader that needs no plug-in: what it takes it gives back, and merged with itself it is that.
void CheckPicture(std::string_view sText)
{
    std::vector<std::shared_ptr<const CLibraryImage>> first, again;
    std::string sFirst, sSecond, sError;
    const bool bRead = ReadLibraryImages({{"file", std::string(sText)}}, first, sError);
    Require(bRead == sError.empty(), "a refusal without a reason, or a reason without one");
    if (!bRead || !SavePicture(*first[0], sFirst))
        return;
    Require(ReadLibraryImages({{"again", sFirst}}, again, sError) && SavePicture(*again[0], sSecond) &&
                sSecond == sFirst,
            "a picture doesn't come back");
    const CMerged merged = Merge(*first[0], *Align(*first[0], *again[0]), *first[0]);
    Require(merged.m_Conflicts.empty() && SavePicture(*merged.m_pImage, sSecond) && sSecond == sFirst,
            "a library merged with itself is another one");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CTestModule s_Types;
    const CEffectModule& module = s_Types.m_Module;
    const std::string_view sText(reinterpret_cast<const char*>(pData), nSize);
    CheckPicture(sText);

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
