#include "platform/Profile.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/FileLock.h"
#include "platform/FileProblem.h"
#include "platform/Files.h"
#include "platform/NameFold.h"
#include "platform/Paths.h"
#include "qsstrutils.h"

namespace
{

constexpr uint64_t c_nMaxProfileSize = 4u << 20;

constexpr const char* c_pszByteOrderMark = "\xEF\xBB\xBF"; // in the first line it is no part of a name

// In no name, since names end with their line.
constexpr const char* c_pszRepeated = "\n";

std::string NameOf(std::string_view sText)
{
    return FoldName(QSTrim(sText));
}

bool HasQuotes(std::string_view sValue)
{
    return sValue.size() >= 2 && sValue.front() == sValue.back() &&
           (sValue.front() == '"' || sValue.front() == '\'');
}

std::string_view ReadValue(std::string_view sText)
{
    sText = QSTrim(sText);
    return HasQuotes(sText) ? sText.substr(1, sText.size() - 2) : sText;
}

std::string FormatLine(const std::string& sKey, const std::string& sValue, bool bKeepBlanks)
{
    // Quoted when reading would take something off otherwise.
    const bool bQuote = HasQuotes(sValue) || (bKeepBlanks && QSTrim(sValue).size() != sValue.size());
    return sKey + '=' + (bQuote ? '"' + sValue + '"' : sValue);
}

bool IsSectionName(const std::string& sName)
{
    return sName.find_first_of("]\r\n") == std::string::npos;
}

bool IsKeyName(const std::string& sName)
{
    return !sName.empty() && sName.find_first_of("=\r\n") == std::string::npos && sName[0] != ';' &&
           sName[0] != '[' && !sName.starts_with(c_pszByteOrderMark);
}

} // namespace

void CProfileText::Parse(const std::string& sText)
{
    m_Lines.clear();
    m_Index.clear();
    m_Sections.clear();
    std::string_view sRest = sText;
    // All of them, else what is written again would lose one more.
    while (sRest.starts_with(c_pszByteOrderMark))
        sRest.remove_prefix(3);
    std::string sSection;
    while (!sRest.empty())
    {
        const size_t nEnd = std::min(sRest.find_first_of("\r\n"), sRest.size());
        AddLine(sRest.substr(0, nEnd), sSection);
        const bool bPair = sRest.substr(nEnd).starts_with("\r\n");
        sRest.remove_prefix(std::min(nEnd + (bPair ? 2 : 1), sRest.size()));
    }
}

void CProfileText::AddLine(std::string_view sText, std::string& sSection)
{
    CLine line;
    line.m_sText = sText;
    const std::string_view sBody = QSTrim(sText);
    const size_t nClose = sBody.find(']');
    const size_t nEqual = sBody.find('=');
    if (sBody.starts_with('[') && nClose != std::string_view::npos)
    {
        sSection = NameOf(sBody.substr(1, nClose - 1));
        // The empty name belongs to the lines in front of all headers.
        if (sSection.empty() || !m_Sections.insert(sSection).second)
            sSection = c_pszRepeated;
    }
    else if (!sBody.starts_with(';') && !sBody.starts_with('[') && nEqual != std::string_view::npos &&
             sSection != c_pszRepeated)
    {
        line.m_sKey = NameOf(sBody.substr(0, nEqual));
        line.m_sValue = ReadValue(sBody.substr(nEqual + 1));
        if (!line.m_sKey.empty())
            m_Index.emplace(std::make_pair(sSection, line.m_sKey), m_Lines.size());
    }
    line.m_sSection = sSection;
    m_Lines.push_back(std::move(line));
}

bool CProfileText::Get(const std::string& sSection, const std::string& sKey, std::string& sValue,
                       size_t nMaxLength) const
{
    const auto it = m_Index.find(std::make_pair(NameOf(sSection), NameOf(sKey)));
    if (it == m_Index.end())
        return false;
    sValue = m_Lines[it->second].m_sValue.substr(0, nMaxLength);
    return true;
}

void CProfileText::SetValue(const std::string& sSection, const std::string& sKey, const std::string& sValue,
                            bool bKeepBlanks)
{
    const std::string sSectionName(QSTrim(sSection));
    const std::string sKeyName(QSTrim(sKey));
    if (!IsSectionName(sSectionName) || !IsKeyName(sKeyName))
        return;
    std::string sLine = sValue;
    for (char& c : sLine)
    {
        if (c == '\r' || c == '\n')
            c = ' ';
    }
    const auto name = std::make_pair(FoldName(sSectionName), FoldName(sKeyName));
    if (!m_Index.contains(name))
        Insert(name.first, sSectionName, name.second);
    CLine& line = m_Lines[m_Index.at(name)];
    line.m_sText = FormatLine(sKeyName, sLine, bKeepBlanks);
    line.m_sValue = bKeepBlanks ? std::move(sLine) : std::string(ReadValue(sLine));
}

