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
    "................"}};

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
    "................"}};
// clang-format on
