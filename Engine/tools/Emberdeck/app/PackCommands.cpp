#include <algorithm>
#include <cstring>

#include "app/Advice.h"
#include "app/EmberdeckApp.h"
#include "app/Launch.h"
#include "app/Messages.h"
#include "formats/EmberdeckPacker.h"
#include "model/MakeOrNull.h"
#include "platform/Paths.h"

namespace
{

bool IsSameAs(const CEffectProperty& left, const CEffectProperty& right)
{
    if (left.GetNumKeys() != right.GetNumKeys())
        return false;
    for (uint32_t i = 0; i < left.GetNumKeys(); ++i)
    {
        const CPropKey& a = *left.GetKey(i);
        const CPropKey& b = *right.GetKey(i);
        if (a.m_fTime != b.m_fTime)
            return false;
        uint8_t aBytes[CPropData::c_nSize];
        uint8_t bBytes[CPropData::c_nSize];
        a.m_Data.CopyTo(aBytes);
        b.m_Data.CopyTo(bBytes);
        if (memcmp(aBytes, bBytes, sizeof(aBytes)) != 0)
            return false;
    }
    return true;
}

// A constant of a kind without range and list has nothing to repair; most properties are such.
bool IsSurelyValid(const CEffectProperty& prop)
{
    const CEffectPropertyDesc* pDesc = prop.GetDesc();
    if (!pDesc || pDesc->m_bFunctionCurve || prop.GetNumKeys() != 1 || prop.GetKey(0)->m_fTime != 0.0f)
        return false;
    return pDesc->m_eType == ePropType_Enum ? false
                                            : pDesc->m_szData[0] == '\0' || IsTextKind(pDesc->m_eType);
}

// The packer validates what it writes. What that would change is changed here, in the open.
bool NeedsRepair(const CEffectPropertySet& set)
{
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
    {
        const CEffectProperty* pProp = set.GetPropertyDirect(i);
        if (!pProp || IsSurelyValid(*pProp))
            continue;
        CEffectProperty copy(*pProp);
        Validate(&copy);
        if (!IsSameAs(*pProp, copy))
            return true;
    }
    return false;
}

void RepairValues(CEditContext& context)
{
    CEditScope scope(context.m_Edits, "Pack Effects");
    for (const auto& pPrefab : context.m_SpellMgr.Prefabs())
    {
        if (!pPrefab->m_pTypeDesc || !NeedsRepair(*pPrefab))
            continue;
        scope.TouchPrefab(pPrefab.get());
        ValidateSet(pPrefab.get());
    }
    context.m_SpellMgr.ForEachKey(
        [&](CSpell& spell, CKey& key)
        {
            if (!key.m_pTypeDesc || !NeedsRepair(key))
                return;
            scope.Touch(&spell);
            ValidateSet(&key);
        });
}

} // namespace

std::string CEmberdeckApp::MakePackName(const std::string& sFileName)
{
    std::string sName = sFileName;
    std::replace(sName.begin(), sName.end(), '/', '\\');
    const size_t nPoint = sName.rfind('.');
    const size_t nSeparator = sName.rfind('\\');
    if (nPoint != std::string::npos && (nSeparator == std::string::npos || nPoint > nSeparator))
        sName.resize(nPoint);
    return sName + ".Fx00p";
}

bool CEmberdeckApp::PackEffects()
{
    if (m_sFileName.empty())
        return PackEffectsAs();

    std::string sShown;
    bool bPacked = false;
    TryAllocating(
        [&]
        {
            const std::string sPackName = MakePackName(m_sFileName);
            sShown = DisplayPath(sPackName);
            m_Services.m_SourceControl.EnsureCheckedOut(sPackName.c_str(), 0);
            RepairValues(m_Context);
            bPacked = PackEffectLibrary(sPackName.c_str(), m_SpellMgr, m_EffectModule, &m_Services.m_Prompts);
        });
    if (!bPacked)
        TellPackFailed(sShown);
    return bPacked;
}

void CEmberdeckApp::TellPackFailed(const std::string& sPackName) noexcept
{
    TryAllocating([&] { m_Services.m_Prompts.Advise(AdviseOnPacking(sPackName, m_EffectModule)); });
    ShowFailure(m_Services.m_Prompts, c_MsgPackFailed, sPackName.c_str());
}

bool CEmberdeckApp::PackEffectsAs()
{
    CFileDialogRequest request;
    request.m_bOpen = false;
    request.m_sDefaultExtension = "*.Fx00p";
    request.m_sFilter = c_szPackedFilter;
    std::string sPath;
    if (!m_Services.m_Prompts.ChooseFile(request, sPath))
        return false;
    bool bPacked = false;
    TryAllocating(
        [&]
        {
            RepairValues(m_Context);
            bPacked = PackEffectLibrary(sPath.c_str(), m_SpellMgr, m_EffectModule, &m_Services.m_Prompts);
        });
    return bPacked;
}

bool CEmberdeckApp::SaveAndPack()
{
    return SaveEffectFile() && PackEffects();
}

void CEmberdeckApp::SavePackLaunch()
{
    if (SaveAndPack())
        LaunchGame();
}

void CEmberdeckApp::LaunchGame()
{
    LaunchProgram(m_Project.m_sPCBinary, m_Services.m_Profile.GetString("", c_szSettingCommandLine));
}

void CEmberdeckApp::EditGameInfo()
{
    std::string sText = m_Services.m_Profile.GetString("", c_szSettingCommandLine);
    if (m_Services.m_Prompts.EnterText(c_szGameInfoCaption, c_szGameInfoLabel, sText))
        m_Services.m_Profile.WriteString("", c_szSettingCommandLine, sText);
}
