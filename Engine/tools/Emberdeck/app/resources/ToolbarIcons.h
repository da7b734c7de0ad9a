#pragma once

#include "app/resources/TreeIcons.h"

// The images of the toolbars' buttons. Those of buttons that do several things are drawn from the others' shapes.

// clang-format off
inline constexpr CIconArt c_NewEffectIcon = {{
    ".....r..........",
    ".....rr.........",
    "....ror.........",
    "....roor........",
    "...rooor.r......",
    ".r.roooorr......",
    ".rrooyooor......",
    ".roroyyooor.....",
    ".roooyyyooreee..",
    ".rooyyYyyoreGe..",
    ".rooyYYyyeeeGeee",
    "..royYYYyeGGGGGe",
    "..rooyYyyeeeGeee",
    "...rroyoorreGe..",
    ".....rrrr..eee..",
    "................"},
    {{c_szFlameShapes, -2}, {"Ge M11.5 8.5 H13.5 V10.5 H15.5 V12.5 H13.5 V14.5 H11.5 V12.5 H9.5 V10.5 H11.5 Z"}}};

inline constexpr CIconArt c_SaveIcon = {{
    "................",
    ".#############..",
    ".#Bb#wwwww#bbb#.",
    ".#Bb#ww#ww#bbb#.",
    ".#Bb#ww#ww#bbb#.",
    ".#Bb#wwwww#bbb#.",
    ".#Bb#######bbb#.",
    ".#Bbbbbbbbbbbb#.",
    ".#Bbbbbbbbbbbb#.",
    ".#Bb########bb#.",
    ".#Bb#wwwwww#bb#.",
    ".#Bb#wllllw#bb#.",
    ".#Bb#wwwwww#bb#.",
    ".#bb#wllllw#bb#.",
    ".##############.",
    "................"},
    {{"b# M1.5 1.5 H13.5 L14.5 2.5 V14.5 H1.5 Z"
    "; B. R2 2 1 11"
    "; w# R4.5 1.5 6 5"
    "; #. R7 2 2 3"
    "; w# R4.5 9.5 7 5"
    "; l. R6 11 4 1"
    "; l. R6 13 4 1"}}};

inline constexpr CIconArt c_PackIcon = {{
    "................",
    ".......kk.......",
    ".....kkTTkk.....",
    "...kkTTTTTTkk...",
    ".kkTTTTTTTTTTkk.",
    ".kkkTTTTTTTTkkk.",
    ".kttkkTTTTkkssk.",
    ".kttttkkkkssssk.",
    ".ktttttkksssssk.",
    ".ktttttkksssssk.",
    ".ktttttkksssssk.",
    ".ktttttkksssssk.",
    ".kkttttkksssskk.",
    "...kkttkksskk...",
    ".....kkkkkk.....",
    ".......kk......."},
    {{"Tk M8 1.5 L14.5 4.75 L8 8 L1.5 4.75 Z"
    "; tk M1.5 4.75 L8 8 V15.5 L1.5 12.25 Z"
    "; sk M14.5 4.75 L8 8 V15.5 L14.5 12.25 Z"}}};

inline constexpr CIconArt c_LaunchIcon = {{
    "................",
    "................",
    "...ee...........",
    "...eGee.........",
    "...eGGgee.......",
    "...eGggggee.....",
    "...eGggggggee...",
    "...eGggggggggee.",
    "...eGggggggggee.",
    "...eGggggggee...",
    "...eGggggee.....",
    "...eGggee.......",
    "...egee.........",
    "...ee...........",
    "................",
    "................"},
    {{"ge M3.5 2.5 L14 8 L3.5 13.5 Z"
    "; G. M4.2 3.6 L6 4.5 L5.2 5.2 V11 L4.2 12.2 Z"}}};

inline constexpr const char* c_szSaveAndPackShapes =
    "b# R.5 .5 8 8"
    "; B. R1 1 1 7"
    "; w# R2.5 .5 4 3"
    "; #. R4 2 1 1"
    "; w# R2.5 5.5 4 3"
    "; tk R5.5 6.5 10 9"
    "; Tk R5.5 6.5 10 3"
    "; w. R10 7 1 2"
    "; w. R10 10 1 2"
    "; s. M15 12 V15 H11 Z";

