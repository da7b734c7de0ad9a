#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/IProfile.h"

// Text of sections and keys, as in a project locator file, a palette file or the settings. Names
// without regard to case; blanks and one pair of quotes (single or double) round a value dropped; lines
// that begin with ";" are no keys; any line end; of equal sections and keys the first wins, so keys of a
// section that comes again aren't seen. Keys in front of the first header stand in the section with the
// empty name. A byte order mark is skipped. Unknown lines are kept when the text is written again.
// Bounded by the text's own size.
class CProfileText
{
public:
    void Parse(const std::string& sText);
    // The value, cut to nMaxLength bytes; false, sValue untouched, when there is no such key.
    bool Get(const std::string& sSection, const std::string& sKey, std::string& sValue,
             size_t nMaxLength = 259) const;
    // Replaces the first such key or adds it at the end of its section. Line ends in the value become
    // blanks; other values come back as they are. Names that no line can hold change nothing.
    void Set(const std::string& sSection, const std::string& sKey, const std::string& sValue)
    {
        SetValue(sSection, sKey, sValue, true);
    }
    // The same for a value whose outer blanks are mere padding: they are written without the quotes that
    // would keep them, as other programs write such a line.
    void SetPadded(const std::string& sSection, const std::string& sKey, const std::string& sValue)
    {
        SetValue(sSection, sKey, sValue, false);
    }
    std::string Format() const; // lines end in CR LF

private:
    void SetValue(const std::string& sSection, const std::string& sKey, const std::string& sValue,
                  bool bKeepBlanks);
    void AddLine(std::string_view sText, std::string& sSection);
    void Insert(const std::string& sSection, const std::string& sSectionName, const std::string& sKey);

    struct CLine
    {
        std::string m_sText;    // as read, without its line end
        std::string m_sSection; // folded section that it stands in; a line end in a repeated one
        std::string m_sKey;     // folded; empty for lines that aren't keys
        std::string m_sValue;
    };
    std::vector<CLine> m_Lines;
    std::map<std::pair<std::string, std::string>, size_t> m_Index;
    std::set<std::string> m_Sections; // folded names of the headers seen
};

// Hears, once, that settings can't be written: why, as a sentence. What was set holds for this run.
using CProfileFailure = std::function<void(const std::string& sProblem)>;
// The user's settings in a file of the configuration directory. Programs may share it: each write, under a lock,
// begins with what the file holds by then and changes the keys that it was given, and a value is read again when
// another program has written. The name may have folders in it, which are made with the first write; an absolute
// path is taken as it is. A file that is there but can't be read is never written over.
std::unique_ptr<IProfile> OpenFileProfile(const std::string& sFileName, CProfileFailure tellFailure = {});
// Settings that live in memory only.
std::unique_ptr<IProfile> MakeMemoryProfile();
