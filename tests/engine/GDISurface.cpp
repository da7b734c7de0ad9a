#include "shared/engine/GDISurface.h"

TEST(GDISurface, PadsItsRowsAndRefusesWhatItCannotHold)
{
    CGDISurface surface;
    const uint32_t pitches[][2] = {{16, 8}, {24, 12}, {32, 12}};
    for (const auto& c : pitches)
    {
        EXPECT_TRUE(surface.Create(3, 2, c[0]));
        EXPECT_EQ(c[1], surface.GetPitch());
        EXPECT_EQ(surface.GetBits() + c[1], surface.Row(0)); // the bottom row comes first
        EXPECT_EQ(surface.GetBits(), surface.Row(1));
        EXPECT_EQ(nullptr, surface.Row(2));
    }
    EXPECT_FALSE(surface.Create(3, 2, 8));
    EXPECT_TRUE(surface.IsEmpty());
    EXPECT_EQ(nullptr, surface.GetBits());
    EXPECT_EQ(nullptr, surface.Row(0));
    for (const int32_t n : {0, -1, INT32_MIN, INT32_MAX, 65536})
    {
        EXPECT_FALSE(surface.Create(n, 1, 32)) << n;
        EXPECT_FALSE(surface.Create(1, n, 32)) << n;
    }
    EXPECT_FALSE(surface.Create(32767, 32767, 32));
}

TEST(GDISurface, DrawsInsideItsBoundsAlone)
{
    const CColorRef nColor = MakeColorRef(0xFF, 0x80, 0x08);
    for (const uint32_t nDepth : {16u, 24u, 32u})
    {
        CGDISurface surface;
        ASSERT_TRUE(surface.Create(5, 4, nDepth));
        surface.FillRect(CRect{INT32_MIN, 1, 2, INT32_MAX}, nColor);
        surface.FillRect(CRect{3, 3, 2, 1}, nColor);
        surface.SetPixel(4, 0, nColor);
        surface.SetPixel(5, 0, nColor);
        surface.SetPixel(INT32_MAX, INT32_MIN, nColor);
        std::string sImage;
        for (int32_t y = 0; y < 4; ++y)
        {
            for (int32_t x = 0; x < 5; ++x)
                sImage += surface.GetPixel(x, y) ? 'x' : '.';
        }
        EXPECT_EQ("....xxx...xx...xx...", sImage) << nDepth;
        EXPECT_EQ(nDepth == 16 ? MakeColorRef(0xFF, 0x84, 0x08) : nColor, surface.GetPixel(0, 1));
        EXPECT_EQ(0u, surface.GetPixel(-1, 1));
    }
    CGDISurface surface;
    ASSERT_TRUE(surface.Create(1, 1, 32));
    surface.SetPixel(0, 0, nColor);
    EXPECT_EQ(std::string("\x08\x80\xFF\0", 4),
              std::string(reinterpret_cast<const char*>(surface.Row(0)), 4));
}
