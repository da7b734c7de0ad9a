#pragma once

#include <cstdint>
#include <string>

#include "app/EditContext.h"
#include "timeline/KeySelection.h"
#include "timeline/TimeBar.h"

// A button that shows a number and lets the user enter another.
class CIntButton
{
public:
    // pValue is borrowed and outlives the button.
    void Bind(const std::string& sTitle, int32_t* pValue);
    // Asks for the number. True: the user entered one, and it is stored.
    bool Click(IPrompts& prompts);
    std::string GetText() const;

private:
    std::string m_sTitle;
    int32_t* m_pValue = nullptr;
};

// What the bar above the rows shows.
struct CKeyInfo
{
    std::string m_sPhaseLength; // on the button
    std::string m_sTotalKeys;
    std::string m_sTotalTracks;
    bool m_bKey = false;  // the group box and its three labels are enabled
    std::string m_sTitle; // of the group box, with ampersands doubled
    std::string m_sStart; // the values are empty without a key
    std::string m_sEnd;
    std::string m_sLength;
    friend bool operator==(const CKeyInfo&, const CKeyInfo&) = default;
};

// The bar above the rows: phase length, totals and the current key. Its button changes the phase length.
class CKeyInfoBar
{
public:
    // All borrowed. Nothing is selected yet.
    CKeyInfoBar(CEditContext& context, CSpell& spell, const CKeySelection& selection, CTimeBar& timeBar,
                ITrackView& view);
    CKeyInfoBar(const CKeyInfoBar&) = delete;
    CKeyInfoBar& operator=(const CKeyInfoBar&) = delete;

    // Looks at everything anew and tells the view when it shows otherwise than before. pTimes: shown in place of
    // the current key's own; null: those.
    void UpdateInfo(const CKeySpan* pTimes);
    const CKeyInfo& GetInfo() const { return m_Info; }

    // A click on the button. Its outcome waits for the dialog to be gone: see PostPhaseLengthEntered.
    void OnPhaseLengthButton();
    // Takes the entered length into time bar and effect. No key changes.
    void OnPhaseLengthEntered();

    int32_t m_nPhaseLength; // the number on the button, milliseconds

private:
    CKeyInfo MakeInfo(const CKeySpan* pTimes) const;

    CEditContext& m_Context;
    CSpell& m_Spell;
    const CKeySelection& m_Selection;
    CTimeBar& m_TimeBar;
    ITrackView& m_View;
    CIntButton m_Button;
    CKeyInfo m_Info;
};

// What the number dialogs for lengths take, in milliseconds.
constexpr int32_t c_nMinLength = 1;
constexpr int32_t c_nMaxLength = 1000000;
