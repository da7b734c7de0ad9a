#pragma once

#include "platform/IDrawSurface.h"

// The program's own pictures as shapes, so that they are sharp at any size: a fire on the front card of a
// deck. Coordinates are units of a square of c_fProgramArtSize, y down; the front scales them. Shapes are
// drawn in order, each filled with one colour and without an outline.
constexpr float c_fProgramArtSize = 64.0f;

// 'M' begins an outline at (x, y), 'L' is a line to (x, y), 'C' a cubic curve to (x, y) with the control
// points 1 and 2, 'Z' closes the outline.
struct CPathStep
{
    char m_cKind;
    float x = 0, y = 0;
    float x1 = 0, y1 = 0;
    float x2 = 0, y2 = 0;
};

struct CVectorShape
{
    CColorRef m_nColor;
    const CPathStep* m_pSteps;
    int32_t m_nSteps;
};

template <int32_t t_nSteps>
constexpr CVectorShape MakeShape(CColorRef nColor, const CPathStep (&steps)[t_nSteps])
{
    return CVectorShape{nColor, steps, t_nSteps};
}

// clang-format off
inline constexpr CPathStep c_BackCard[] = {
    {'M', 19, 3},
    {'L', 52, 3}, {'C', 61, 12, 57, 3, 61, 7},
    {'L', 61, 45}, {'C', 52, 54, 61, 50, 57, 54},
    {'L', 19, 54}, {'C', 10, 45, 14, 54, 10, 50},
    {'L', 10, 12}, {'C', 19, 3, 10, 7, 14, 3}, {'Z'}};
inline constexpr CPathStep c_FrontCard[] = {
    {'M', 12, 10},
    {'L', 45, 10}, {'C', 54, 19, 50, 10, 54, 14},
    {'L', 54, 52}, {'C', 45, 61, 54, 57, 50, 61},
    {'L', 12, 61}, {'C', 3, 52, 7, 61, 3, 57},
    {'L', 3, 19}, {'C', 12, 10, 3, 14, 7, 10}, {'Z'}};
inline constexpr CPathStep c_Flame[] = {
    {'M', 29.5f, 14},
    {'C', 43, 38, 31, 22, 43, 26},
    {'C', 28.5f, 53, 43, 47.5f, 37, 53},
    {'C', 14, 38, 20, 53, 14, 47.5f},
    {'C', 20.5f, 24, 14, 32, 17.5f, 28.5f},
    {'C', 25, 31, 21.5f, 28, 22.5f, 30},
    {'C', 29.5f, 14, 27.5f, 26, 26.5f, 20}, {'Z'}};
inline constexpr CPathStep c_FlameMiddle[] = {
    {'M', 29.5f, 27},
    {'C', 38, 42, 31, 32.5f, 38, 35},
    {'C', 28.5f, 52.5f, 38, 48.5f, 34, 52.5f},
    {'C', 19, 42, 23, 52.5f, 19, 48.5f},
    {'C', 23, 34, 19, 38.5f, 21, 36.5f},
    {'C', 26, 38.5f, 24, 37, 25, 38},
    {'C', 29.5f, 27, 28, 35.5f, 28, 31.5f}, {'Z'}};
inline constexpr CPathStep c_FlameHeart[] = {
    {'M', 29, 38},
    {'C', 33.5f, 46.5f, 30, 41.5f, 33.5f, 43},
    {'C', 28.5f, 52, 33.5f, 50, 31.5f, 52},
    {'C', 23.5f, 46.5f, 25.5f, 52, 23.5f, 50},
    {'C', 29, 38, 23.5f, 43, 27.5f, 42}, {'Z'}};
inline constexpr CPathStep c_BackLog[] = {
    {'M', 44, 48.5f},
    {'C', 44.8f, 52.3f, 46, 48.3f, 46.6f, 51.6f},
    {'L', 13.5f, 58.5f},
    {'C', 12.6f, 54.7f, 11.5f, 58.8f, 10.8f, 55.4f}, {'Z'}};
inline constexpr CPathStep c_FrontLog[] = {
    {'M', 13, 48.5f},
    {'L', 44.4f, 54.7f},
    {'C', 43.5f, 58.5f, 46.2f, 55.4f, 45.5f, 58.8f},
    {'L', 12.2f, 52.3f},
    {'C', 13, 48.5f, 10.4f, 51.6f, 11, 48.3f}, {'Z'}};

inline constexpr CVectorShape c_ProgramIcon[] = {
    MakeShape(MakeColorRef(0x7C, 0x87, 0x99), c_BackCard),
    MakeShape(MakeColorRef(0x2A, 0x30, 0x3B), c_FrontCard),
    MakeShape(MakeColorRef(0xEE, 0x5F, 0x22), c_Flame),
    MakeShape(MakeColorRef(0xFF, 0xA9, 0x35), c_FlameMiddle),
    MakeShape(MakeColorRef(0xFF, 0xEE, 0xB4), c_FlameHeart),
    MakeShape(MakeColorRef(0x7A, 0x4B, 0x2A), c_BackLog),
    MakeShape(MakeColorRef(0xA8, 0x6D, 0x3E), c_FrontLog),
};
// clang-format on

// Bitmap 104, the splash: a flat card with the icon at its left and lines of text beside it, in pixels.
struct CSplashText
{
    const char* m_pszText; // %s is the program's version
    int32_t m_nX;          // left end of the line
    int32_t m_nBaseline;
    int32_t m_nPixelSize; // height of the font
    bool m_bBold;
    CColorRef m_nColor;
};
constexpr int32_t c_nSplashWidth = 440;
constexpr int32_t c_nSplashHeight = 220;
constexpr CColorRef c_nSplashBackground = MakeColorRef(0x1F, 0x24, 0x2D);
constexpr CColorRef c_nSplashEdge = MakeColorRef(0x3A, 0x42, 0x50); // a frame one pixel wide
inline constexpr CRect c_rcSplashIcon = {36, 46, 164, 174};
inline constexpr CSplashText c_SplashTexts[] = {
    {"Emberdeck", 192, 112, 40, true, MakeColorRef(0xF4, 0xF5, 0xF7)},
    {"Visual effects for games", 194, 138, 15, false, MakeColorRef(0xB9, 0xC2, 0xCE)},
    {"Version %s", 194, 162, 13, false, MakeColorRef(0xEE, 0x78, 0x2A)},
};
