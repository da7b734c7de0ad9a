#pragma once

#include <QPalette>

#include "platform/IProfile.h"

// Whose colours the windows have.
enum class EAppearance
{
    eDesktop, // those of the user's desktop
    eLight,
    eDark
};

// Takes effect in every open window at once.
void ApplyAppearance(EAppearance eAppearance);
QPalette AppearancePalette(EAppearance eAppearance); // of one of the program's own two
// Gives a selection whose view doesn't have the keyboard (the inactive group) a quieter colour, made from ground
// and text, unless it has one already.
void MuteSelection(QPalette& palette);

// The user's choice, kept in the settings.
EAppearance LoadAppearance(IProfile& profile);
void SaveAppearance(IProfile& profile, EAppearance eAppearance);
