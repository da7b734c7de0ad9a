#include "formats/LoadReport.h"

#include <algorithm>
#include <iterator>

void CLoadReport::OnFinding(const CLoadFinding& finding)
{
    m_bCut = m_bCut || finding.m_eKind == EFinding::eCut;
    m_bConflict = m_bConflict || finding.m_eKind == EFinding::eConflict;
    m_Findings.push_back(finding);
}

std::string FindingLine(const CLoadFinding& finding)
{
    std::string sLine;
    for (const std::string* pPlace : {&finding.m_sEffect, &finding.m_sKey})
    {
        if (!pPlace->empty())
            sLine += *pPlace + ": ";
    }
    sLine += finding.m_sText;
    std::replace_if(
        sLine.begin(), sLine.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return sLine;
}

std::string CLoadReport::Lines(const std::string& sBefore, size_t nMax) const
{
    std::string sLines;
    for (size_t i = 0; i < std::min(nMax, m_Findings.size()); ++i)
        sLines += (i > 0 ? "\n" : "") + sBefore + FindingLine(m_Findings[i]);
    if (m_Findings.size() > nMax)
        sLines += "\n" + sBefore + "and " + std::to_string(m_Findings.size() - nMax) + " more";
    return sLines;
}

std::string CLoadReport::MissingTypes() const
{
    CLoadReport missing;
    std::copy_if(m_Findings.begin(), m_Findings.end(), std::back_inserter(missing.m_Findings),
                 [](const CLoadFinding& finding) { return finding.m_eKind == EFinding::eMissingType; });
    return missing.Lines();
}
