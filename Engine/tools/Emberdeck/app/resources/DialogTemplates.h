#pragma once

#include <cstdint>

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

constexpr int32_t c_nNoControlID = -1; // a control that nothing refers to
constexpr int32_t c_nControlOk = 1;
constexpr int32_t c_nControlCancel = 2;

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

// clang-format off
namespace dialog_controls
{

using enum ETemplateControl;

// CAboutSharedDlg. The bracketed texts are those of a template nobody has filled yet.
inline constexpr CTemplateControl c_About[] = {
    {c_nNoControlID, eIcon, 18, 13, 21, 20},
    {1016, eLabel, 55, 13, 216, 9, "[Title]", eTplRunTimeText},
    {1017, eLabel, 55, 25, 216, 9, "[Version]", eTplRunTimeText},
    {1018, eLabel, 55, 37, 216, 9, "[Info]", eTplRunTimeText},
    {1019, eLabel, 55, 53, 216, 18, "[Copyright]", eTplRunTimeText | eTplMultiLine},
    {1265, eLabel, 18, 82, 249, 66, "[Warning]", eTplRunTimeText | eTplMultiLine},
    {c_nControlOk, eButton, 217, 156, 50, 14, "OK", eTplDefault},
};

// CLeftDockBar.
inline constexpr CTemplateControl c_LeftDock[] = {
    {1117, eTabs, 5, 5, 177, 265},
    {1118, ePlaceholder, 184, 50, 6, 175}, // the size bar stands here
};
inline constexpr const char* c_DockTabs[] = {"   Effects   ", "   Prefabs   "};

// CEffectTreePanel and CPrefabTreePanel: a tree that fills the page.
inline constexpr CTemplateControl c_EffectPanel[] = {{1099, eTree, 0, 0, 169, 247}};
inline constexpr CTemplateControl c_PrefabPanel[] = {{1116, eTree, 0, 0, 169, 247}};

// CNameEntryDlg, CFloatEntryDlg, CIntEntryDlg: captioned by whoever asks.
inline constexpr CTemplateControl c_NameEntry[] = {
    {1001, eEdit, 7, 7, 172, 14},
    {c_nControlOk, eButton, 35, 27, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 101, 27, 50, 14, "Cancel"},
};
inline constexpr CTemplateControl c_IntEntry[] = {
    {1065, eEdit, 7, 7, 172, 14},
    {c_nControlOk, eButton, 35, 27, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 101, 27, 50, 14, "Cancel"},
};

// CKeyInfoBar.
inline constexpr CTemplateControl c_KeyInfoBar[] = {
    {c_nNoControlID, eGroupBox, 6, 3, 145, 46, "Phase Information"},
    {c_nNoControlID, eLabel, 19, 14, 49, 8, "Phase Length :"},
    {1004, eButton, 72, 12, 69, 14, "", eTplRunTimeText},
    {c_nNoControlID, eLabel, 30, 28, 38, 8, "Total Keys :"},
    {1069, eLabel, 72, 28, 45, 8, "", eTplRunTimeText},
    {c_nNoControlID, eLabel, 24, 36, 45, 8, "Total Tracks :"},
    {1070, eLabel, 72, 37, 55, 8, "", eTplRunTimeText},
    {1074, eGroupBox, 155, 3, 128, 46, "Key Info", eTplRunTimeText},
    {1075, eLabel, 171, 13, 37, 8, "Start Time :"},
    {1071, eLabel, 215, 13, 44, 8, "", eTplRunTimeText},
    {1077, eLabel, 173, 24, 35, 8, "End Time :"},
    {1072, eLabel, 215, 24, 36, 8, "", eTplRunTimeText},
    {1076, eLabel, 163, 35, 45, 8, "Total Length :"},
    {1073, eLabel, 215, 35, 44, 8, "", eTplRunTimeText},
};

// CTimeBar. The ruler is drawn at the dialog's top left, as large as 1046.
inline constexpr CTemplateControl c_TimeBar[] = {
    {1046, ePlaceholder, 0, 0, 412, 16},
    {1045, ePlaceholder, 0, 10, 411, 40},
    {1047, eSlider, 20, 21, 211, 21, "", eTplTicks},
    {c_nNoControlID, eLabel, 2, 27, 19, 8, "Scale"},
    {1048, eSlider, 0, 44, 412, 26, "", eTplTicks},
};

// CFXPropertiesDlg, captioned with what it edits. No Cancel button: closing the frame is the cancel.
inline constexpr CTemplateControl c_FXProperties[] = {
    {c_nNoControlID, eGroupBox, 7, 1, 409, 366, "Properties"},
    {1053, ePlaceholder, 14, 13, 396, 352}, // the rows stand here
    {1097, eScrollBar, 419, 5, 14, 362},
    {c_nControlOk, eButton, 359, 372, 67, 14, "OK", eTplDefault},
    {1000, eButton, 7, 372, 65, 14, "Open Parent"},
    {1001, eButton, 77, 372, 65, 14, "Disconnect"},
};

// CChooseFXDlg and CSelectFXToImportDlg.
inline constexpr CTemplateControl c_ChooseFX[] = {
    {1002, eListBox, 7, 7, 144, 212, "", eTplSorted},
    {c_nControlOk, eButton, 21, 225, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 87, 225, 50, 14, "Cancel"},
};
inline constexpr CTemplateControl c_SelectFXToImport[] = {
    {1002, eListBox, 7, 7, 144, 212, "", eTplSorted | eTplMultiSelect},
    {c_nControlOk, eButton, 21, 225, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 87, 225, 50, 14, "Cancel"},
};

// CKRColorDialog.
inline constexpr CTemplateControl c_Color[] = {
    {c_nNoControlID, eLabel, 5, 4, 139, 9, "&Basic colors:"},
    {720, eView, 4, 14, 140, 86}, // basic colours
    {c_nNoControlID, eLabel, 5, 109, 129, 9, "&Custom colors:"},
    {9039, eView, 4, 119, 135, 42}, // custom colours
    {9040, eEdit, 5, 165, 129, 30, "", eTplMultiLine},
    {710, eView, 152, 4, 118, 116}, // hue across, saturation up
    {702, eView, 280, 4, 8, 116},   // luminance
    {709, eView, 152, 124, 40, 26}, // the current colour
    {c_nNoControlID, eLabel, 194, 127, 22, 9, "Hu&e:"},
    {703, eEdit, 218, 124, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 194, 140, 22, 9, "&Sat:"},
    {704, eEdit, 218, 137, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 194, 153, 22, 9, "&Lum:"},
    {705, eEdit, 218, 150, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 127, 24, 9, "&Red:"},
    {706, eEdit, 268, 124, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 140, 24, 9, "&Green:"},
    {707, eEdit, 268, 137, 20, 12, "", eTplNumbersOnly},
    {c_nNoControlID, eLabel, 242, 153, 24, 9, "Bl&ue:"},
    {708, eEdit, 268, 150, 20, 12, "", eTplNumbersOnly},
    {729, eLabel, 242, 167, 24, 9, "&Alpha:"},
    {1006, eEdit, 268, 164, 20, 12, "", eTplNumbersOnly, "Kept with a custom color: 0 is transparent, 255 opaque"},
    {c_nControlOk, eButton, 4, 200, 44, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 52, 200, 44, 14, "Cancel"},
    {9005, eButton, 103, 200, 16, 14, "Save", eTplIconOnly, "Save Custom Colors"},
    {9003, eButton, 120, 200, 16, 14, "Load", eTplIconOnly, "Load Custom Colors"},
    {712, eButton, 152, 200, 141, 14, "&Add to Custom Colors"},
    // In the room that the rest leaves: the box begins with 0 whatever the row's alpha is, and never gets there.
    {c_nNoControlID, eLabel, 152, 179, 141, 18,
     "Alpha is kept with custom colors only.\nThe row's own alpha stays as it is.", eTplMultiLine},
};

// CEditVectorDlg.
inline constexpr CTemplateControl c_EditVector[] = {
    {c_nNoControlID, eGroupBox, 8, 4, 100, 100, "Side [Z / Y]"},
    {1104, eView, 13, 14, 88, 84},
    {c_nNoControlID, eGroupBox, 117, 4, 100, 100, "Top [X / Z]"},
    {1105, eView, 123, 14, 88, 84},
    {c_nNoControlID, eLabel, 225, 5, 38, 8, "Magnitude :"},
    {1106, eEdit, 225, 15, 40, 14},
    {c_nNoControlID, eLabel, 225, 35, 28, 8, "Presets :"},
    {1013, eDropDownList, 225, 44, 48, 70},
    {c_nControlOk, eButton, 94, 113, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 160, 113, 50, 14, "Cancel"},
};

// The command line that Launch gives to the game.
inline constexpr CTemplateControl c_GameInfo[] = {
    {c_nNoControlID, eGroupBox, 7, 6, 202, 33, "Command Line"},
    {1142, eEdit, 13, 19, 189, 12},
    {c_nControlOk, eButton, 106, 47, 50, 14, "OK", eTplDefault},
    {c_nControlCancel, eButton, 159, 47, 50, 14, "Cancel"},
};

// CFunctionCurveDlg.
inline constexpr CTemplateControl c_FunctionCurve[] = {
    {1058, ePlaceholder, 7, 7, 452, 131}, // the curve
    {c_nNoControlID, eLabel, 7, 143, 17, 8, "Time"},
    {1103, eButton, 26, 141, 51, 13, "Time", eTplRunTimeText, "Shows the time location of the selected key"},
    {1115, eLabel, 87, 143, 14, 10, "Axis"},
    {1114, eDropDownList, 104, 141, 56, 93, "", 0, "The current axis that is being visualized"},
    {1108, eLabel, 297, 142, 24, 9, "Y Min"},
    {1107, eButton, 323, 140, 41, 12, "YMin", eTplRunTimeText,
     "Shows and allows editing of the minimum Y value of the displayed range"},
    {1109, eLabel, 297, 155, 24, 9, "Y Max"},
    {1110, eButton, 323, 154, 41, 12, "YMax", eTplRunTimeText,
     "Shows and allows editing of the maximum Y value of the displayed range"},
    {c_nNoControlID, eLabel, 379, 142, 37, 8, "Start Time"},
    {1111, eButton, 418, 140, 41, 12, "Start", eTplRunTimeText,
     "Shows and allows editing of the minimum time value of the displayed range"},
    {c_nNoControlID, eLabel, 380, 155, 37, 8, "End Time"},
    {1112, eButton, 418, 154, 41, 12, "End", eTplRunTimeText,
     "Shows and allows editing of the maximum time value of the displayed range"},
    {1060, ePlaceholder, 7, 168, 67, 13},   // the row's label
    {1059, ePlaceholder, 80, 168, 379, 13}, // the row's controls
    {1104, eButton, 7, 185, 18, 15, "Copy", eTplIconOnly,
     "Copies the current function curve so that it may be pasted into other function curves of the same type"},
    {1105, eButton, 25, 185, 18, 15, "Paste", eTplIconOnly,
     "Pastes a previously copied function curve of the same type"},
    {1113, eButton, 47, 185, 43, 15, "Best &Fit", 0,
     "Adjusts the viewport position in order to find the best fit for the current function curve"},
    {c_nControlOk, eButton, 358, 186, 50, 14, "OK", eTplDefault, "Accepts the current function curve"},
    {c_nControlCancel, eButton, 409, 186, 50, 14, "Cancel", 0,
     "Cancels any changes to the function curve that have been made while this dialog has been open"},
};

// The find dialog of a tree: modeless, and it stays open after a find.
inline constexpr CTemplateControl c_Find[] = {
    {c_nNoControlID, eLabel, 7, 10, 42, 9, "Fi&nd what:"},
    {1201, eEdit, 52, 7, 124, 14},
    {1202, eCheckBox, 7, 30, 104, 10, "Match &whole word only"},
    {1203, eCheckBox, 7, 44, 104, 10, "Match &case"},
    {c_nNoControlID, eGroupBox, 113, 27, 63, 29, "Direction"},
    {1204, eRadio, 118, 40, 25, 10, "&Up"},
    {1205, eRadio, 143, 40, 31, 10, "&Down"},
    {c_nControlOk, eButton, 183, 7, 50, 14, "&Find Next", eTplDefault},
    {c_nControlCancel, eButton, 183, 25, 50, 14, "Cancel"},
};

} // namespace dialog_controls

