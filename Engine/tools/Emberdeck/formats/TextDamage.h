#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// What shows that the text of a library isn't whole, without reading it into a model.
struct CTextDamage
{
    uint32_t m_nOpenLists = 0;    // lists that the end of the text leaves open
    bool m_bOpenString = false;   // the end of the text lies within a quoted text
    bool m_bOpenStream = false;   // the compressed file ends before its text does; a scan doesn't see that
    uint64_t m_nConflictLine = 0; // the first line that a merge has marked, from 1; 0: none

    bool IsCut() const { return m_nOpenLists > 0 || m_bOpenString || m_bOpenStream; }
    bool IsConflict() const { return m_nConflictLine > 0; }
    bool IsDamaged() const { return IsCut() || IsConflict(); }
};

// Goes over a text in pieces of any size, once, with a few operations for each byte.
class CTextDamageScan
{
public:
    void Add(std::string_view sPiece);
    CTextDamage Finish(); // once, at the end of the text

private:
    void EndMark(char cNext);

    // Marks of a merge: a line that begins with seven of these, and ends there or goes on behind a blank.
    static constexpr std::string_view c_sMarks = "<=>|";
    static constexpr uint32_t c_nMarkLen = 7;

    CTextDamage m_Damage;
    uint64_t m_nLine = 1;
    char m_cMark = 0;       // what the line began with
    uint32_t m_nMarks = 0;  // how often, so far
    bool m_bMarking = true; // nothing but marks on this line yet
};

// The same for a file, as it is behind its compression. One that can't be read has no damage of this kind.
CTextDamage ScanFileForDamage(const char* pszFilename);
CTextDamage ScanTextForDamage(std::string_view sText);
