#pragma once

#include "app/resources/IconArt.h"

// Images of buttons within dialogs. Loading and saving have the toolbar's.

// clang-format off
inline constexpr CIconArt c_CopyIcon = {{
    "................",
    ".########.......",
    ".#wwwwww#.......",
    ".#wllllw#.......",
    ".#wwww########..",
    ".#wllw#wwwwww#..",
    ".#wwww#wbbbbw#..",
    ".#wllw#wwwwww#..",
    ".#wwww#wbbbbw#..",
    ".#wwww#wwwwww#..",
    ".######wbbbbw#..",
    "......#wwwwww#..",
    "......#wbbbbw#..",
    "......#wwwwww#..",
    "......########..",
    "................"},
    {{"w# R1.5 1.5 7 9"
    "; l. R3 3 4 1"
    "; l. R3 5 3 1"
    "; l. R3 7 3 1"
    "; w# R6.5 4.5 7 10"
    "; b. R8 6 4 1"
    "; b. R8 8 4 1"
    "; b. R8 10 4 1"
    "; b. R8 12 4 1"}}};

inline constexpr CIconArt c_PasteIcon = {{
    "................",
    ".....####.......",
    "..####ll####....",
    "..#tt#ll#tt#....",
    "..#tt####tt#....",
    "..#tttttttt#....",
    "..#ttt########..",
    "..#ttt#wwwwww#..",
    "..#ttt#wbbbbw#..",
    "..#ttt#wwwwww#..",
    "..#ttt#wbbbbw#..",
    "..#ttt#wwwwww#..",
    "..#####wbbbbw#..",
    "......#wwwwww#..",
    "......########..",
    "................"},
    {{"t# R2.5 2.5 9 10"
    "; l# R5.5 1.5 3 3"
    "; w# R6.5 6.5 7 8"
    "; b. R8 8 4 1"
    "; b. R8 10 4 1"
    "; b. R8 12 4 1"}}};
// clang-format on
