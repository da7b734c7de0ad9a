#pragma once

#include "qsvector.h"

#include <cmath>

constexpr double c_fPi = 3.14159265358979323846;

constexpr CVector3 operator+(const CVector3& a, const CVector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr CVector3 operator-(const CVector3& a, const CVector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr CVector3 operator*(const CVector3& v, float f)
{
    return {v.x * f, v.y * f, v.z * f};
}

// Length of a vector, in double, so that no component that a float holds overflows.
inline double QSLength(const CVector3& v)
{
    return std::sqrt(double(v.x) * v.x + double(v.y) * v.y + double(v.z) * v.z);
}
