#include <gtest/gtest.h>

#include "app/resources/Bars.h"
#include "app/resources/DialogIcons.h"
#include "app/resources/TreeIcons.h"
#include "qt/toolkit/IconPainter.h"

namespace
{

std::vector<const CIconArt*> AllArt()
{
    std::vector<const CIconArt*> all = {&c_FolderClosedIcon, &c_FolderOpenIcon, &c_EffectIcon,
                                        &c_PrefabIcon,       &c_CopyIcon,       &c_PasteIcon};
    for (const CToolbarTable* pBar : {&c_StandardToolbar, &c_SourceControlToolbar})
        for (const CToolbarButton& button : *pBar)
            if (!button.IsGap())
                all.push_back(button.m_pIcon);
    return all;
}

double Covered(const CPixelImage& image, int32_t x, int32_t y)
{
    return (image.m_Pixels[size_t(y * image.GetGrid() + x)] >> 24) / 255.0;
}

} // namespace

// The shapes show what the pixels show: drawn at twice the size and taken together again they cover the same places in
// about the same colours.
TEST(Icons, ShapesAreThePixelsDrawnFiner)
{
    int nIcon = 0;
    for (const CIconArt* pArt : AllArt())
    {
        const CPixelImage own = PaintIcon(*pArt, 16), fine = PaintIcon(*pArt, 32);
        EXPECT_EQ(MakeImage(*pArt), own);
        ASSERT_EQ(32, fine.GetGrid());
        ASSERT_EQ(16, fine.m_nSize);
        double fOff = 0.0, fSolid = 0.0;
        for (int32_t y = 0; y < 16; ++y)
            for (int32_t x = 0; x < 16; ++x)
            {
                const double fCovered =
                    (Covered(fine, 2 * x, 2 * y) + Covered(fine, 2 * x + 1, 2 * y) +
                     Covered(fine, 2 * x, 2 * y + 1) + Covered(fine, 2 * x + 1, 2 * y + 1)) /
                    4.0;
                fOff += std::abs(fCovered - Covered(own, x, y));
                fSolid += Covered(own, x, y);
            }
        EXPECT_LT(fOff, fSolid * 0.18) << "icon " << nIcon << ": " << fOff << " of " << fSolid;
        ++nIcon;
    }
}

// Sheets of paper are level and upright lines alone: at no size may one of them be half a pixel.
TEST(Icons, EdgesLieOnWholePixels)
{
    for (const int32_t nGrid : {20, 24, 28, 32, 40, 48, 64})
    {
        const CPixelImage image = PaintIcon(c_CopyIcon, nGrid);
        int nSoft = 0;
        for (const uint32_t nPixel : image.m_Pixels)
            nSoft += nPixel >> 24 != 0 && nPixel >> 24 != 255;
        EXPECT_EQ(0, nSoft) << nGrid;
    }
}
