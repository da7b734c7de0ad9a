#include "ShellTest.h"

namespace
{

// Each character is 6 wide, 8 in bold; marks of shortcut letters don't count.
class CFixedFont : public IMenuFont
{
public:
    CMenuTextSize Measure(std::string_view sText, bool bBold) const override
    {
        const auto nMarks = std::count(sText.begin(), sText.end(), '&');
        return {static_cast<int32_t>(sText.size() - size_t(nMarks)) * (bBold ? 8 : 6), 13};
    }
};

std::vector<CPopupItem> ItemsOf(const CMenuTable& menu)
{
    std::vector<CPopupItem> items;
    for (const CMenuItem& item : menu)
        items.push_back({item.m_nID, item.GetLabel(), item.IsSeparator(), false, item.m_bDefault});
    return items;
}

std::string TextOf(const CAccelerator& accelerator)
{
    std::string sText;
    GetAcceleratorText(accelerator, sText);
    return sText;
}

} // namespace

TEST(MenuDecoration, AcceleratorTexts)
{
    EXPECT_EQ("Ctrl+Shift+Alt+Delete", TextOf({true, true, c_nKeyDelete, 1, true}));
    EXPECT_EQ("Alt+X", TextOf({false, false, 'X', 1, true}));
    EXPECT_EQ("Alt+X", TextOf({false, false, 'x', 1, true, true}));
    EXPECT_EQ("F1", TextOf({false, false, 112, 1}));
    EXPECT_EQ("F13", TextOf({false, false, 124, 1}));
    EXPECT_EQ("F24", TextOf({false, false, 135, 1}));
    EXPECT_EQ("ESC", TextOf({false, false, 27, 1}));
    EXPECT_EQ("Ctrl+Page Up", TextOf({true, false, 33, 1}));
    EXPECT_EQ("PrtScrn", TextOf({false, false, 44, 1}));
    EXPECT_EQ("Ctrl+5", TextOf({true, false, 0x65, 1})); // of the number pad
    std::string sText = "old";
    EXPECT_FALSE(GetAcceleratorText({true, false, 7, 1}, sText));
    EXPECT_EQ("", sText);
}

TEST(MenuDecoration, ACommandShowsTheFirstAcceleratorThatWasLoaded)
{
    CKRMenuDecorator decorator;
    EXPECT_FALSE(decorator.AddAccelerators(nullptr, 3));
    EXPECT_FALSE(decorator.AddAccelerators(c_FrameAccelerators, 0));
    const CAccelerator first[] = {
        {true, false, 'C', 9}, {true, false, c_nKeyInsert, 9}, {true, false, 'A', 5}};
    const CAccelerator second[] = {{false, false, c_nKeyF2, 9}, {false, false, c_nKeyF3, 7}};
    EXPECT_TRUE(decorator.AddAccelerators(first));
    EXPECT_TRUE(decorator.AddAccelerators(second));
    EXPECT_EQ("Ctrl+C", decorator.GetCommandKey(9));
    EXPECT_EQ("Ctrl+A", decorator.GetCommandKey(5));
    EXPECT_EQ("F3", decorator.GetCommandKey(7));
    EXPECT_EQ("", decorator.GetCommandKey(6));
    EXPECT_EQ("", decorator.GetCommandKey(0));
}

