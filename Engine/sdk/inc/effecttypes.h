/* SPDX-License-Identifier: 0BSD
 *
 * Copyright 2026 The Emberdeck developers, Harrowgate Works
 *
 * Permission to use, copy, modify, and/or distribute this software for any
 * purpose with or without fee is hereby granted.
 *
 * THE SOFTWARE IS PROVIDED "AS IS" AND THE AUTHOR DISCLAIMS ALL WARRANTIES WITH
 * REGARD TO THIS SOFTWARE INCLUDING ALL IMPLIED WARRANTIES OF MERCHANTABILITY
 * AND FITNESS. IN NO EVENT SHALL THE AUTHOR BE LIABLE FOR ANY SPECIAL, DIRECT,
 * INDIRECT, OR CONSEQUENTIAL DAMAGES OR ANY DAMAGES WHATSOEVER RESULTING FROM
 * LOSS OF USE, DATA OR PROFITS, WHETHER IN AN ACTION OF CONTRACT, NEGLIGENCE OR
 * OTHER TORTIOUS ACTION, ARISING OUT OF OR IN CONNECTION WITH THE USE OR
 * PERFORMANCE OF THIS SOFTWARE.
 */
#pragma once

/*
 * The contract between Emberdeck and a game's effect library (the plug-in). A plug-in is a shared library
 * that includes this header alone, in C or C++, and exports two functions with undecorated names:
 *
 *     EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable);
 *     EMBERDECK_EXPORT void EmberdeckReleaseInfo(CEffectTypeTable* pTable);
 *
 * EmberdeckGetInfo is called once for each load of the library, with a slot that holds null. It stores the
 * address of the plug-in's table there, or leaves it null when the plug-in has nothing to offer; such a
 * library is given up. EmberdeckReleaseInfo is called once, directly before the library is unloaded, with
 * what the slot holds (null if it was left null). Tables made at run time are freed there. A library that
 * lacks either function is not accepted. Both are called on the thread of the user interface only.
 *
 * The editor only reads the tables, and keeps plain pointers into them: from EmberdeckGetInfo to
 * EmberdeckReleaseInfo every record and every text stays unchanged and at its address.
 *
 * Widths, order and natural alignment of the fields are the contract. On a machine with 64-bit pointers a
 * table has 16 bytes, a type 144 and a property 904.
 */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define EMBERDECK_EXTERN_C extern "C"
#else
#define EMBERDECK_EXTERN_C extern
#endif

#if defined(__GNUC__)
#define EMBERDECK_EXPORT EMBERDECK_EXTERN_C __attribute__((visibility("default")))
#else
#define EMBERDECK_EXPORT EMBERDECK_EXTERN_C
#endif

#define EMBERDECK_NAME_SIZE 128    /* bytes of a name with its NUL */
#define EMBERDECK_TEXT_SIZE 256    /* bytes of a descriptor's other texts with their NUL */
#define EMBERDECK_PAYLOAD_SIZE 256 /* bytes of a value */

/*
 * The kinds of a value, and what its 256 payload bytes hold. Numbers are in the machine's byte order; texts
 * end with a NUL, so they have at most 255 bytes. Bytes behind the value are not looked at, but should be
 * zero.
 */
typedef enum EEffectPropertyType
{
    ePropType_None = 0,         /* no value */
    ePropType_String = 1,       /* text */
    ePropType_Filename = 2,     /* text: a path relative to the project's resource root */
    ePropType_Enum = 3,         /* text: the enumerator itself, not its index */
    ePropType_Int = 4,          /* signed 32-bit integer */
    ePropType_Float = 5,        /* 32-bit float */
    ePropType_Color = 6,        /* unsigned 32-bit word 0xAARRGGBB */
    ePropType_Vector = 7,       /* three 32-bit floats: X, Y, Z */
    ePropType_UI = 8,           /* no value: a row of the property panel, see m_szName */
    ePropType_Animation = 9,    /* text */
    ePropType_FireglassRef = 10 /* text: the name of another effect */
} EEffectPropertyType;

/*
 * One property of an effect type. The array's order is the order of the rows in the property panel; every
 * entry takes its place in it, those without a value too.
 */
