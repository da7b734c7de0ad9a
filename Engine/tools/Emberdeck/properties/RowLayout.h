#pragma once

#include "effecttypes.h"
#include "properties/RowControls.h"
#include "properties/RowMetrics.h"

// Where a row goes, in dialog coordinates.
struct CRowPlace
{
    CRect m_rcLabel;
    CRect m_rcControl;
    uint32_t m_nBaseID = 0;
    const ITextMeasure* m_pFont = nullptr; // only asked while the row is made
};

// Fills the slots of a row from the left, in order.
class CRowLayout
{
public:
    CRowLayout(CRowControls& controls, const CEffectPropertyDesc& desc, const CRowPlace& place);

    void NameLabel();
    void FunctionButton();

    // Between two places, centred between top and bottom of the row by the height of the text.
    void Label(const std::string& sText, int32_t nLeft, int32_t nRight, bool bAlignRight = true);
    CControlDesc& Add(EControlKind eKind, uint32_t nID, const CRect& rc);
    CControlDesc& AddValue(EControlKind eKind, const CRect& rc); // a control that takes a value
    int32_t Box(int32_t nLeft, int32_t nWidth);                  // its right end
    void Spin();                                                 // behind the box before it, which it steps

    // A span of the row's full height, and one of a button, which reaches beyond it.
    CRect Full(int32_t nLeft, int32_t nWidth) const;
    CRect Tall(int32_t nLeft, int32_t nRight) const;
    int32_t TextWidth(const std::string& sText) const;

    CRowControls& m_Controls;
    const CEffectPropertyDesc& m_Desc;
    const CRect m_rc; // what the controls have for themselves
    const CRowMetrics m_Metrics;

private:
    void LabelIn(const CRect& rc, const std::string& sText, bool bAlignRight);

    const CRowPlace& m_Place;
    const std::string m_sHelp;
};