TEST(MenuDecoration, ItemsAreMeasuredByTheWidest)
{
    CKRMenuDecorator decorator;
    decorator.AddAccelerators(c_PanelAccelerators);
    const CFixedFont font;
    int nMenu = 0;
    EXPECT_FALSE(decorator.DecoratePopup(nullptr, {}, font));
    ASSERT_TRUE(decorator.DecoratePopup(&nMenu, ItemsOf(c_EffectPanelMenu), font));
    const CDecoratedPopup* pPopup = decorator.FindPopup(&nMenu);
    ASSERT_NE(nullptr, pPopup);
    ASSERT_EQ(12u, pPopup->m_Items.size());

    EXPECT_EQ(17 * 6 + 20, pPopup->m_nTextColumn); // "Import Effects...", wider than bold "Open Effects"
    const CKRMenuItem& open = *pPopup->m_Items[0];
    EXPECT_EQ("Open Effects", open.GetText());
    EXPECT_EQ("Enter", open.GetAccelerator());
    EXPECT_TRUE(open.IsBold());
    EXPECT_EQ(5 * 8 + 102 + 20 + 24, open.GetWidth());
    EXPECT_EQ(13 + 9, open.GetHeight());
    EXPECT_TRUE(pPopup->m_Items[1]->IsSeparator());
    EXPECT_EQ(0, pPopup->m_Items[1]->GetWidth());
    EXPECT_EQ(5, pPopup->m_Items[1]->GetHeight());
    EXPECT_EQ(9 * 6 + 24, pPopup->m_Items[2]->GetWidth()); // "New Group", without a key
    EXPECT_EQ("Ctrl+F", pPopup->m_Items[10]->GetAccelerator());
    EXPECT_EQ(open.GetWidth(), pPopup->m_nWidth);
    EXPECT_EQ(open.GetHeight(), pPopup->m_nHeight);

    // Decorated anew: what was there before is gone.
    const std::vector<CPopupItem> anew = {{0, "Toolbars\nx", false, true},
                                          {0, "&Manual\tx", false, false, false, "F1"},
                                          {c_nCmdFind, "Find", false, false, false, "F1"}};
    ASSERT_TRUE(decorator.DecoratePopup(&nMenu, anew, font));
    pPopup = decorator.FindPopup(&nMenu);
    ASSERT_EQ(3u, pPopup->m_Items.size());
    EXPECT_EQ("Toolbars", pPopup->m_Items[0]->GetText());
    EXPECT_EQ("F1", pPopup->m_Items[1]->GetAccelerator()) << "its own, where no table has one";
    EXPECT_EQ("Ctrl+F", pPopup->m_Items[2]->GetAccelerator());
    EXPECT_EQ(8 * 6 + 24 + 15, pPopup->m_Items[0]->GetWidth());
    decorator.ForgetPopup(&nMenu);
    EXPECT_EQ(nullptr, decorator.FindPopup(&nMenu));
}

TEST(MenuDecoration, IconsComeFromTheFirstToolbarThatHasThem)
{
    const CKRToolbar standard(c_StandardToolbar, {});
    CShellColors other;
    other.m_nShadow = 0x000080;
    const CKRToolbar again(c_StandardToolbar, other);
    CKRMenuDecorator decorator;
    EXPECT_TRUE(decorator.AddToolbar(&standard));
    EXPECT_TRUE(decorator.AddToolbar(&standard));
    EXPECT_TRUE(decorator.AddToolbar(&again));
    int32_t nSize = 0;
    EXPECT_EQ(standard.FindImage(c_nCmdSave, EImageKind::eDisabled),
              decorator.FindIcon(c_nCmdSave, EImageKind::eDisabled, &nSize));
    EXPECT_EQ(16, nSize);
    EXPECT_EQ(nullptr, decorator.FindIcon(c_nCmdAbout, EImageKind::eNormal));
    EXPECT_EQ(nullptr, decorator.FindIcon(0, EImageKind::eNormal)); // a gap between buttons is no image
    // Behind a gap the images still belong to their buttons.
    EXPECT_EQ(MakeImage(c_SaveIcon), *decorator.FindIcon(c_nCmdSave, EImageKind::eHot));
    EXPECT_EQ(MakeImage(c_SavePackLaunchIcon), *decorator.FindIcon(c_nCmdSavePackLaunch, EImageKind::eHot));
}

