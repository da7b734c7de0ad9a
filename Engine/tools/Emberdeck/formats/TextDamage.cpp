#include "formats/TextDamage.h"

#include <memory>
#include <vector>

#include "platform/Paths.h"
#include "qsamgr/qsafile.h"
#include "qsamgr/qsautil.h"

void CTextDamageScan::EndMark(char cNext)
{
    // Within a quoted text it may be the artist's own.
    const bool bEnds = cNext == ' ' || cNext == '\r' || cNext == '\n';
    if (m_nMarks == c_nMarkLen && bEnds && !m_Damage.m_bOpenString && m_Damage.m_nConflictLine == 0)
        m_Damage.m_nConflictLine = m_nLine;
    m_bMarking = false;
}

void CTextDamageScan::Add(std::string_view sPiece)
{
    for (const char c : sPiece)
    {
        if (m_bMarking)
        {
            if (m_nMarks == 0 && c_sMarks.find(c) != std::string_view::npos)
                m_cMark = c;
            if (c == m_cMark)
                ++m_nMarks;
            else
                EndMark(c);
        }
        if (c == '\n')
        {
            ++m_nLine;
            m_cMark = 0;
            m_nMarks = 0;
            m_bMarking = true;
        }
        else if (c == '"')
            m_Damage.m_bOpenString = !m_Damage.m_bOpenString;
        else if (m_Damage.m_bOpenString)
            continue;
        else if (c == '(')
            ++m_Damage.m_nOpenLists;
        else if (c == ')' && m_Damage.m_nOpenLists > 0)
            --m_Damage.m_nOpenLists;
    }
}

CTextDamage CTextDamageScan::Finish()
{
    if (m_bMarking)
        EndMark('\n');
    return m_Damage;
}

CTextDamage ScanTextForDamage(std::string_view sText)
{
    CTextDamageScan scan;
    scan.Add(sText);
    return scan.Finish();
}

CTextDamage ScanFileForDamage(const char* pszFilename)
{
    constexpr uint32_t c_nPiece = 64 * 1024;
    CTextDamageScan scan;
    const auto pFile = std::make_unique<CQSAFile>(); // large
    if (!pFile->Open(NativePath(pszFilename).c_str(), true, CQSAUtil::IsFileCompressed(pszFilename), false))
        return CTextDamage();
    std::vector<char> piece(c_nPiece);
    while (const uint32_t nRead = pFile->ReadBlock(piece.data(), c_nPiece))
        scan.Add({piece.data(), nRead});
    return scan.Finish();
}
