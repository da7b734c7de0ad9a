#include "changes/Merge.h"

#include <algorithm>
#include <random>

#include "changes/MergeOrder.h"
#include "changes/MergeTest.h"

namespace
{
std::unique_ptr<CTestLibrary> Base()
{
    return aLibrary()
        .prefab("Sprite", "Puff")
        .prefab("Light", "Lamp")
        .group("Old")
        .effect("Smoke")
        .key("Sprite")
        .name("A")
        .key("Sprite")
        .onPrefab("Puff")
        .track()
        .key("Light")
        .name("C")
        .linkTo("A")
        .end()
        .effect("Fire")
        .key("Sprite", 100, 200)
        .group("Empty")
        .build();
}

using CEditSide = std::function<void(const CSide&)>;

std::string Lines(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    std::string sText;
    for (const std::string& sLine : lines)
        sText += sLine + "\n";
    return sText;
}
std::string Words(const CLibraryChange& change)
{
    std::vector<std::string> lines;
    for (const CDifference& difference : change.m_Differences)
        lines.push_back(Tell(difference));
    return Lines(lines);
}
std::string Words(const std::vector<CMergeConflict>& conflicts)
{
    std::vector<std::string> lines;
    for (const CMergeConflict& conflict : conflicts)
        lines.push_back(Tell(conflict));
    return Lines(lines);
}

struct CCase
{
    const char* m_pszWhat;
    CEditSide m_Mine;
    CEditSide m_Theirs;
    std::vector<std::string> m_Changes; // from the base to what is merged, sorted
    std::vector<std::string> m_Conflicts;
};

// The side edited in a file of its own, as the base sees it.
std::shared_ptr<const CLibraryImage> Edited(const std::string& sFile, const CLibraryImage& base,
                                            const CEditSide& edit)
{
    CLoaded loaded = LoadText(sFile);
    edit(CSide{*loaded.m_pLibrary});
    loaded = LoadText(SavedBytes(*loaded.m_pLibrary));
    EXPECT_EQ("", loaded.Findings());
    return Align(base, *ImageOf(*loaded.m_pLibrary));
}

const CCase c_Cases[] = {
    {"nothing", [](const CSide&) {}, [](const CSide&) {}, {}, {}},
    {"different keys, and different properties of one",
     [](const CSide& s)
     {
         s.Value("Smoke", 0, "Count", 3);
         s.Key("Fire", 0).m_nStartTime = 90;
     },
     [](const CSide& s)
     {
         s.Value("Smoke", 1, "Count", 4);
         s.Value("Smoke", 0, "Frame", 5);
         s.Key("Fire", 0).m_nEndTime = 250;
         s.Key("Fire", 0).m_sName = "F";
     },
     {"Fire: key 0, end: 200 ms -> 250 ms", "Fire: key 0, name: \"\" -> \"F\"",
      "Fire: key 0, start: 100 ms -> 90 ms", "Smoke: key 0, Count: 10 -> 3", "Smoke: key 0, Frame: 0 -> 5",
      "Smoke: key 1, Count: inherited -> 4"},
     {}},
    {"one property",
     [](const CSide& s) { s.Value("Smoke", 0, "Count", 3); },
     [](const CSide& s) { s.Value("Smoke", 0, "Count", 4); },
     {"Smoke: key 0, Count: 10 -> 3"},
     {"Smoke: key 0, Count: 10, mine 3, theirs 4; mine stands"}},
    {"one property to the same",
     [](const CSide& s) { s.Value("Smoke", 0, "Count", 3); },
     [](const CSide& s) { s.Value("Smoke", 0, "Count", 3); },
     {"Smoke: key 0, Count: 10 -> 3"},
     {}},
    {"an id that both gave out, and links to it",
     [](const CSide& s) { s.Add("Smoke", 1, 1000, 2000, "M"); },
     [](const CSide& s)
     {
         s.Add("Smoke", 1, 2000, 3000, "T");
         s.Key("Smoke", 1).Link(3);
     },
     {"Smoke: key 1, motion link to: none -> 4", "Smoke: key 3 is new", "Smoke: key 4 is new"},
     {}},
    {"the same key on both sides",
     [](const CSide& s) { s.Add("Smoke", 2, 0, 70, "Same"); },
     [](const CSide& s) { s.Add("Smoke", 2, 0, 70, "Same"); },
     {"Smoke: track 2 is new"},
     {}},
    {"a track of each side",
     [](const CSide& s) { s.Add("Smoke", 2, 0, 70, "M"); },
     [](const CSide& s) { s.Add("Smoke", 2, 10, 70, "T"); },
     {"Smoke: track 2 is new", "Smoke: track 3 is new"},
     {}},
    {"keys that overlap",
     [](const CSide& s) { s.Add("Fire", 0, 300, 500); },
     [](const CSide& s) { s.Add("Fire", 0, 400, 600); },
     {"Fire: key 1 is new"},
     {"Fire: key 1: it would lie on key 1; mine stands"}},
    {"a chain of keys without room",
     [](const CSide& s) { s.Add("Smoke", 0, 3000, 4000); },
     [](const CSide& s)
     {
         s.Key("Smoke", 1).m_nStartTime = 3500;
         s.Key("Smoke", 1).m_nEndTime = 4500;
         s.Key("Smoke", 0).m_nEndTime = 1800;
     },
     {"Smoke: key 3 is new"},
     {"Smoke: key 0: it would lie on key 1; mine stands",
      "Smoke: key 1: it would lie on key 3; mine stands"}},
    {"times that turn round",
     [](const CSide& s) { s.Key("Fire", 0).m_nStartTime = 190; },
     [](const CSide& s) { s.Key("Fire", 0).m_nEndTime = 110; },
     {"Fire: key 0, start: 100 ms -> 190 ms"},
     {"Fire: key 0: of both sides' times it would end before it starts; mine stands"}},
    {"a key deleted and changed",
     [](const CSide& s) { s.Remove("Smoke", 1); },
     [](const CSide& s) { s.Value("Smoke", 1, "Count", 4); },
     {"Smoke: key 1 is gone"},
     {"Smoke: key 1: mine deleted it, theirs changed it; mine stands"}},
    {"a link to what is deleted",
     [](const CSide& s) { s.Key("Smoke", 1).Link(2); },
     [](const CSide& s) { s.Remove("Smoke", 2); },
     {"Smoke: key 1, motion link to: none -> 2"},
     {"Smoke: key 1, motion link to key 2, which the other side deleted; mine stands"}},
    {"an effect deleted and changed",
     [](const CSide& s) { s.RemoveSpell("Fire"); },
     [](const CSide& s) { s.Value("Fire", 0, "Count", 4); },
     {"effect \"Fire\" is gone", "item \"Fire\" is gone"},
     {"effect \"Fire\": mine deleted it, theirs changed it; mine stands"}},
    {"effects of one name",
     [](const CSide& s) { s.AddSpell("Ash", "Old", 5); },
     [](const CSide& s) { s.AddSpell("ASH", "Old", 6); },
     {"effect \"Ash\" is new", "item \"Ash\" is new"},
     {"effect \"Ash\": each side made one of this name; mine stands"}},
    {"the same effect on both sides, another one on each, in one place",
     [](const CSide& s)
     {
         s.AddSpell("Ash", "Old");
         s.AddSpell("Tar", "Old");
     },
     [](const CSide& s)
     {
         s.AddSpell("Ash", "Old");
         s.AddSpell("Oil", "Old");
     },
     {"effect \"Ash\" is new", "effect \"Oil\" is new", "effect \"Tar\" is new", "item \"Ash\" is new",
      "item \"Oil\" is new", "item \"Tar\" is new"},
     {}},
    {"a group of each side under one name",
     [](const CSide& s)
     {
         s.m_Library.m_EffectTree.InsertGroup("New", s.Item("[Effects]"));
         s.AddSpell("Tar", "New");
     },
     [](const CSide& s)
     {
         s.m_Library.m_EffectTree.InsertGroup("New", s.Item("[Effects]"));
         s.AddSpell("Oil", "New");
     },
     {"effect \"Oil\" is new", "effect \"Tar\" is new", "item \"New\" is new", "item \"Oil\" is new",
      "item \"Tar\" is new"},
     {}},
    {"moved by one, changed by the other",
     [](const CSide& s) { s.Move("Fire", "Old"); },
     [](const CSide& s) { s.Value("Fire", 0, "Count", 4); },
     {"Fire: key 0, Count: 10 -> 4", "item \"Fire\" is gone", "item \"Fire\" is new"},
     {}},
    {"moved by both",
     [](const CSide& s) { s.Move("Fire", "Old"); },
     [](const CSide& s) { s.Move("Fire", "Empty"); },
     {"item \"Fire\" is gone", "item \"Fire\" is new"},
     {"item \"Fire\", group: [Effects], mine Old, theirs Empty; mine stands"}},
    {"a group deleted, and put to use",
     [](const CSide& s) { s.m_Library.m_EffectTree.DeleteItem(s.Item("Empty")); },
     [](const CSide& s) { s.AddSpell("Ash", "Empty"); },
     {"effect \"Ash\" is new", "item \"Ash\" is new", "item \"Empty\" is gone"},
     {"item \"Empty\": mine deleted it, theirs put it to new use: \"Ash\"; mine stands"}},
    {"a group whose last effect is deleted and changed",
     [](const CSide& s) { s.Value("Smoke", 0, "Count", 3); },
     [](const CSide& s)
     {
         s.RemoveSpell("Smoke");
         s.m_Library.m_EffectTree.DeleteItem(s.Item("Old"));
     },
     {"Smoke: key 0, Count: 10 -> 3"},
     {"effect \"Smoke\": theirs deleted it, mine changed it; mine stands"}},
    {"a prefab changed and deleted",
     [](const CSide& s)
     { PropOf(*s.m_Library.m_SpellMgr.FindPrefab("Puff"), "Count")->GetKey(0)->m_Data.SetInt(3); },
     [](const CSide& s) { s.RemovePrefab("Puff"); },
     {"prefab \"Puff\", Count: 10 -> 3"},
     {"prefab \"Puff\": theirs deleted it, mine changed it; mine stands"}},
    {"a prefab deleted, and put to use",
     [](const CSide& s) { s.RemovePrefab("Lamp"); },
     [](const CSide& s)
     {
         s.Key("Smoke", 2).ClearProperties();
         s.Key("Smoke", 2).SetParent(s.m_Library.m_SpellMgr.FindPrefab("Lamp"));
     },
     {"item \"Lamp\" is gone", "prefab \"Lamp\" is gone"},
     {"prefab \"Lamp\": mine deleted it, theirs put it to new use: \"Smoke\"; mine stands"}},
    {"an id given out anew to a key of another type",
     [](const CSide& s)
     {
         s.Remove("Smoke", 2);
         s.Add("Smoke", 1, 0, 500).m_nKeyID = 2;
     },
     [](const CSide& s) { s.Key("Smoke", 2).m_nEndTime = 900; },
     {"Smoke: key 2 is gone", "Smoke: key 2 is new"},
     {"Smoke: key 2: mine deleted it, theirs changed it; mine stands"}},
    {"a track deleted, a key put on it",
     [](const CSide& s) { s.Remove("Smoke", 2); },
     [](const CSide& s) { s.Add("Smoke", 1, 1000, 2000); },
     {"Smoke: key 2 is gone", "Smoke: key 3 is new"},
     {}},
};
} // namespace

