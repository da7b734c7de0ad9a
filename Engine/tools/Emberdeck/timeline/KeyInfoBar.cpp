#include "timeline/KeyInfoBar.h"

#include <utility>

#include "app/StatusText.h"

void CIntButton::Bind(const std::string& sTitle, int32_t* pValue)
{
    m_sTitle = sTitle;
    m_pValue = pValue;
}

bool CIntButton::Click(IPrompts& prompts)
{
    if (!m_pValue)
        return false;
    int32_t nValue = *m_pValue;
    if (!prompts.EnterNumber(CNumberEntry{m_sTitle, std::string(), c_nMinLength, c_nMaxLength}, nValue))
        return false;
    *m_pValue = nValue;
    return true;
}

std::string CIntButton::GetText() const
{
    return m_pValue ? std::to_string(*m_pValue) : std::string();
}

CKeyInfoBar::CKeyInfoBar(CEditContext& context, CSpell& spell, const CKeySelection& selection,
                         CTimeBar& timeBar, ITrackView& view)
    : m_nPhaseLength(timeBar.m_nPhaseLength),
      m_Context(context),
      m_Spell(spell),
      m_Selection(selection),
      m_TimeBar(timeBar),
      m_View(view)
{
    m_Button.Bind("Choose phase length in Milliseconds", &m_nPhaseLength);
    m_Info = MakeInfo(nullptr);
}

CKeyInfo CKeyInfoBar::MakeInfo(const CKeySpan* pTimes) const
{
    const CKey* pCurKey = m_Selection.GetCurKey();
    CKeyInfo info;
    info.m_sPhaseLength = m_Button.GetText();
    info.m_sTotalKeys = std::to_string(m_Spell.m_Tracks.GetNumKeys());
    info.m_sTotalTracks = std::to_string(m_Spell.m_Tracks.GetNumTracks());
    info.m_bKey = pCurKey != nullptr;
    info.m_sTitle = pCurKey ? "Key Info [" + DoubleAmpersands(pCurKey->GetDisplayName()) + "]" : "Key Info";
    if (pCurKey && m_Selection.GetCount() > 1)
    {
        info.m_sStart = info.m_sEnd = info.m_sLength = "---";
    }
    else if (pCurKey)
    {
        const CKeySpan times = pTimes ? *pTimes : CKeySpan{pCurKey->m_nStartTime, pCurKey->m_nEndTime};
        const int64_t nLength = int64_t(times.m_nEnd) - times.m_nStart;
        info.m_sStart = std::to_string(times.m_nStart) + " ms";
        info.m_sEnd = std::to_string(times.m_nEnd) + " ms";
        info.m_sLength = std::to_string(nLength) + " ms";
    }
    return info;
}

void CKeyInfoBar::UpdateInfo(const CKeySpan* pTimes)
{
    CKeyInfo info = MakeInfo(pTimes);
    if (info == m_Info)
        return;
    m_Info = std::move(info);
    m_View.KeyInfoChanged();
}

void CKeyInfoBar::OnPhaseLengthButton()
{
    if (!m_Button.Click(m_Context.m_Prompts))
        return;
    m_Info.m_sPhaseLength = m_Button.GetText();
    m_View.KeyInfoChanged();
    m_View.PostPhaseLengthEntered();
}

void CKeyInfoBar::OnPhaseLengthEntered()
{
    m_TimeBar.SetPhaseLength(m_nPhaseLength);
    if (m_Spell.m_Tracks.m_nPhaseLength == m_nPhaseLength)
        return;
    CEditScope scope(m_Context.m_Edits, "Set Phase Length");
    scope.TouchHead(m_Spell);
    m_Spell.m_Tracks.m_nPhaseLength = m_nPhaseLength;
}
