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
 * Reads in a game what Emberdeck packs: files *.Fx00p. C99 and C++. Copy this header and effecttypes.h
 * into the game; there is nothing to link and nothing to define. It is one file, long as it is, so that a
 * game has one to copy and one to update; the parts that it has have headings. All functions are static inline: most are
 * a few lines that a loop over particles wants inlined, and the one large one, EmberdeckOpen, is called
 * from one or two places of a game. A macro that makes one file of the game hold the code would save
 * nothing, and can be forgotten.
 *
 * An example, whole:
 *
 *     #include <stdio.h>
 *     #include <stdlib.h>
 *     #include "emberdeck_effects.h"
 *
 *     static void Show(const void* pBytes, size_t nSize, const CEffectTypeTable* pTypes)
 *     {
 *         size_t nIndex = EmberdeckIndexLength(pBytes, nSize);
 *         uint32_t* pIndex = (uint32_t*)malloc(nIndex * sizeof(uint32_t));
 *         CEmberdeckFile file;
 *         CEmberdeckError error;
 *         CEmberdeckEffect effect;
 *         CEmberdeckKey key;
 *         CEmberdeckProperty size;
 *         if (!EmberdeckOpen(&file, pBytes, nSize, pTypes, pIndex, nIndex, &error))
 *             printf("byte %u: %s\n", (unsigned)error.m_nOffset, EmberdeckErrorText(error.m_eCode));
 *         else if (EmberdeckFindEffect(&file, "Campfire", &effect))
 *             for (bool b = EmberdeckFirstKey(&effect, &key); b; b = EmberdeckNextKey(&key))
 *                 if (EmberdeckFindProperty(&key, "Size", &size))
 *                     printf("%s from %g s, size %g in the middle\n", key.m_pType->m_szName, key.m_fStart,
 *                            EmberdeckEvaluate(&size, 0.5).m_Numbers[0]);
 *         free(pIndex);
 *     }
 *
 * What must be there: the file's bytes in memory (read or mapped, at any address, they are only read), and
 * the CEffectTypeTable of the plug-in that the editor packed with, since a packed file doesn't tell of
 * which kind a value is. The game links the plug-in's source and calls EmberdeckGetInfo, or loads the
 * plug-in as the editor does.
 *
 * Trust. EmberdeckOpen looks at every byte of the structure once, in time in proportion to the file's
 * size, without recursion and without allocating. What it lets through can be read without any more
 * checks, whatever wrote it. It takes every file that "emberdeck-batch dump" takes. That command also
 * knows what the plug-in allows; here remain to the game: numbers may be any, also beyond the property's
 * range, infinite or no number; an Enum's index in a curve may lie behind the end of the list; links and
 * names of effects may lead nowhere; effects may name each other in a ring; a text may be stored twice.
 *
 * Byte order. Files for either order are read on machines of either order; the right one costs less.
 *
 * Lifetime. Bytes, index and type table stay, unchanged and in place, while the file is used; so does the
 * CEmberdeckFile, to which the handles for effects, keys and properties point. Handles are plain structs
 * to copy and throw away; nothing is ever closed. Texts point into the bytes and end with a NUL.
 *
 * Threads. An opened file is never written to. Any number of threads may read it.
 *
 * Null. Pointers must not be null where not told otherwise. A function that gives false has filled the
 * handle that it was to fill with zeros.
 *
 * What isn't in a packed file: tracks, groups, prefabs (a key has all values in force), names of keys.
 * Names that end with an underscore are no part of the contract.
 */

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include "effecttypes.h"

#define EMBERDECK_FILE_VERSION 2u
#define EMBERDECK_MAGIC 0x58465351u /* the bytes "QSFX", or "XFSQ" where the high byte comes first */

/* Why a file is refused: eEmberdeckError_NAME, and the text that EmberdeckErrorText gives. */
#define EMBERDECK_ERRORS(X)                                                                                  \
    X(None, "no error")                                                                                      \
    X(TooLarge, "the file is larger than its offsets can tell")                                              \
    X(HeaderCut, "the header is cut off")                                                                    \
    X(NotPacked, "this is no packed effect file")                                                            \
    X(FileVersion, "another file version than 2")                                                            \
    X(TypesVersion, "packed with another version of the effect types")                                       \
    X(TypesNumber, "packed with another number of effect types")                                             \
    X(TextsPlace, "the string table is not behind the key counts")                                           \
    X(TextsSize, "the string table's size is no multiple of 4, or beyond the file")                          \
    X(CurvesSize, "the curve table's size is no multiple of 4, or beyond the file")                          \
    X(NamesPlace, "the effect names are not between the effects and the end of the file")                    \
    X(IndexShort, "the memory for the index is null or too short")                                           \
    X(CountsSum, "the key counts of the types have another sum")                                             \
    X(TextEnd, "a text without an end")                                                                      \
    X(TextFill, "a text that isn't filled up with zeros")                                                    \
    X(NoText, "no text begins there")                                                                        \
    X(EffectsNumber, "more effects than the file has room for")                                              \
    X(EffectCut, "an effect is cut off")                                                                     \
    X(EffectsRest, "bytes that belong to no effect")                                                         \
    X(EffectName, "the name of another effect")                                                              \
    X(KeysNumber, "more keys than the file has room for")                                                    \
    X(KeyCut, "a key is cut off")                                                                            \
    X(KeyType, "a key of an unknown type")                                                                   \
    X(KeyTime, "a time that is no number")                                                                   \
    X(KeyCount, "another number of keys of a type than the file says")                                       \
    X(PropsNumber, "more properties than the type has or the file has room for")                             \
    X(PropCut, "a property is cut off")                                                                      \
    X(PropUnknown, "a property that the type doesn't have at this place")                                    \
    X(PropEnd, "a property that ends elsewhere than it says")                                                \
    X(Enumerator, "an index behind the last enumerator")                                                     \
    X(CurvePlace, "no curve can begin there")                                                                \
    X(CurveInside, "a curve that begins inside another")                                                     \
    X(CurveKind, "a curve of another kind")                                                                  \
    X(CurveEmpty, "a curve without points")                                                                  \
    X(CurveLong, "a curve longer than its place in the table")                                               \
    X(CurveTimes, "times of a curve that don't go up")                                                       \
    X(CurveUnused, "a part of the curve table that no property uses")

