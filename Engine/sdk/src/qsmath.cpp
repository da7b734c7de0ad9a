#include "qsmath.h"

#include <cmath>

#include "qsassert.h"

double QSSqrt(double fVal)
{
    // What is no number isn't below 0 either, and stays what it is.
    QS_ASSERT_TEXT(!(fVal < 0.0), "fVal >= 0.0f", "Invalid input to square root");
    return fVal < 0.0 ? 0.0 : std::sqrt(fVal);
}

double QSLength(const CVector3& v)
{
    return QSSqrt(double(v.x) * v.x + double(v.y) * v.y + double(v.z) * v.z);
}

void TVector3::Normalize()
{
    const double fMag = QSLength(*this);
    QS_ASSERT_TEXT(fMag > 0.0, "Mag > 0",
                   "Warning: Attempting to normalize a vector with very small magnitude");
    if (!(fMag > 0.0) || !std::isfinite(fMag))
        return;
    const double fScale = 1.0 / fMag;
    x = static_cast<float>(x * fScale);
    y = static_cast<float>(y * fScale);
    z = static_cast<float>(z * fScale);
}

CMatrix4 MakeRotationMatrix(const CVector3& vAxis, double fAngle)
{
    const double x = vAxis.x;
    const double y = vAxis.y;
    const double z = vAxis.z;
    const double c = std::cos(fAngle);
    const double s = std::sin(fAngle);
    const double t = 1.0 - c;
    const double aTurn[3][3] = {{t * x * x + c, t * x * y - s * z, t * x * z + s * y},
                                {t * x * y + s * z, t * y * y + c, t * y * z - s * x},
                                {t * x * z - s * y, t * y * z + s * x, t * z * z + c}};
    CMatrix4 matrix;
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
            matrix.m_aRows[i][j] = static_cast<float>(aTurn[i][j]);
    }
    return matrix;
}

TVector3 operator*(const CMatrix4& matrix, const CVector3& v)
{
    const auto row = [&](const float(&a)[4])
    { return float(double(a[0]) * v.x + double(a[1]) * v.y + double(a[2]) * v.z); };
    return TVector3(row(matrix.m_aRows[0]), row(matrix.m_aRows[1]), row(matrix.m_aRows[2]));
}