inline constexpr CIconArt c_SaveAndPackIcon = {{
    "#########.......",
    "#B#www#b#.......",
    "#B#w#w#b#.......",
    "#B#####b#.......",
    "#Bbbbbbb#.......",
    "#B#####b#.......",
    "#B#w.kkkkkkkkkkk",
    "#B#w.kTTTTwTTTTk",
    "#####kTTTTwTTTTk",
    ".....kkkkkkkkkkk",
    ".....kttttwttttk",
    ".....kttttwttttk",
    ".....kttttttttsk",
    ".....kttttttttsk",
    ".....ktttttttssk",
    ".....kkkkkkkkkkk"},
    {{c_szSaveAndPackShapes}}};

inline constexpr CIconArt c_SavePackLaunchIcon = {{
    "#########.......",
    "#B#www#b#.......",
    "#B#w#w#b#.......",
    "#B#####b#.......",
    "#Bbbbbbb#.......",
    "#B#####b#.......",
    "#B#w.kkkkkkkkkkk",
    "#B#w.kTTTTwTTTTk",
    "#####kTTTTwTTTTk",
    "ee...kkkkkkkkkkk",
    "eGee.kttttwttttk",
    "eGGgeettttwttttk",
    "eGggggeettttttsk",
    "eGggeettttttttsk",
    "egee.ktttttttssk",
    "ee...kkkkkkkkkkk"},
    {{c_szSaveAndPackShapes}, {"ge M.5 9.5 L7 12.5 L.5 15.5 Z"
    "; G. R1 11 1 3"}}};

inline constexpr CIconArt c_ConnectIcon = {{
    "................",
    "................",
    "....########....",
    "...#BBb##lld#...",
    "..#BBbb##lldd#..",
    "###Bbbb##lddd###",
    "###Bbbb##lddd###",
    "..#bbbb##dddd#..",
    "...#bbb##ddd#...",
    "....########....",
    ".............ee.",
    "............eGe.",
    ".......ee..eGe..",
    ".......eGeeGe...",
    "........eGGe....",
    ".........ee....."},
    {{"b# M7.5 2.5 H5.5 C4 3.2 2.5 4.5 2.5 6 C2.5 7.5 4 8.8 5.5 9.5 H7.5 Z"
    "; B. M7 3 H5.6 C4.4 3.6 3.2 4.6 3.1 5.8 H4.2 C4.6 4.8 5.6 4.2 7 4 Z"
    "; d# M8.5 2.5 H10.5 C12 3.2 13.5 4.5 13.5 6 C13.5 7.5 12 8.8 10.5 9.5 H8.5 Z"
    "; l. M9 3 H10.4 C11.2 3.4 12 4 12.4 4.6 L11 5 C10.5 4.5 9.8 4.2 9 4.1 Z"
    "; #. R0 5 3 2"
    "; #. R13 5 3 2"
    "; Ge M7.3 13.2 L8.6 12 L9.9 13.3 L13.6 9.8 L14.9 11.1 L9.9 15.6 Z"}}};

inline constexpr CIconArt c_DisconnectIcon = {{
    "................",
    "................",
    "..####....####..",
    ".#Bbb#....#lld#.",
    ".#Bbb###..#ldd#.",
    "##Bbb#....#ldd##",
    "##Bbb#....#ldd##",
    ".#bbb###..#ddd#.",
    ".#bbb#....#ddd#.",
    "..####....####..",
    "..........rr..rr",
    "..........rorror",
    "...........roor.",
    "...........roor.",
    "..........rorror",
    "..........rr..rr"},
    {{"b# M5.5 2.5 H2.5 L1.5 3.5 V8.5 L2.5 9.5 H5.5 Z"
    "; B. R2 3 1 4"
    "; #. R6 4 2 1"
    "; #. R6 7 2 1"
    "; #. R0 5 1 2"
    "; d# M10.5 2.5 H13.5 L14.5 3.5 V8.5 L13.5 9.5 H10.5 Z"
    "; l. R11 3 1 4"
    "; #. R15 5 1 2"
    "; or M10.5 10.5 H11.5 L13 12 L14.5 10.5 H15.5 V11.5 L14 13 L15.5 14.5 V15.5 H14.5 L13 14 L11.5 15.5 H10.5 V14.5 L12 13 L10.5 11.5 Z"}}};