typedef enum EEmberdeckError
{
#define EMBERDECK_CODE_(Name, szText) eEmberdeckError_##Name,
    EMBERDECK_ERRORS(EMBERDECK_CODE_)
#undef EMBERDECK_CODE_
        eEmberdeckError_Count
} EEmberdeckError;

typedef struct CEmberdeckError
{
    EEmberdeckError m_eCode;
    uint32_t m_nOffset; /* where in the file it shows, in bytes from its start */
} CEmberdeckError;

/* In English, a constant. Never null. */
static inline const char* EmberdeckErrorText(EEmberdeckError eCode)
{
    static const char* const c_aTexts[] = {
#define EMBERDECK_TEXT_(Name, szText) szText,
        EMBERDECK_ERRORS(EMBERDECK_TEXT_)
#undef EMBERDECK_TEXT_
    };
    return (unsigned)eCode < (unsigned)eEmberdeckError_Count ? c_aTexts[eCode] : "unknown";
}

/* An opened file. The fields from m_nFileVersion on are those of its header. To be read only. */
typedef struct CEmberdeckFile
{
    const uint8_t* m_pBytes;
    uint32_t m_nSize;
    const CEffectTypeTable* m_pTypes;
    const uint32_t* m_pIndex; /* offset of each effect, then each type number's place in the type table */
    bool m_bBigEndian;        /* the high byte comes first */

    uint32_t m_nFileVersion;
    uint32_t m_nTypeTableVersion; /* m_nVersion of the plug-in's table */
    uint32_t m_nStringTableSize;
    uint32_t m_nCurveTableSize;
    uint32_t m_nNumKeys; /* of all effects */
    uint32_t m_nNumEffects;
    uint32_t m_nNumTypes;
    uint32_t m_nStringTableOffset;
    uint32_t m_nEffectNamesOffset;
} CEmberdeckFile;

typedef struct CEmberdeckEffect
{
    const CEmberdeckFile* m_pFile;
    uint32_t m_nOffset; /* of the record, from the start of the file; so below */
    const char* m_pszName;
    uint32_t m_nPhaseLength; /* milliseconds. Keys may end later */
    uint32_t m_nNumKeys;
} CEmberdeckEffect;

typedef struct CEmberdeckKey
{
    const CEmberdeckFile* m_pFile;
    uint32_t m_nOffset;
    const CEffectTypeDesc* m_pType; /* the plug-in's */
    float m_fStart;                 /* seconds from the start of the effect; finite, so is the end */
    float m_fEnd;                   /* seconds; may be at or before the start */
    uint32_t m_nID;                 /* within the effect; files of others may use one twice */
    uint32_t m_nLink;               /* id of the key that it moves with; its own id: none */
    uint32_t m_nNumProps;           /* properties that it has a value of */
    uint32_t m_nKeysLeft;           /* of the effect, behind this one */
} CEmberdeckKey;

typedef struct CEmberdeckProperty
{
    const CEmberdeckFile* m_pFile;
    uint32_t m_nOffset;
    const CEffectPropertyDesc* m_pDesc; /* the plug-in's: name, kind, whether it is a curve */
    uint32_t m_nCurve;              /* the curve's offset in the curve table; equal curves are one there */
    uint32_t m_nValues;             /* of the first value, from the start of the file */
    uint32_t m_nNumValues;          /* points of the curve, at least 1; 1 for a constant */
    const CEffectTypeDesc* m_pType; /* of the key */
    uint32_t m_nPropsLeft;          /* of the key, behind this one */
} CEmberdeckProperty;

/* A value. Numbers are doubles, so that an Int and an index come through whole. */
typedef struct CEmberdeckValue
{
    uint32_t m_eType;       /* EEffectPropertyType */
    uint32_t m_nNumNumbers; /* Int, Enum, Float: 1; Vector: 3; Color: 4; the kinds of text: 0 */
    const char* m_pszText;  /* of the kinds of text, never null; else null. A Filename is relative to the
                               resource root, with the ending of the packed resource */
    double m_Numbers[4];    /* Enum: the index into the descriptor's list. Vector: x y z. Color: red, green,
                               blue, alpha, 0 to 1 each. What doesn't count is 0 */
} CEmberdeckValue;

/* ---- Bytes ---- */

enum
{
    eEmberdeckSize_Header_ = 40,
    eEmberdeckSize_Effect_ = 12,  /* name, phase length, number of keys */
    eEmberdeckSize_Key_ = 24,     /* type, start, end, id, link, number of properties */
    eEmberdeckSize_Prop_ = 8,     /* name, end */
    eEmberdeckSize_MinProp_ = 12, /* and a value or the offset of a curve */
    eEmberdeckMark_Inside_ = 255  /* of a curve, behind its start */
};

static inline uint32_t EmberdeckWord_(const uint8_t* p, bool bBigEndian)
{
    if (bBigEndian)
        return (uint32_t)p[0] << 24 | (uint32_t)p[1] << 16 | (uint32_t)p[2] << 8 | (uint32_t)p[3];
    return (uint32_t)p[3] << 24 | (uint32_t)p[2] << 16 | (uint32_t)p[1] << 8 | (uint32_t)p[0];
}

static inline uint32_t EmberdeckU32_(const CEmberdeckFile* pFile, uint32_t nAt)
{
    return EmberdeckWord_(pFile->m_pBytes + nAt, pFile->m_bBigEndian);
}

static inline float EmberdeckF32_(const CEmberdeckFile* pFile, uint32_t nAt)
{
    const uint32_t nBits = EmberdeckU32_(pFile, nAt);
    float f;
    memcpy(&f, &nBits, sizeof(f));
    return f;
}

/* Bytes that a value of the kind takes; 0 for a kind without values. */
static inline uint32_t EmberdeckValueSize_(uint32_t eType)
{
    switch (eType)
    {
    case ePropType_None:
    case ePropType_UI:
        return 0;
    case ePropType_Vector:
        return 12;
    case ePropType_Color:
        return 16;
    default:
        return eType <= (uint32_t)ePropType_FireglassRef ? 4 : 0;
    }
}

static inline bool EmberdeckIsText_(uint32_t eType)
{
    return eType == (uint32_t)ePropType_String || eType == (uint32_t)ePropType_Filename ||
           eType == (uint32_t)ePropType_Animation || eType == (uint32_t)ePropType_FireglassRef;
}

