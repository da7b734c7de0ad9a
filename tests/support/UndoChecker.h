#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "app/History.h"
#include "changes/Compare.h"
#include "formats/EmberdeckPacker.h"
#include "formats/EmberdeckQSA.h"
#include "support/TempDir.h"

// Steps of the random walks that are undone and redone, which each take a share; EMBERDECK_WALK_STEPS asks for more.
inline int WalkSteps()
{
    const char* pszSteps = std::getenv("EMBERDECK_WALK_STEPS");
    const int nSteps = pszSteps ? std::atoi(pszSteps) : 0;
    return nSteps > 0 ? nSteps : 2000;
}

// Goes back and forth over what a walk does: after each of its steps the library that was saved before comes back to
// the byte, and the new one again; and at the end the first one and the last one, packed too.
//
//     CUndoChecker undo(context, history);
//     while (...) { walk.Step(); undo.Check("where"); }
//     undo.Finish();
class CUndoChecker
{
public:
    CUndoChecker(const CEditContext& context, CHistory& history) : m_Context(context), m_History(history) {}

    std::string Label() const // of the newest step
    {
        return m_History.GetNumSteps() ? m_History.GetLabel(m_History.GetNumSteps() - 1) : std::string();
    }

    void Check(const std::string& sWhere)
    {
        const size_t nSteps = m_History.GetNumSteps();
        const std::string sBefore = std::exchange(m_sText, Text());
        ASSERT_EQ("", m_History.GetProblem()) << sWhere;
        if (nSteps != m_nSteps)
        {
            ASSERT_TRUE(m_History.GoTo(m_nSteps)) << sWhere << ": " << m_History.GetProblem();
            ASSERT_EQ(sBefore, Text()) << "undone, " << sWhere;
            ASSERT_TRUE(m_History.GoTo(nSteps)) << sWhere << ": " << m_History.GetProblem();
            ASSERT_EQ(m_sText, Text()) << "redone, " << sWhere;
        }
        ASSERT_TRUE(nSteps != m_nSteps || sBefore == m_sText) << "changed without a step, " << sWhere;
        m_nSteps = nSteps;
    }
    void Finish()
    {
        const std::string sPacked = Packed();
        const auto pLast = Image();
        ASSERT_TRUE(m_History.GoTo(0)) << m_History.GetProblem();
        ASSERT_EQ(m_sFirst, Text());
        ASSERT_EQ(m_sFirstPacked, Packed());
        ASSERT_TRUE(Compare(*m_pFirst, *Image()).IsEmpty());
        ASSERT_TRUE(m_History.GoTo(m_nSteps)) << m_History.GetProblem();
        ASSERT_EQ(m_sText, Text());
        ASSERT_EQ(sPacked, Packed());
        ASSERT_TRUE(Compare(*pLast, *Image()).IsEmpty());
    }

private:
    std::string Text() const
    {
        const std::string sFile = m_Dir.path("walk.Fx00a");
        EXPECT_TRUE(SaveEffectLibrary(sFile.c_str(), m_Context.m_EffectTree, m_Context.m_PrefabTree));
        const std::string sText = ReadBytes(sFile);
        std::filesystem::remove(sFile); // writing over it, again and again, would wait for the disk
        return sText;
    }
    std::string Packed() const
    {
        const std::string sFile = m_Dir.path("walk.Fx00p");
        EXPECT_TRUE(PackEffectLibrary(sFile.c_str(), m_Context.m_SpellMgr, m_Context.m_EffectModule));
        return ReadBytes(sFile);
    }
    std::shared_ptr<const CLibraryImage> Image()
    {
        CImageMaker maker;
        return CLibraryImage::Make({m_Context.m_SpellMgr, m_Context.m_EffectTree, m_Context.m_PrefabTree},
                                   maker);
    }

    const CTempDir m_Dir;
    const CEditContext& m_Context;
    CHistory& m_History;
    size_t m_nSteps = 0; // the position behind the last check
    std::string m_sText = Text();
    const std::string m_sFirst = m_sText;
    const std::string m_sFirstPacked = Packed();
    const std::shared_ptr<const CLibraryImage> m_pFirst = Image();
};
