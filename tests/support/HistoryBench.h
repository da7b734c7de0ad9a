#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/History.h"
#include "changes/ChangeRecorder.h"
#include "formats/EmberdeckQSA.h"
#include "support/TempDir.h"

// A history over the library of a context, which holds it to what it promises.
class CHistoryBench
{
public:
    explicit CHistoryBench(CEditContext& context) : m_Context(context), m_Texts{Text()} {}

    std::string Text() const
    {
        const std::string sFile = m_Dir.path("history.Fx00a");
        EXPECT_TRUE(SaveEffectLibrary(sFile.c_str(), m_Context.m_EffectTree, m_Context.m_PrefabTree));
        const std::string sText = ReadBytes(sFile);
        std::filesystem::remove(sFile); // writing over it, again and again, would wait for the disk
        return sText;
    }
    // "A|B": the labels of the steps.
    std::string Labels() const
    {
        std::string sLabels;
        for (size_t i = 0; i < m_History.GetNumSteps(); ++i)
            sLabels += (i ? "|" : "") + m_History.GetLabel(i);
        return sLabels;
    }
    // After something that a person did, which came to so many steps at most: a save gives the same bytes as before
    // once they are undone, and the same as now once they are done again.
    void Check(size_t nMost = 1)
    {
        const std::string sNow = Text();
        const size_t nSteps = m_History.GetPosition();
        EXPECT_EQ("", m_History.GetProblem());
        ASSERT_LE(nSteps, m_Texts.size() - 1 + nMost) << Labels();
        // The first name of what is new belongs to its own step.
        const bool bJoined = nSteps > 0 && nSteps == m_Texts.size() - 1 && sNow != m_Texts.back();
        const size_t nBefore = m_Texts.size() - (bJoined ? 2 : 1);
        m_Texts.resize(nSteps + 1);
        m_Texts.back() = sNow;
        while (m_History.GetPosition() > nBefore)
        {
            ASSERT_TRUE(m_History.Undo()) << m_History.GetProblem();
            std::string& sText = m_Texts[m_History.GetPosition()];
            sText = m_History.GetPosition() > nBefore ? Text() : sText;
            ASSERT_EQ(sText, Text()) << Labels();
        }
        ASSERT_TRUE(m_History.GoTo(nSteps)) << m_History.GetProblem();
        ASSERT_EQ(sNow, Text()) << Labels();
    }
    // What the test has taken back is over.
    void Forget() { m_Texts.resize(m_History.GetPosition() + 1); }
    // All the way back, and forth again.
    void CheckAll()
    {
        ASSERT_TRUE(m_History.GoTo(0)) << m_History.GetProblem();
        EXPECT_EQ(m_Texts.front(), Text());
        ASSERT_TRUE(m_History.GoTo(m_Texts.size() - 1)) << m_History.GetProblem();
        EXPECT_EQ(m_Texts.back(), Text());
    }

private:
    CApplyTarget Target()
    {
        return {{m_Context.m_SpellMgr, m_Context.m_EffectTree, m_Context.m_PrefabTree},
                m_Context.m_EffectModule,
                m_Context.m_Edits,
                m_Owner};
    }

    CEditContext& m_Context;
    CTempDir m_Dir;
    CLibraryOwner m_Owner{m_Context};
    CChangeRecorder m_Recorder{Target()};
    std::vector<std::string> m_Texts; // by position

public:
    CHistory m_History{Target()};
};