/* A descriptor's name need not end with a NUL; its last byte doesn't count. */
static inline bool EmberdeckIsNamed_(const CEffectPropertyDesc* pDesc, const char* pszName)
{
    const char* p = pDesc->m_szName;
    const char* pEnd = p + EMBERDECK_NAME_SIZE - 1;
    for (; p < pEnd && *p; ++p, ++pszName)
        if (*p != *pszName)
            return false;
    return *pszName == '\0';
}

/* Null where no text begins. Texts are filled up to words: one begins behind each word that ends with 0. */
static inline const char* EmberdeckTextAt_(const CEmberdeckFile* pFile, uint32_t nText)
{
    const uint8_t* pTexts = pFile->m_pBytes + pFile->m_nStringTableOffset;
    if (nText % 4 != 0 || nText >= pFile->m_nStringTableSize || (nText != 0 && pTexts[nText - 1] != 0))
        return NULL;
    return (const char*)(pTexts + nText);
}

/* ---- Enumerators ---- */

/*
 * The enumerator of that index in the list of an Enum's descriptor, without the blanks round it: so many
 * bytes from the pointer on, without a NUL. The list is m_szData, pieces between commas; an empty piece
 * behind the last comma is none. Null, and no length, where the list doesn't reach.
 */
static inline const char* EmberdeckEnumerator(const CEffectPropertyDesc* pDesc, uint32_t nIndex,
                                              size_t* pnLength)
{
    const char* p = pDesc->m_szData;
    const char* pLimit = p + EMBERDECK_TEXT_SIZE - 1;
    const char* pEnd;
    while (nIndex != 0 && p < pLimit && *p)
        nIndex -= *p++ == ',' ? 1u : 0u;
    if (nIndex != 0 || p == pLimit || !*p)
        return NULL;
    for (pEnd = p; pEnd < pLimit && *pEnd && *pEnd != ',';)
        ++pEnd;
    while (p < pEnd && *p == ' ')
        ++p;
    while (p < pEnd && pEnd[-1] == ' ')
        --pEnd;
    *pnLength = (size_t)(pEnd - p);
    return p;
}

/* ---- Opening: internals ---- */

typedef struct CEmberdeckCheck_
{
    CEmberdeckFile* m_pFile;
    uint32_t* m_pEffects; /* the offset of each effect */
    uint32_t* m_pTypes;   /* the place in the type table of each type number */
    uint32_t* m_pCounts;  /* keys met, by type number */
    uint8_t* m_pMarks; /* for each word of the curve table: 1 + kind where a curve begins, or what is above */
    uint32_t m_nPos;
    CEmberdeckError m_Error;
} CEmberdeckCheck_;

static inline bool EmberdeckFail_(CEmberdeckCheck_* pCheck, EEmberdeckError eCode, uint32_t nAt)
{
    pCheck->m_Error.m_eCode = eCode;
    pCheck->m_Error.m_nOffset = nAt;
    return false;
}

static inline uint32_t EmberdeckCurves_(const CEmberdeckFile* pFile)
{
    return pFile->m_nStringTableOffset + pFile->m_nStringTableSize;
}

static inline bool EmberdeckCheckHeader_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint64_t nTexts = (uint64_t)eEmberdeckSize_Header_ + 4 * (uint64_t)pFile->m_nNumTypes;
    const uint64_t nCurves = nTexts + pFile->m_nStringTableSize;
    if (pFile->m_nFileVersion != EMBERDECK_FILE_VERSION)
        return EmberdeckFail_(pCheck, eEmberdeckError_FileVersion, 4);
    if (pFile->m_nTypeTableVersion != pFile->m_pTypes->m_nVersion)
        return EmberdeckFail_(pCheck, eEmberdeckError_TypesVersion, 8);
    if (pFile->m_nNumTypes != pFile->m_pTypes->m_nNumTypes)
        return EmberdeckFail_(pCheck, eEmberdeckError_TypesNumber, 28);
    if (pFile->m_nStringTableOffset != nTexts || nTexts > pFile->m_nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_TextsPlace, 32);
    if (pFile->m_nStringTableSize % 4 != 0 || nCurves > pFile->m_nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_TextsSize, 12);
    if (pFile->m_nCurveTableSize % 4 != 0 || nCurves + pFile->m_nCurveTableSize > pFile->m_nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_CurvesSize, 16);
    if (pFile->m_nEffectNamesOffset < nCurves + pFile->m_nCurveTableSize ||
        pFile->m_nEffectNamesOffset + 4 * (uint64_t)pFile->m_nNumEffects != pFile->m_nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_NamesPlace, 36);
    return true;
}

static inline bool EmberdeckReadHeader_(CEmberdeckCheck_* pCheck, const void* pBytes, size_t nSize)
{
    CEmberdeckFile* pFile = pCheck->m_pFile;
    pFile->m_pBytes = (const uint8_t*)pBytes;
    if ((uint64_t)nSize > UINT32_MAX)
        return EmberdeckFail_(pCheck, eEmberdeckError_TooLarge, 0);
    pFile->m_nSize = (uint32_t)nSize;
    if (nSize < eEmberdeckSize_Header_)
        return EmberdeckFail_(pCheck, eEmberdeckError_HeaderCut, 0);
    pFile->m_bBigEndian = EmberdeckWord_(pFile->m_pBytes, true) == EMBERDECK_MAGIC;
    if (EmberdeckU32_(pFile, 0) != EMBERDECK_MAGIC)
        return EmberdeckFail_(pCheck, eEmberdeckError_NotPacked, 0);
    pFile->m_nFileVersion = EmberdeckU32_(pFile, 4);
    pFile->m_nTypeTableVersion = EmberdeckU32_(pFile, 8);
    pFile->m_nStringTableSize = EmberdeckU32_(pFile, 12);
    pFile->m_nCurveTableSize = EmberdeckU32_(pFile, 16);
    pFile->m_nNumKeys = EmberdeckU32_(pFile, 20);
    pFile->m_nNumEffects = EmberdeckU32_(pFile, 24);
    pFile->m_nNumTypes = EmberdeckU32_(pFile, 28);
    pFile->m_nStringTableOffset = EmberdeckU32_(pFile, 32);
    pFile->m_nEffectNamesOffset = EmberdeckU32_(pFile, 36);
    return true;
}

