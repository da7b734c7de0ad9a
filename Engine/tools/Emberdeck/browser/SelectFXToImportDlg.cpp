#include "browser/SelectFXToImportDlg.h"

#include <algorithm>

#include "app/Advice.h"
#include "app/Messages.h"
#include "formats/EmberdeckQSA.h"
#include "qsstrutils.h"

CSelectFXToImportDlg::CSelectFXToImportDlg(CEditContext& context, const std::string& sPath)
    : m_Context(context),
      m_sPath(sPath)
{
}

bool CSelectFXToImportDlg::OnInitDialog()
{
    IPrompts& prompts = m_Context.m_Prompts;
    std::string sError;
    CLoadReport report(false);
    bool bStopped = false;
    const auto goOn = [&prompts, &bStopped]
    {
        bStopped = !prompts.Progress("Reading the effects", -1.0);
        return !bStopped;
    };
    if (!LoadEffectLibrary(m_sPath.c_str(), m_SpellMgr, m_Context.m_EffectModule, nullptr, nullptr, sError,
                           &prompts, &report, goOn))
    {
        m_SpellMgr.Clear();
        if (!bStopped)
            ShowMessage(prompts, c_MsgImportFailed, {m_sPath, sError});
        return !bStopped;
    }
    if (report.IsDamaged())
    {
        prompts.Advise(AdviseOnDamage(report, false));
        ShowMessage(prompts, c_MsgDamaged, {m_sPath});
    }
    for (const auto& pSpell : m_SpellMgr.Spells())
        m_Spells.push_back(pSpell.get());
    std::stable_sort(m_Spells.begin(), m_Spells.end(),
                     [](const CSpell* pLeft, const CSpell* pRight)
                     { return QSStrICmp(pLeft->m_szName, pRight->m_szName) < 0; });
    for (const CSpell* pSpell : m_Spells)
        m_Rows.emplace_back(pSpell->m_szName);
    return true;
}

void CSelectFXToImportDlg::OnOK(const std::vector<uint32_t>& rows)
{
    std::vector<bool> selected(m_Spells.size());
    for (const uint32_t nRow : rows)
    {
        if (nRow < selected.size())
            selected[nRow] = true;
    }
    m_Chosen.clear();
    for (size_t i = 0; i < m_Spells.size(); ++i)
    {
        if (selected[i])
            m_Chosen.push_back(m_Spells[i]);
    }
}
