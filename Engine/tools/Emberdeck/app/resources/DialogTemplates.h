#pragma once

#include "app/resources/DialogIds.h"

// The dialogs of the program, in dialog units: a quarter of the font's mean character width across, an eighth of
// its height down. A template says what stands where and what it says; what it does is the business of the
// dialog's own class, which finds its controls by their ids.

enum class ETemplateControl
{
    eLabel,
    eGroupBox, // a frame with a title, behind the controls that stand in it
    eEdit,
    eButton,
    eRadio,
    eCheckBox,
    eListBox,
    eDropDownList, // the height is that of the open list
    eSlider,       // horizontal
    eScrollBar,    // vertical
    eTabs,
    eTree,
    eIcon,        // the program's icon, at its own size
    ePlaceholder, // never seen: its rectangle is where something is placed at run time
    eView,        // painted by the program
};

// How a control differs from a plain one of its kind.
enum ETemplateStyle : uint32_t
{
    eTplDefault = 0x0001,     // the button that Enter presses
    eTplIconOnly = 0x0002,    // a button with a 16 by 16 image in place of its text
    eTplSorted = 0x0004,      // a list, without regard to case
    eTplMultiSelect = 0x0008, // a list, with Shift and Ctrl
    eTplNumbersOnly = 0x0010, // an edit box takes digits alone
    eTplMultiLine = 0x0020,   // an edit box, wrapped; a label, wrapped within its height
    eTplTicks = 0x0040,       // a slider
    eTplRunTimeText = 0x0080, // the text stands in until the dialog sets its own
};

struct CTemplateControl
{
    int32_t m_nID;
    ETemplateControl m_eKind;
    int16_t m_nX;
    int16_t m_nY;
    int16_t m_nWidth;
    int16_t m_nHeight;
    const char* m_pszText = ""; // "&" marks the shortcut letter
    uint32_t m_nStyle = 0;      // ETemplateStyle
    const char* m_pszToolTip = "";
};

struct CDialogTemplate
{
    int32_t m_nID;
    const char* m_pszCaption; // empty: a part of another window, without frame, or a caption set at run time
    int16_t m_nWidth;
    int16_t m_nHeight;
    bool m_bModal;
    const CTemplateControl* m_pControls;
    int32_t m_nControls;

    constexpr const CTemplateControl* begin() const { return m_pControls; }
    constexpr const CTemplateControl* end() const { return m_pControls + m_nControls; }
    // Null when it has no such control.
    constexpr const CTemplateControl* Find(int32_t nID) const
    {
        for (const CTemplateControl& control : *this)
        {
            if (control.m_nID == nID)
                return &control;
        }
        return nullptr;
    }
};

template <int32_t t_nControls>
constexpr CDialogTemplate MakeTemplate(int32_t nID, const char* pszCaption, int16_t nWidth, int16_t nHeight,
                                       bool bModal, const CTemplateControl (&controls)[t_nControls])
{
    return CDialogTemplate{nID, pszCaption, nWidth, nHeight, bModal, controls, t_nControls};
}

// The pages of the left dock.
constexpr int32_t c_nDockTabs = 2;
inline constexpr const char* c_DockTabs[c_nDockTabs] = {"   Effects   ", "   Prefabs   "};

