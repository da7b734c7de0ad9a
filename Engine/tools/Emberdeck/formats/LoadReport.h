#pragma once

#include <string>
#include <vector>

#include "formats/EmberdeckQSA.h"

// Keeps what a load finds, for whoever tells it afterwards.
class CLoadReport : public ILoadObserver
{
public:
    // bAll: every repair is listed. Else only what is found in a file that isn't whole, and what fails a load,
    // so that a sound file costs next to nothing.
    explicit CLoadReport(bool bAll = true) : m_bAll(bAll) {}

    bool WantsAll() const override { return m_bAll; }
    void OnFinding(const CLoadFinding& finding) override;

    const std::vector<CLoadFinding>& Findings() const { return m_Findings; }
    bool IsCut() const { return m_bCut; }           // the text ends within a list or a quoted text
    bool IsConflict() const { return m_bConflict; } // a merge has left its marks
    bool IsDamaged() const { return m_bCut || m_bConflict; }

    // Findings for a person, one a line, each with sBefore before it: the first nMax, then how many more.
    std::string Lines(const std::string& sBefore = std::string(), size_t nMax = c_nMaxLines) const;
    // The types that the plug-in lacks, told as Lines does; empty when that isn't what failed.
    std::string MissingTypes() const;

    static constexpr size_t c_nMaxLines = 20;

private:
    bool m_bAll;
    bool m_bCut = false;
    bool m_bConflict = false;
    std::vector<CLoadFinding> m_Findings;
};

// A finding on one line, with its place before it, whatever its names hold.
std::string FindingLine(const CLoadFinding& finding);
