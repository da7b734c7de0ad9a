#include <algorithm>
#include <cstring>

#include "app/LibraryEditor.h"
#include "model/MakeOrNull.h"
#include "qsstrutils.h"

std::string CleanName(std::string_view sText, size_t nMaxBytes)
{
    std::string sName(QSTrim(sText.substr(0, sText.find('\0'))));
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
