#include <algorithm>

#include "app/Advice.h"
#include "app/EmberdeckApp.h"
#include "app/Launch.h"
#include "app/Messages.h"
#include "app/StatusText.h"
#include "formats/EmberdeckPacker.h"
#include "model/MakeOrNull.h"
#include "platform/Files.h"
#include "platform/Paths.h"

namespace
{

// Whether the packer, which validates what it writes, would change the set.
bool WouldChange(const CEffectPropertySet& set)
{
    for (uint32_t i = 0; i < set.GetNumProps(); ++i)
    {
        const CEffectProperty* pProp = set.GetPropertyDirect(i);
        if (pProp && pProp->GetDesc() && !IsSettled(*pProp, DescRange(*pProp->GetDesc())))
            return true;
    }
    return false;
}

void TouchWhatPackingChanges(CEditScope& scope, CSpellMgr& spellMgr)
{
    for (const auto& pPrefab : spellMgr.Prefabs())
    {
        if (pPrefab->m_pTypeDesc && WouldChange(*pPrefab))
            scope.TouchPrefab(pPrefab.get());
    }
    spellMgr.ForEachKey(
        [&](CSpell& spell, CKey& key)
        {
            if (key.m_pTypeDesc && WouldChange(key))
                scope.TouchKey(spell, key);
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

bool CEmberdeckApp::PackTo(const std::string& sPackName, const char* pszTarget) noexcept
{
    bool bPacked = false;
    const auto pack = [&]
    {
        if (IsOwnFile(sPackName))
            return;
        CEditScope scope(m_Context.m_Edits, "Pack Effects");
        scope.BelongToStepBefore(); // a pack is no step
        TouchWhatPackingChanges(scope, m_SpellMgr);
        bPacked = PackEffectLibrary(sPackName.c_str(), m_SpellMgr, m_EffectModule, &m_Services.m_Prompts,
                                    pszTarget, &m_sPackError);
    };
    return TryAllocating(pack) && bPacked;
}

// A library may have a packed file's name; packing over it would leave nothing to edit.
bool CEmberdeckApp::IsOwnFile(const std::string& sPackName) const
{
    return IsSameFile(m_sFileName, sPackName);
}

bool CEmberdeckApp::PackEffects()
{
    if (m_sFileName.empty())
        return PackEffectsAs();

    std::string sPackName;
    const auto prepare = [&]
    {
        sPackName = MakePackName(m_sFileName);
        m_Services.m_SourceControl.EnsureCheckedOut(sPackName.c_str(), 0);
    };
    const bool bPacked = TryAllocating(prepare) && PackTo(sPackName);
    if (bPacked)
        TellDone("Packed", sPackName);
    else
        TellPackFailed(sPackName);
    return bPacked;
}

void CEmberdeckApp::TellPackFailed(const std::string& sPackName) noexcept
{
    std::string sShown;
    TryAllocating(
        [&]
        {
            sShown = DisplayPath(sPackName);
            m_Services.m_Prompts.Advise(IsOwnFile(sPackName)    ? AdviseOnPackingOver(sShown)
                                        : !m_sPackError.empty() ? m_sPackError
                                                                : AdviseOnPacking(sPackName, m_EffectModule));
        });
    ShowFailure(m_Services.m_Prompts, c_MsgPackFailed, sShown.c_str());
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
    if (IsOwnFile(sPath)) // not a failure of packing: the name was taken back from the user
        TellPackFailed(sPath);
    const bool bPacked = PackTo(sPath);
    if (bPacked)
        TellDone("Packed", sPath);
    else // which has no box of its own
        TryAllocating([&] { m_Context.m_Host.ShowStatus("Packing " + TellName(sPath) + " has failed"); });
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
    const std::string& sGame = m_Project.m_sPCBinary;
    const bool bStarted = LaunchProgram(sGame, m_Services.m_Profile.GetString("", c_szSettingCommandLine));
    if (sGame.empty() || sGame.back() == '\\' || sGame.back() == '/') // the project's folder alone
        m_Context.m_Host.ShowStatus("No game to launch: the project names none");
    else
        m_Context.m_Host.ShowStatus((bStarted ? "Launched " : "Couldn't launch ") + DisplayPath(sGame));
}

void CEmberdeckApp::EditGameInfo()
{
    std::string sText = m_Services.m_Profile.GetString("", c_szSettingCommandLine);
    if (m_Services.m_Prompts.EnterText({c_szGameInfoCaption, c_szGameInfoLabel, true}, sText))
        m_Services.m_Profile.WriteString("", c_szSettingCommandLine, sText);
}
