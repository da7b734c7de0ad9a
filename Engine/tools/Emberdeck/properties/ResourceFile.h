#pragma once

#include <string>
#include <vector>

#include "app/EditContext.h"

// The text of a file dialog's filter, taken apart: "Text|pattern;pattern|Text|pattern||". A filter that is odd
// or has no end reads as far as it goes; a text without patterns takes all files.
struct CFileFilter
{
    std::string m_sText;
    std::vector<std::string> m_Patterns; // "*.*" is given as "*"; they count without regard to case
};
std::vector<CFileFilter> ParseFileFilter(const std::string& sFilter);

constexpr const char* c_szAllFilesFilter = "All Files (*.*)|*.*||";

// The longest path that a value holds, bytes.
constexpr size_t c_nMaxResourcePath = 255;

// Lets a person choose a file below the game's resource root, and keeps what lies behind the root, with
// backslashes. The caption of the button is the same text.
class CResourceFileButton
{
public:
    // An empty filter takes all files.
    explicit CResourceFileButton(const std::string& sFile = std::string(),
                                 const std::string& sFilter = std::string())
        : m_sFile(sFile),
          m_sFilter(sFilter)
    {
    }

    const std::string& GetFile() const { return m_sFile; }
    void SetFile(const std::string& sFile) { m_sFile = sFile; }

    // Opens the dialog. True: a file was accepted. One that lies elsewhere, or whose name no effect file
    // can hold, is refused with a message, and nothing changes.
    bool OnClick(CEditContext& context);

private:
    std::string m_sFile; // relative to the root
    std::string m_sFilter;
};