// clang-format off
namespace dialog_controls
{

using enum ETemplateControl;

// CAboutSharedDlg. The bracketed texts are those of a template nobody has filled yet.
inline constexpr CTemplateControl c_About[] = {
    {c_nNoControlID, eIcon, 18, 13, 21, 20},
    {eAbout_Title, eLabel, 55, 13, 216, 9, "[Title]", eTplRunTimeText},
    {eAbout_Version, eLabel, 55, 25, 216, 9, "[Version]", eTplRunTimeText},
    {eAbout_Info, eLabel, 55, 37, 216, 9, "[Info]", eTplRunTimeText},
    {eAbout_Copyright, eLabel, 55, 53, 216, 18, "[Copyright]", eTplRunTimeText | eTplMultiLine},
    {eAbout_Warning, eLabel, 18, 82, 249, 66, "[Warning]", eTplRunTimeText | eTplMultiLine},
    {c_nControlOk, eButton, 217, 156, 50, 14, "OK", eTplDefault},
};

// CLeftDockBar.
inline constexpr CTemplateControl c_LeftDock[] = {
    {eLeftDock_Tabs, eTabs, 5, 5, 177, 265},
    {eLeftDock_SizeBar, ePlaceholder, 184, 50, 6, 175}, // the size bar stands here
};

// CEffectTreePanel and CPrefabTreePanel: a tree that fills the page.
inline constexpr CTemplateControl c_EffectPanel[] = {{eEffectPanel_Tree, eTree, 0, 0, 169, 247}};
inline constexpr CTemplateControl c_PrefabPanel[] = {{ePrefabPanel_Tree, eTree, 0, 0, 169, 247}};

// CNameEntryDlg, CIntEntryDlg, CFloatEntryDlg: captioned by whoever asks.
inline constexpr CTemplateControl c_NameEntry[] = {
    {eNameEntry_Text, eEdit, 7, 7, 172, 14},
    {c_nControlOk, eButton, 35, 27, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 101, 27, 50, 14, "Cancel"},
};
inline constexpr CTemplateControl c_IntEntry[] = {
    {eIntEntry_Number, eEdit, 7, 7, 172, 14},
    {c_nControlOk, eButton, 35, 27, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 101, 27, 50, 14, "Cancel"},
};

inline constexpr CTemplateControl c_FloatEntry[] = {
    {eFloatEntry_Number, eEdit, 7, 7, 172, 14},
    {c_nControlOk, eButton, 35, 27, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 101, 27, 50, 14, "Cancel"},
};

// CKeyInfoBar.
inline constexpr CTemplateControl c_KeyInfoBar[] = {
    {c_nNoControlID, eGroupBox, 6, 3, 145, 46, "Phase Information"},
    {c_nNoControlID, eLabel, 19, 14, 49, 8, "Phase Length :"},
    {eKeyInfo_PhaseLength, eButton, 72, 12, 69, 14, "", eTplRunTimeText},
    {c_nNoControlID, eLabel, 30, 28, 38, 8, "Total Keys :"},
    {eKeyInfo_TotalKeys, eLabel, 72, 28, 45, 8, "", eTplRunTimeText},
    {c_nNoControlID, eLabel, 24, 36, 45, 8, "Total Tracks :"},
    {eKeyInfo_TotalTracks, eLabel, 72, 37, 55, 8, "", eTplRunTimeText},
    {eKeyInfo_Group, eGroupBox, 155, 3, 128, 46, "Key Info", eTplRunTimeText},
    {eKeyInfo_StartLabel, eLabel, 171, 13, 37, 8, "Start Time :"},
    {eKeyInfo_Start, eLabel, 215, 13, 44, 8, "", eTplRunTimeText},
    {eKeyInfo_EndLabel, eLabel, 173, 24, 35, 8, "End Time :"},
    {eKeyInfo_End, eLabel, 215, 24, 36, 8, "", eTplRunTimeText},
    {eKeyInfo_LengthLabel, eLabel, 163, 35, 45, 8, "Total Length :"},
    {eKeyInfo_Length, eLabel, 215, 35, 44, 8, "", eTplRunTimeText},
};

// CTimeBar. The ruler is drawn at the dialog's top left, as large as its place.
inline constexpr CTemplateControl c_TimeBar[] = {
    {eTimeBar_Ruler, ePlaceholder, 0, 0, 412, 16},
    {eTimeBar_Scale, eSlider, 20, 21, 211, 21, "", eTplTicks},
    {c_nNoControlID, eLabel, 2, 27, 19, 8, "Scale"},
    {eTimeBar_Phase, eSlider, 0, 44, 412, 26, "", eTplTicks},
};

// CFXPropertiesDlg, captioned with what it edits. No Cancel button: closing the frame is the cancel.
inline constexpr CTemplateControl c_FXProperties[] = {
    {c_nNoControlID, eGroupBox, 7, 1, 409, 366, "Properties"},
    {eFXProps_Rows, ePlaceholder, 14, 13, 396, 352}, // the rows stand here
    {eFXProps_ScrollBar, eScrollBar, 419, 5, 14, 362},
    {c_nControlOk, eButton, 359, 372, 67, 14, "OK", eTplDefault},
    {eFXProps_OpenParent, eButton, 7, 372, 65, 14, "Open Parent"},
    {eFXProps_Disconnect, eButton, 77, 372, 65, 14, "Disconnect"},
};

// CChooseFXDlg and CSelectFXToImportDlg.
inline constexpr CTemplateControl c_ChooseFX[] = {
    {eChooseFX_List, eListBox, 7, 7, 144, 212, "", eTplSorted},
    {c_nControlOk, eButton, 21, 225, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 87, 225, 50, 14, "Cancel"},
};
inline constexpr CTemplateControl c_SelectFXToImport[] = {
    {eSelectFX_List, eListBox, 7, 7, 144, 212, "", eTplSorted | eTplMultiSelect},
    {c_nControlOk, eButton, 21, 225, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 87, 225, 50, 14, "Cancel"},
};

// CKRColorDialog.
inline constexpr CTemplateControl c_Color[] = {
    {c_nNoControlID, eLabel, 5, 4, 139, 9, "&Basic colors:"},
    {eColor_Basic, eView, 4, 14, 140, 86}, // basic colours
    {c_nNoControlID, eLabel, 5, 109, 129, 9, "&Custom colors:"},
    {eColor_Palette, eView, 4, 119, 135, 42}, // custom colours
    {eColor_DescriptionBox, eEdit, 5, 165, 129, 30, "", eTplMultiLine},
    {eColor_Square, eView, 152, 4, 118, 116}, // hue across, saturation up
    {eColor_Luminance, eView, 280, 4, 8, 116},   // luminance
    {eColor_Current, eView, 152, 124, 40, 26}, // the current colour
    {c_nNoControlID, eLabel, 194, 127, 22, 9, "Hu&e:"},
    {eColor_HueBox, eEdit, 218, 124, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 194, 140, 22, 9, "&Sat:"},
    {eColor_SatBox, eEdit, 218, 137, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 194, 153, 22, 9, "&Lum:"},
    {eColor_LumBox, eEdit, 218, 150, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 127, 24, 9, "&Red:"},
    {eColor_RedBox, eEdit, 268, 124, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 140, 24, 9, "&Green:"},
    {eColor_GreenBox, eEdit, 268, 137, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 153, 24, 9, "Bl&ue:"},
    {eColor_BlueBox, eEdit, 268, 150, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 167, 24, 9, "&Alpha:"},
    {eColor_AlphaBox, eEdit, 268, 164, 20, 12, "", eTplNumbersOnly, "Kept with a custom color: 0 is transparent, 255 opaque"},
    {c_nControlOk, eButton, 4, 200, 44, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 52, 200, 44, 14, "Cancel"},
    {eColor_SaveButton, eButton, 103, 200, 16, 14, "Save", eTplIconOnly, "Save Custom Colors"},
    {eColor_LoadButton, eButton, 120, 200, 16, 14, "Load", eTplIconOnly, "Load Custom Colors"},
    {eColor_AddButton, eButton, 152, 200, 141, 14, "&Add to Custom Colors"},
    // In the room that the rest leaves: the box begins with 0 whatever the row's alpha is, and never gets there.
    {c_nNoControlID, eLabel, 152, 179, 141, 18,
     "Alpha is kept with custom colors only.\nThe row's own alpha stays as it is.", eTplMultiLine},
};

// CEditVectorDlg.
inline constexpr CTemplateControl c_EditVector[] = {
    {c_nNoControlID, eGroupBox, 8, 4, 100, 100, "Side [Z / Y]"},
    {eVector_SideView, eView, 13, 14, 88, 84},
    {c_nNoControlID, eGroupBox, 117, 4, 100, 100, "Top [X / Z]"},
    {eVector_TopView, eView, 123, 14, 88, 84},
    {c_nNoControlID, eLabel, 225, 5, 38, 8, "Magnitude :"},
    {eVector_Magnitude, eEdit, 225, 15, 40, 14},
    {c_nNoControlID, eLabel, 225, 35, 28, 8, "Presets :"},
    {eVector_Presets, eDropDownList, 225, 44, 48, 70},
    {c_nControlOk, eButton, 94, 113, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 160, 113, 50, 14, "Cancel"},
};

// The command line that Launch gives to the game.
inline constexpr CTemplateControl c_GameInfo[] = {
    {c_nNoControlID, eGroupBox, 7, 6, 202, 33, "Command Line"},
    {eGameInfo_CommandLine, eEdit, 13, 19, 189, 12},
    {c_nControlOk, eButton, 106, 47, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 159, 47, 50, 14, "Cancel"},
};

// CFunctionCurveDlg.
inline constexpr CTemplateControl c_FunctionCurve[] = {
    {eCurve_Area, ePlaceholder, 7, 7, 452, 131}, // the curve
    {c_nNoControlID, eLabel, 7, 143, 17, 8, "Time"},
    {eCurve_Time, eButton, 26, 141, 51, 13, "Time", eTplRunTimeText, "Shows the time location of the selected key"},
    {eCurve_AxisLabel, eLabel, 87, 143, 14, 10, "Axis"},
    {eCurve_Axis, eDropDownList, 104, 141, 56, 93, "", 0, "The current axis that is being visualized"},
    {eCurve_YMinLabel, eLabel, 297, 142, 24, 9, "Y Min"},
    {eCurve_YMin, eButton, 323, 140, 41, 12, "YMin", eTplRunTimeText,
     "Shows and allows editing of the minimum Y value of the displayed range"},
    {eCurve_YMaxLabel, eLabel, 297, 155, 24, 9, "Y Max"},
    {eCurve_YMax, eButton, 323, 154, 41, 12, "YMax", eTplRunTimeText,
     "Shows and allows editing of the maximum Y value of the displayed range"},
    {c_nNoControlID, eLabel, 379, 142, 37, 8, "Start Time"},
    {eCurve_Start, eButton, 418, 140, 41, 12, "Start", eTplRunTimeText,
     "Shows and allows editing of the minimum time value of the displayed range"},
    {c_nNoControlID, eLabel, 380, 155, 37, 8, "End Time"},
    {eCurve_End, eButton, 418, 154, 41, 12, "End", eTplRunTimeText,
     "Shows and allows editing of the maximum time value of the displayed range"},
    {eCurve_RowLabel, ePlaceholder, 7, 168, 67, 13},   // the row's label
    {eCurve_RowControls, ePlaceholder, 80, 168, 379, 13}, // the row's controls
    {eCurve_Copy, eButton, 7, 185, 18, 15, "Copy", eTplIconOnly,
     "Copies the current function curve so that it may be pasted into other function curves of the same type"},
    {eCurve_Paste, eButton, 25, 185, 18, 15, "Paste", eTplIconOnly,
     "Pastes a previously copied function curve of the same type"},
    {eCurve_BestFit, eButton, 47, 185, 43, 15, "Best &Fit", 0,
     "Adjusts the viewport position in order to find the best fit for the current function curve"},
    {c_nControlOk, eButton, 358, 186, 50, 14, "OK", eTplDefault, "Accepts the current function curve"},
    {c_nControlCancel, eButton, 409, 186, 50, 14, "Cancel", 0,
     "Cancels any changes to the function curve that have been made while this dialog has been open"},
};

// The find dialog of a tree: modeless, and it stays open after a find.
inline constexpr CTemplateControl c_Find[] = {
    {c_nNoControlID, eLabel, 7, 10, 42, 9, "Fi&nd what:"},
    {eFind_Text, eEdit, 52, 7, 124, 14},
    {eFind_WholeWord, eCheckBox, 7, 30, 104, 10, "Match &whole word only"},
    {eFind_MatchCase, eCheckBox, 7, 44, 104, 10, "Match &case"},
    {c_nNoControlID, eGroupBox, 113, 27, 63, 29, "Direction"},
    {c_nNoControlID, eRadio, 118, 40, 25, 10, "&Up"},
    {eFind_Down, eRadio, 143, 40, 31, 10, "&Down"},
    {c_nControlOk, eButton, 183, 7, 50, 14, "&Find Next", eTplDefault},
    {c_nControlCancel, eButton, 183, 25, 50, 14, "Cancel"},
};

} // namespace dialog_controls

