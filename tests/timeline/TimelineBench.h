#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/LibraryBuilder.h"
#include "support/MemoryDocuments.h"
#include "support/RecordingSurface.h"
#include "support/ScopeChecker.h"
#include "support/ScriptedPrompts.h"
#include "timeline/TrackCommands.h"
#include "timeline/TrackWnd.h"

// A window that counts what is asked of it.
class CFakeTrackView : public ITrackView
{
public:
    void TakeFocus() override { ++m_nFocus; }
    void Invalidate() override { ++m_nInvalidated; }
    void PaintNow() override { ++m_nPainted; }
    void PaintRulerNow() override { ++m_nRulers; }
    void KeyInfoChanged() override { ++m_nKeyInfos; }
    void SetCursorShape(ECursorShape eShape) override { m_eShape = eShape; }
    CPoint PointerPosition() const override { return m_ptPointer; }
    bool IsLeftButtonDown() const override { return m_bLeftDown; }
    void PostPhaseLengthEntered() override { ++m_nPosted; }

    CPoint m_ptPointer;
    bool m_bLeftDown = true;
    ECursorShape m_eShape = ECursorShape::eArrow;
    int m_nFocus = 0, m_nInvalidated = 0, m_nPainted = 0, m_nRulers = 0, m_nKeyInfos = 0, m_nPosted = 0;
};

// What edits touched.
class CTouchLog : private IEditListener
{
public:
    explicit CTouchLog(CEditHub& edits) : m_Edits(edits) { m_Edits.AddListener(this); }
    ~CTouchLog() override { m_Edits.RemoveListener(this); }
    bool Has(const void* pObject) const
    {
        return std::any_of(m_Touched.begin(), m_Touched.end(),
                           [&](const CTouch& touch) { return touch.m_pObject == pObject; });
    }
    std::vector<CTouch> m_Touched;

private:
    void OnEdit(const CEdit& edit) override
    {
        m_Touched.insert(m_Touched.end(), edit.m_Touched.begin(), edit.m_Touched.end());
    }
    CEditHub& m_Edits;
};

// No command or gesture touches an effect as a whole: an undo costs, and a painter paints, what is touched.
class CNarrowTouches : private IEditListener
{
public:
    explicit CNarrowTouches(CEditHub& edits) : m_Edits(edits) { m_Edits.AddListener(this); }
    ~CNarrowTouches() override { m_Edits.RemoveListener(this); }
    static constexpr const char* c_szTest = "Test"; // the label of edits that a test makes itself

private:
    void OnEdit(const CEdit& edit) override
    {
        for (const CTouch& touch : edit.m_Touched)
            EXPECT_TRUE(touch.m_eKind != ETouched::eSpell || touch.m_ePart != EPart::eWhole ||
                        edit.m_sLabel.ends_with(c_szTest))
                << edit.m_sLabel;
    }
    CEditHub& m_Edits;
};

// The timeline of the first effect of a library, 0.1 pixels a millisecond, rows from y 70 on.
struct CTimelineBench
{
    // One effect from a text: "S1000-5000#3 | L2000-3000>3* L4000-5000=Glow" has a Sprite with the id 3 on one
    // track, and on the next two Lights, the one linked to it and selected, the other named.
    explicit CTimelineBench(const std::string& sTracks) : CTimelineBench(Parse(aLibrary(), sTracks)) {}
    explicit CTimelineBench(CLibraryBuilder& builder) : m_pLibrary(builder.build()), checker(context)
    {
        Open();
    }

    CSpell& Spell(size_t nSpell = 0) { return *m_pLibrary->m_SpellMgr.Spells().at(nSpell); }
    CTrackList& Tracks() { return Spell().m_Tracks; }
    CKey& Key(uint32_t nTrack, uint32_t nKey) { return *Tracks().GetTrack(nTrack)->GetKey(nKey); }
    void Open(size_t nSpell = 0)
    {
        wnd.reset();
        wnd = std::make_unique<CTrackWnd>(context, Spell(nSpell), view);
        const int32_t nScrollBar = 20;
        wnd->OnSize(1000 + nScrollBar, 470, 70, 100, nScrollBar);
    }

