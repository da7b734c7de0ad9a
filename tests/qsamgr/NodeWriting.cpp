#include "NodeSupport.h"
#include "qsamgr/qsanodewriter.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsawriter.h"
#include "sdk/AssertCatcher.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace
{
// What SaveNode makes of each top-level node of a text.
std::string Saved(const std::string& sText)
{
    CTempDir dir;
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    EXPECT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
    CQSAFile file(dir.path("saved").c_str(), false, false, false);
    CQSAWriter writer(&file);
    for (uint32_t i = 0; i < root.GetNumElements(); ++i)
        EXPECT_TRUE(CQSANodeWriter::SaveNode(root.GetElement(i), &writer));
    EXPECT_TRUE(writer.Close());
    return ReadBytes(dir.path("saved"));
}
} // namespace

TEST(NodeWriting, GivesTheseBytes)
{
    EXPECT_EQ("\t(a b \n\t(c d )\n\te )\n", Saved("(a b (c d) e)"));
    EXPECT_EQ("\t(x \n\t(y )\n\t(z )\n)\n", Saved("(x (y) (z))"));
    EXPECT_EQ("\t()\n", Saved("()"));
    EXPECT_EQ("\t(\t()\n)\n", Saved("(())"));
    EXPECT_EQ("\t(\"\" \"a b\" )\n\t(c )\n", Saved("(\"\" \"a b\") (c)"));
    // Behind a list at depth 3: two tabs from its end, one due.
    EXPECT_EQ("\t(a \n\t(b \n\t\t(c \n\t\t\t(d )\n\t\t\te )\n\t\t(f )\n\t)\n)\n",
              Saved("(a (b (c (d) e) (f)))"));
    // More tabs than the writer takes in one piece.
    std::string sDeep(40, '('), sExpected;
    for (size_t i = 0; i < sDeep.size(); ++i)
        sExpected += "\t(";
    const std::string sSaved = Saved(sDeep + "v");
    EXPECT_EQ(sExpected + "v )\n" + std::string(38, '\t') + ")\n",
              sSaved.substr(0, sExpected.size() + 4 + 38 + 2));
}

TEST(NodeWriting, ReportsMisuse)
{
    CTempDir dir;
    CAssertCatcher catcher;
    CQSAWriter none(nullptr);
    EXPECT_EQ("pFile|Invalid CQSAFile pointer", catcher.Take());
    EXPECT_FALSE(none.Write("a", false));
    EXPECT_EQ("IsValid()|", catcher.Take());
    CQSAFile file(dir.path("f").c_str(), false, false, false);
    CQSAWriter writer(&file);
    EXPECT_FALSE(writer.EndNode());
    EXPECT_EQ("false|", catcher.Take());
    EXPECT_TRUE(writer.BeginNode());
    EXPECT_TRUE(writer.Write("\0 (", 3, true)) << "bytes as they are";
    CQSADefaultAlloc alloc;
    CRoot atom(alloc);
    ASSERT_TRUE(atom.SetValue("a", false, &alloc));
    EXPECT_FALSE(CQSANodeWriter::SaveNode(&atom, &writer));
    EXPECT_EQ("pNode->IsList()|", catcher.Take());
    EXPECT_FALSE(CQSANodeWriter::SaveNode(nullptr, &writer));
    EXPECT_FALSE(CQSANodeWriter::SaveNode(&atom, nullptr));
    EXPECT_TRUE(writer.Close());
    EXPECT_FALSE(writer.IsValid());
    EXPECT_EQ(std::string(")\n\t(\"\0 (\" ", 10), ReadBytes(dir.path("f")));
}

TEST(NodeWriting, TellsOfAFullDisk)
{
    CQSAFile file("/dev/full", false, false, false);
    CQSAWriter writer(&file);
    ASSERT_TRUE(writer.BeginNode());
    const std::string sLong(100000, 'x');
    EXPECT_FALSE(writer.Write(sLong.c_str(), false));
    EXPECT_FALSE(writer.Close());
}
