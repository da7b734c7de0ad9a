#pragma once

#include "changes/ImageNodes.h"

// Whether one is, in a file, what the other is. Another plug-in may have a property in another slot.
bool IsSameContent(const CSetImage& left, const CSetImage& right);
bool IsSameContent(const CKeyImage& left, const CKeyImage& right);
bool IsSameContent(const CTrackImage& left, const CTrackImage& right);
bool IsSameContent(const CSpellImage& left, const CSpellImage& right);