inline constexpr CDialogTemplate c_DialogTemplates[] = {
    MakeTemplate(100, "About Emberdeck", 285, 179, true, dialog_controls::c_About),
    MakeTemplate(130, "", 190, 275, false, dialog_controls::c_LeftDock),
    MakeTemplate(134, "", 186, 47, true, dialog_controls::c_NameEntry),
    MakeTemplate(145, "", 290, 54, false, dialog_controls::c_KeyInfoBar),
    MakeTemplate(146, "", 412, 71, false, dialog_controls::c_TimeBar),
    MakeTemplate(149, "FX Properties", 433, 393, true, dialog_controls::c_FXProperties),
    MakeTemplate(150, "Choose FX", 158, 246, true, dialog_controls::c_ChooseFX),
    MakeTemplate(151, "Color", 298, 219, true, dialog_controls::c_Color),
    MakeTemplate(161, "Dialog", 186, 47, true, dialog_controls::c_IntEntry),
    MakeTemplate(162, "Dialog", 186, 47, true, dialog_controls::c_NameEntry),
    MakeTemplate(167, "Select FX To Import", 158, 246, true, dialog_controls::c_SelectFXToImport),
    MakeTemplate(169, "Edit Vector", 304, 134, true, dialog_controls::c_EditVector),
    MakeTemplate(180, "Game Information", 216, 68, true, dialog_controls::c_GameInfo),
    MakeTemplate(181, "", 169, 247, false, dialog_controls::c_EffectPanel),
    MakeTemplate(182, "Edit Function Curve", 466, 207, true, dialog_controls::c_FunctionCurve),
    MakeTemplate(183, "", 169, 247, false, dialog_controls::c_PrefabPanel),
    MakeTemplate(184, "Find", 240, 63, false, dialog_controls::c_Find),
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