/* For a header whose sections lie within the file, so that the sum can't overflow. */
static inline size_t EmberdeckIndexOf_(const CEmberdeckFile* pFile)
{
    return (size_t)pFile->m_nNumEffects + 2 * (size_t)pFile->m_nNumTypes +
           ((size_t)pFile->m_nCurveTableSize + 15) / 16;
}

/* Cuts the index into its parts. Of two types with one number the first counts. */
static inline bool EmberdeckMakeIndex_(CEmberdeckCheck_* pCheck, uint32_t* pIndex, size_t nIndexLength)
{
    CEmberdeckFile* pFile = pCheck->m_pFile;
    const size_t nLength = EmberdeckIndexOf_(pFile);
    const CEffectTypeDesc* pTypes = pFile->m_pTypes->m_pTypes;
    uint32_t i;
    if (nLength == 0)
        return true;
    if (!pIndex || nIndexLength < nLength)
        return EmberdeckFail_(pCheck, eEmberdeckError_IndexShort, 0);
    pFile->m_pIndex = pIndex;
    pCheck->m_pEffects = pIndex;
    pCheck->m_pTypes = pIndex + pFile->m_nNumEffects;
    pCheck->m_pCounts = pCheck->m_pTypes + pFile->m_nNumTypes;
    pCheck->m_pMarks = (uint8_t*)(pCheck->m_pCounts + pFile->m_nNumTypes);
    memset(pCheck->m_pTypes, 0xFF, (size_t)pFile->m_nNumTypes * 4);
    memset(pCheck->m_pCounts, 0, (nLength - pFile->m_nNumEffects - pFile->m_nNumTypes) * 4);
    for (i = pTypes ? pFile->m_nNumTypes : 0; i > 0; --i)
        if (pTypes[i - 1].m_nTypeID < pFile->m_nNumTypes)
            pCheck->m_pTypes[pTypes[i - 1].m_nTypeID] = i - 1;
    return true;
}

static inline bool EmberdeckCheckCounts_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    uint64_t nSum = 0;
    uint32_t i;
    for (i = 0; i < pFile->m_nNumTypes; ++i)
        nSum += EmberdeckU32_(pFile, eEmberdeckSize_Header_ + 4 * i);
    return nSum == pFile->m_nNumKeys || EmberdeckFail_(pCheck, eEmberdeckError_CountsSum, 20);
}

/* Each text ends in a word whose bytes from its first 0 on are 0. */
static inline bool EmberdeckCheckTexts_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint8_t* pTexts = pFile->m_pBytes + pFile->m_nStringTableOffset;
    uint32_t nAt, nText = 0;
    for (nAt = 0; nAt < pFile->m_nStringTableSize; nAt += 4)
    {
        const uint8_t* p = pTexts + nAt;
        if (p[0] != 0 && p[1] != 0 && p[2] != 0 && p[3] != 0)
            continue;
        if (p[3] != 0 || (p[1] == 0 && p[2] != 0) || (p[0] == 0 && (p[1] != 0 || p[2] != 0)))
            return EmberdeckFail_(pCheck, eEmberdeckError_TextFill, pFile->m_nStringTableOffset + nText);
        nText = nAt + 4;
    }
    return nText == pFile->m_nStringTableSize ||
           EmberdeckFail_(pCheck, eEmberdeckError_TextEnd, pFile->m_nStringTableOffset + nText);
}

/* A word that is no text's place fails. */
static inline bool EmberdeckCheckText_(CEmberdeckCheck_* pCheck, uint32_t nAt)
{
    return EmberdeckTextAt_(pCheck->m_pFile, EmberdeckU32_(pCheck->m_pFile, nAt)) != NULL ||
           EmberdeckFail_(pCheck, eEmberdeckError_NoText, nAt);
}

static inline bool EmberdeckIsFinite_(uint32_t nBits)
{
    return (nBits & 0x7F800000u) != 0x7F800000u;
}

/* Times of a curve: finite, and none before the one before it. nStride bytes lie between two. */
static inline bool EmberdeckCheckTimes_(CEmberdeckCheck_* pCheck, uint32_t nAt, uint32_t nNum,
                                        uint32_t nStride)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    float fLast = 0;
    uint32_t i;
    for (i = 0; i < nNum; ++i, nAt += nStride)
    {
        const float fTime = EmberdeckF32_(pFile, nAt);
        if (!EmberdeckIsFinite_(EmberdeckU32_(pFile, nAt)) || (i != 0 && fTime < fLast))
            return EmberdeckFail_(pCheck, eEmberdeckError_CurveTimes, nAt);
        fLast = fTime;
    }
    return true;
}

/* The record that begins at nCurve of the table, met for the first time. */
static inline bool EmberdeckCheckRecord_(CEmberdeckCheck_* pCheck, uint32_t eType, uint32_t nCurve)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nRecord = EmberdeckCurves_(pFile) + nCurve;
    const uint32_t nStride = 4 + EmberdeckValueSize_(eType);
    const uint32_t nNum = EmberdeckU32_(pFile, nRecord);
    uint32_t i, nSize;
    if (nNum == 0)
        return EmberdeckFail_(pCheck, eEmberdeckError_CurveEmpty, nRecord);
    if (nNum > (pFile->m_nCurveTableSize - nCurve - 4) / nStride)
        return EmberdeckFail_(pCheck, eEmberdeckError_CurveLong, nRecord);
    nSize = 4 + nNum * nStride;
    for (i = nCurve / 4; i < (nCurve + nSize) / 4; ++i)
    {
        if (pCheck->m_pMarks[i] != 0) /* two that share bytes */
            return EmberdeckFail_(pCheck, eEmberdeckError_CurveLong, nRecord);
        pCheck->m_pMarks[i] = eEmberdeckMark_Inside_;
    }
    pCheck->m_pMarks[nCurve / 4] = (uint8_t)(1 + eType);
    if (!EmberdeckCheckTimes_(pCheck, nRecord + 4, nNum, nStride))
        return false;
    for (i = 0; EmberdeckIsText_(eType) && i < nNum; ++i)
        if (!EmberdeckCheckText_(pCheck, nRecord + 8 + i * nStride))
            return false;
    return true;
}

