#pragma once

#include <cstdint>

#include "platform/IDrawSurface.h"

// The program's small images in one style: a dark outline one unit wide, two tones of fill, light from the top left,
// and ember orange for what is the program's own. Each stands twice: as the pixels of its own size, 16 rows of 16
// characters, each a colour of one palette; and as shapes in a square of 16 units, for screens with finer pixels.
//
// Shapes are drawn in order, parted by semicolons. One begins with two colours of the palette, fill and outline, where
// '.' is none; then come operations with numbers behind, x to the right and y down:
//     M x y, L x y    begins an outline, a line; H x and V y: level and upright lines
//     C x1 y1 x2 y2 x y   a cubic curve with two control points
//     R x y w h, E x y rx ry   a rectangle, an ellipse about a centre
//     Z               closes the outline
// Edges of fills lie at whole units, outlines at half ones, so that they fill pixels whole.
constexpr int32_t c_nIconSize = 16;
constexpr CColorRef c_nIconTransparent = MakeColorRef(0xFF, 0x00, 0xFF);

// Some shapes, and how far they are moved to the right, in units.
struct CIconShapes
{
    const char* m_pszShapes; // null: none
    int32_t m_nX = 0;
};

struct CIconArt
{
    const char* m_Rows[c_nIconSize];
    CIconShapes m_Shapes[2]; // drawn one over the other
};

struct CIconColor
{
    char m_cPixel;
    CColorRef m_nColor;
};

// clang-format off
inline constexpr CIconColor c_IconColors[] = {
    {'.', c_nIconTransparent},
    {'#', MakeColorRef(0x3A, 0x42, 0x50)}, // slate: outlines
    {'d', MakeColorRef(0x6F, 0x79, 0x89)},
    {'l', MakeColorRef(0xB9, 0xC2, 0xCE)},
    {'w', MakeColorRef(0xFB, 0xFC, 0xFD)}, // paper
    {'n', MakeColorRef(0x25, 0x4A, 0x73)}, // blue, from dark to light
    {'v', MakeColorRef(0x2F, 0x65, 0x9C)},
    {'b', MakeColorRef(0x45, 0x84, 0xC2)},
    {'B', MakeColorRef(0x94, 0xC0, 0xE8)},
    {'e', MakeColorRef(0x1F, 0x66, 0x38)}, // green
    {'g', MakeColorRef(0x3F, 0xA3, 0x60)},
    {'G', MakeColorRef(0x97, 0xD6, 0xA6)},
    {'k', MakeColorRef(0x8A, 0x63, 0x1F)}, // cardboard
    {'s', MakeColorRef(0xC8, 0x94, 0x3C)},
    {'t', MakeColorRef(0xE4, 0xB6, 0x5C)},
    {'T', MakeColorRef(0xF8, 0xDF, 0xA3)},
    {'r', MakeColorRef(0xB2, 0x3A, 0x16)}, // ember
    {'o', MakeColorRef(0xEE, 0x78, 0x2A)},
    {'y', MakeColorRef(0xFF, 0xC8, 0x4A)},
    {'Y', MakeColorRef(0xFF, 0xF0, 0xBE)},
};
// clang-format on

// The colour of a pixel's character. One that isn't in the palette is transparent.
constexpr CColorRef GetIconColor(char cPixel)
{
    for (const CIconColor& color : c_IconColors)
    {
        if (color.m_cPixel == cPixel)
            return color.m_nColor;
    }
    return c_nIconTransparent;
}
