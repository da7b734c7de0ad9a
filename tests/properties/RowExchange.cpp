#include <clocale>
#include <cmath>
#include <limits>

#include "properties/PropertyBench.h"
#include "properties/ValueText.h"
#include "qsnumber.h"

namespace
{

// A row with a property of its kind behind it, whose changes are counted.
struct CRowBench : CPropertyBench
{
    CRowBench(const std::string& sName, const std::function<void(CTestPlugin&)>& describe)
        : CPropertyBench(describe)
    {
        Make(sName);
    }
    explicit CRowBench(const std::string& sName) { Make(sName); }
    void Make(const std::string& sName)
    {
        prop = std::make_unique<CEffectProperty>(Value(sName));
        uint32_t nCount = 0;
        EXPECT_TRUE(row.CreateControls(&Desc(sName), Place(), nCount, [this] { ++nChanges; }));
        EXPECT_TRUE(row.SetFromProperty(prop.get(), 0));
        nChanges = 0;
    }
    CPropData& Data() { return prop->GetKey(0)->m_Data; }
    const std::string& Text(int nSlot) { return row.GetControl(nSlot)->m_sText; }
    void Read() { EXPECT_TRUE(row.GetFromControls(prop.get(), 0)); }

    CEffectPropertyCtrls row{services};
    std::unique_ptr<CEffectProperty> prop;
    int nChanges = 0;
};

} // namespace

TEST(RowExchange, NumbersAreReadAsTheyAreTyped)
{
    CRowBench count("Count");
    EXPECT_EQ("10", count.Text(1));
    count.row.SetText(1, " -7x");
    EXPECT_EQ(1, count.nChanges);
    EXPECT_EQ(" -7x", count.Text(1)); // never put in order while it is typed
    count.Read();
    EXPECT_EQ(-7, count.Data().GetInt());
    count.row.SetText(1, "abc");
    count.Read();
    EXPECT_EQ(0, count.Data().GetInt());
    for (const auto& [pszText, nTaken] :
         {std::pair("2147483648", INT32_MAX), std::pair("-99999999999", INT32_MIN)})
    {
        count.row.SetText(1, pszText); // too much: the nearest end, not the other one
        count.Read();
        EXPECT_EQ(nTaken, count.Data().GetInt());
    }
    CRowBench size("Velocity");
    size.row.SetText(2, "1e39");
    size.row.SetText(4, "-1e400");
    size.Read();
    EXPECT_EQ(std::numeric_limits<float>::max(), size.Data().GetVector().x);
    EXPECT_EQ(-std::numeric_limits<float>::max(), size.Data().GetVector().y);

    // A widget toolkit sets the locale.
    const std::string sOld = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    CRowBench velocity("Velocity");
    velocity.Data().SetVector(CVector3{0.5f, -1234.56789f, 1.0f / 3});
    velocity.row.SetFromProperty(velocity.prop.get(), 0);
    EXPECT_EQ("0.5000|-1234.5679|0.3333", velocity.Text(2) + "|" + velocity.Text(4) + "|" + velocity.Text(6));
    velocity.row.SetText(4, "2.5,7");
    velocity.Read();
    EXPECT_EQ((CVector3{0.5f, 2.5f, 0.3333f}), velocity.Data().GetVector());
    std::setlocale(LC_ALL, sOld.c_str());
}

TEST(RowExchange, SpinsStepUpwardFromZero)
{
    struct CCase
    {
        const char* m_pszProp;
        const char* m_pszText;
        int m_nDelta;
        const char* m_pszResult;
    };
    for (const CCase& c : {CCase{"Count", "41", -1, "42"}, CCase{"Count", "0", 1, "0"},
                           CCase{"Count", "-5", -1, "0"}, CCase{"Count", "2147483647", -1, "2147483647"},
                           CCase{"Size", "1", -1, "1.2500"}, CCase{"Size", "0.1", 1, "0.0000"},
                           CCase{"Size", "-0.1", -1, "0.1500"}, CCase{"Size", "2", 3, "1.2500"}})
    {
        CRowBench bench(c.m_pszProp);
        bench.row.SetText(1, c.m_pszText);
        bench.nChanges = 0;
        bench.row.Spin(2, c.m_nDelta);
        EXPECT_EQ(c.m_pszResult, bench.Text(1)) << c.m_pszText;
        EXPECT_EQ(1, bench.nChanges); // also where the text stays the same
    }
    CRowBench color("Color");
    color.row.SetText(3, "0.9");
    color.row.Spin(4, -1);
    EXPECT_EQ("1.1500", color.Text(3)); // no limit above, until it is read
    color.Read();
    EXPECT_EQ(255u, PropColorAlpha(color.Data().GetColor()));
    color.row.EnableControls(false);
    color.row.Spin(4, -1);
    EXPECT_EQ("1.1500", color.Text(3));

    CRowBench size("Size");
    size.row.SetText(1, "1e400"); // beyond all numbers, a step stays among them
    size.row.Spin(2, -1);
    size.Read();
    EXPECT_GT(size.Data().GetFloat(), 0.0f);
}

