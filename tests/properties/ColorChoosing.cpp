#include <map>

#include "properties/PropertyBench.h"

namespace
{

using Lines = std::vector<std::string>;

struct CColorBench : CPropertyBench
{
    explicit CColorBench(uint32_t nColor = 0x00402010, uint32_t nFlags = 0x103)
        : dlg(services, nColor, nFlags)
    {
        dlg.OnInitDialog(203, 69);
    }
    std::string Boxes() const
    {
        std::string sText;
        for (uint32_t nID = eColor_HueBox; nID <= eColor_BlueBox; ++nID)
            sText += dlg.GetText(nID) + " ";
        return sText + "a" + dlg.GetText(eColor_AlphaBox);
    }
    CKRColorDialog dlg;
};

} // namespace

TEST(ColorChoosing, ChannelsAreTheTruth)
{
    CColorChooser chooser;
    for (uint32_t n = 0; n < 0x1000000; n += 977) // all sorts of colours
    {
        chooser.SetRgb(n);
        ASSERT_EQ(n, chooser.GetRgb());
        // What the numbers make of it is near.
        const CColorRef nBack = HslToRgb(chooser.GetHsl());
        for (int nShift = 0; nShift < 24; nShift += 8)
            ASSERT_LE(std::abs(int(nBack >> nShift & 0xFF) - int(n >> nShift & 0xFF)), 4) << std::hex << n;
    }
    EXPECT_EQ((CHsl{120, 255, 128}), RgbToHsl(MakeColorRef(0, 255, 0), CHsl{}));
    EXPECT_EQ((CHsl{300, 255, 128}), RgbToHsl(MakeColorRef(255, 0, 255), CHsl{}));
    EXPECT_EQ(MakeColorRef(0, 0, 255), HslToRgb(CHsl{240, 255, 128}) & 0xFF0000);
    EXPECT_EQ((CHsl{77, 0, 90}), RgbToHsl(MakeColorRef(90, 90, 90), CHsl{77, 12, 1})); // a grey has no hue
    EXPECT_EQ((CHsl{77, 12, 0}), RgbToHsl(0, CHsl{77, 12, 1}));
    struct CCase
    {
        CHsl m_Hsl;
        int r, g, b;
    };
    for (const CCase& c : {CCase{{0, 255, 128}, 255, 1, 1}, CCase{{30, 255, 128}, 255, 128, 1},
                           CCase{{60, 128, 64}, 96, 96, 32}, CCase{{200, 100, 200}, 178, 207, 222},
                           CCase{{359, 255, 51}, 102, 0, 2}, CCase{{240, 255, 255}, 255, 255, 255},
                           CCase{{100, 0, 77}, 77, 77, 77}})
        EXPECT_EQ(MakeColorRef(uint32_t(c.r), uint32_t(c.g), uint32_t(c.b)), HslToRgb(c.m_Hsl))
            << c.m_Hsl.m_nHue;
    for (const CCase& c : {CCase{{11, 255, 129}, 255, 48, 3}, CCase{{210, 128, 96}, 48, 96, 144},
                           CCase{{180, 23, 244}, 243, 245, 245}})
        EXPECT_EQ(c.m_Hsl, RgbToHsl(MakeColorRef(uint32_t(c.r), uint32_t(c.g), uint32_t(c.b)), CHsl{}))
            << c.r;

    // The square at medium luminance, hue across and saturation up; the bar of the present hue.
    CGDISurface square, bar;
    square.Create(5, 3, 32);
    CColorChooser::PaintSquare(square);
    bar.Create(2, 3, 32);
    chooser.SetHsl(CHsl{400, 300, -1}); // limited
    EXPECT_EQ((CHsl{359, 255, 0}), chooser.GetHsl());
    chooser.SetHsl(CHsl{120, 255, 7});
    chooser.PaintBar(bar);
    std::string sPixels;
    const auto add = [&sPixels](const CGDISurface& surface, int x, int y)
    {
        char szPixel[16];
        std::snprintf(szPixel, sizeof(szPixel), "%06X ", surface.GetPixel(x, y) & 0xFFFFFF);
        sPixels += szPixel;
    };
    for (int x = 0; x < 5; ++x)
        add(square, x, 0);
    add(square, 0, 1);
    add(square, 3, 2);
    for (int y = 0; y < 3; ++y)
        add(bar, 1, y);
    EXPECT_EQ("0101FF 01FF80 FFFF01 FF017C 0501FF 4040C0 808080 FFFFFF 01FF01 000000 ", sPixels);
}