    // The middle of a row, at the pixel of a time.
    static CPoint At(int32_t nTime, int32_t nRow) { return {nTime / 10, 70 + nRow * 36 + 18}; }
    void Press(CPoint pt, bool bCtrl = false, bool bShift = false) { wnd->OnLeftPress(pt, bCtrl, bShift); }
    void Click(CPoint pt, bool bCtrl = false)
    {
        Press(pt, bCtrl);
        wnd->OnLeftRelease(pt);
    }
    void Drag(CPoint from, CPoint to, bool bCtrl = false, bool bShift = false)
    {
        Press(from, bCtrl, bShift);
        wnd->OnMove(to, true);
        wnd->OnLeftRelease(to);
    }

    const std::string& Status() const { return host.m_Status.back(); } // what was said last

    // Changes what the test needs, as something else than the timeline would.
    template <class TChange>
    void Arrange(const TChange& change)
    {
        {
            CEditScope scope(edits, CNarrowTouches::c_szTest);
            scope.TouchSpellList();
            scope.TouchPrefabList();
            scope.Touch(&Spell());
            change();
        }
        checker.Check("before a change of the test");
    }

    // "0-500* 800-1000 | 300-400": starts and ends by track, a star for a selected key.
    std::string Dump()
    {
        std::string sText;
        for (uint32_t i = 0; i < Tracks().GetNumTracks(); ++i)
        {
            sText += i ? " |" : "";
            for (const auto& pKey : Tracks().GetTrack(i)->Keys())
            {
                EXPECT_EQ(i, pKey->m_nTrack);
                sText += (sText.empty() ? "" : " ") + std::to_string(pKey->m_nStartTime) + "-" +
                         std::to_string(pKey->m_nEndTime) + (pKey->m_bSelected ? "*" : "");
            }
        }
        return sText;
    }

    static CLibraryBuilder& Parse(CLibraryBuilder&& builder, const std::string& sTracks)
    {
        builder.effect("Smoke").track();
        std::istringstream words(sTracks);
        for (std::string sWord; words >> sWord;)
        {
            if (sWord == "|")
            {
                builder.track();
                continue;
            }
            const char* pszRest = sWord.c_str();
            const auto number = [&]
            { return int32_t(std::strtol(pszRest + 1, const_cast<char**>(&pszRest), 10)); };
            const char* pszType = *pszRest == 'S' ? "Sprite" : *pszRest == 'L' ? "Light" : "Marker";
            const int32_t nStart = number();
            builder.key(pszType, nStart, number());
            for (; *pszRest == '#' || *pszRest == '>' || *pszRest == '*';)
            {
                if (*pszRest == '#')
                    builder.id(uint32_t(number()));
                else if (*pszRest == '>')
                    builder.link(uint32_t(number()));
                else
                    builder.selected(), ++pszRest;
            }
            if (*pszRest == '=')
                builder.name(pszRest + 1);
        }
        return builder;
    }

    std::unique_ptr<CTestLibrary> m_pLibrary;
    CScriptedPrompts prompts;
    CMemoryHost host;
    CMemoryDocuments documents;
    CEditClipboard clipboard;
    CEditHub edits;
    std::string sResourceRoot;
    CEditContext context{m_pLibrary->m_SpellMgr,
                         m_pLibrary->Module(),
                         clipboard,
                         m_pLibrary->m_EffectTree,
                         m_pLibrary->m_PrefabTree,
                         sResourceRoot,
                         edits,
                         prompts,
                         host,
                         documents};
    CScopeChecker checker;
    CNarrowTouches narrow{edits};
    CFakeTrackView view;
    std::unique_ptr<CTrackWnd> wnd;
};

// Labels as they stand in the menu: "Key(Name Key, -, Delete Key) Track(Insert Track)".
inline std::string DumpMenu(const std::vector<CMenuEntry>& entries)
{
    std::string sText;
    for (const CMenuEntry& entry : entries)
    {
        sText += (sText.empty() ? "" : ", ") + (entry.IsSeparator() ? "-" : entry.m_sLabel);
        if (!entry.m_Entries.empty())
            sText += "(" + DumpMenu(entry.m_Entries) + ")";
    }
    return sText;
}
