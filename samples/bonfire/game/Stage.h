// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "game/Emitter.h"

// What is to be seen and heard of an effect at a moment, in metres and without a window: for whoever draws it.
// Texts are views into the file.

enum class EBlend
{
    eAdd,
    eAlpha,
    eMultiply,
    eSubtract,
    eScreen
};

enum class ELook // which soft shape a texture stands for
{
    eGlow,
    eFlame,
    eSmoke,
    eSpark,
    eDrop
};

struct CDot // a particle or a sprite
{
    CPoint m_At;
    double m_fSize = 0;    // edge
    double m_fStretch = 1; // height as a multiple of it
    double m_fAngle = 0;   // degrees, counter-clockwise
    CTint m_Tint;
    EBlend m_eBlend = EBlend::eAdd;
    ELook m_eLook = ELook::eGlow;
    int m_nLayer = 0;
};

struct CLamp
{
    CPoint m_At;
    double m_fRadius = 0;
    CTint m_Tint; // alpha: how strong it is at this moment
};

struct CStain // on the ground
{
    CPoint m_At;
    double m_fWidth = 0, m_fDepth = 0;
    CTint m_Tint;
};

struct CThing // a model
{
    std::string_view m_sModel, m_sClip;
    CPoint m_At, m_Scale;
    double m_fHeat = 0; // 0 cold to 1 glowing
};

struct CWords
{
    std::string_view m_sText;
    CPoint m_At;
    double m_fHeight = 0; // of a line
    CTint m_Tint;
    std::string_view m_sAlign; // "Left", "Centre" or "Right" of the place
};

struct CHeard
{
    std::string_view m_sFile;
    double m_fVolume = 0, m_fPitch = 1;
    bool m_bLoop = false;
};

struct CStage
{
    std::vector<CDot> m_Dots; // in the order in which they are drawn
    std::vector<CLamp> m_Lamps;
    std::vector<CStain> m_Stains;
    std::vector<CThing> m_Things;
    std::vector<CWords> m_Words;
    std::vector<CHeard> m_Heard;
    std::vector<std::string_view> m_Others; // types that there is nothing to draw for, by name
    CPoint m_Shake;                         // by which the eye is off its place
};

// fSeconds after the effect's start, with the effects that its keys name. fBefore is the length of a round that
// came before: what it left in the air is there too; 0 for none. Bounded, whatever the file says: 6000 dots, 256
// of everything else, effects nested four deep and 200 of them.
CStage BuildStage(const CPackedFile& file, const CEffect& effect, double fSeconds, double fBefore,
                  CBirthsOfKeys& births);

// The part of the world that shows an effect whole, without the few particles that fly far: the ground and
// something below it always belong to it.
struct CView
{
    double m_fHeight = 4;  // metres from the lower edge to the upper
    double m_fBelow = 0.8; // metres of it below the ground
    double m_fMiddle = 0;  // x that stands in the middle
};
CView FitView(const CPackedFile& file, const CEffect& effect, double fLength, CBirthsOfKeys& births);
