#pragma once

#include <cstdint>
#include <string>

// Numbers as the property editors show and read them, the same under every locale.

std::string IntText(int32_t nValue);   // "%d"
std::string FloatText(double fValue);  // "%6.4f"
std::string VectorText(double fValue); // "%4.3f", what the vector dialog leaves in a row

// A colour's alpha as a fraction. The way back truncates, so that half of the channels come back one
// lower; limited to 0 to 255.
std::string AlphaText(uint32_t nAlpha);
uint32_t AlphaFromText(const std::string& sText);

// The box of a dialog that asks for one number: six significant digits ("%.6g").
std::string NumberEntryText(float fValue);
// What such a dialog says to a text that QSParseFloat refuses.
constexpr const char* c_szEnterNumber = "Enter a number.";