inline constexpr CDialogTemplate c_DialogTemplates[] = {
    MakeTemplate(eDlg_About, "About Emberdeck", 285, 179, true, dialog_controls::c_About),
    MakeTemplate(eDlg_LeftDock, "", 190, 275, false, dialog_controls::c_LeftDock),
    MakeTemplate(eDlg_NameEntry, "", 186, 47, true, dialog_controls::c_NameEntry),
    MakeTemplate(eDlg_KeyInfoBar, "", 290, 54, false, dialog_controls::c_KeyInfoBar),
    MakeTemplate(eDlg_TimeBar, "", 412, 71, false, dialog_controls::c_TimeBar),
    MakeTemplate(eDlg_FXProperties, "FX Properties", 433, 393, true, dialog_controls::c_FXProperties),
    MakeTemplate(eDlg_ChooseFX, "Choose FX", 158, 246, true, dialog_controls::c_ChooseFX),
    MakeTemplate(eDlg_Color, "Color", 298, 219, true, dialog_controls::c_Color),
    MakeTemplate(eDlg_IntEntry, "Dialog", 186, 47, true, dialog_controls::c_IntEntry),
    MakeTemplate(eDlg_FloatEntry, "Dialog", 186, 47, true, dialog_controls::c_FloatEntry),
    MakeTemplate(eDlg_SelectFXToImport, "Select FX To Import", 158, 246, true, dialog_controls::c_SelectFXToImport),
    MakeTemplate(eDlg_EditVector, "Edit Vector", 304, 134, true, dialog_controls::c_EditVector),
    MakeTemplate(eDlg_GameInfo, "Game Information", 216, 68, true, dialog_controls::c_GameInfo),
    MakeTemplate(eDlg_EffectPanel, "", 169, 247, false, dialog_controls::c_EffectPanel),
    MakeTemplate(eDlg_FunctionCurve, "Edit Function Curve", 466, 207, true, dialog_controls::c_FunctionCurve),
    MakeTemplate(eDlg_PrefabPanel, "", 169, 247, false, dialog_controls::c_PrefabPanel),
    MakeTemplate(eDlg_Find, "Find", 240, 63, false, dialog_controls::c_Find),
};
// clang-format on

// Null when there is no such template.
constexpr const CDialogTemplate* FindDialogTemplate(int32_t nID)
{
    for (const CDialogTemplate& dialog : c_DialogTemplates)
    {
        if (dialog.m_nID == nID)
            return &dialog;
    }
    return nullptr;
}