/* What stands at nAt refers to a curve. */
static inline bool EmberdeckCheckCurve_(CEmberdeckCheck_* pCheck, const CEffectPropertyDesc* pDesc,
                                        uint32_t nAt)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nCurve = EmberdeckU32_(pFile, nAt);
    uint32_t nMark;
    if (nCurve % 4 != 0 || nCurve >= pFile->m_nCurveTableSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_CurvePlace, nAt);
    nMark = pCheck->m_pMarks[nCurve / 4];
    if (nMark == eEmberdeckMark_Inside_)
        return EmberdeckFail_(pCheck, eEmberdeckError_CurveInside, nAt);
    if (nMark != 0)
        return nMark == 1 + pDesc->m_eType || EmberdeckFail_(pCheck, eEmberdeckError_CurveKind, nAt);
    return EmberdeckCheckRecord_(pCheck, pDesc->m_eType, nCurve);
}

/* Curves of properties of a kind without a value: nothing refers to them, and they are times alone. */
static inline bool EmberdeckCheckUnused_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nCurves = EmberdeckCurves_(pFile), nWords = pFile->m_nCurveTableSize / 4;
    uint32_t nAt = 0, nEnd, nNum;
    while (nAt < nWords)
    {
        if (pCheck->m_pMarks[nAt] != 0)
        {
            ++nAt;
            continue;
        }
        nNum = EmberdeckU32_(pFile, nCurves + 4 * nAt);
        nEnd = nAt + 1;
        while (nEnd < nWords && nEnd - nAt <= nNum && pCheck->m_pMarks[nEnd] == 0)
            ++nEnd;
        if (nEnd - nAt - 1 != nNum)
            return EmberdeckFail_(pCheck, eEmberdeckError_CurveUnused, nCurves + 4 * nAt);
        if (!EmberdeckCheckTimes_(pCheck, nCurves + 4 * nAt + 4, nNum, 4))
            return false;
        nAt = nEnd;
    }
    return true;
}

static inline bool EmberdeckCheckValue_(CEmberdeckCheck_* pCheck, const CEffectPropertyDesc* pDesc,
                                        uint32_t nAt)
{
    size_t nLength;
    uint32_t nIndex;
    if (EmberdeckIsText_(pDesc->m_eType))
        return EmberdeckCheckText_(pCheck, nAt);
    if (pDesc->m_eType != (uint32_t)ePropType_Enum)
        return true;
    nIndex = EmberdeckU32_(pCheck->m_pFile, nAt);
    return nIndex == 0 || EmberdeckEnumerator(pDesc, nIndex, &nLength) ||
           EmberdeckFail_(pCheck, eEmberdeckError_Enumerator, nAt);
}

/* The first property from pDesc on that has that name and a value, or null. */
static inline const CEffectPropertyDesc* EmberdeckSlot_(const CEffectPropertyDesc* pDesc,
                                                        const CEffectPropertyDesc* pEnd, const char* pszName)
{
    for (; pDesc != pEnd; ++pDesc)
        if (EmberdeckValueSize_(pDesc->m_eType) != 0 && EmberdeckIsNamed_(pDesc, pszName))
            return pDesc;
    return NULL;
}

/* The property's record at m_nPos; *ppDesc is the first slot that may come, and then the one behind. */
static inline bool EmberdeckCheckProp_(CEmberdeckCheck_* pCheck, const CEffectPropertyDesc** ppDesc,
                                       const CEffectPropertyDesc* pEnd)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nAt = pCheck->m_nPos, nLeft = pFile->m_nEffectNamesOffset - nAt;
    const CEffectPropertyDesc* pDesc;
    const char* pszName;
    uint32_t nSize;
    if (nLeft < eEmberdeckSize_MinProp_)
        return EmberdeckFail_(pCheck, eEmberdeckError_PropCut, nAt);
    pszName = EmberdeckTextAt_(pFile, EmberdeckU32_(pFile, nAt));
    if (!pszName)
        return EmberdeckFail_(pCheck, eEmberdeckError_NoText, nAt);
    pDesc = EmberdeckSlot_(*ppDesc, pEnd, pszName);
    if (!pDesc)
        return EmberdeckFail_(pCheck, eEmberdeckError_PropUnknown, nAt);
    nSize = eEmberdeckSize_Prop_ + (pDesc->m_bFunctionCurve ? 4 : EmberdeckValueSize_(pDesc->m_eType));
    if (nLeft < nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_PropCut, nAt);
    if (!(pDesc->m_bFunctionCurve ? EmberdeckCheckCurve_(pCheck, pDesc, nAt + eEmberdeckSize_Prop_)
                                  : EmberdeckCheckValue_(pCheck, pDesc, nAt + eEmberdeckSize_Prop_)))
        return false;
    if (EmberdeckU32_(pFile, nAt + 4) != nAt + nSize)
        return EmberdeckFail_(pCheck, eEmberdeckError_PropEnd, nAt + 4);
    pCheck->m_nPos = nAt + nSize;
    *ppDesc = pDesc + 1;
    return true;
}

static inline bool EmberdeckCheckKey_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nAt = pCheck->m_nPos, nLeft = pFile->m_nEffectNamesOffset - nAt;
    const CEffectTypeDesc* pType;
    const CEffectPropertyDesc* pDesc;
    const CEffectPropertyDesc* pEnd;
    uint32_t nType, nProps;
    if (nLeft < eEmberdeckSize_Key_)
        return EmberdeckFail_(pCheck, eEmberdeckError_KeyCut, nAt);
    nType = EmberdeckU32_(pFile, nAt);
    if (nType >= pFile->m_nNumTypes || pCheck->m_pTypes[nType] == UINT32_MAX)
        return EmberdeckFail_(pCheck, eEmberdeckError_KeyType, nAt);
    ++pCheck->m_pCounts[nType];
    if (!EmberdeckIsFinite_(EmberdeckU32_(pFile, nAt + 4)) ||
        !EmberdeckIsFinite_(EmberdeckU32_(pFile, nAt + 8)))
        return EmberdeckFail_(pCheck, eEmberdeckError_KeyTime, nAt + 4);
    pType = pFile->m_pTypes->m_pTypes + pCheck->m_pTypes[nType];
    pDesc = pType->m_pProps;
    nProps = EmberdeckU32_(pFile, nAt + 20);
    if (nProps > (pDesc ? pType->m_nNumProps : 0) ||
        nProps > (nLeft - eEmberdeckSize_Key_) / eEmberdeckSize_MinProp_)
        return EmberdeckFail_(pCheck, eEmberdeckError_PropsNumber, nAt + 20);
    pCheck->m_nPos = nAt + eEmberdeckSize_Key_;
    for (pEnd = nProps != 0 ? pDesc + pType->m_nNumProps : pDesc; nProps > 0; --nProps)
        if (!EmberdeckCheckProp_(pCheck, &pDesc, pEnd))
            return false;
    return true;
}

