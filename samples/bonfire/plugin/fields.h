// SPDX-License-Identifier: 0BSD
#pragma once

/*
 * How Fireglass writes its tables down. A CField is a CEffectPropertyDesc whose default is a union, so that
 * every kind of default can stand in static data; the layouts are checked to be the same.
 */

#include "effecttypes.h"

typedef struct CField
{
    char m_szName[EMBERDECK_NAME_SIZE];
    char m_szData[EMBERDECK_TEXT_SIZE];
    char m_szHelp[EMBERDECK_TEXT_SIZE];
    uint32_t m_eType;
    uint8_t m_bFunctionCurve;
    uint8_t m_bInterpolate;
    uint8_t m_Padding[2];
    union
    {
        char m_szText[EMBERDECK_PAYLOAD_SIZE];
        int32_t m_nInt;
        float m_fFloat;
        uint32_t m_nColor; /* 0xAARRGGBB */
        float m_Vector[3];
    } m_Default;
} CField;

_Static_assert(sizeof(CField) == sizeof(CEffectPropertyDesc), "same width");
_Static_assert(offsetof(CField, m_szData) == offsetof(CEffectPropertyDesc, m_szData), "same place");
_Static_assert(offsetof(CField, m_szHelp) == offsetof(CEffectPropertyDesc, m_szHelp), "same place");
_Static_assert(offsetof(CField, m_eType) == offsetof(CEffectPropertyDesc, m_eType), "same place");
_Static_assert(offsetof(CField, m_bFunctionCurve) == offsetof(CEffectPropertyDesc, m_bFunctionCurve),
               "same place");
_Static_assert(offsetof(CField, m_bInterpolate) == offsetof(CEffectPropertyDesc, m_bInterpolate),
               "same place");
_Static_assert(offsetof(CField, m_Default) == offsetof(CEffectPropertyDesc, m_Default), "same place");

/* The form of a property: m_bFunctionCurve and m_bInterpolate. */
#define CONSTANT 0, 0
#define STEP 1, 0
#define LINEAR 1, 1

/* FIELD takes a form, which is two values, so everything goes through one more macro. */
#define FIELD_(kind, name, data, help, curve, interpolate, ...)                                              \
    {                                                                                                        \
        name, data, help, kind, curve, interpolate, {0, 0},                                                  \
        {                                                                                                    \
            __VA_ARGS__                                                                                      \
        }                                                                                                    \
    }
#define FIELD(...) FIELD_(__VA_ARGS__)

#define STRING(name, form, def, help) FIELD(ePropType_String, name, "", help, form, .m_szText = def)
#define FILENAME(name, filter, def, help)                                                                    \
    FIELD(ePropType_Filename, name, filter, help, CONSTANT, .m_szText = def)
#define ENUM(name, form, list, def, help) FIELD(ePropType_Enum, name, list, help, form, .m_szText = def)
#define INT(name, form, range, def, help) FIELD(ePropType_Int, name, range, help, form, .m_nInt = def)
#define FLOAT(name, form, range, def, help) FIELD(ePropType_Float, name, range, help, form, .m_fFloat = def)
#define COLOR(name, form, def, help) FIELD(ePropType_Color, name, "", help, form, .m_nColor = def)
#define VECTOR(name, form, range, x, y, z, help)                                                             \
    FIELD(ePropType_Vector, name, range, help, form, .m_Vector = {x, y, z})
#define ANIMATION(name, form, def, help) FIELD(ePropType_Animation, name, "", help, form, .m_szText = def)
#define EFFECT(name, form, def, help) FIELD(ePropType_FireglassRef, name, "", help, form, .m_szText = def)

/* Rows that hold no value: a line of text, and a place kept free for a property to come. */
#define LINE(text) FIELD(ePropType_UI, "UIType_TextLine", text, "", CONSTANT, .m_nInt = 0)
#define SPARE(name, help) FIELD(ePropType_None, name, "", help, CONSTANT, .m_nInt = 0)

#define COUNT(array) (sizeof(array) / sizeof((array)[0]))
#define TYPE(name, id, fields)                                                                               \
    {                                                                                                        \
        name, id, COUNT(fields), (const CEffectPropertyDesc*)(fields)                                        \
    }
