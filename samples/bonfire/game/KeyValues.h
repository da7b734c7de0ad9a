// SPDX-License-Identifier: 0BSD
#pragma once

#include <string_view>

#include "game/Playback.h"

// A place or a direction: x to the right, y up, z away from the eye, in metres.
struct CPoint
{
    double x = 0, y = 0, z = 0;
};
inline CPoint operator+(const CPoint& a, const CPoint& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline CPoint operator*(const CPoint& a, double f)
{
    return {a.x * f, a.y * f, a.z * f};
}

// 0 to 1 each.
struct CTint
{
    double r = 1, g = 1, b = 1, a = 1;
};

// A key's values at one moment, by the names of its properties. A packed file may hold any bits where a number
// is due: what comes out is finite and within the limits, so that nobody behind has to ask. A property that the
// type doesn't have gives the default.
class CKeyValues
{
public:
    // fShare is the share of the key's length that has passed; taken into 0 to 1.
    CKeyValues(const CKey& key, double fShare);

    double Number(std::string_view sName, double fDefault, double fMin, double fMax) const;
    CPoint Point(std::string_view sName, const CPoint& def) const; // within 10,000 m
    CTint Tint(std::string_view sName) const;                      // white without one
    std::string_view Text(std::string_view sName) const;
    std::string_view Enumerator(std::string_view sName) const;

private:
    const CProperty* Find(std::string_view sName) const;

    const CKey& m_Key;
    double m_fShare;
};

// Time that has passed since the start of a key as a share of its length.
double ShareOf(const CKey& key, double fSeconds);
