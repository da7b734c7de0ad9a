#pragma once

// Plain vectors of 32-bit floats, laid out as files and the plug-in contract hold them.

struct CVector2
{
    float x = 0.0f;
    float y = 0.0f;

    bool operator==(const CVector2&) const = default;
};

struct CVector3
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;

    bool operator==(const CVector3&) const = default;
};

struct CVector4
{
    float x = 0.0f;
    float y = 0.0f;
    float z = 0.0f;
    float w = 0.0f;

    bool operator==(const CVector4&) const = default;
};

static_assert(sizeof(CVector2) == 8 && sizeof(CVector3) == 12 && sizeof(CVector4) == 16);