TEST(Merge, CasesWorkedOutByHand)
{
    const auto pBase = Base();
    const std::string sFile = SavedBytes(*pBase);
    const auto pImage = ImageOf(*pBase);
    for (const CCase& c : c_Cases)
    {
        SCOPED_TRACE(c.m_pszWhat);
        const auto pMine = Edited(sFile, *pImage, c.m_Mine);
        const auto pTheirs = Edited(sFile, *pImage, c.m_Theirs);
        const CMerged merged = Merge(*pImage, *pMine, *pTheirs);
        ASSERT_TRUE(merged.m_pImage);
        EXPECT_EQ(Lines(c.m_Changes), Words(Compare(*pImage, *merged.m_pImage)));
        EXPECT_EQ(Lines(c.m_Conflicts), Words(merged.m_Conflicts));
        ExpectSound(*merged.m_pImage);

        const CMerged turned = Merge(*pImage, *pTheirs, *pMine);
        EXPECT_EQ(merged.m_Conflicts.empty(), turned.m_Conflicts.empty());
        ExpectSound(*turned.m_pImage);
        const auto theirs = [](const CMergeConflict&) { return EMergeSide::eTheirs; };
        const CMerged settled = Merge(*pImage, *pMine, *pTheirs, theirs);
        ExpectSound(*settled.m_pImage);
        EXPECT_EQ(merged.m_Conflicts.empty(), settled.m_Conflicts.empty());

        for (const auto& pSide : {pMine, pTheirs})
        {
            EXPECT_EQ(ImageBytes(*pSide), ImageBytes(*Merge(*pImage, *pImage, *pSide).m_pImage));
            EXPECT_EQ(ImageBytes(*pSide), ImageBytes(*Merge(*pImage, *pSide, *pImage).m_pImage));
            const CMerged same = Merge(CLibraryImage(), *pSide, *pSide);
            EXPECT_EQ("", Words(same.m_Conflicts)) << "without a base";
            EXPECT_EQ(ImageBytes(*pSide), ImageBytes(*same.m_pImage));
            ExpectSound(*Merge(CLibraryImage(), *pMine, *pTheirs).m_pImage);
        }
    }
}