TEST(ColorChoosing, AllFourWidgetsFeedOneColor)
{
    CColorBench bench(MakeColorRef(255, 0, 0));
    EXPECT_EQ("0 255 128 255 0 0 a0", bench.Boxes());
    const CRect rc{0, 0, 360, 256};
    bench.dlg.OnBar(rc, CPoint{5, 900}); // black, which remembers what it was
    EXPECT_EQ("0 255 0 0 0 0 a0", bench.Boxes());
    bench.dlg.OnBar(rc, CPoint{5, 127});
    EXPECT_EQ("0 255 128 255 1 1 a0", bench.Boxes());
    bench.dlg.OnSquare(rc, CPoint{120, -50});
    EXPECT_EQ("120 255 128 1 255 1 a0", bench.Boxes());
    EXPECT_EQ((CPoint{120, 0}), bench.dlg.GetChooser().GetSquareMark(rc));
    EXPECT_EQ(127, bench.dlg.GetChooser().GetBarMark(rc));

    const CRect rcBasic{0, 0, 160, 120};
    bench.dlg.OnBasicPress(rcBasic, CPoint{0, 0}); // between the cells
    EXPECT_EQ("120 255 128 1 255 1 a0", bench.Boxes());
    bench.dlg.OnBasicPress(rcBasic, CPoint{10, 10});
    EXPECT_EQ(0xFFFFFFu, bench.dlg.GetChooser().GetRgb());
    bench.dlg.OnBasicKey(EPaletteKey::eUp);
    bench.dlg.OnBasicKey(EPaletteKey::eLeft);
    for (int i = 0; i < 9; ++i)
        bench.dlg.OnBasicKey(EPaletteKey::eDown);
    EXPECT_EQ(40, bench.dlg.GetChooser().GetBasicFocus());
    EXPECT_EQ(0xFFFFFFu, bench.dlg.GetChooser().GetRgb());
    bench.dlg.OnBasicKey(EPaletteKey::eSpace);
    EXPECT_EQ(0u, bench.dlg.GetChooser().GetRgb());
    std::string sWay;
    for (EPaletteKey eKey : {EPaletteKey::eRight, EPaletteKey::eRight, EPaletteKey::eUp, EPaletteKey::eLeft})
    {
        bench.dlg.OnBasicKey(eKey);
        sWay += std::to_string(bench.dlg.GetChooser().GetBasicFocus()) + " ";
    }
    EXPECT_EQ("41 42 34 33 ", sWay);
    std::set<CColorRef> different;
    for (int i = 0; i < CColorChooser::c_nBasicColors; ++i)
        different.insert(CColorChooser::GetBasicColor(i));
    EXPECT_EQ(48u, different.size());
}

