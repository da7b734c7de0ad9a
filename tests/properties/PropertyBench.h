#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Profile.h"
#include "properties/ColorDialog.h"
#include "properties/FXProperties.h"
#include "properties/FunctionCurveEditor.h"
#include "properties/VectorEditor.h"
#include "support/LibraryBuilder.h"
#include "support/MemoryDocuments.h"
#include "support/ScriptedPrompts.h"

// Every character is five pixels wide, a line thirteen high.
class CLetterMeasure : public ITextMeasure
{
public:
    int32_t TextWidth(std::string_view sText) const override { return int32_t(sText.size()) * 5; }
    int32_t TextHeight() const override { return m_nHeight; }
    int32_t m_nHeight = 13;
};

inline const CRect c_rcTestCurve{10, 20, 110, 120}; // one pixel is 0.01 of the time

// Answers the dialogs that open on top of an editor. One that no test expects is a failure, and cancelled.
class CScriptedDialogs : public IEditorDialogs
{
public:
    bool RunProperties(CFXPropertiesDlg& dialog) override
    {
        dialog.OnInitDialog(CRect{0, 0, 300, 220}, &m_Font);
        return Answer(m_Properties, dialog) && dialog.OnOK();
    }
    bool RunCurve(CFunctionCurveDlg& dialog) override
    {
        dialog.OnInitDialog(c_rcTestCurve, CRect{10, 130, 60, 147}, CRect{70, 130, 370, 147}, &m_Font);
        return Answer(m_Curve, dialog) && dialog.OnOK();
    }
    bool RunVector(CEditVectorDlg& dialog) override { return Answer(m_Vector, dialog) && dialog.OnOK(); }
    bool RunColor(CKRColorDialog& dialog) override
    {
        dialog.OnInitDialog(203, 69);
        return Answer(m_Color, dialog) && dialog.OnOK();
    }

    // What a person does in the dialog; true: then OK.
    std::function<bool(CFXPropertiesDlg&)> m_Properties;
    std::function<bool(CFunctionCurveDlg&)> m_Curve;
    std::function<bool(CEditVectorDlg&)> m_Vector;
    std::function<bool(CKRColorDialog&)> m_Color;
    CLetterMeasure m_Font;

private:
    template <class TDialog>
    static bool Answer(const std::function<bool(TDialog&)>& answer, TDialog& dialog)
    {
        EXPECT_TRUE(answer) << "an unexpected dialog";
        return answer && answer(dialog);
    }
};

// A library on types of the test's own (the standard ones if it names none), and all that an editor needs.
struct CPropertyBench
{
    explicit CPropertyBench(const std::function<void(CTestPlugin&)>& describe = [](CTestPlugin& plugin)
                            { DescribeStandardTypes(plugin); })
        : pModule(std::make_shared<CTestModule>(describe))
    {
    }

    CLibraryBuilder Build() { return aLibrary(pModule->m_Module, spellMgr, effectTree, prefabTree); }
    const CEffectPropertyDesc& Desc(const std::string& sName, uint32_t nType = 0)
    {
        const CEffectTypeDesc& type = *pModule->m_Module.GetType(nType);
        for (uint32_t i = 0; i < type.m_nNumProps; ++i)
            if (DescName(type.m_pProps[i]) == sName)
                return type.m_pProps[i];
        ADD_FAILURE() << "no property " << sName;
        return type.m_pProps[0];
    }
    // A validated value of its default.
    CEffectProperty Value(const std::string& sName)
    {
        CEffectProperty prop(&Desc(sName));
        ValidateStructure(&prop);
        return prop;
    }
    CRowPlace Place(CRect rcControl = CRect{100, 10, 400, 27}, uint32_t nBaseID = 5000)
    {
        return CRowPlace{CRect{20, 10, 90, 27}, rcControl, nBaseID, &dialogs.m_Font};
    }

    std::shared_ptr<CTestModule> pModule;
    CEffectTree effectTree;
    CPrefabTree prefabTree;
    CSpellMgr spellMgr;
    CEditClipboard clipboard;
    std::string sRoot;
    CEditHub edits;
    CScriptedPrompts prompts;
    CMemoryHost host;
    CMemoryDocuments documents;
    CEditContext context{spellMgr, pModule->m_Module, clipboard, effectTree, prefabTree, sRoot,
                         edits,    prompts,           host,      documents};
    std::unique_ptr<IProfile> profile = MakeMemoryProfile();
    CScriptedDialogs dialogs;
    CPropertyServices services{context, *profile, dialogs};
};

// "edit 100,10 100x17 #5001 'text'", and what differs from the usual.
inline std::string ControlText(const CControlDesc* pControl)
{
    static constexpr const char* c_Kinds[] = {"label", "edit",  "spin",   "combo",    "swatch",
                                              "file",  "clear", "vector", "function", "check"};
    if (!pControl)
        return "-";
    const CRect& rc = pControl->m_rc;
    return std::string(c_Kinds[int(pControl->m_eKind)]) + " " + std::to_string(rc.left) + "," +
           std::to_string(rc.top) + " " + std::to_string(rc.Width()) + "x" + std::to_string(rc.Height()) +
           " #" + std::to_string(pControl->m_nID) +
           (pControl->m_sText.empty() ? "" : " '" + pControl->m_sText + "'") +
           (pControl->m_bAlignRight ? " right" : "") + (pControl->m_bEnabled ? "" : " off") +
           (pControl->m_bVisible ? "" : " hidden");
}
inline std::vector<std::string> RowText(const CEffectPropertyCtrls& row)
{
    std::vector<std::string> lines;
    for (int i = 0; i < CEffectPropertyCtrls::c_nMaxSlots && row.GetControl(i); ++i)
        lines.push_back(ControlText(row.GetControl(i)));
    return lines;
}
