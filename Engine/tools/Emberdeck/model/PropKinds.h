#pragma once

#include <cstdint>

#include "effecttypes.h"

// What the bytes of a value are.
enum class EPropForm : uint8_t
{
    eNone,
    eText,
    eInt,
    eFloat,
    eColor,  // a word of four channels
    eVector, // three floats
};

// What the files and the curves need to know of a kind of property. A new kind is a row of the table.
struct CPropKind
{
    EEffectPropertyType m_eType;
    const char* m_pszName; // in text files, where it has a form
    EPropForm m_eForm;
    bool m_bTyped;           // a text that is as it was typed: no file's name, and not chosen from a list
    bool m_bValue;           // false: the property is a row of the panel or nothing at all, and in no file
    uint32_t m_nAtoms;       // of a value in a text file
    uint32_t m_nPackedBytes; // of a value in a packed file
    uint32_t m_nAxes;        // of a curve that can be drawn; 0: it can't
};

// The row of a kind. A number that is no kind has a row, too: "Unknown", without a form.
const CPropKind& PropKind(uint32_t eType);