TEST(Merge, ALibraryByItsNumbersKeepsWhatWasRenamed)
{
    // Pictures of one library at three times, as a history has them.
    const auto pLibrary = Base();
    const CSide side{*pLibrary};
    const auto pBase = ImageOf(*pLibrary);
    const auto rename = [&](const char* pszOld, const char* pszNew)
    {
        pLibrary->m_EffectTree.SetItemText(side.Item(pszOld), pszNew);
        side.Spell(pszOld).SetName(pszNew);
    };
    rename("Fire", "Blaze");
    const auto pRenamed = ImageOf(*pLibrary);
    rename("Blaze", "Fire");
    side.Value("Fire", 0, "Count", 4);
    const auto pChanged = ImageOf(*pLibrary);
    const CMerged merged = Merge(*pBase, *pRenamed, *pChanged);
    EXPECT_EQ("", Words(merged.m_Conflicts));
    EXPECT_EQ("Fire: key 0, Count: 10 -> 4\neffect \"Fire\", name: \"Fire\" -> \"Blaze\"\nitem \"Fire\", "
              "name: \"Fire\" -> "
              "\"Blaze\"\n",
              Words(Compare(*pBase, *merged.m_pImage)));

    // Two effects that come to one name; the renamed one of theirs keeps the name that mine has for it.
    rename("Smoke", "Blaze");
    const auto pTaken = ImageOf(*pLibrary);
    const CMerged clash = Merge(*pBase, *pRenamed, *pTaken);
    EXPECT_EQ("effect \"Blaze\", name: mine \"Smoke\", theirs \"Blaze\", which is the name of another one by "
              "now; mine "
              "stands\n",
              Words(clash.m_Conflicts));
    ExpectSound(*clash.m_pImage);
    ExpectSound(*Merge(*pBase, *pRenamed, *pTaken, [](const CMergeConflict&) { return EMergeSide::eTheirs; })
                     .m_pImage);
}

