#include <algorithm>
#include <cstring>

#include "app/LibraryEditor.h"
#include "model/MakeOrNull.h"

namespace
{

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Bytes of the UTF-8 sequence that a lead byte begins; 1 for any other byte.
size_t SequenceLength(char c)
{
    const unsigned char n = static_cast<unsigned char>(c);
    if (n >= 0xC2 && n <= 0xDF)
        return 2;
    if ((n & 0xF0) == 0xE0)
        return 3;
    return n >= 0xF0 && n <= 0xF4 ? 4 : 1;
}

bool IsBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

} // namespace

std::string CutAtCharacter(std::string_view sText, size_t nMaxBytes)
{
    if (sText.size() <= nMaxBytes)
        return std::string(sText);
    // Only a whole sequence that straddles the cut gives way: text in another code page is cut at bytes.
    size_t nCut = nMaxBytes;
    for (size_t nBack = 1; nBack <= 3 && nBack <= nMaxBytes; ++nBack)
    {
        const size_t nLead = nMaxBytes - nBack;
        const size_t nLength = SequenceLength(sText[nLead]);
        if (nLength == 1 && IsContinuation(sText[nLead]))
            continue;
        if (nLength > nBack && nLead + nLength <= sText.size() &&
            std::all_of(sText.begin() + static_cast<std::ptrdiff_t>(nLead + 1),
                        sText.begin() + static_cast<std::ptrdiff_t>(nLead + nLength), IsContinuation))
            nCut = nLead;
        break;
    }
    return std::string(sText.substr(0, nCut));
}

std::string CleanName(std::string_view sText, size_t nMaxBytes)
{
    sText = sText.substr(0, sText.find('\0'));
    while (!sText.empty() && IsBlank(sText.front()))
        sText.remove_prefix(1);
    while (!sText.empty() && IsBlank(sText.back()))
        sText.remove_suffix(1);
    std::string sName(sText);
    std::replace(sName.begin(), sName.end(), '"', '\'');
    return CutAtCharacter(sName, nMaxBytes);
}

std::string CLibraryEditor::NameOf(ELibrarySide eSide, const void* pData) const
{
    if (!pData)
        return std::string();
    return eSide == ELibrarySide::eEffects ? std::string(static_cast<const CSpell*>(pData)->m_szName)
                                           : static_cast<const CEffectPropertySet*>(pData)->m_sName;
}

bool CLibraryEditor::IndexNames(ELibrarySide eSide, size_t nMore, CUniqueNames& names) const
{
    return TryAllocating(
        [&]
        {
            const auto& spells = m_Context.m_SpellMgr.Spells();
            const auto& prefabs = m_Context.m_SpellMgr.Prefabs();
            const bool bEffects = eSide == ELibrarySide::eEffects;
            names.Reserve((bEffects ? spells.size() : prefabs.size()) + nMore);
            for (size_t i = 0; bEffects && i < spells.size(); ++i)
                names.Add(BoundedText(spells[i]->m_szName));
            for (size_t i = 0; !bEffects && i < prefabs.size(); ++i)
                names.Add(prefabs[i]->m_sName);
        });
}

std::string CLibraryEditor::UniqueEffectName(CUniqueNames& names, const std::string& sName)
{
    std::string sUnique = names.Make(sName);
    // The number behind a long name must not be cut off again, or the name would be in use after all.
    constexpr size_t c_nRoomForNumber = 11;
    if (sUnique.size() > CSpell::c_nMaxName)
        sUnique = names.Make(CutAtCharacter(sName, CSpell::c_nMaxName - c_nRoomForNumber));
    return CutAtCharacter(sUnique, CSpell::c_nMaxName);
}
