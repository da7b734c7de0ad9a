#include "properties/RowKinds.h"

#include <algorithm>
#include <cfloat>
#include <cstdint>
#include <iterator>

#include "platform/NameFold.h"
#include "properties/ColorDialog.h"
#include "properties/ValueText.h"
#include "properties/VectorEditor.h"
#include "qsnumber.h"

namespace
{

constexpr const char* c_szTextLine = "UIType_TextLine";
constexpr double c_fFloatStep = 0.25;

float FloatFromText(const std::string& sText)
{
    return QSTextToFloat(sText.c_str());
}

// No step ends below 0, also one upward from far below.
std::string SpinInt(const std::string& sText, int nDelta)
{
    const int64_t nValue = int64_t(QSTextToNearestInt(sText.c_str())) - nDelta;
    return IntText(static_cast<int32_t>(std::clamp<int64_t>(nValue, 0, INT32_MAX)));
}

std::string SpinFloat(const std::string& sText, int nDelta)
{
    const double fValue = QSTextToDouble(sText.c_str()) - nDelta * c_fFloatStep;
    return FloatText(std::clamp(fValue, 0.0, double(FLT_MAX)));
}

std::string TrimItem(const std::string& sItem)
{
    constexpr const char* c_pszBlanks = " \t\n\v\f\r";
    const size_t nFirst = sItem.find_first_not_of(c_pszBlanks);
    if (nFirst == std::string::npos)
        return std::string();
    return sItem.substr(nFirst, sItem.find_last_not_of(c_pszBlanks) - nFirst + 1);
}

// The first item with exactly this text, but for case; the first of all when there is none.
int FindListItem(const std::vector<std::string>& items, std::string_view sText)
{
    for (size_t i = 0; i < items.size(); ++i)
    {
        if (EqualFolded(items[i], sText))
            return static_cast<int>(i);
    }
    return items.empty() ? -1 : 0;
}

CColorRef ColorOfPayload(uint32_t nColor)
{
    return SwapRedBlue(nColor) & 0xFFFFFF;
}

// None, and what a newer plug-in may bring: the name alone.
class CNameRow : public IRowKind
{
public:
    void Layout(CRowLayout&) const override {}
    void Show(CRowControls&, const CPropData&) const override {}
    void Take(const CRowControls&, CPropData&) const override {}
};

// A line of text across the panel, which has no value.
class CTextLineRow : public CNameRow
{
public:
    bool HasName() const override { return false; }
    void Layout(CRowLayout& layout) const override
    {
        if (EqualFolded(DescName(layout.m_Desc), c_szTextLine))
            layout.Label(DescData(layout.m_Desc), layout.m_rc.left, layout.m_rc.right, false);
    }
};

class CTextRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override { layout.Box(layout.m_rc.left, layout.m_rc.Width()); }
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        controls.WriteBox(1, std::string(data.GetText()));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        data.SetText(controls.BoxText(1));
    }
    // A file can't hold a double quote within a text.
    std::string Typed(const std::string& sText) const override
    {
        std::string sTyped = sText;
        std::replace(sTyped.begin(), sTyped.end(), '"', '\'');
        return sTyped;
    }
};

class CFileRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override
    {
        const CRect rc = layout.Tall(layout.m_rc.left, layout.m_rc.right);
        const int32_t nSplit = rc.right - rc.Height();
        layout.AddValue(EControlKind::eFileButton, CRect{rc.left, rc.top, nSplit, rc.bottom});
        layout.m_Controls.m_File = CResourceFileButton(std::string(), DescData(layout.m_Desc));
        CControlDesc& clear =
            layout.Add(EControlKind::eClearButton, 0, CRect{nSplit, rc.top, rc.right, rc.bottom});
        clear.m_sText = "C";
        clear.m_nTarget = layout.m_Controls.GetCount() - 2;
    }
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        controls.WriteFile(1, std::string(data.GetText()));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        data.SetText(controls.m_File.GetFile());
    }
    void Press(CRowControls& controls, int nSlot, CPropertyServices& services) const override
    {
        const CControlDesc& button = *controls.Get(nSlot);
        if (button.m_eKind == EControlKind::eClearButton)
            controls.WriteFile(button.m_nTarget, std::string());
        else if (button.m_eKind == EControlKind::eFileButton && controls.m_File.OnClick(services.m_Context))
            controls.WriteFile(nSlot, controls.m_File.GetFile());
        else
            return;
        controls.Notify();
    }
};

class CEnumRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override
    {
        int32_t nWidest = 0;
        std::vector<std::string> items;
        for (const std::string& sItem : SplitEnumList(DescData(layout.m_Desc).c_str()))
        {
            items.push_back(TrimItem(sItem));
            nWidest = std::max(nWidest, layout.TextWidth(items.back()));
        }
        CControlDesc& list = layout.AddValue(
            EControlKind::eCombo, layout.Full(layout.m_rc.left, nWidest + layout.m_Metrics.m_nListExtra));
        list.m_Items = std::move(items);
        list.m_nDropHeight = layout.m_Metrics.m_nDropHeight;
    }
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        CControlDesc* pList = controls.Get(1);
        if (!pList)
            return;
        pList->m_nSelected = FindListItem(pList->m_Items, data.GetText());
        controls.Changed(1);
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        const CControlDesc* pList = controls.Get(1);
        if (pList && !pList->m_Items.empty()) // an empty list has nothing to take
            data.SetText(pList->m_Items[static_cast<size_t>(std::max(pList->m_nSelected, 0))]);
    }
};

class CNumberRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override
    {
        layout.Box(layout.m_rc.left, layout.m_rc.Width() / 3);
        layout.Spin();
    }
};

class CIntRow : public CNumberRow
{
public:
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        controls.WriteBox(1, IntText(data.GetInt()));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        data.SetInt(QSTextToNearestInt(controls.BoxText(1).c_str()));
    }
    std::string Step(const std::string& sText, int nDelta) const override { return SpinInt(sText, nDelta); }
};

class CFloatRow : public CNumberRow
{
public:
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        controls.WriteBox(1, FloatText(data.GetFloat()));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        data.SetFloat(FloatFromText(controls.BoxText(1)));
    }
};

// The row's alpha lives in its box alone: it goes neither into the colour dialog nor comes from there.
class CColorRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override
    {
        const char* pszAlpha = "Alpha:";
        const int32_t nGap = layout.m_Metrics.m_nGap;
        const int32_t nLabel = layout.TextWidth(pszAlpha);
        const int32_t nRest = layout.m_rc.Width() - nLabel - (2 * nGap + layout.m_Metrics.m_nSpinWidth);
        const int32_t nPart = std::max(nRest / 2, 0);
        int32_t nLeft =
            layout.AddValue(EControlKind::eSwatch, layout.Full(layout.m_rc.left, nPart)).m_rc.right + nGap;
        layout.Label(pszAlpha, nLeft, nLeft + nLabel);
        nLeft += nLabel + nGap;
        layout.Box(nLeft, nPart);
        layout.Spin();
    }
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        if (CControlDesc* pSwatch = controls.Get(1))
        {
            pSwatch->m_nColor = ColorOfPayload(data.GetColor());
            controls.Changed(1);
        }
        controls.WriteBox(3, AlphaText(PropColorAlpha(data.GetColor())));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        const CControlDesc* pSwatch = controls.Get(1);
        const uint32_t nColor = pSwatch ? SwapRedBlue(pSwatch->m_nColor) & 0xFFFFFF : 0;
        data.SetColor(nColor | AlphaFromText(controls.BoxText(3)) << 24);
    }
    void Press(CRowControls& controls, int nSlot, CPropertyServices& services) const override
    {
        constexpr uint32_t c_nOpenWithThisColor = 0x1, c_nOpenFully = 0x2, c_nAnyColor = 0x100;
        if (controls.Get(nSlot)->m_eKind != EControlKind::eSwatch)
            return;
        CKRColorDialog dialog(services, controls.Get(nSlot)->m_nColor,
                              c_nOpenWithThisColor | c_nOpenFully | c_nAnyColor);
        if (!services.m_Dialogs.RunColor(dialog))
            return;
        if (CControlDesc* pSwatch = controls.Get(nSlot))
            pSwatch->m_nColor = dialog.m_nResultColor & 0xFFFFFF;
        controls.Changed(nSlot);
        controls.Notify();
    }
};

