#pragma once

#include <array>

#include "changes/LibraryChange.h"

// The words of a change's text, by EDifference.
constexpr std::array<const char*, c_nNumDifferences> c_DifferenceNames = {
    "effect",      "effect-order", "effect-name", "effect-length", "prefab", "prefab-order", "track",
    "track-order", "key",          "key-order",   "key-track",     "key-id", "key-start",    "key-end",
    "key-link",    "name",         "parent",      "value",         "item",   "item-order",   "item-text",
};

// Kinds of values that a property set may hold, with those that no file has.
constexpr const char* c_szKindNone = "None";
constexpr const char* c_szKindUI = "UI";
