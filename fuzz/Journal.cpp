// A journal's text, and the replay of changes that another process has written: whatever they are, what is done
// leaves a library that can be saved and loaded again; what isn't leaves it as it was.

#include "FuzzLibrary.h"
#include "app/JournalText.h"
#include "changes/Replay.h"

namespace
{
// What is read is read again as the same.
void CheckText(std::string_view sText)
{
    CJournalText journal, again;
    if (!ReadJournalText(sText, journal))
        return;
    Require(journal.m_nWhole <= sText.size(), "more is whole than there is");
    std::string sWritten = WriteJournalHead(journal.m_Head);
    for (const CJournalStep& step : journal.m_Steps)
        sWritten += WriteJournalStep(step.m_nTime, step.m_sLabel, step.m_sEffect, step.m_Change);
    Require(ReadJournalText(sWritten, again) && again.m_nWhole == sWritten.size(), "written, but not read");
    Require(WriteJournalHead(again.m_Head) == WriteJournalHead(journal.m_Head), "another head");
    Require(again.m_Steps.size() == journal.m_Steps.size(), "other steps");
}

std::string Saved(const CLibraryImage& image)
{
    const CMemoryFile file;
    return SaveLibraryImage(file.Path(), image) ? file.Read() : std::string();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    const std::string_view sInput(reinterpret_cast<const char*>(pData), nSize);
    CheckText(sInput);
    CheckText(WriteJournalHead({.m_sLibrary = std::string(sInput)}) + WriteJournalStep(1, "x", "", sInput));

    static CTestModule s_Types;
    CReplay replay(s_Types.m_Module);
    CFuzzInput input(pData, nSize);
    std::string sBefore = Saved(*replay.MakeImage());
    while (!input.IsEmpty())
    {
        // Changes with lines of their own between them.
        std::string sChange, sWhy;
        for (std::string sLine = input.Line(); sLine != "next" && !(sLine.empty() && input.IsEmpty());
             sLine = input.Line())
            sChange += sLine + "\n";
        const bool bDone = replay.Do(sChange, sWhy);
        const auto pImage = replay.MakeImage();
        Require(pImage != nullptr, "no picture");
        const std::string sAfter = Saved(*pImage);
        Require(bDone || (!sWhy.empty() && sAfter == sBefore), "a refusal that has changed something");
        sBefore = sAfter;
        CFuzzLibrary library(s_Types.m_Module);
        Require(sAfter.empty() || library.Load(sAfter), "what was saved can't be loaded");
    }
    return 0;
}