inline constexpr CIconArt c_AddToSourceControlIcon = {{
    "................",
    "..########......",
    "..#wwwwww##.....",
    "..#wwwwww#l#....",
    "..#wwwwww####...",
    "..#wwwwwwwww#...",
    "..#wllllllww#...",
    "..#wwwwwwwww#...",
    "..#wllllwweee...",
    "..#wwwwwwweGe...",
    "..#wllllweeGeee.",
    "..#wwwwwweGGGGe.",
    "..#wwwwwweeGeee.",
    "..#########Ge...",
    "..........eee...",
    "................"},
    {{"w# M2.5 1.5 H9.5 L12.5 4.5 V13.5 H2.5 Z"
    "; l# M9.5 1.5 V4.5 H12.5 Z"
    "; l. R4 6 6 1"
    "; l. R4 8 4 1"
    "; l. R4 10 4 1"
    "; Ge M10.5 8.5 H12.5 V10.5 H14.5 V12.5 H12.5 V14.5 H10.5 V12.5 H8.5 V10.5 H10.5 Z"}}};

inline constexpr CIconArt c_CheckOutIcon = {{
    "................",
    "..########......",
    "..#wwwwww##.....",
    "..#wwwwww#l#.rr.",
    "..#wwwwww###roor",
    "..#wwwwwwwwkToor",
    "..#wllllllkytkr.",
    "..#wwwwwwkytsk..",
    "..#wlllwkytsk...",
    "..#wwwwkytsk....",
    "..#wwwwkTsk#....",
    "..#wwww##k.#....",
    "..#wwww#www#....",
    "..##########....",
    "................",
    "................"},
    {{"w# M2.5 1.5 H8.5 L11.5 4.5 V13.5 H2.5 Z"
    "; l# M8.5 1.5 V4.5 H11.5 Z"
    "; l. R4 6 6 1"
    "; l. R4 8 3 1"
    "; yk M8.2 9.8 L12.2 5.8 L14.2 7.8 L10.2 11.8 L7.5 12.5 Z"
    "; or M12.2 5.8 L13.8 4.2 C14.6 3.4 16.2 5 15.6 6 L14.2 7.8 Z"
    "; #. M7 13 L8 11 L9.2 12.2 Z"}}};

inline constexpr const char* c_szTrayShapes =
    "l# M1.5 11.5 H3.5 V13.5 H12.5 V11.5 H14.5 V15.5 H1.5 Z"
    "; d. M8 14 H13 V12 H14 V15 H8 Z";

inline constexpr CIconArt c_SubmitIcon = {{
    ".......ee.......",
    "......eGGe......",
    ".....eGGgge.....",
    "....eGGgggge....",
    "...eGGgggggge...",
    "...eeeGgggeee...",
    ".....eGgge......",
    ".....eGgge......",
    ".....eGgge......",
    ".....eeeee......",
    "................",
    ".##..........##.",
    ".#l#........#d#.",
    ".#l##########d#.",
    ".#lllllldddddd#.",
    ".##############."},
    {{"ge M8 .8 L12.5 5.5 H10.5 V9.5 H5.5 V5.5 H3.5 Z"
    "; G. M8 2 L5.2 5 H6 V9 H7 V5 L8 3.6 Z"}, {c_szTrayShapes}}};

inline constexpr CIconArt c_UndoChangesIcon = {{
    "................",
    "................",
    ".....rr.........",
    "....ror.........",
    "...royr.........",
    "..royyrrrr......",
    ".royyyyyyorr....",
    "royyyooooooor...",
    ".roooooooooor...",
    "..rooorrrrooor..",
    "...roor...roor..",
    "....ror...roor..",
    ".....rr..roor...",
    ".......rroorr...",
    ".......rrrr.....",
    "................"},
    {{"or M.5 7.5 L5.5 2.5 V5.5 H8.5 C12.5 5.5 13.5 8 13.5 10 C13.5 13 11 14.5 7.5 14.5 V13.5 C9.5 13.3 10.8 12.3 10.5 11 C10.2 9.9 9 9.5 8 9.5 H5.5 V12.5 Z"
    "; y. M2 7.3 L5 4.4 V6.5 H9 C10 6.5 11 6.8 11.6 7.6 C10 7.2 9 7.3 8 7.3 Z"}}};