TEST(MenuDecoration, ItemsArePaintedByState)
{
    const CKRToolbar toolbar(c_StandardToolbar, {});
    CMenuItemIcons icons;
    icons.m_pNormal = toolbar.FindImage(c_nCmdSave, EImageKind::eNormal);
    icons.m_pHot = toolbar.FindImage(c_nCmdSave, EImageKind::eHot);
    CRecordingShell shell;
    shell.Know(icons.m_pNormal, "normal");
    shell.Know(icons.m_pHot, "hot");
    CShellColors colors;
    colors.m_nFace = 0xC0C0C0;
    colors.m_nShadow = 0x808080;
    colors.m_nHighlight = 0x808080;
    const CRect rc{0, 0, 200, 22};
    const CKRMenuItem save(c_nCmdSave, 0, "&Save", "Ctrl+S");
    const CCalls ground = {"fill 0,0 24x22 d8d8d8", "fill 24,0 176x22 ffffff"};
    const auto draw = [&](const CKRMenuItem& item, const CMenuItemState& state, const CMenuItemIcons& with)
    {
        item.DrawItem(shell, rc, state, with, colors);
        CCalls calls = shell.Take();
        EXPECT_TRUE(calls.size() >= 2 && CCalls(calls.begin(), calls.begin() + 2) == ground);
        return CCalls(calls.begin() + std::min<size_t>(2, calls.size()), calls.end());
    };

    EXPECT_EQ(
        (CCalls{"image 4,3 normal", "text 30,0 170x22 &Save 000000", "text 24,0 164x22 Ctrl+S 000000 right"}),
        draw(save, {}, icons));
    EXPECT_EQ(
        (CCalls{"fill 0,0 200x22 6b6b6b", "fill 1,1 198x20 cacaca", "image 5,4 flat 707070", "image 3,2 hot",
                "text 30,0 170x22 &Save 000000", "text 24,0 164x22 Ctrl+S 000000 right"}),
        draw(save, {true}, icons));
    // Disabled, with no image for that: the normal one, flat.
    EXPECT_EQ((CCalls{"image 4,3 flat 9a9a9a", "text 30,0 170x22 &Save 808080",
                      "text 24,0 164x22 Ctrl+S 808080 right"}),
              draw(save, {false, false, true}, icons));
    // Checked without an icon: box, then the seven columns of the sign.
    const CKRMenuItem bar(c_nCmdStatusBar, eMenuDefault, "Bar", "");
    CCalls checked = draw(bar, {false, true, true}, {});
    ASSERT_EQ(10u, checked.size());
    EXPECT_EQ((CCalls{"fill 2,1 20x20 6b6b6b", "fill 3,2 18x18 e3e3e3", "fill 8,9 1x3 606060"}),
              CCalls(checked.begin(), checked.begin() + 3));
    EXPECT_EQ("text 30,0 170x22 Bar 808080 bold", checked.back());

    const CKRMenuItem line(0, eMenuSeparator, "", "");
    EXPECT_EQ((CCalls{"fill 30,11 170x1 9a9a9a"}), draw(line, {true}, {}));
}

TEST(MenuDecoration, ADarkPaletteKeepsLightTextOnDarkGround)
{
    CShellColors colors;
    colors.m_bDark = true;
    colors.m_nFace = 0x404040;
    colors.m_nHighlight = 0x808080;
    colors.m_nMenu = 0x202020;
    colors.m_nMenuText = 0xE0E0E0;
    EXPECT_LT(Luminance(colors.BarGround()), Luminance(colors.m_nFace));
    EXPECT_GT(Luminance(colors.Line()), Luminance(colors.m_nFace));
    for (CColorRef nFill : {colors.SelectedFill(), colors.CheckedFill(), colors.DisabledFill()})
        EXPECT_GT(Luminance(colors.m_nMenuText) - Luminance(nFill), 120);
    EXPECT_LT(Luminance(colors.CheckedFill()), Luminance(colors.SelectedFill())) << "nearer to the ground";

    // What is disabled doesn't outshine what isn't.
    CKRToolbarImages images;
    ASSERT_TRUE(images.BuildImages({CPixelImage{1, {c_nOpaque | 0xFFFFFF}}}, colors));
    EXPECT_LT(Luminance(images.GetImage(0, EImageKind::eDisabled)->m_Pixels[0] & 0xFFFFFF), 200);
}