static inline bool EmberdeckCheckEffect_(CEmberdeckCheck_* pCheck, uint32_t nEffect)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    const uint32_t nAt = pCheck->m_nPos, nLeft = pFile->m_nEffectNamesOffset - nAt;
    uint32_t nKeys;
    if (nLeft < eEmberdeckSize_Effect_)
        return EmberdeckFail_(pCheck, eEmberdeckError_EffectCut, nAt);
    if (!EmberdeckCheckText_(pCheck, nAt))
        return false;
    nKeys = EmberdeckU32_(pFile, nAt + 8);
    if (nKeys > (nLeft - eEmberdeckSize_Effect_) / eEmberdeckSize_Key_)
        return EmberdeckFail_(pCheck, eEmberdeckError_KeysNumber, nAt + 8);
    pCheck->m_pEffects[nEffect] = nAt;
    pCheck->m_nPos = nAt + eEmberdeckSize_Effect_;
    for (; nKeys > 0; --nKeys)
        if (!EmberdeckCheckKey_(pCheck))
            return false;
    return true;
}

static inline bool EmberdeckCheckEffects_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    uint32_t i;
    pCheck->m_nPos = EmberdeckCurves_(pFile) + pFile->m_nCurveTableSize;
    if (pFile->m_nNumEffects > (pFile->m_nEffectNamesOffset - pCheck->m_nPos) / eEmberdeckSize_Effect_)
        return EmberdeckFail_(pCheck, eEmberdeckError_EffectsNumber, 24);
    for (i = 0; i < pFile->m_nNumEffects; ++i)
        if (!EmberdeckCheckEffect_(pCheck, i))
            return false;
    if (pCheck->m_nPos != pFile->m_nEffectNamesOffset)
        return EmberdeckFail_(pCheck, eEmberdeckError_EffectsRest, pCheck->m_nPos);
    for (i = 0; i < pFile->m_nNumTypes; ++i)
        if (pCheck->m_pCounts[i] != EmberdeckU32_(pFile, eEmberdeckSize_Header_ + 4 * i))
            return EmberdeckFail_(pCheck, eEmberdeckError_KeyCount, eEmberdeckSize_Header_ + 4 * i);
    return true;
}

static inline bool EmberdeckCheckNames_(CEmberdeckCheck_* pCheck)
{
    const CEmberdeckFile* pFile = pCheck->m_pFile;
    uint32_t i;
    for (i = 0; i < pFile->m_nNumEffects; ++i)
    {
        const uint32_t nAt = pFile->m_nEffectNamesOffset + 4 * i;
        const uint32_t nName = EmberdeckU32_(pFile, nAt), nOwn = EmberdeckU32_(pFile, pCheck->m_pEffects[i]);
        if (!EmberdeckTextAt_(pFile, nName))
            return EmberdeckFail_(pCheck, eEmberdeckError_NoText, nAt);
        if (nName != nOwn && strcmp(EmberdeckTextAt_(pFile, nName), EmberdeckTextAt_(pFile, nOwn)) != 0)
            return EmberdeckFail_(pCheck, eEmberdeckError_EffectName, nAt);
    }
    return true;
}

/* ---- Opening ---- */

/*
 * How many elements the index needs that EmberdeckOpen is given: 4 bytes for each effect, 8 for each
 * effect type, and a byte for each word of the curve table; never more bytes than twice the file has. 0
 * for what is no packed file, and for one that has none of these. pBytes may be null when nSize is 0.
 */
static inline size_t EmberdeckIndexLength(const void* pBytes, size_t nSize)
{
    CEmberdeckFile file;
    CEmberdeckCheck_ check;
    memset(&file, 0, sizeof(file));
    memset(&check, 0, sizeof(check));
    check.m_pFile = &file;
    if (!EmberdeckReadHeader_(&check, pBytes, nSize) || file.m_nNumEffects > nSize / 4 ||
        file.m_nNumTypes > nSize / 4 || file.m_nCurveTableSize > nSize)
        return 0;
    return EmberdeckIndexOf_(&file);
}

/*
 * Opens the file that lies at pBytes. False: it is refused, and pError, which may be null, tells why; then
 * *pFile holds what the header says, where there was one, and nothing else may be asked of it. pIndex is
 * memory for so many elements as EmberdeckIndexLength gives, or more; it may be null when that is 0. What
 * is in it before doesn't matter.
 */
static inline bool EmberdeckOpen(CEmberdeckFile* pFile, const void* pBytes, size_t nSize,
                                 const CEffectTypeTable* pTypes, uint32_t* pIndex, size_t nIndexLength,
                                 CEmberdeckError* pError)
{
    CEmberdeckCheck_ check;
    bool bSound;
    memset(pFile, 0, sizeof(*pFile));
    memset(&check, 0, sizeof(check));
    check.m_pFile = pFile;
    pFile->m_pTypes = pTypes;
    bSound = EmberdeckReadHeader_(&check, pBytes, nSize) && EmberdeckCheckHeader_(&check) &&
             EmberdeckMakeIndex_(&check, pIndex, nIndexLength) && EmberdeckCheckCounts_(&check) &&
             EmberdeckCheckTexts_(&check) && EmberdeckCheckEffects_(&check) && EmberdeckCheckNames_(&check) &&
             EmberdeckCheckUnused_(&check);
    if (pError)
        *pError = check.m_Error;
    return bSound;
}

/* How many keys of that type number all effects have together, for a game that sizes its pools by it. */
static inline uint32_t EmberdeckKeyCount(const CEmberdeckFile* pFile, uint32_t nTypeID)
{
    return nTypeID < pFile->m_nNumTypes ? EmberdeckU32_(pFile, eEmberdeckSize_Header_ + 4 * nTypeID) : 0;
}

/*
 * All texts of the file, in its order: the first one for null, then the one behind the given one; null
 * behind the last. Some are there that nothing refers to: names of properties without a value, file names
 * before packing.
 */
