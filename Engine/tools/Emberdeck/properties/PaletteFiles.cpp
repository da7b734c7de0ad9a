#include <utility>

#include "app/Messages.h"
#include "model/MakeOrNull.h"
#include "platform/FileLock.h"
#include "platform/Files.h"
#include "platform/Paths.h"
#include "properties/ColorDialog.h"
#include "qsstrutils.h"

// Where the custom colours are kept: the profile, and palette files.

namespace
{

constexpr uint64_t c_nMaxPaletteSize = 4u << 20;

CFileDialogRequest PaletteRequest(bool bOpen)
{
    CFileDialogRequest request;
    request.m_bOpen = bOpen;
    request.m_sDefaultExtension = "ccp";
    request.m_sFilter = "Custom Color Palettes (*.ccp)|*.ccp|All Files (*.*)|*.*||";
    return request;
}

// The profile has all in one section, so its names differ from those of a file.
std::string ProfileDescriptionKey(int nCell)
{
    return "Description" + ColorKey(nCell);
}

} // namespace

void CKRColorDialog::LoadFromProfile()
{
    m_Palette.LoadFromProfile(m_Services.m_Profile);
    for (int i = 0; i < CCustomColorPalette::c_nNumCells; ++i)
        m_asDescriptions[static_cast<size_t>(i)] =
            CutAtCharacter(m_Services.m_Profile.GetString(c_szCustomColorSection, ProfileDescriptionKey(i)),
                           c_nMaxDescription);
    m_Loaded = ProfileEntries();
    if (m_bOpen)
        ShowDescription();
}

std::vector<IProfile::CEntry> CKRColorDialog::ProfileEntries() const
{
    std::vector<IProfile::CEntry> entries;
    m_Palette.SaveToProfile(entries);
    for (int i = 0; i < CCustomColorPalette::c_nNumCells; ++i)
        entries.push_back({c_szCustomColorSection, ProfileDescriptionKey(i), GetDescription(i)});
    return entries;
}

// All that were changed in this dialog or are nowhere yet. Another editor may have written the others meanwhile.
void CKRColorDialog::SaveToProfile()
{
    constexpr const char* c_pszNone = "\n"; // in no value
    std::vector<IProfile::CEntry> entries = ProfileEntries();
    const std::vector<IProfile::CEntry> loaded = std::exchange(m_Loaded, entries);
    size_t nEntry = 0;
    std::erase_if(entries,
                  [&](const IProfile::CEntry& entry)
                  {
                      const bool bChanged =
                          nEntry >= loaded.size() || loaded[nEntry].m_sValue != entry.m_sValue;
                      ++nEntry;
                      return !bChanged && m_Services.m_Profile.GetString(entry.m_sSection, entry.m_sKey,
                                                                         c_pszNone) != c_pszNone;
                  });
    m_Services.m_Profile.WriteStrings(entries);
}

// A file that isn't there has nothing in it. False: there is one that can't be read.
bool CKRColorDialog::ReadFile(const std::string& sPath, CProfileText& file) const
{
    std::string sText;
    const bool bRead = ReadWholeFile(sPath, sText, c_nMaxPaletteSize);
    if (bRead)
        file.Parse(sText);
    return bRead || !PathExists(sPath);
}

void CKRColorDialog::OnLoadPalette()
{
    std::string sPath;
    if (!m_Services.m_Context.m_Prompts.ChooseFile(PaletteRequest(true), sPath))
        return;
    CProfileText file;
    ReadFile(sPath, file);
    m_Palette.LoadFromFile(file);
    for (int i = 0; i < CCustomColorPalette::c_nNumCells; ++i)
    {
        std::string sDescription;
        file.Get(c_szFileDescriptionSection, ColorKey(i), sDescription, std::string::npos);
        m_asDescriptions[static_cast<size_t>(i)] = CutAtCharacter(sDescription, c_nMaxDescription);
    }
    ShowDescription();
}

// What else stands in the file stays there.
bool CKRColorDialog::SaveTo(const std::string& sPath) const
{
    CProfileText file;
    const CFileLock lock(sPath, ELock::eExclusive); // another editor may save its palette there
    if (!lock.IsHeld() || !ReadFile(sPath, file))
        return false;
    m_Palette.SaveToFile(file);
    for (int i = 0; i < CCustomColorPalette::c_nNumCells; ++i)
        file.Set(c_szFileDescriptionSection, ColorKey(i), GetDescription(i));
    return WriteFileSafely(sPath, file.Format());
}

void CKRColorDialog::OnSavePalette()
{
    std::string sPath;
    bool bCancelled = false, bSaved = false;
    TryAllocating(
        [&]
        {
            bCancelled = !m_Services.m_Context.m_Prompts.ChooseFile(PaletteRequest(false), sPath);
            bSaved = !bCancelled && SaveTo(sPath);
            sPath = DisplayPath(sPath);
        });
    if (!bCancelled && !bSaved)
        ShowFailure(m_Services.m_Context.m_Prompts, c_MsgSaveFailed, sPath.c_str());
}
