#pragma once

#include <cstdint>

// The names of the dialog templates and of their controls, an enum for each template. The templates themselves are in
// DialogTemplates.h. Controls that nobody refers to have no id of their own.

enum EDialog : int32_t
{
    eDlg_About = 100,
    eDlg_LeftDock = 130,
    eDlg_NameEntry = 134,
    eDlg_KeyInfoBar = 145,
    eDlg_TimeBar = 146,
    eDlg_FXProperties = 149,
    eDlg_ChooseFX = 150,
    eDlg_Color = 151,
    eDlg_IntEntry = 161,
    eDlg_FloatEntry = 162,
    eDlg_SelectFXToImport = 167,
    eDlg_EditVector = 169,
    eDlg_GameInfo = 180,
    eDlg_EffectPanel = 181,
    eDlg_FunctionCurve = 182,
    eDlg_PrefabPanel = 183,
    eDlg_Find = 184,
};

constexpr int32_t c_nNoControlID = -1; // a control that nothing refers to
// Of any dialog. In the trees Enter and Esc give these two as commands.
constexpr int32_t c_nControlOk = 1;
constexpr int32_t c_nControlCancel = 2;

enum EAboutControl : int32_t
{
    eAbout_Title = 1016,
    eAbout_Version = 1017,
    eAbout_Info = 1018,
    eAbout_Copyright = 1019,
    eAbout_Warning = 1265,
};

enum ELeftDockControl : uint32_t
{
    eLeftDock_Tabs = 1117,
    eLeftDock_SizeBar = 1118, // its place
};

enum EEffectPanelControl : uint32_t
{
    eEffectPanel_Tree = 1099,
};

enum EPrefabPanelControl : uint32_t
{
    ePrefabPanel_Tree = 1116,
};

enum ENameEntryControl : int32_t
{
    eNameEntry_Text = 1001,
};

enum EIntEntryControl : int32_t
{
    eIntEntry_Number = 1065,
};

enum EFloatEntryControl : int32_t
{
    eFloatEntry_Number = 1001,
};

enum EGameInfoControl : int32_t
{
    eGameInfo_CommandLine = 1142,
};

enum EKeyInfoControl : int32_t
{
    eKeyInfo_PhaseLength = 1004, // button
    eKeyInfo_TotalKeys = 1069,
    eKeyInfo_TotalTracks = 1070,
    eKeyInfo_Start = 1071,
    eKeyInfo_End = 1072,
    eKeyInfo_Length = 1073,
    eKeyInfo_Group = 1074,
    eKeyInfo_StartLabel = 1075,
    eKeyInfo_LengthLabel = 1076,
    eKeyInfo_EndLabel = 1077,
};

enum ETimeBarControl : int32_t
{
    eTimeBar_Ruler = 1046, // its place
    eTimeBar_Scale = 1047, // slider
    eTimeBar_Phase = 1048, // slider
};

enum EFXPropertiesControl : int32_t
{
    eFXProps_OpenParent = 1000,
    eFXProps_Disconnect = 1001,
    eFXProps_Rows = 1053, // their place
    eFXProps_ScrollBar = 1097,
};

enum EChooseFXControl : int32_t
{
    eChooseFX_List = 1002,
};

enum ESelectFXControl : int32_t
{
    eSelectFX_List = 1002,
};

enum EColorControl : uint32_t
{
    eColor_Luminance = 702, // bar
    eColor_HueBox = 703,
    eColor_SatBox = 704,
    eColor_LumBox = 705,
    eColor_RedBox = 706,
    eColor_GreenBox = 707,
    eColor_BlueBox = 708,
    eColor_Current = 709, // swatch
    eColor_Square = 710,
    eColor_AddButton = 712,
    eColor_Basic = 720,
    eColor_AlphaBox = 1006,
    eColor_LoadButton = 9003,
    eColor_SaveButton = 9005,
    eColor_Palette = 9039,
    eColor_DescriptionBox = 9040,
};

enum EEditVectorControl : int32_t
{
    eVector_Presets = 1013,
    eVector_SideView = 1104,
    eVector_TopView = 1105,
    eVector_Magnitude = 1106,
};

enum ECurveControl : uint32_t
{
    eCurve_Area = 1058,
    eCurve_RowControls = 1059,
    eCurve_RowLabel = 1060,
    eCurve_Time = 1103,
    eCurve_Copy = 1104,
    eCurve_Paste = 1105,
    eCurve_YMin = 1107,
    eCurve_YMinLabel = 1108,
    eCurve_YMaxLabel = 1109,
    eCurve_YMax = 1110,
    eCurve_Start = 1111,
    eCurve_End = 1112,
    eCurve_BestFit = 1113,
    eCurve_Axis = 1114,
    eCurve_AxisLabel = 1115,
};

enum EFindControl : int32_t
{
    eFind_Text = 1201,
    eFind_WholeWord = 1202,
    eFind_MatchCase = 1203,
    eFind_Down = 1205,
};