inline constexpr CIconArt c_GetLatestIcon = {{
    ".....nnnnn......",
    ".....nBbbn......",
    ".....nBbbn......",
    ".....nBbbn......",
    "...nnnBbbnnn....",
    "...nBBbbbbbn....",
    "....nBbbbbn.....",
    ".....nbbbn......",
    "......nbn.......",
    ".......n........",
    "................",
    ".##..........##.",
    ".#l#........#d#.",
    ".#l##########d#.",
    ".#lllllldddddd#.",
    ".##############."},
    {{"bn M5.5 .5 H9.5 V4.5 H11.5 L7.5 9 L3.5 4.5 H5.5 Z"
    "; B. R6 1 1 4"}, {c_szTrayShapes}}};

inline constexpr CIconArt c_HistoryIcon = {{
    "................",
    ".....######.....",
    "...##wwwwww##...",
    "..#wwwwwwwwww#..",
    "..#wwwwrwwwww#..",
    ".#wwwwwrwwwwww#.",
    ".#wlwwwrwwwwlw#.",
    ".#wwwwwrwwwwww#.",
    ".#wwwwwrrrrwww#.",
    ".#wwwwwwwwwwww#.",
    ".#wlwwwwwwwwlw#.",
    "..#wwwwwwwwww#..",
    "..#lwwwwwwwwl#..",
    "...##lllwll##...",
    ".....######.....",
    "................"},
    {{"w# E8 8 6.5 6.5"
    "; l. M2.6 11 C4.2 12.9 6 13 8 13 C10 13 11.8 12.9 13.4 11 C12.2 13.2 10.2 14 8 14 C5.8 14 3.8 13.2 2.6 11 Z"
    "; r. R7 4 1 5"
    "; r. R7 8 4 1"
    "; l. R3 8 1 1"
    "; l. R12 8 1 1"}}};

// An arrow back, and one forth: the shape of the changes that are given up, in blue.
inline constexpr CIconArt c_UndoIcon = {{
    "................",
    "................",
    ".....nn.........",
    "....nbn.........",
    "...nbBn.........",
    "..nbBBnnnn......",
    ".nbBBBBBBbnn....",
    "nbBBBbbbbbbbn...",
    ".nbbbbbbbbbbn...",
    "..nbbbnnnnbbbn..",
    "...nbbn...nbbn..",
    "....nbn...nbbn..",
    ".....nn..nbbn...",
    ".......nnbbnn...",
    ".......nnnn.....",
    "................"},
    {{"bn M.5 7.5 L5.5 2.5 V5.5 H8.5 C12.5 5.5 13.5 8 13.5 10 C13.5 13 11 14.5 7.5 14.5 V13.5 C9.5 13.3 10.8 12.3 10.5 11 C10.2 9.9 9 9.5 8 9.5 H5.5 V12.5 Z"
    "; B. M2 7.3 L5 4.4 V6.5 H9 C10 6.5 11 6.8 11.6 7.6 C10 7.2 9 7.3 8 7.3 Z"}}};

inline constexpr CIconArt c_RedoIcon = {{
    "................",
    "................",
    ".........nn.....",
    ".........nbn....",
    ".........nBbn...",
    "......nnnnBBbn..",
    "....nnbBBBBBBbn.",
    "...nbbbbbbbBBBbn",
    "...nbbbbbbbbbbn.",
    "..nbbbnnnnbbbn..",
    "..nbbn...nbbn...",
    "..nbbn...nbn....",
    "...nbbn..nn.....",
    "...nnbbnn.......",
    ".....nnnn.......",
    "................"},
    {{"bn M15.5 7.5 L10.5 2.5 V5.5 H7.5 C3.5 5.5 2.5 8 2.5 10 C2.5 13 5 14.5 8.5 14.5 V13.5 C6.5 13.3 5.2 12.3 5.5 11 C5.8 9.9 7 9.5 8 9.5 H10.5 V12.5 Z"
    "; B. M14 7.3 L11 4.4 V6.5 H7 C6 6.5 5 6.8 4.4 7.6 C6 7.2 7 7.3 8 7.3 Z"}}};
// clang-format on