TEST(RowExchange, AlphaComesBackTruncated)
{
    CRowBench bench("Color");
    unsigned nLower = 0;
    for (uint32_t nAlpha = 0; nAlpha < 256; ++nAlpha)
    {
        bench.Data().SetColor(MakePropColor(1, 2, 3, nAlpha));
        bench.row.SetFromProperty(bench.prop.get(), 0);
        bench.Read();
        const uint32_t nRead = PropColorAlpha(bench.Data().GetColor());
        EXPECT_TRUE(nRead == nAlpha || nRead + 1 == nAlpha) << nAlpha;
        nLower += nRead != nAlpha;
        EXPECT_EQ(MakePropColor(1, 2, 3, nRead), bench.Data().GetColor());
    }
    EXPECT_EQ(125u, nLower);
    EXPECT_EQ("0.5020", AlphaText(128));
    EXPECT_EQ("   inf", FloatText(INFINITY)); // the one kind that is shorter than its field
    EXPECT_EQ(" inf", VectorText(INFINITY));
    EXPECT_EQ("-0.126", VectorText(-0.1259));
    EXPECT_EQ(128u, AlphaFromText("0.5020"));
    EXPECT_EQ(126u, AlphaFromText(AlphaText(127)));
    EXPECT_EQ(0u, AlphaFromText("-1"));
    EXPECT_EQ(255u, AlphaFromText("1e300"));
}

TEST(RowExchange, ListsFindWholeTextsWithoutCase)
{
    CRowBench bench("Blend");
    EXPECT_EQ(1, bench.row.GetControl(1)->m_nSelected);
    bench.Data().SetText("MULTIPLY");
    bench.row.SetFromProperty(bench.prop.get(), 0);
    EXPECT_EQ(2, bench.row.GetControl(1)->m_nSelected);
    EXPECT_EQ(0, bench.nChanges); // only a choice of the user's tells
    bench.Read();
    EXPECT_EQ("Multiply", bench.Data().GetText());
    bench.Data().SetText(" Alpha"); // valid in a file, but not the text of an item
    bench.row.SetFromProperty(bench.prop.get(), 0);
    bench.Read();
    EXPECT_EQ("Add", bench.Data().GetText());
    bench.row.Select(1, 1);
    bench.row.Select(1, 1);
    bench.row.Select(1, 3);
    bench.row.Select(1, -1);
    bench.row.Select(0, 0); // the label
    EXPECT_EQ(1, bench.row.GetControl(1)->m_nSelected);
    EXPECT_EQ(2, bench.nChanges);
    bench.row.Select(1, 0);
    EXPECT_EQ(0, bench.row.GetControl(1)->m_nSelected);
    EXPECT_EQ(3, bench.nChanges);

    CRowBench empty("E", [](CTestPlugin& plugin) { plugin.type("T").prop(ePropType_Enum, "E").def("kept"); });
    EXPECT_TRUE(empty.row.GetFromControls(empty.prop.get(), 0));
    EXPECT_EQ("kept", empty.Data().GetText());
}

TEST(RowExchange, TextsKeepTheirBytes)
{
    CRowBench bench("Label");
    const std::string sBytes = "Gr\xFC\xDF"
                               "e \xC3\xA4 100% &c";
    bench.Data().SetText(sBytes);
    bench.row.SetFromProperty(bench.prop.get(), 0);
    bench.Read();
    EXPECT_EQ(sBytes, bench.Data().GetText());
    bench.row.SetText(1, "a \"b\"");
    EXPECT_EQ("a 'b'", bench.Text(1)); // what a file can't hold
}

