#include "ShellTest.h"

TEST(ToolbarLook, ColourOperations)
{
    EXPECT_EQ(0xFFFFFFu, Lighten(0x336699, 255));
    EXPECT_EQ(0x336699u, Lighten(0x336699, 0));
    EXPECT_EQ(MakeColorRef(100 + 155 * 100 / 255, 0 + 100, 255), Lighten(MakeColorRef(100, 0, 255), 100));
    EXPECT_EQ(MakeColorRef(146, 76, 255), Lighten(MakeColorRef(100, 0, 255), 0.3)); // 146.5, 76.5
    for (double fNone : {0.0, -0.1, 1.01})
        EXPECT_EQ(0x336699u, Lighten(0x336699, fNone));
    EXPECT_EQ(0xFFFFFFu, Lighten(0x336699, 1.0));
    EXPECT_EQ(MakeColorRef(200 * 215 / 255, 0, 215), Darken(MakeColorRef(200, 0, 255), 40));
    for (uint32_t n = 0; n < 256; ++n)
        EXPECT_EQ(int(n), Luminance(MakeColorRef(n, n, n))); // a grey is its own luminance
    EXPECT_EQ((30 * 10 + 59 * 20 + 11 * 30) / 100, Luminance(MakeColorRef(10, 20, 30)));
}

TEST(ToolbarLook, ImagesAreMadeFromTheTrueOnes)
{
    CPixelImage source{2, {0, c_nOpaque, c_nOpaque | 0xFFFFFF, c_nOpaque | MakeColorRef(100, 150, 200)}};
    const CColorRef nShadow = MakeColorRef(160, 0, 255);
    CShellColors colors;
    colors.m_nShadow = nShadow;
    CKRToolbarImages images;
    EXPECT_FALSE(images.BuildImages({}, colors));
    EXPECT_EQ(nullptr, images.GetImage(0, EImageKind::eNormal));
    ASSERT_TRUE(images.BuildImages({source, source}, colors));
    EXPECT_EQ(source, *images.GetImage(1, EImageKind::eHot));
    EXPECT_EQ(nullptr, images.GetImage(2, EImageKind::eHot));
    EXPECT_EQ(nullptr, images.GetImage(-1, EImageKind::eHot));

    using CPixels = std::vector<uint32_t>;
    EXPECT_EQ(
        (CPixels{0, c_nOpaque | 0x4C4C4C, c_nOpaque | 0xFFFFFF, c_nOpaque | MakeColorRef(146, 181, 216)}),
        images.GetImage(0, EImageKind::eNormal)->m_Pixels);
    const uint32_t L = (30 * 100 + 59 * 150 + 11 * 200) / 100;
    EXPECT_EQ((CPixels{0, c_nOpaque | nShadow, c_nOpaque | 0xFFFFFF,
                       c_nOpaque | MakeColorRef(160 + 95 * L / 255, L, 255)}),
              images.GetImage(0, EImageKind::eDisabled)->m_Pixels);
}

TEST(ToolbarLook, ButtonsArePaintedByStateInOrderOfPrecedence)
{
    CShellColors colors;
    colors.m_nHighlight = 0x808080;
    colors.m_nShadow = 0x808080;
    const CKRToolbar bar(c_StandardToolbar, colors);
    CRecordingShell shell;
    shell.Know(bar.FindImage(c_nCmdSave, EImageKind::eNormal), "normal");
    shell.Know(bar.FindImage(c_nCmdSave, EImageKind::eHot), "hot");
    shell.Know(bar.FindImage(c_nCmdSave, EImageKind::eDisabled), "disabled");
    const auto draw = [&](const CToolItemState& state)
    {
        bar.DrawItem(shell, CRect{10, 0, 34, 22}, c_nCmdSave, state);
        return shell.Take();
    };
    const CCalls hot = {"fill 10,0 24x22 6b6b6b", "fill 11,1 22x20 cacaca", "image 15,4 flat 707070",
                        "image 13,2 hot"};
    EXPECT_EQ((CCalls{"image 14,3 normal"}), draw({}));
    EXPECT_EQ((CCalls{"image 14,3 disabled"}), draw({true, true, true}));
    EXPECT_EQ(hot, draw({false, false, true}));
    for (const bool bHot : {false, true})
        EXPECT_EQ((CCalls{"fill 10,0 24x22 6b6b6b", "fill 11,1 22x20 cacaca", "image 14,3 normal"}),
                  draw({false, true, bHot}));
}

TEST(ToolbarLook, TheGripperStandsAcrossTheShortSide)
{
    const CRect bar{0, 0, 300, 26};
    EXPECT_EQ((CRect{4, 4, 7, 22}), CKRToolbar::GetGripperRect(bar, EBarSide::eTop));
    EXPECT_EQ((CRect{4, 4, 22, 7}), CKRToolbar::GetGripperRect(CRect{0, 0, 26, 300}, EBarSide::eLeft));
    EXPECT_TRUE(CKRToolbar::GetGripperRect(bar, EBarSide::eFloating).IsEmpty());
    // Grown by 4 and 6, and moved 3 to the left.
    EXPECT_EQ((CRect{-3, -2, 8, 28}), CKRToolbar::GetGripperZone(bar, EBarSide::eBottom));
    EXPECT_TRUE(CKRToolbar::GetGripperZone(bar, EBarSide::eFloating).IsEmpty());

    CRecordingShell shell;
    const CKRToolbar toolbar(c_SourceControlToolbar, {});
    toolbar.DrawGripper(shell, CRect{0, 0, 300, 12}, EBarSide::eTop);
    EXPECT_EQ(
        (CCalls{"fill 4,4 1x1 b3b3b3", "fill 6,4 1x1 b3b3b3", "fill 4,6 1x1 b3b3b3", "fill 6,6 1x1 b3b3b3"}),
        shell.Take());
    toolbar.DrawGripper(shell, bar, EBarSide::eFloating);
    EXPECT_EQ(CCalls{}, shell.Take());
    toolbar.DrawGround(shell, bar); // face f0f0f0
    EXPECT_EQ(CCalls{"fill 0,0 300x26 f5f5f5"}, shell.Take());
}