TEST(ColorChoosing, BoxesKeepToTheirRanges)
{
    CColorBench bench(0);
    bench.dlg.OnText(eColor_GreenBox, "300");
    EXPECT_EQ("255", bench.dlg.GetText(eColor_GreenBox));
    bench.dlg.OnText(eColor_HueBox, "400");
    EXPECT_EQ("359", bench.dlg.GetText(eColor_HueBox));
    bench.dlg.OnText(eColor_GreenBox, "007");
    EXPECT_EQ("007", bench.dlg.GetText(eColor_GreenBox)); // not put in order while it is typed
    bench.dlg.OnText(eColor_SatBox, "999");
    bench.dlg.OnText(eColor_LumBox, "128");
    bench.dlg.OnText(eColor_HueBox, "120");
    EXPECT_EQ("120 255 128 1 255 1 a0", bench.Boxes());
    bench.dlg.OnText(eColor_SatBox, "0");
    EXPECT_EQ("120 0 128 128 128 128 a0", bench.Boxes());
    bench.dlg.OnText(eColor_LumBox, "51");
    bench.dlg.OnText(eColor_BlueBox, "52");
    EXPECT_EQ("240 2 52 51 51 52 a0", bench.Boxes());
    bench.dlg.OnText(eColor_BlueBox, "");
    bench.dlg.OnText(eColor_GreenBox, "007");
    bench.dlg.OnText(eColor_RedBox, "");
    EXPECT_EQ("", bench.dlg.GetText(eColor_RedBox));
    bench.dlg.OnText(eColor_AlphaBox, "-5x");
    EXPECT_EQ("5", bench.dlg.GetText(eColor_AlphaBox));
    bench.dlg.OnText(eColor_AlphaBox, "3000");
    bench.dlg.OnFocusLost(eColor_AlphaBox);
    EXPECT_EQ("255", bench.dlg.GetText(eColor_AlphaBox));
    bench.dlg.OnOK();
    EXPECT_EQ(0xFF000700u | bench.dlg.GetChooser().GetRgb(), bench.dlg.m_nResultColor);

    EXPECT_EQ(0x80030201u, CColorBench(0x80030201).dlg.m_nResultColor);
    CColorBench opaque(0x00030201, 0x80000103);
    EXPECT_EQ("255", opaque.dlg.GetText(eColor_AlphaBox));
}

TEST(ColorChoosing, ThePaletteTellsInOrder)
{
    struct CParent : IPaletteParent
    {
        void OnPaletteFocus() override { calls.push_back("focus"); }
        void OnColorChosen(uint32_t nColor) override { calls.push_back("color " + std::to_string(nColor)); }
        void OnCellSelected(int n) override { calls.push_back("selected " + std::to_string(n)); }
        void OnCellFocused(int n) override { calls.push_back("focused " + std::to_string(n)); }
        void OnCellCleared(int n) override { calls.push_back("cleared " + std::to_string(n)); }
        void RepaintPalette() override { calls.push_back("paint"); }
        Lines Take() { return std::exchange(calls, Lines()); }
        Lines calls;
    } parent;
    CCustomColorPalette palette(parent);
    palette.SetCurrentColor(5);
    EXPECT_EQ((CRect{178, 47, 198, 64}), CCustomColorPalette::GetCellRect(23));
    parent.Take();

    palette.OnLeftDown(CPoint{24, 10}, false); // between two cells
    EXPECT_EQ(Lines(), parent.Take());
    palette.OnLeftDown(CPoint{30, 10}, false);
    EXPECT_EQ((Lines{"focus", "focused 1", "selected 1", "color 4294967295", "paint"}), parent.Take());
    palette.OnLeftDown(CPoint{30, 10}, true);
    EXPECT_EQ(Lines{"focus"}, parent.Take());
    palette.OnKey(EPaletteKey::eLeft, false);
    EXPECT_EQ((Lines{"focused 0", "paint"}), parent.Take());
    for (EPaletteKey eKey : {EPaletteKey::eLeft, EPaletteKey::eUp})
        palette.OnKey(eKey, false);
    EXPECT_EQ(Lines(), parent.Take());
    palette.OnKey(EPaletteKey::eDelete, false); // not the selected one: the chooser keeps its colour
    EXPECT_EQ((Lines{"cleared 0", "paint"}), parent.Take());
    palette.OnKey(EPaletteKey::eSpace, false);
    EXPECT_EQ((Lines{"selected 0", "paint", "color 4294967295"}), parent.Take());
    palette.OnKey(EPaletteKey::eSpace, false);
    EXPECT_EQ(Lines(), parent.Take());
    palette.OnKey(EPaletteKey::eDelete, false);
    EXPECT_EQ((Lines{"color 4294967295", "cleared 0", "paint"}), parent.Take());
    palette.OnKey(EPaletteKey::eDown, false);
    palette.OnKey(EPaletteKey::eDown, false);
    palette.OnKey(EPaletteKey::eDown, false);
    EXPECT_EQ(16, palette.GetFocus());
    palette.OnKey(EPaletteKey::eSpace, true);
    EXPECT_EQ("paint", parent.Take().back()); // Ctrl: no colour
}