typedef struct CEffectPropertyDesc
{
    /*
     * Name of the property, by which files refer to it. Names of one type differ without regard to case; of
     * two equal ones the first is found. For ePropType_UI the kind of row: "UIType_TextLine" shows m_szData
     * as text.
     */
    char m_szName[EMBERDECK_NAME_SIZE];

    /*
     * By kind:
     *   Enum                 the enumerators, separated by commas; blanks round them don't count.
     *                        Their order gives the index that a packed file stores.
     *   Int, Float, Vector   a range "MIN;MAX". Either number may be missing, and without a semicolon
     *                        there is no range. For a vector it holds for each component.
     *   Filename             filter of the file dialog, as in "Textures (*.tga)|*.tga||"; empty: all files.
     *   UI                   the text of the line.
     *   others               not read.
     */
    char m_szData[EMBERDECK_TEXT_SIZE];

    char m_szHelp[EMBERDECK_TEXT_SIZE]; /* tool tip of the property's controls; may be empty */
    uint32_t m_eType;                   /* an EEffectPropertyType */
    uint8_t m_bFunctionCurve;           /* not 0: a function of the key's time, 0 to 1. 0: one constant */
    uint8_t m_bInterpolate; /* with m_bFunctionCurve, not 0: piecewise linear, with a value at the end.
                               0: steps */
    uint8_t m_Padding[2];
    uint8_t m_Default[EMBERDECK_PAYLOAD_SIZE]; /* value of a new key, in the form of the kind */
} CEffectPropertyDesc;

/* One effect type. */
typedef struct CEffectTypeDesc
{
    /*
     * Name of the type, by which files refer to it and which the user chooses from a list. Names differ
     * without regard to case; of two equal ones the first is found.
     */
    char m_szName[EMBERDECK_NAME_SIZE];

    /*
     * Number of the type, stored in each packed key. It indexes a packed file's table of key counts, so it is
     * below m_nNumTypes, and should be the entry's index in m_pTypes.
     */
    uint32_t m_nTypeID;

    uint32_t m_nNumProps;                /* entries of m_pProps */
    const CEffectPropertyDesc* m_pProps; /* contiguous; may be null when m_nNumProps is 0 */
} CEffectTypeDesc;

/* What the plug-in offers. */
typedef struct CEffectTypeTable
{
    /*
     * A number that the plug-in chooses. The editor copies it into every packed file and doesn't interpret
     * it: it ties the file to the table that made it.
     */
    uint32_t m_nVersion;

    uint32_t m_nNumTypes;            /* entries of m_pTypes; 0 is a valid table */
    const CEffectTypeDesc* m_pTypes; /* contiguous; may be null when m_nNumTypes is 0 */
} CEffectTypeTable;

#define EMBERDECK_GET_INFO_NAME "EmberdeckGetInfo"
#define EMBERDECK_RELEASE_INFO_NAME "EmberdeckReleaseInfo"

typedef void (*EmberdeckGetInfoFn)(CEffectTypeTable** ppTable);
typedef void (*EmberdeckReleaseInfoFn)(CEffectTypeTable* pTable);

#ifdef __cplusplus
static_assert(sizeof(CEffectPropertyDesc) == 904, "width of a property");
static_assert(offsetof(CEffectPropertyDesc, m_szData) == 128, "place of m_szData");
static_assert(offsetof(CEffectPropertyDesc, m_szHelp) == 384, "place of m_szHelp");
static_assert(offsetof(CEffectPropertyDesc, m_eType) == 640, "place of m_eType");
static_assert(offsetof(CEffectPropertyDesc, m_bFunctionCurve) == 644, "place of m_bFunctionCurve");
static_assert(offsetof(CEffectPropertyDesc, m_bInterpolate) == 645, "place of m_bInterpolate");
static_assert(offsetof(CEffectPropertyDesc, m_Default) == 648, "place of m_Default");
static_assert(offsetof(CEffectTypeDesc, m_nTypeID) == 128, "place of m_nTypeID");
static_assert(offsetof(CEffectTypeDesc, m_nNumProps) == 132, "place of m_nNumProps");
static_assert(offsetof(CEffectTypeDesc, m_pProps) == 136, "place of m_pProps");
static_assert(offsetof(CEffectTypeTable, m_nNumTypes) == 4, "place of m_nNumTypes");
static_assert(offsetof(CEffectTypeTable, m_pTypes) == 8, "place of m_pTypes");
static_assert(sizeof(void*) != 8 || (sizeof(CEffectTypeDesc) == 144 && sizeof(CEffectTypeTable) == 16),
              "widths with 64-bit pointers");
static_assert(sizeof(void*) != 4 || (sizeof(CEffectTypeDesc) == 140 && sizeof(CEffectTypeTable) == 12),
              "widths with 32-bit pointers");
#endif
