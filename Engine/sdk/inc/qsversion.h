#pragma once

#include <string>
#include <utility>
#include <vector>

// The version texts of a program or library: what a version block holds under the keys
// "\StringFileInfo\LANGUAGE+CODEPAGE\NAME", as in "\StringFileInfo\040904b0\ProductName".
class CVersionBlock
{
public:
    // Stores a value under its whole key; an earlier value of the key is replaced.
    void SetValue(const std::string& sKey, const std::string& sValue);

    // The value of exactly this key, or null. Valid until the block changes.
    const std::string* GetValue(const std::string& sKey) const;

    // The value of a name such as "ProductName": under 040904b0 first, then under 040904e4; null when neither
    // has it.
    const std::string* Find(const char* pszName) const;

    bool IsEmpty() const { return m_Values.empty(); }

private:
    std::vector<std::pair<std::string, std::string>> m_Values;
};

// The names of the three values that the program shows.
constexpr const char* c_szVersionProduct = "ProductName";
constexpr const char* c_szVersionVersion = "FileVersion";
constexpr const char* c_szVersionLegal = "LegalCopyright";

// A block with the three values under 040904b0. An empty text is left out.
CVersionBlock MakeVersionBlock(const std::string& sProduct, const std::string& sVersion,
                               const std::string& sLegal);

// The running program's own block. main sets it once at start; until then it is empty.
void SetProgramVersion(CVersionBlock block);
const CVersionBlock& GetProgramVersion();

// The program's value of this name, "Unknown" when it has none.
std::string GetProgramVersionText(const char* pszName);
