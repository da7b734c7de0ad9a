#pragma once

#include "app/resources/IconArt.h"

// The images of the library's trees, by the image numbers of CLibraryTree; effect and prefab are icons 134
// and 135. Both kinds of leaf have the image number 2: each tree takes its own.

// clang-format off
inline constexpr CIconArt c_FolderClosedIcon = {{
    "................",
    "................",
    "..kkkkk.........",
    ".kTTTTTk........",
    ".kTTTTTTkkkkkk..",
    ".kTTTTTTTTTTTTk.",
    ".kTtttttttttttk.",
    ".kTtttttttttttk.",
    ".kTtttttttttttk.",
    ".kTttttttttttsk.",
    ".kTttttttttttsk.",
    ".kTtttttttttssk.",
    ".ktttttttsssssk.",
    ".kkkkkkkkkkkkkk.",
    "................",
    "................"},
    {{"Tk M1.5 13.5 V3.5 L2.5 2.5 H6.5 L7.5 4.5 H13.5 L14.5 5.5 V13.5 Z"
    "; t. R3 6 11 7"
    "; s. M14 9 V13 H8 Z"}}};

inline constexpr CIconArt c_FolderOpenIcon = {{
    "................",
    "................",
    "..kkkkk.........",
    ".kTTTTTk........",
    ".kTTTTTTkkkkk...",
    ".kTTTTTTTTTTTk..",
    ".kTTTTTTTTTTTk..",
    ".kTTkkkkkkkkkkkk",
    ".kTktttttttttttk",
    ".kTkttttttttttk.",
    ".kkttttttttttsk.",
    ".kkttttttttttk..",
    ".kttttttttttsk..",
    ".kkkkkkkkkkkk...",
    "................",
    "................"},
    {{"Tk M1.5 13.5 V3.5 L2.5 2.5 H6.5 L7.5 4.5 H12.5 L13.5 5.5 V9.5 H4 Z"
    "; tk M4.5 7.5 H15.5 L12.5 13.5 H1.5 Z"}}};

inline constexpr const char* c_szFlameShapes =
    "or M7.3 .8 C8.2 3.2 10.4 4.2 10.6 6.6 L11.4 4.6 C12.4 6.6 12.8 8.4 12.5 10 C12.2 12.6 10.2 14.5 8 14.5 C5 14.5 2.7 12.6 2.5 10.2 C2.4 8.4 2.8 6.8 3.4 5.2 C3.9 6.3 4.5 6.9 5.2 7 C6.8 5.2 7.6 3.2 7.3 .8 Z"
    "; y. M7.6 6.2 C8.4 7.6 10.4 8.4 10.4 10.6 C10.4 12.6 9.2 13.8 7.8 13.8 C6 13.8 4.9 12.4 4.9 10.8 C4.9 9.2 7.4 8.4 7.6 6.2 Z"
    "; Y. M7.6 9 C8.2 10 9.2 10.6 9.2 11.8 C9.2 13 8.5 13.6 7.7 13.6 C6.8 13.6 6.2 12.9 6.2 11.9 C6.2 10.8 7.3 10.3 7.6 9 Z";

inline constexpr CIconArt c_EffectIcon = {{
    ".......r........",
    ".......rr.......",
    "......ror.......",
    "......roor......",
    ".....rooor.r....",
    "...r.roooorr....",
    "...rrooyooor....",
    "..roroyyoooor...",
    "..roooyyyooor...",
    "..rooyyYyyoor...",
    "..rooyYYyyoor...",
    "...royYYYyor....",
    "...rooyYyoor....",
    "....rroyorr.....",
    "......rrr.......",
    "................"},
    {{c_szFlameShapes}}};

inline constexpr CIconArt c_PrefabIcon = {{
    "................",
    ".......nn.......",
    ".....nnBBnn.....",
    "...nnBBBBBBnn...",
    "..nBBBBBBBBBBn..",
    "..nnnBBBBBBnnn..",
    "..nbbnnBBnnvvn..",
    "..nbbbbnnvvvvn..",
    "..nbbbbnnvvvvn..",
    "..nbbbbnnvvvvn..",
    "..nbbbbnnvvvvn..",
    "..nnbbbnnvvvnn..",
    "....nnbnnvnn....",
    "......nnnn......",
    "................",
    "................"},
    {{"Bn M8 1.5 L13.5 4.5 L8 7.25 L2.5 4.5 Z"
    "; bn M2.5 4.5 L8 7.25 V13.5 L2.5 10.75 Z"
    "; vn M13.5 4.5 L8 7.25 V13.5 L13.5 10.75 Z"}}};

// clang-format on