// Makes room for a key behind the last line of its section that says something.
void CProfileText::Insert(const std::string& sSection, const std::string& sSectionName,
                          const std::string& sKey)
{
    const auto inSection = [&sSection](const CLine& line) { return line.m_sSection == sSection; };
    if (!sSection.empty() && m_Sections.insert(sSection).second)
    {
        if (!m_Lines.empty() && !QSTrim(m_Lines.back().m_sText).empty())
            m_Lines.push_back(CLine{std::string(), m_Lines.back().m_sSection, std::string(), std::string()});
        m_Lines.push_back(CLine{'[' + sSectionName + ']', sSection, std::string(), std::string()});
    }
    const auto begin = std::find_if(m_Lines.begin(), m_Lines.end(), inSection);
    auto end = std::find_if_not(begin, m_Lines.end(), inSection);
    // Nothing in front of the first header yet: the very beginning, not the end of everything.
    if (sSection.empty() && begin == m_Lines.end())
        end = m_Lines.begin();
    while (end != begin && end != m_Lines.begin() && QSTrim((end - 1)->m_sText).empty())
        --end;
    const size_t nPlace = static_cast<size_t>(end - m_Lines.begin());
    for (auto& entry : m_Index)
    {
        if (entry.second >= nPlace)
            ++entry.second;
    }
    m_Lines.insert(end, CLine{std::string(), sSection, sKey, std::string()});
    m_Index[std::make_pair(sSection, sKey)] = nPlace;
}

std::string CProfileText::Format() const
{
    std::string sText;
    for (const CLine& line : m_Lines)
        sText += line.m_sText + "\r\n";
    return sText;
}

namespace
{

class CTextProfile : public IProfile
{
public:
    std::string GetString(const std::string& sSection, const std::string& sKey,
                          const std::string& sDefault) const override
    {
        std::string sValue = sDefault;
        m_Text.Get(sSection, sKey, sValue, std::string::npos);
        return sValue;
    }

    bool WriteString(const std::string& sSection, const std::string& sKey, const std::string& sValue) override
    {
        return WriteStrings({CEntry{sSection, sKey, sValue}});
    }

    bool WriteStrings(const std::vector<CEntry>& entries) override
    {
        for (const CEntry& entry : entries)
            m_Text.Set(entry.m_sSection, entry.m_sKey, entry.m_sValue);
        return true;
    }

protected:
    mutable CProfileText m_Text; // read again where somebody else may have written
};

// Several programs of one user share the file: it is read again when another has written it, and a write changes
// only what it was given.
class CFileProfile final : public CTextProfile
{
public:
    CFileProfile(const std::string& sPath, CProfileFailure tellFailure)
        : m_sPath(sPath),
          m_TellFailure(std::move(tellFailure))
    {
        Read();
    }

    std::string GetString(const std::string& sSection, const std::string& sKey,
                          const std::string& sDefault) const override
    {
        if (FileVersion(m_sPath) != m_Version)
            Read();
        return CTextProfile::GetString(sSection, sKey, sDefault);
    }

    bool WriteStrings(const std::vector<CEntry>& entries) override
    {
        bool bStored = false;
        try
        {
            std::string sProblem;
            m_Unsaved.insert(m_Unsaved.end(), entries.begin(), entries.end());
            bStored = Store(sProblem);
            if (!bStored)
                TellFailure(sProblem.empty() ? WriteProblem(m_sPath) : sProblem);
        }
        catch (const std::bad_alloc&)
        {
            m_Version = CFileVersion(); // what was read may be half of it
            TellFailure("Out of memory.");
        }
        return bStored;
    }

private:
    // What is in the file, and what could not be written into it.
    void Read() const
    {
        std::string sText;
        m_Version = FileVersion(m_sPath);
        const bool bRead = ReadWholeFile(m_sPath, sText, c_nMaxProfileSize);
        m_bWritable = bRead || (!m_sPath.empty() && !PathExists(m_sPath));
        m_Text = CProfileText();
        m_Text.Parse(sText);
        for (const CEntry& entry : m_Unsaved)
            m_Text.Set(entry.m_sSection, entry.m_sKey, entry.m_sValue);
    }

    bool Store(std::string& sProblem)
    {
        const size_t nSlash = m_sPath.rfind('/');
        const bool bFolder =
            nSlash == std::string::npos || nSlash == 0 || MakeDirectories(m_sPath.substr(0, nSlash), 0700);
        const CFileLock lock(m_sPath, ELock::eExclusive, bFolder);
        sProblem = lock.GetProblem();
        Read(); // in any case: the values hold for this run
        if (!bFolder || !lock.IsHeld() || !m_bWritable || !WriteFileSafely(m_sPath, m_Text.Format()))
        {
            // Made for the lock, where a link leads to.
            if (lock.IsNew())
                RemoveFile(ResolvedPath(m_sPath));
            return false;
        }
        m_Version = FileVersion(m_sPath);
        m_Unsaved.clear();
        return true;
    }

    void TellFailure(const std::string& sProblem)
    try
    {
        if (!m_bTold && m_TellFailure)
            m_TellFailure(sProblem);
        m_bTold = true;
    }
    catch (const std::bad_alloc&)
    {
    }

    std::string m_sPath;
    CProfileFailure m_TellFailure;
    mutable CFileVersion m_Version;
    std::vector<CEntry> m_Unsaved;
    mutable bool m_bWritable = true;
    bool m_bTold = false;
};

std::string ProfilePath(const std::string& sFileName)
{
    if (!sFileName.empty() && IsSeparator(sFileName[0]))
        return sFileName;
    const std::string sDirectory = GetConfigDirectory();
    return sDirectory.empty() || sFileName.empty() ? std::string() : sDirectory + '/' + sFileName;
}

} // namespace

std::unique_ptr<IProfile> OpenFileProfile(const std::string& sFileName, CProfileFailure tellFailure)
{
    return std::make_unique<CFileProfile>(ProfilePath(sFileName), std::move(tellFailure));
}

std::unique_ptr<IProfile> MakeMemoryProfile()
{
    return std::make_unique<CTextProfile>();
}