class CVectorRow : public IRowKind
{
public:
    void Layout(CRowLayout& layout) const override
    {
        const CRect& rc = layout.m_rc;
        const int32_t nGap = layout.m_Metrics.m_nGroupGap;
        const int32_t nLabel = layout.TextWidth("X:");
        const int32_t nPart = std::max((rc.Width() - (3 * nLabel + 3 * nGap)) / 4, 0);
        int32_t nLeft = rc.left;
        for (const char* pszAxis : {"X:", "Y:", "Z:"})
        {
            layout.Label(pszAxis, nLeft, nLeft + nLabel);
            nLeft = layout.Box(nLeft + nLabel, nPart) + nGap;
        }
        layout
            .Add(EControlKind::eVectorButton, 0,
                 CRect{nLeft, rc.top - layout.m_Metrics.m_nOverhang, rc.right, rc.bottom})
            .m_sText = "...";
    }
    void Show(CRowControls& controls, const CPropData& data) const override
    {
        const CVector3 v = data.GetVector();
        Write(controls, FloatText(v.x), FloatText(v.y), FloatText(v.z));
    }
    void Take(const CRowControls& controls, CPropData& data) const override
    {
        data.SetVector(Read(controls));
    }
    void Press(CRowControls& controls, int nSlot, CPropertyServices& services) const override
    {
        if (controls.Get(nSlot)->m_eKind != EControlKind::eVectorButton)
            return;
        CEditVectorDlg dialog(services.m_Context.m_Prompts, Read(controls));
        if (!services.m_Dialogs.RunVector(dialog))
            return;
        const CVector3 v = dialog.m_vResult;
        Write(controls, VectorText(v.x), VectorText(v.y), VectorText(v.z));
    }

private:
    static CVector3 Read(const CRowControls& controls)
    {
        return CVector3{FloatFromText(controls.BoxText(2)), FloatFromText(controls.BoxText(4)),
                        FloatFromText(controls.BoxText(6))};
    }
    static void Write(CRowControls& controls, const std::string& sX, const std::string& sY,
                      const std::string& sZ)
    {
        controls.WriteBox(2, sX);
        controls.WriteBox(4, sY);
        controls.WriteBox(6, sZ);
    }
};

struct CRowOfKind
{
    EEffectPropertyType m_eType;
    const IRowKind& m_Row;
};

const CNameRow c_NameRow;
const CTextRow c_TextRow;
const CFileRow c_FileRow;
const CEnumRow c_EnumRow;
const CIntRow c_IntRow;
const CFloatRow c_FloatRow;
const CColorRow c_ColorRow;
const CVectorRow c_VectorRow;
const CTextLineRow c_TextLineRow;

const CRowOfKind c_Rows[] = {
    {ePropType_String, c_TextRow},       {ePropType_Filename, c_FileRow}, {ePropType_Enum, c_EnumRow},
    {ePropType_Int, c_IntRow},           {ePropType_Float, c_FloatRow},   {ePropType_Color, c_ColorRow},
    {ePropType_Vector, c_VectorRow},     {ePropType_UI, c_TextLineRow},   {ePropType_Animation, c_TextRow},
    {ePropType_FireglassRef, c_TextRow},
};

} // namespace

std::string IRowKind::Step(const std::string& sText, int nDelta) const
{
    return SpinFloat(sText, nDelta);
}

void IRowKind::Press(CRowControls&, int, CPropertyServices&) const {}

const IRowKind& RowKind(uint32_t eType)
{
    const auto* pRow = std::find_if(std::begin(c_Rows), std::end(c_Rows),
                                    [eType](const CRowOfKind& row) { return row.m_eType == eType; });
    return pRow == std::end(c_Rows) ? c_NameRow : pRow->m_Row;
}
