// SPDX-License-Identifier: 0BSD
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "game/PackedFile.h"

// What an effect shows at a moment, without a window: for whoever draws it, and for the listing of
// --headless.

// A property's value at one moment of its key.
struct CSample
{
    uint32_t m_eType = ePropType_None;
    std::string_view m_sText;          // of the text kinds
    std::array<double, 4> m_Numbers{}; // Int, Enum (the index), Float: 1, Vector: 3, Color: 4
};

// How many of m_Numbers count: 0 for the text kinds.
size_t NumberCount(uint32_t eType);

// As EmberdeckEvaluate.
CSample Evaluate(const CProperty& prop, double fTime);

// The key that this one moves with: the first of the effect with the linked id. Null without a link, and
// when no key has that id any more.
const CKey* FindLinkedKey(const CEffect& effect, const CKey& key);

// A key begins or ends. The key belongs to the file.
struct CEvent
{
    double m_fTime = 0; // seconds from the start of the effect
    bool m_bStart = false;
    const CKey* m_pKey = nullptr;
};

// Both events of every key, by time. At one moment the keys that end come before those that start; a key
// without length starts and ends behind both. Else in the order of the file.
std::vector<CEvent> ListEvents(const CEffect& effect);

// The effects that a reference names: pieces between semicolons, without the blanks round them. Empty
// pieces don't count.
std::vector<std::string_view> SplitReference(std::string_view sReference);

struct CVisibleKey
{
    const CEffect* m_pEffect = nullptr; // that it belongs to: the one asked for, or one that plays in it
    const CKey* m_pKey = nullptr;
    const CKey* m_pMovesWith = nullptr; // as FindLinkedKey
    double m_fTime = 0;                 // share of the key's length that has passed, 0 to below 1
    uint32_t m_nNesting = 0;            // 0 for the effect asked for
};

// The keys that run fSeconds after the effect's start, in the order of the file, each followed by what runs
// in the effects that its references in force name. These start with the key. An effect may refer to itself
// or to many: what is nested deeper than four times, or comes behind 4096 keys, isn't shown.
std::vector<CVisibleKey> ListVisible(const CPackedFile& file, const CEffect& effect, double fSeconds);

// Seconds until nothing of the effect's own runs any more: the phase, or the last key that ends behind it.
double Duration(const CEffect& effect);