TEST(RowExchange, OtherKindsAndKeysAreRefused)
{
    CRowBench bench("Count");
    CEffectProperty label = bench.Value("Label");
    EXPECT_FALSE(bench.row.SetFromProperty(&label, 0));
    EXPECT_FALSE(bench.row.SetFromProperty(bench.prop.get(), -1));
    EXPECT_FALSE(bench.row.SetFromProperty(bench.prop.get(), 1));
    EXPECT_FALSE(bench.row.GetFromControls(nullptr, 0));
    EXPECT_FALSE(bench.row.GetFromControls(&label, 0));
    EXPECT_EQ("10", bench.Text(1));
    EXPECT_EQ(0, bench.nChanges);
}

TEST(RowExchange, ButtonsOpenTheirDialogs)
{
    CRowBench vector("Velocity");
    vector.row.SetText(2, "1");
    vector.row.SetText(4, "2");
    vector.row.SetText(6, "3");
    vector.nChanges = 0;
    vector.dialogs.m_Vector = [](CEditVectorDlg& dialog) { return dialog.GetMagnitudeText() == "3.74166"; };
    vector.row.Press(7);
    EXPECT_EQ("1.000|2.000|3.000", vector.Text(2) + "|" + vector.Text(4) + "|" + vector.Text(6));
    EXPECT_EQ(3, vector.nChanges); // once for each box
    vector.dialogs.m_Vector = [](CEditVectorDlg& dialog)
    {
        dialog.OnPreset(5);
        return false;
    };
    vector.row.Press(7);
    EXPECT_EQ("3.000", vector.Text(6));

    CRowBench color("Color");
    color.Data().SetColor(MakePropColor(10, 20, 30, 40));
    color.row.SetFromProperty(color.prop.get(), 0);
    color.nChanges = 0;
    color.dialogs.m_Color = [](CKRColorDialog& dialog)
    {
        EXPECT_EQ("10|20|30|0", dialog.GetText(eColor_RedBox) + "|" + dialog.GetText(eColor_GreenBox) + "|" +
                                    dialog.GetText(eColor_BlueBox) + "|" + dialog.GetText(eColor_AlphaBox));
        dialog.OnText(eColor_RedBox, "200");
        dialog.OnText(eColor_AlphaBox, "99");
        return true;
    };
    color.row.Press(1);
    EXPECT_EQ(1, color.nChanges);
    color.Read();
    EXPECT_EQ(MakePropColor(200, 20, 30, AlphaFromText(AlphaText(40))), color.Data().GetColor());

    CRowBench file("Texture");
    EXPECT_EQ("Textures\\Smoke.Texture00a", file.Text(1));
    file.prompts.onFile(std::nullopt).onFile("C:\\new.dds");
    file.row.Press(1); // cancelled
    EXPECT_EQ(0, file.nChanges);
    file.row.Press(1);
    EXPECT_EQ(1, file.nChanges);
    EXPECT_EQ("C:\\new.dds", file.Text(1)); // the whole path, as long as there is no root
    file.row.Press(2);
    EXPECT_EQ(2, file.nChanges);
    EXPECT_EQ("", file.Text(1)); // the caption follows
    file.Read();
    EXPECT_EQ("", file.Data().GetText());
}

TEST(RowExchange, NumberEntryTakesWholeNumbersOnly)
{
    EXPECT_EQ("0.123457", NumberEntryText(0.1234567f));
    EXPECT_EQ("1e-05", NumberEntryText(0.00001f));
    EXPECT_EQ("3.40282e+38", NumberEntryText(3.402823e38f));
    EXPECT_EQ("-7", NumberEntryText(-7.0f));
    for (const char* pszText : {"1", " +2.5\t", "-.5", "3.", "1e-400", "4E2"})
    {
        float fValue = -99.0f;
        EXPECT_TRUE(QSParseFloat(pszText, fValue)) << pszText;
        EXPECT_NE(-99.0f, fValue);
    }
    for (const char* pszText :
         {"", " ", "1x", "1 2", "1,5", "--1", "+-1", ".", "e5", "inf", "nan", "0x10", "1e39", "1e400", "1e"})
    {
        float fValue = -99.0f;
        EXPECT_FALSE(QSParseFloat(pszText, fValue)) << pszText;
        EXPECT_EQ(-99.0f, fValue);
    }
}
