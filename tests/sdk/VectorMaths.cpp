#include "qsmath.h"
#include "sdk/AssertCatcher.h"

#include <cmath>

namespace
{

void ExpectNear(const CVector3& vWanted, const CVector3& v)
{
    EXPECT_NEAR(vWanted.x, v.x, 1e-6);
    EXPECT_NEAR(vWanted.y, v.y, 1e-6);
    EXPECT_NEAR(vWanted.z, v.z, 1e-6);
}

} // namespace

TEST(VectorMaths, OnlyTheLengthZeroHasNoDirection)
{
    CAssertCatcher catcher;
    for (const CVector3& v : {CVector3{0, 3, -4}, CVector3{0, 3e38f, -2e38f}, CVector3{0, 3e-44f, -4e-44f}})
    {
        TVector3 vUnit = v;
        vUnit.Normalize();
        EXPECT_NEAR(1.0, QSLength(vUnit), 1e-6) << v.y;
        EXPECT_GT(vUnit.y, 0.0f);
    }
    TVector3 vInfinite(INFINITY, 1, 0);
    vInfinite.Normalize();
    EXPECT_EQ(1.0f, vInfinite.y);
    EXPECT_EQ(3.0, QSSqrt(9.0));
    EXPECT_EQ(0.0, QSSqrt(0.0));
    EXPECT_EQ(0u, catcher.GetCount());

    TVector3 vNone;
    vNone.Normalize();
    EXPECT_EQ(CVector3{}, vNone);
    EXPECT_EQ("Mag > 0|Warning: Attempting to normalize a vector with very small magnitude", catcher.Take());
    EXPECT_EQ(0.0, QSSqrt(-1.0));
    EXPECT_EQ("fVal >= 0.0f|Invalid input to square root", catcher.Take());
}

TEST(VectorMaths, RotationsTurnAboutTheirAxis)
{
    const double fQuarter = c_fPi / 2;
    ExpectNear({0, 0, 1}, MakeRotationMatrix({1, 0, 0}, fQuarter) * CVector3{0, 1, 0});
    ExpectNear({1, 0, 0}, MakeRotationMatrix({0, 1, 0}, fQuarter) * CVector3{0, 0, 1});
    ExpectNear({0, 1, 0}, MakeRotationMatrix({0, 0, 1}, fQuarter) * CVector3{1, 0, 0});
    // A third of a turn about the diagonal hands each component on.
    const auto f = static_cast<float>(1.0 / std::sqrt(3.0));
    const CMatrix4 third = MakeRotationMatrix({f, f, f}, 2 * c_fPi / 3);
    ExpectNear({3, 1, 2}, third * CVector3{1, 2, 3});
    EXPECT_EQ(1.0f, third.m_aRows[3][3]);
    EXPECT_EQ(0.0f, third.m_aRows[0][3]);
    // What stands on the axis stays to the last bit.
    const CVector3 vUp{0, 1, 0};
    EXPECT_EQ(vUp, MakeRotationMatrix(vUp, 2.5) * vUp);
}
