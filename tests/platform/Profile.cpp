#include "platform/Profile.h"

#include <random>

#include "support/WorkingDir.h"

namespace
{

std::string ValueOf(const CProfileText& text, const std::string& sSection, const std::string& sKey)
{
    std::string sValue = "<none>";
    text.Get(sSection, sKey, sValue);
    return sValue;
}

} // namespace

TEST(ProfileText, ReadsAsAPrivateProfileIsRead)
{
    CProfileText text;
    text.Parse("\xEF\xBB\xBF"
               "first = before all\n"
               "; General=comment\r"
               "[General]\r\n"
               "Game = \" Fire, \"\"now\" \" \n"
               "  single='a'\r\r\n"
               "game=second\n"
               " ;hidden=1\n"
               "no equal sign\n"
               "=no key\n"
               "formula=a=b;c\n"
               "empty=\n"
               "[ Other ] tail\n"
               "half=\"x\n"
               "[general]\n"
               "late=unseen\n"
               "[open\n"
               "long=" +
               std::string(300, 'v'));
    const std::string cases[][3] = {
        {"", "FIRST", "before all"},      {"GENERAL", "game", " Fire, \"\"now\" "},
        {"General", "single", "a"},       {"General", ";hidden", "<none>"},
        {"General", "General", "<none>"}, {"General", "no equal sign", "<none>"},
        {"General", "", "<none>"},        {"General", "formula", "a=b;c"},
        {"General", "empty", ""},         {"General", "late", "<none>"},
        {"other", "half", "\"x"},         {"other", "long", "<none>"},
        {"none", "game", "<none>"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c[2], ValueOf(text, c[0], c[1])) << c[0] << '/' << c[1];

    text.Parse("[a]\nlong=" + std::string(300, 'v'));
    EXPECT_EQ(std::string(259, 'v'), ValueOf(text, "a", "long"));
    text.Parse("[a]\nlong=\"" + std::string(259, 'v') + '"');
    EXPECT_EQ(std::string(259, 'v'), ValueOf(text, "a", "long")); // cut after the quotes are off
}

TEST(ProfileText, WritesWithoutLosingWhatItDoesNotKnow)
{
    CProfileText text;
    text.Parse("; mine\n[A]\nx=1\njunk\n\n[B]\ny=2");
    text.Set("a", "X", "one\ntwo");
    text.Set("a", "z", "3");
    text.Set("", "top", "0");
    text.Set("C", "w", "4");
    text.Set("b", "v", "5");
    text.Set("b", "bad=key", "6");
    text.Set("b", "[k]", "6");
    text.Set("b]", "k", "6");
    EXPECT_EQ(
        "; mine\r\ntop=0\r\n[A]\r\nX=one two\r\njunk\r\nz=3\r\n\r\n[B]\r\ny=2\r\nv=5\r\n\r\n[C]\r\nw=4\r\n",
        text.Format());
    EXPECT_EQ("2", ValueOf(text, "B", "y"));
    EXPECT_EQ("4", ValueOf(text, "C", "w"));
}

// Whatever stands in a text: what is set comes back, through a file's form too.
TEST(ProfileText, ValuesSurviveAmongRandomLines)
{
    std::mt19937 random(7);
    const std::string sAlphabet = "[]=;\"' \tab\r\n\\";
    const auto anyText = [&](size_t nMax)
    {
        std::string s;
        for (size_t n = random() % nMax; n > 0; --n)
            s += sAlphabet[random() % sAlphabet.size()];
        return s;
    };
    for (int i = 0; i < 3000; ++i)
    {
        CProfileText text;
        text.Parse(anyText(60));
        const std::string sSection = random() % 2 ? "a" : "";
        std::string sValue = anyText(12);
        text.Set(sSection, "b", sValue);
        text.Set(random() % 2 ? "" : "x", "other", "1");
        for (char& c : sValue)
            c = c == '\r' || c == '\n' ? ' ' : c;
        ASSERT_EQ(sValue, ValueOf(text, sSection, "b"));
        CProfileText again;
        again.Parse(text.Format());
        ASSERT_EQ(sValue, ValueOf(again, sSection, "b")) << text.Format();
        ASSERT_EQ(text.Format(), again.Format());
    }
}

TEST(Profile, FileHoldsWhatAnotherRunReads)
{
    CTempDir folder;
    setenv("XDG_CONFIG_HOME", folder.path("config").c_str(), 1);
    const auto pFirst = OpenFileProfile("emberdeck/settings.ini");
    EXPECT_EQ("none", pFirst->GetString("", "LastOpenedFile", "none"));
    EXPECT_TRUE(pFirst->WriteString("", "LastOpenedFile", " \"C:\\a b.Fx00c\" "));
    EXPECT_TRUE(pFirst->WriteStrings({{"Colors", "0", "1 2 3"}, {"colors", "1", std::string(500, 'x')}}));
    const auto pSecond = OpenFileProfile("emberdeck/settings.ini");
    EXPECT_EQ(" \"C:\\a b.Fx00c\" ", pSecond->GetString("", "lastopenedfile", "none"));
    EXPECT_EQ(std::string(500, 'x'), pSecond->GetString("Colors", "1"));

    // What can't be read isn't written over; the value holds for this run.
    MakeDir(folder, "config/emberdeck/bad.ini");
    const auto pBad = OpenFileProfile("emberdeck/bad.ini");
    EXPECT_FALSE(pBad->WriteString("a", "b", "c"));
    EXPECT_EQ("c", pBad->GetString("A", "B"));
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_TRUE(MakeMemoryProfile()->WriteString("a", "b", "c"));
}

TEST(FileProfile, TwoProgramsKeepEachOthersSettings)
{
    const CTempDir dir;
    const std::string sFile = dir.path("folder/settings.ini");
    const auto pFirst = OpenFileProfile(sFile);
    const auto pSecond = OpenFileProfile(sFile);
    EXPECT_TRUE(pFirst->WriteString("Custom Colors", "Color00", "1"));
    EXPECT_TRUE(pSecond->WriteString("", "LastOpenedFile", "b.Fx00a"));
    EXPECT_TRUE(pFirst->WriteString("", "CommandLine", "-x"));
    EXPECT_EQ("1", pSecond->GetString("Custom Colors", "Color00"));
    const auto pThird = OpenFileProfile(sFile);
    EXPECT_EQ("b.Fx00a", pThird->GetString("", "LastOpenedFile"));
    EXPECT_EQ("-x", pThird->GetString("", "CommandLine"));
    for (const auto& entry : std::filesystem::directory_iterator(dir.path("folder")))
        EXPECT_EQ("settings.ini", entry.path().filename());
}

TEST(FileProfile, WhatCantBeKeptIsToldOnceAndHoldsForTheRun)
{
    const CTempDir dir;
    std::vector<std::string> told;
    const auto pProfile = OpenFileProfile(dir.write("file", "x") + "/settings.ini",
                                          [&](const std::string& sProblem) { told.push_back(sProblem); });
    EXPECT_FALSE(pProfile->WriteString("A", "Key", "1"));
    EXPECT_FALSE(pProfile->WriteString("A", "Other", "2"));
    EXPECT_EQ("1", pProfile->GetString("A", "Key"));
    EXPECT_EQ("2", pProfile->GetString("A", "Other"));
    ASSERT_EQ(1u, told.size());
    EXPECT_NE("", told[0]);

    // Later, when it can be: all of it.
    std::filesystem::remove(dir.path("file"));
    EXPECT_TRUE(pProfile->WriteString("A", "Third", "3"));
    EXPECT_EQ("1", OpenFileProfile(dir.path("file/settings.ini"))->GetString("A", "Key"));
}