TEST(ColorChoosing, CellsAreSunkenAndMarked)
{
    CColorBench bench;
    CCustomColorPalette& palette = bench.dlg.GetPalette();
    palette.SetCurrentColor(0x12030201); // alpha doesn't show
    const CPaletteColors colors{0xF0F0F0, 0x111111, 0x222222, 0x333333, 0x444444};
    const std::map<CColorRef, char> letters = {{0xF0F0F0, '.'}, {0x111111, 's'}, {0x222222, 'd'},
                                               {0x333333, 'h'}, {0x444444, 'l'}, {0x030201, 'c'},
                                               {0xFFFFFF, 'w'}, {0, 'k'},        {0x0F0F0F, 'x'}};
    // Cell 0 with the marks of the selection and the focus, and the edge of cell 1.
    const auto picture = [&](bool bFocus, int yEnd)
    {
        const CGDISurface& image = palette.Paint(colors, bFocus);
        Lines lines;
        for (int y = 0; y < yEnd; ++y)
        {
            lines.emplace_back();
            for (int x = 0; x < 32; ++x)
            {
                const auto it = letters.find(image.GetPixel(x, y));
                lines.back() += it == letters.end() ? '?' : it->second;
            }
        }
        return lines;
    };
    const Lines lines = picture(true, 24);
    EXPECT_EQ((Lines{"x.x.x.x.x.x.x.x.x.x.x.x.x.......", ".........................x......",
                     "x.kkkkkkkkkkkkkkkkkkkkkk........", "..kssssssssssssssssssshk.x..ssss",
                     "x.ksddddddddddddddddd.hk....sddd", "..ksdcccccccccccccccc.hk.x..sdww",
                     "x.ksdcccccccccccccccclhk....sdww"}),
              Lines(lines.begin(), lines.begin() + 7));
    EXPECT_EQ((Lines{"x.ks..llllllllllllllllhk....s..l", "..khhhhhhhhhhhhhhhhhhhhk.x..hhhh",
                     "x.kkkkkkkkkkkkkkkkkkkkkk........", ".........................x......",
                     "x.x.x.x.x.x.x.x.x.x.x.x.x.......", "................................"}),
              Lines(lines.end() - 6, lines.end()));
    EXPECT_EQ(std::string(32, '.'), picture(false, 1).at(0));
    CPaletteColors dark{0x433D3A};
    EXPECT_EQ(0u, palette.Paint(dark, false).GetPixel(2, 2)) << "black, unless the desktop asks for another";
    dark.m_nOutline = 0xFFFFFF;
    EXPECT_EQ(0xFFFFFFu, palette.Paint(dark, false).GetPixel(2, 2));
}

TEST(ColorChoosing, CentredAndOnTheScreen)
{
    const CRect rcScreen{0, 0, 1000, 800};
    EXPECT_EQ((CPoint{250, 200}), CentreOnOwner(CRect{200, 100, 600, 500}, rcScreen, 300, 200));
    EXPECT_EQ((CPoint{0, 600}), CentreOnOwner(CRect{-300, 700, 0, 900}, rcScreen, 300, 200));
    EXPECT_EQ((CPoint{0, 0}), CentreOnOwner(CRect{0, 0, 10, 10}, rcScreen, 3000, 2000));
}
