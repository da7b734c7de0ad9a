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
    "................"}};

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
    "................"}};

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
    "................"}};

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
    "................"}};

// By image number: closed folder, open folder, then the leaf of the tree.
inline constexpr const CIconArt* c_EffectTreeIcons[] = {&c_FolderClosedIcon, &c_FolderOpenIcon, &c_EffectIcon};
inline constexpr const CIconArt* c_PrefabTreeIcons[] = {&c_FolderClosedIcon, &c_FolderOpenIcon, &c_PrefabIcon};

// The icon buttons of the curve dialog; those of the colour dialog have the images of Open and Save.
inline constexpr CIconArt c_CopyIcon = {{
    "................",
    ".########.......",
    ".#wwwwww##......",
    ".#wwwwww#l#.....",
    ".#wllllw###.....",
    ".#wwww########..",
    ".#wlll#wwwwww##.",
    ".#wwww#wwwwww#l#",
    ".#wlll#wllllw###",
    ".#wwww#wwwwwwww#",
    ".#wwww#wllllllw#",
    ".######wwwwwwww#",
    "......#wllllllw#",
    "......#wwwwwwww#",
    "......##########",
    "................"}};

inline constexpr CIconArt c_PasteIcon = {{
    ".....####.......",
    "..###llll###....",
    ".kks#l##l#skk...",
    ".ktt######tsk...",
    ".ktttttttttsk...",
    ".kttt########...",
    ".kttt#wwwwww##..",
    ".kttt#wwwwww#l#.",
    ".kttt#wllllw###.",
    ".kttt#wwwwwwww#.",
    ".kttt#wllllllw#.",
    ".kttt#wwwwwwww#.",
    ".kkkk#wllllllw#.",
    ".....#wwwwwwww#.",
    ".....##########.",
    "................"}};
// clang-format on