static inline const char* EmberdeckNextText(const CEmberdeckFile* pFile, const char* pszText)
{
    const char* pTexts = (const char*)pFile->m_pBytes + pFile->m_nStringTableOffset;
    uint32_t nAt = 0;
    if (pszText)
        nAt = (uint32_t)((size_t)(pszText - pTexts) + strlen(pszText)) / 4 * 4 + 4;
    return nAt < pFile->m_nStringTableSize ? pTexts + nAt : NULL;
}

/* ---- Effects ---- */

/* By index, below m_nNumEffects; at once, however large the file. False for an index beyond. */
static inline bool EmberdeckGetEffect(const CEmberdeckFile* pFile, uint32_t nIndex, CEmberdeckEffect* pEffect)
{
    uint32_t nAt;
    memset(pEffect, 0, sizeof(*pEffect));
    if (nIndex >= pFile->m_nNumEffects)
        return false;
    nAt = pFile->m_pIndex[nIndex];
    pEffect->m_pFile = pFile;
    pEffect->m_nOffset = nAt;
    pEffect->m_pszName = EmberdeckTextAt_(pFile, EmberdeckU32_(pFile, nAt));
    pEffect->m_nPhaseLength = EmberdeckU32_(pFile, nAt + 4);
    pEffect->m_nNumKeys = EmberdeckU32_(pFile, nAt + 8);
    return true;
}

/* Whether two names mean one effect: the case of ASCII letters doesn't count. */
static inline bool EmberdeckIsSameName(const char* psz, const char* pszOther)
{
    for (;; ++psz, ++pszOther)
    {
        const int a = *psz >= 'A' && *psz <= 'Z' ? *psz - 'A' + 'a' : *psz;
        const int b = *pszOther >= 'A' && *pszOther <= 'Z' ? *pszOther - 'A' + 'a' : *pszOther;
        if (a != b)
            return false;
        if (a == 0)
            return true;
    }
}

/*
 * The first effect of that name. False for none. Compares with one name after the other: for once, not
 * each frame.
 */
static inline bool EmberdeckFindEffect(const CEmberdeckFile* pFile, const char* pszName,
                                       CEmberdeckEffect* pEffect)
{
    uint32_t i;
    for (i = 0; i < pFile->m_nNumEffects; ++i)
    {
        const uint32_t nName = EmberdeckU32_(pFile, pFile->m_nEffectNamesOffset + 4 * i);
        if (EmberdeckIsSameName(EmberdeckTextAt_(pFile, nName), pszName))
            break;
    }
    return EmberdeckGetEffect(pFile, i, pEffect);
}

/* ---- Keys ---- */

static inline bool EmberdeckReadKey_(const CEmberdeckFile* pFile, uint32_t nAt, uint32_t nKeys,
                                     CEmberdeckKey* pKey)
{
    memset(pKey, 0, sizeof(*pKey));
    if (nKeys == 0)
        return false;
    pKey->m_pFile = pFile;
    pKey->m_nOffset = nAt;
    pKey->m_pType =
        pFile->m_pTypes->m_pTypes + pFile->m_pIndex[pFile->m_nNumEffects + EmberdeckU32_(pFile, nAt)];
    pKey->m_fStart = EmberdeckF32_(pFile, nAt + 4);
    pKey->m_fEnd = EmberdeckF32_(pFile, nAt + 8);
    pKey->m_nID = EmberdeckU32_(pFile, nAt + 12);
    pKey->m_nLink = EmberdeckU32_(pFile, nAt + 16);
    pKey->m_nNumProps = EmberdeckU32_(pFile, nAt + 20);
    pKey->m_nKeysLeft = nKeys - 1;
    return true;
}

/* The effect's first key; false when it has none. Keys stand track by track, on a track by their start. */
static inline bool EmberdeckFirstKey(const CEmberdeckEffect* pEffect, CEmberdeckKey* pKey)
{
    return EmberdeckReadKey_(pEffect->m_pFile, pEffect->m_nOffset + eEmberdeckSize_Effect_,
                             pEffect->m_nNumKeys, pKey);
}

/* Goes on to the effect's next key; false behind the last. Takes a step for each property of the key. */
static inline bool EmberdeckNextKey(CEmberdeckKey* pKey)
{
    uint32_t nAt = pKey->m_nOffset + eEmberdeckSize_Key_, i;
    for (i = 0; i < pKey->m_nNumProps; ++i)
        nAt = EmberdeckU32_(pKey->m_pFile, nAt + 4);
    return EmberdeckReadKey_(pKey->m_pFile, nAt, pKey->m_nKeysLeft, pKey);
}

/*
 * The key that this one moves with: the first of its effect with the linked id. False without a link, and
 * when no key has that id. pLinked may be the key itself.
 */
static inline bool EmberdeckFindLinkedKey(const CEmberdeckEffect* pEffect, const CEmberdeckKey* pKey,
                                          CEmberdeckKey* pLinked)
{
    const uint32_t nLink = pKey->m_nLink;
    const bool bLinked = nLink != pKey->m_nID;
    bool bKey = EmberdeckFirstKey(pEffect, pLinked);
    while (bKey && bLinked && pLinked->m_nID != nLink)
        bKey = EmberdeckNextKey(pLinked);
    if (!bLinked)
        memset(pLinked, 0, sizeof(*pLinked));
    return bKey && bLinked;
}

/* ---- Properties ---- */

/* Reads the record at nAt, whose slot is pDesc or one behind it. */
static inline bool EmberdeckReadProp_(const CEmberdeckFile* pFile, const CEffectTypeDesc* pType,
                                      const CEffectPropertyDesc* pDesc, uint32_t nAt, uint32_t nProps,
                                      CEmberdeckProperty* pProp)
{
    memset(pProp, 0, sizeof(*pProp));
    if (nProps == 0)
        return false;
    pProp->m_pFile = pFile;
    pProp->m_nOffset = nAt;
    pProp->m_pType = pType;
    pProp->m_pDesc = EmberdeckSlot_(pDesc, pType->m_pProps + pType->m_nNumProps,
                                    EmberdeckTextAt_(pFile, EmberdeckU32_(pFile, nAt)));
    pProp->m_nValues = nAt + eEmberdeckSize_Prop_;
    pProp->m_nNumValues = 1;
    if (pProp->m_pDesc->m_bFunctionCurve)
    {
        const uint32_t nRecord = EmberdeckCurves_(pFile) + EmberdeckU32_(pFile, pProp->m_nValues);
        pProp->m_nCurve = nRecord - EmberdeckCurves_(pFile);
        pProp->m_nNumValues = EmberdeckU32_(pFile, nRecord);
        pProp->m_nValues = nRecord + 8; /* behind the number of points, and the first one's time */
    }
    pProp->m_nPropsLeft = nProps - 1;
    return true;
}

