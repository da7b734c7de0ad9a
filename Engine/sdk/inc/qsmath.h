#pragma once

#include "qsvector.h"

// The engine's maths on vectors. All of it computes in double, so that no component that a float holds
// overflows or vanishes on the way.

constexpr double c_fPi = 3.14159265358979323846;

constexpr CVector3 operator*(const CVector3& v, float f)
{
    return {v.x * f, v.y * f, v.z * f};
}

// The square root. A number below 0 is reported, and gives 0.
double QSSqrt(double fVal);

double QSLength(const CVector3& v);

// A vector to compute with; the plain one is what files hold.
struct TVector3 : CVector3
{
    constexpr TVector3() = default;
    constexpr TVector3(const CVector3& v) : CVector3(v) {}
    constexpr TVector3(float fX, float fY, float fZ) : CVector3{fX, fY, fZ} {}

    // Brings it to length 1. However short it is it has a direction, but for the length 0, which is
    // reported; that one, and one without a finite length, stays as it is.
    void Normalize();
};

// Four rows of four, the identity at first. A vector is a column to its right.
struct CMatrix4
{
    float m_aRows[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

// Turns by an angle in radians about an axis of length 1: a quarter about X takes Y to Z, about Y Z to X, about
// Z X to Y.
CMatrix4 MakeRotationMatrix(const CVector3& vAxis, double fAngle);

// The matrix times a direction: its last row and column take no part.
TVector3 operator*(const CMatrix4& matrix, const CVector3& vDirection);