TEST(Merge, OrdersComeTogetherWhoeverGoesFirst)
{
    std::mt19937 random(7);
    const auto below = [&](uint32_t n) { return random() % n; };
    using CList = std::vector<uint64_t>;
    const auto edited = [&](CList list, uint64_t nNew)
    {
        for (uint32_t i = below(4); i > 0; --i)
        {
            if (!list.empty() && below(3) == 0)
                list.erase(list.begin() + below(uint32_t(list.size())));
            else if (!list.empty() && below(2))
            {
                const uint64_t n = list[below(uint32_t(list.size()))];
                std::erase(list, n);
                list.insert(list.begin() + below(uint32_t(list.size() + 1)), n);
            }
            else
                list.insert(list.begin() + below(uint32_t(list.size() + 1)), nNew + i);
        }
        return list;
    };
    const auto less = [](uint64_t a, uint64_t b)
    { return a % 100 * 100 + a / 100 < b % 100 * 100 + b / 100; };
    for (int nRound = 0; nRound < 3000; ++nRound)
    {
        CList base;
        for (uint64_t n = below(9); n > 0; --n)
            base.push_back(n);
        const CList mine = edited(base, 100), theirs = edited(base, 200);
        const auto has = [](const CList& list, uint64_t n)
        { return std::count(list.begin(), list.end(), n) > 0; };
        const auto wanted = [&](uint64_t n) { return !has(base, n) || (has(mine, n) && has(theirs, n)); };
        const CList merged = MergeOrder(base, mine, theirs, wanted, less);
        EXPECT_EQ(merged, MergeOrder(base, theirs, mine, wanted, less));
        EXPECT_EQ(mine, MergeOrder(
                            base, mine, base, [&](uint64_t n) { return has(mine, n); }, less));
        EXPECT_EQ(mine, MergeOrder(
                            base, base, mine, [&](uint64_t n) { return has(mine, n); }, less));
        EXPECT_EQ(mine, MergeOrder(
                            base, mine, mine, [&](uint64_t n) { return has(mine, n); }, less));
        CList all = mine;
        all.insert(all.end(), theirs.begin(), theirs.end());
        std::sort(all.begin(), all.end());
        all.erase(std::unique(all.begin(), all.end()), all.end());
        std::erase_if(all, [&](uint64_t n) { return !wanted(n); });
        CList sorted = merged;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(all, sorted) << "each once";
        // Two that all three have in one order keep it, but where a third one's moving leaves it open which of them
        // moved; so only where nothing was moved.
        CList common = base;
        std::erase_if(common, [&](uint64_t n) { return !wanted(n); });
        const auto commonOf = [&](CList list)
        {
            std::erase_if(list, [&](uint64_t n) { return !has(common, n); });
            return list;
        };
        if (commonOf(mine) == common)
        {
            EXPECT_EQ(commonOf(theirs), commonOf(merged));
        }
    }
}