/* The key's first property that has a value; false when there is none. They stand in the type's order. */
static inline bool EmberdeckFirstProperty(const CEmberdeckKey* pKey, CEmberdeckProperty* pProp)
{
    return EmberdeckReadProp_(pKey->m_pFile, pKey->m_pType, pKey->m_pType->m_pProps,
                              pKey->m_nOffset + eEmberdeckSize_Key_, pKey->m_nNumProps, pProp);
}

/* Goes on to the key's next property; false behind the last. */
static inline bool EmberdeckNextProperty(CEmberdeckProperty* pProp)
{
    if (pProp->m_nPropsLeft == 0)
    {
        memset(pProp, 0, sizeof(*pProp));
        return false;
    }
    return EmberdeckReadProp_(pProp->m_pFile, pProp->m_pType, pProp->m_pDesc + 1,
                              EmberdeckU32_(pProp->m_pFile, pProp->m_nOffset + 4), pProp->m_nPropsLeft,
                              pProp);
}

/*
 * The key's property of exactly that name. False for one that the type doesn't have, or the file. Compares
 * texts: for once, when an effect is started, not for each frame. The handle is small and can be kept.
 */
static inline bool EmberdeckFindProperty(const CEmberdeckKey* pKey, const char* pszName,
                                         CEmberdeckProperty* pProp)
{
    bool bProp = EmberdeckFirstProperty(pKey, pProp);
    while (bProp && !EmberdeckIsNamed_(pProp->m_pDesc, pszName))
        bProp = EmberdeckNextProperty(pProp);
    return bProp;
}

/* ---- Values ---- */

static inline uint32_t EmberdeckStride_(const CEmberdeckProperty* pProp)
{
    return 4 + EmberdeckValueSize_(pProp->m_pDesc->m_eType);
}

/*
 * Time of a point of a curve, below m_nNumValues: the share of the key's length that has passed, 0 to 1
 * from the editor. Finite, and never below that of the point before. 0 for a constant.
 */
static inline float EmberdeckTimeAt(const CEmberdeckProperty* pProp, uint32_t nPoint)
{
    if (!pProp->m_pDesc->m_bFunctionCurve)
        return 0;
    return EmberdeckF32_(pProp->m_pFile, pProp->m_nValues + nPoint * EmberdeckStride_(pProp) - 4);
}

/* Value of a point of a curve, below m_nNumValues; of a constant that of point 0. */
static inline CEmberdeckValue EmberdeckValueAt(const CEmberdeckProperty* pProp, uint32_t nPoint)
{
    const uint32_t eType = pProp->m_pDesc->m_eType;
    const uint32_t nAt = pProp->m_nValues + nPoint * EmberdeckStride_(pProp);
    const uint32_t nWord = EmberdeckU32_(pProp->m_pFile, nAt);
    CEmberdeckValue value;
    uint32_t i;
    memset(&value, 0, sizeof(value));
    value.m_eType = eType;
    if (EmberdeckIsText_(eType))
    {
        value.m_pszText = EmberdeckTextAt_(pProp->m_pFile, nWord);
        return value;
    }
    value.m_nNumNumbers = EmberdeckValueSize_(eType) / 4;
    if (eType == (uint32_t)ePropType_Enum)
        value.m_Numbers[0] = nWord;
    else if (eType == (uint32_t)ePropType_Int)
        value.m_Numbers[0] = nWord <= INT32_MAX ? (double)nWord : (double)nWord - 4294967296.0;
    else
        for (i = 0; i < value.m_nNumNumbers; ++i)
            value.m_Numbers[i] = (double)EmberdeckF32_(pProp->m_pFile, nAt + 4 * i);
    return value;
}

/*
 * The property's value when the share fTime of its key's length has passed: (now - start) / (end - start).
 * A constant has one value throughout. Before the first point of a curve and from the last one on, their
 * values hold, also for a time that is no number. Between two, numbers, vectors and colours of a linear
 * curve (m_bInterpolate) go straight from one to the other, an Int too, which then has a fraction; so a
 * colour passes between its channels, not its hues. On a step curve the value of a point holds up to and
 * with the time of the next one; so it does for an Enum and for texts in any curve. Takes time by the
 * logarithm of the number of points.
 */
static inline CEmberdeckValue EmberdeckEvaluate(const CEmberdeckProperty* pProp, double fTime)
{
    uint32_t nBelow = 0, nAbove = pProp->m_nNumValues - 1, i;
    CEmberdeckValue value, next;
    double fFrom, fShare;
    if (nAbove == 0 || !(fTime > (double)EmberdeckTimeAt(pProp, 0)))
        return EmberdeckValueAt(pProp, 0);
    if (fTime >= (double)EmberdeckTimeAt(pProp, nAbove))
        return EmberdeckValueAt(pProp, nAbove);
    while (nAbove - nBelow > 1) /* point nBelow lies before the time, nAbove doesn't */
    {
        const uint32_t nMiddle = nBelow + (nAbove - nBelow) / 2;
        if ((double)EmberdeckTimeAt(pProp, nMiddle) < fTime)
            nBelow = nMiddle;
        else
            nAbove = nMiddle;
    }
    value = EmberdeckValueAt(pProp, nBelow);
    if (!pProp->m_pDesc->m_bInterpolate || value.m_eType == (uint32_t)ePropType_Enum)
        return value;
    next = EmberdeckValueAt(pProp, nAbove);
    fFrom = (double)EmberdeckTimeAt(pProp, nBelow);
    fShare = (fTime - fFrom) / ((double)EmberdeckTimeAt(pProp, nAbove) - fFrom);
    for (i = 0; i < value.m_nNumNumbers; ++i)
        value.m_Numbers[i] = (1 - fShare) * value.m_Numbers[i] + fShare * next.m_Numbers[i];
    return value;
}
