// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>

#include "game/PackedFile.h"

// The effect as it would play: its events by time, and for a key that starts what it is told. Curves are
// shown at five moments of the key. Numbers have six significant digits and a decimal point, whatever the
// locale.
std::string ListEffect(const CPackedFile& file, const CEffect& effect);

// All that the file holds, as one JSON object and a line end; with pOnly only that effect. Each byte of a
// text stands as the character of its number, and a float as the shortest text of the same double. What is
// not finite is null.
std::string DumpAsJson(const CPackedFile& file, const CEffect* pOnly);
