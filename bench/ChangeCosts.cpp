// What undo costs: pictures of a library, recording an edit, taking it back, and a history's memory.

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "app/History.h"
#include "bench/Generator.h"
#include "bench/Measure.h"
#include "changes/ChangeRecorder.h"
#include "changes/LibraryImage.h"
#include "changes/Merge.h"
#include "formats/EmberdeckQSA.h"
#include "qsnumber.h"

namespace
{
struct CNoOwner : ILibraryOwner
{
    void OnReleasing(const CSpell&) override {}
    void OnReleasing(CEffectPropertySet&) override {}
};

// A library with all that records its edits.
struct CRecorded
{
    CGeneratedLibrary m_Library;
    CEditHub m_Hub;
    CNoOwner m_Owner;
    CApplyTarget m_Target{{m_Library.m_SpellMgr, m_Library.m_EffectTree, m_Library.m_PrefabTree},
                          m_Library.m_Module,
                          m_Hub,
                          m_Owner};
    CChangeRecorder m_Recorder{m_Target};
    CHistory m_History{m_Target};

    CSpell& Spell(size_t n)
    {
        return *m_Library.m_SpellMgr.Spells()[n % m_Library.m_SpellMgr.Spells().size()];
    }
};

// An effect with nKeys keys on ten tracks.
CSpell& AddBigSpell(CRecorded& recorded, uint32_t nKeys)
{
    CSpell& spell = *recorded.m_Library.m_SpellMgr.AddSpell();
    const CSpell& source = recorded.Spell(0);
    const CKey& model = *source.m_Tracks.GetTrack(0)->GetKey(0);
    for (uint32_t nTrack = 0; nTrack < 10; ++nTrack)
        spell.m_Tracks.AddTrack();
    for (uint32_t i = 0; i < nKeys; ++i)
    {
        auto pKey = model.Clone();
        pKey->m_nKeyID = spell.m_Tracks.m_nNextKeyID++;
        pKey->m_nTrack = i % 10;
        pKey->m_nStartTime = static_cast<int32_t>(i / 10 * 100);
        pKey->m_nEndTime = pKey->m_nStartTime + 90;
        spell.m_Tracks.GetTrack(i % 10)->AppendKey(std::move(pKey));
    }
    return spell;
}

void Print(const char* pszWhat, double fSeconds)
{
    std::printf("| %s | %.3f ms |\n", pszWhat, fSeconds * 1e3);
}

// A first run of its own: seconds of the load, or of the picture behind it, or the bytes that either takes.
int RunCold(const char* pszWhat, const char* pszFile)
{
    const auto pLibrary = std::make_unique<CGeneratedLibrary>();
    pLibrary->m_Module.Adopt(BenchTypeTable());
    std::string sError;
    const uint64_t nEmpty = ResidentMemory();
    const double fStart = Now();
    if (!LoadEffectLibrary(pszFile, pLibrary->m_SpellMgr, pLibrary->m_Module, &pLibrary->m_EffectTree,
                           &pLibrary->m_PrefabTree, sError))
        return 1;
    const double fLoaded = Now();
    const uint64_t nLoaded = ResidentMemory();
    CImageMaker maker;
    const auto pImage =
        CLibraryImage::Make({pLibrary->m_SpellMgr, pLibrary->m_EffectTree, pLibrary->m_PrefabTree}, maker);
    const double fMade = Now();
    const uint64_t nMade = ResidentMemory();
    const std::string sWhat = pszWhat;
    const double fResult = sWhat == "load"      ? fLoaded - fStart
                           : sWhat == "picture" ? fMade - fLoaded
                           : sWhat == "load-memory"
                               ? static_cast<double>(nLoaded) - static_cast<double>(nEmpty)
                               : static_cast<double>(nMade) - static_cast<double>(nLoaded);
    std::printf("%s\n", QSFixedText(fResult, 9).c_str());
    return 0;
}

void MeasurePicture(const std::string& sFile)
{
    for (const char* pszWhat : {"load", "picture"})
    {
        const std::string sMemory = std::string(pszWhat) + "-memory";
        std::printf("| %s of 20 MB | %.1f ms, %.1f MB |\n", pszWhat,
                    MeasureInFreshProcess({"--cold", pszWhat, sFile}) * 1e3,
                    MeasureInFreshProcess({"--cold", sMemory, sFile}) / 1e6);
    }
}

void MeasureDrag(CRecorded& recorded)
{
    constexpr int c_nRounds = 2000;
    CSpell& spell = AddBigSpell(recorded, 10000);
    CKey& key = *spell.m_Tracks.GetTrack(5)->GetKey(500);
    const double fStart = Now();
    for (int i = 0; i < c_nRounds; ++i)
    {
        CEditScope scope(recorded.m_Hub, "Move Keys");
        scope.TouchKey(spell, key);
        key.m_nEndTime += i % 2 ? 1 : -1;
        scope.Step();
    }
    Print("recording a drag of one among 10,000 keys, from press to release", (Now() - fStart) / c_nRounds);
    double fUndo = Now();
    recorded.m_History.Undo();
    Print("taking it back", Now() - fUndo);

    {
        CEditScope scope(recorded.m_Hub, "Move Keys");
        for (CKey& other : spell.m_Tracks.AllKeys())
        {
            scope.TouchKey(spell, other);
            other.m_nEndTime -= 5;
        }
    }
    fUndo = Now();
    recorded.m_History.Undo();
    Print("taking back a move of all 10,000 keys", Now() - fUndo);
    {
        CEditScope scope(recorded.m_Hub, "Delete Track");
        scope.Touch(&spell);
        spell.m_Tracks.RemoveTrack(spell.m_Tracks.GetTrack(3));
    }
    fUndo = Now();
    recorded.m_History.Undo();
    Print("taking back the loss of a track of 1,000 keys", Now() - fUndo);
}

void PrintBackAndForth(CHistory& history, const char* pszWhat)
{
    const double fStart = Now();
    history.Undo();
    const double fUndone = Now();
    history.Redo();
    std::printf("| taking back the loss of %s, and doing it again | %.1f ms, %.1f ms |\n", pszWhat,
                (fUndone - fStart) * 1e3, (Now() - fUndone) * 1e3);
    history.Undo();
}

// Losses that leave gaps all over long lists: twice as much has to take twice as long, not four times.
void MeasureLosses(CRecorded& recorded)
{
    for (const uint32_t nKeys : {50000u, 100000u})
    {
        CSpell& spell = AddBigSpell(recorded, nKeys);
        {
            CEditScope scope(recorded.m_Hub, "Delete Keys");
            for (const auto& pTrack : spell.m_Tracks.Tracks())
            {
                for (uint32_t i = pTrack->GetNumKeys(); i-- > 0;)
                {
                    if (i % 2 == 0)
                        continue;
                    scope.TouchTrack(spell, *pTrack);
                    scope.TouchKey(spell, *pTrack->GetKey(i));
                    pTrack->RemoveKey(pTrack->GetKey(i));
                }
            }
        }
        const std::string sWhat = "every second of " + std::to_string(nKeys) + " keys";
        PrintBackAndForth(recorded.m_History, sWhat.c_str());
    }
    CEffectTree& tree = recorded.m_Library.m_EffectTree;
    CSpellMgr& spellMgr = recorded.m_Library.m_SpellMgr;
    for (const size_t nEffects : {5000u, 10000u})
    {
        const size_t nOld = spellMgr.Spells().size();
        const HLibraryItem hGroup = tree.InsertGroup("Many", tree.GetRootItem());
        for (size_t i = 0; i < nEffects; ++i)
            tree.InsertLeaf("Effect", hGroup, spellMgr.AddSpell());
        {
            CEditScope scope(recorded.m_Hub, "Delete");
            scope.TouchTree(ETreeSide::eEffects);
            scope.TouchSpellList();
            for (size_t i = nOld; i < spellMgr.Spells().size(); ++i)
                scope.Touch(spellMgr.Spells()[i].get());
            tree.DeleteItem(hGroup);
            while (spellMgr.Spells().size() > nOld)
                spellMgr.DeleteSpell(spellMgr.Spells().back().get());
        }
        const std::string sWhat = "a group of " + std::to_string(nEffects) + " effects";
        PrintBackAndForth(recorded.m_History, sWhat.c_str());
    }
}

void MeasureHistory(CRecorded& recorded)
{
    const size_t nBefore = recorded.m_History.GetMemory();
    const uint64_t nResident = ResidentMemory();
    for (uint32_t i = 0; i < 1000; ++i)
    {
        CSpell& spell = recorded.Spell(i * 7);
        CTrack& track = *spell.m_Tracks.GetTrack(0);
        CKey& key = *track.GetKey(0);
        CEditScope scope(recorded.m_Hub, "Step");
        if (i % 4 == 0)
        {
            scope.TouchTrack(spell, track);
            auto pKey = key.Clone();
            pKey->m_nKeyID = spell.m_Tracks.TakeKeyID();
            track.PlaceKey(track.AppendKey(std::move(pKey)));
        }
        else if (i % 4 == 1)
        {
            scope.Touch(&spell);
            key.Flatten();
            key.m_Props[0]->GetKey(0)->m_Data.SetText("another texture of the usual length " +
                                                      std::to_string(i));
        }
        else if (i % 4 == 2)
        {
            scope.TouchHead(spell);
            spell.SetName("Effect " + std::to_string(i));
        }
        else
        {
            scope.TouchTrack(spell, track);
            scope.TouchKey(spell, key);
            track.RemoveKey(&key);
            if (track.GetNumKeys() == 0)
                track.AppendKey(recorded.Spell(i * 7 + 1).m_Tracks.GetTrack(0)->GetKey(0)->Clone());
        }
    }
    std::printf("| %zu steps in the history | %.2f MB as it counts, %.2f MB resident |\n",
                recorded.m_History.GetNumSteps(),
                static_cast<double>(recorded.m_History.GetMemory() - nBefore) / 1e6,
                (static_cast<double>(ResidentMemory()) - static_cast<double>(nResident)) / 1e6);
}

// Both sides move half of the keys of one effect, each the other half, and each adds some.
void MeasureMerge(CRecorded& recorded)
{
    const CLibraryParts parts = recorded.m_Target.m_Library;
    CSpell& spell = AddBigSpell(recorded, 100000);
    CImageMaker maker;
    const auto pBase = CLibraryImage::Make(parts, maker);
    std::shared_ptr<const CLibraryImage> sides[2];
    for (int nSide = 0; nSide < 2; ++nSide)
    {
        for (CKey& key : spell.m_Tracks.AllKeys())
            key.m_nEndTime += static_cast<int>(key.m_nKeyID % 2) == nSide ? 5 : 0;
        for (int i = 0; i < 1000; ++i)
        {
            auto pKey = spell.m_Tracks.GetTrack(0)->GetKey(0)->Clone();
            pKey->m_nKeyID = 100000 + static_cast<uint32_t>(i);
            pKey->m_nStartTime = 100000000 + (2 * i + nSide) * 100;
            pKey->m_nEndTime = pKey->m_nStartTime + 90;
            spell.m_Tracks.GetTrack(0)->AppendKey(std::move(pKey));
        }
        sides[nSide] = CLibraryImage::Make(parts, maker);
        for (CKey& key : spell.m_Tracks.AllKeys())
            key.m_nEndTime -= static_cast<int>(key.m_nKeyID % 2) == nSide ? 5 : 0;
        auto& keys = spell.m_Tracks.GetTrack(0)->KeysToRestore();
        keys.erase(keys.end() - 1000, keys.end());
    }
    const double fStart = Now();
    const CMerged merged = Merge(*pBase, *sides[0], *sides[1]);
    const std::string sWhat = "merging an effect of 100,000 keys that both sides changed, " +
                              std::to_string(merged.m_Conflicts.size()) + " conflicts";
    Print(sWhat.c_str(), Now() - fStart);
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--cold") == 0)
        return RunCold(argv[2], argv[3]);
    const std::string sFile =
        std::filesystem::temp_directory_path().string() + "/emberdeck-bench-changes.Fx00a";
    CGeneratedLibrary big;
    GenerateLibrary(big, 20000000, 42);
    if (!SaveEffectLibrary(sFile.c_str(), big.m_EffectTree, big.m_PrefabTree))
        return 1;
    std::printf("| what | cost |\n|---|---|\n");
    MeasurePicture(sFile);
    std::filesystem::remove(sFile);
    CRecorded recorded;
    GenerateLibrary(recorded.m_Library, 1000000, 7);
    MeasureDrag(recorded);
    recorded.m_History.SetBudget(CHistory::c_nDefaultBudget);
    MeasureHistory(recorded);
    MeasureMerge(recorded);
    MeasureLosses(recorded);
    return 0;
}
