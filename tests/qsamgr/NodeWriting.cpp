#include "NodeSupport.h"
#include "qsamgr/qsanodewriter.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsawriter.h"
#include "sdk/AssertCatcher.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <random>

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

namespace
{
// The same list by one value at a time.
void WriteSlowly(const CQSANode& node, CQSAWriter& writer)
{
    writer.BeginNode();
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
    {
        const CQSANode& element = *node.GetElement(i);
        if (element.IsAtom())
            writer.Write(element.GetValue(), element.IsString());
        else
            WriteSlowly(element, writer);
    }
    writer.EndNode();
}

// Atoms around the length that a node holds and the writer's longest piece, lists of every size.
CQSANode* RandomTree(std::mt19937& random, uint32_t nDepth, CQSAAllocator& alloc)
{
    constexpr size_t c_aLengths[] = {0, 1, 10, 11, 12, 13, 40, 1023, 4095, 4096, 4097, 40000};
    CQSANode* pNode = alloc.AllocateNode();
    if (nDepth > 0 && random() % 3 != 0)
    {
        const std::string sText(c_aLengths[random() % (random() % 40 == 0 ? 12 : 7)],
                                char('a' + random() % 26));
        pNode->SetValue(sText.c_str(), sText.empty() || random() % 2 == 0, &alloc);
        return pNode;
    }
    const uint32_t nCount = nDepth < 40 ? random() % (nDepth < 4 ? 9 : 3) : 0;
    pNode->AllocateElements(nCount, &alloc);
    for (uint32_t i = 0; i < nCount; ++i)
        pNode->SetElement(RandomTree(random, nDepth + 1, alloc), i);
    return pNode;
}
} // namespace

TEST(NodeWriting, WholeTreesComeAsValueByValue)
{
    CTempDir dir;
    std::mt19937 random(5);
    for (int i = 0; i < 60; ++i)
    {
        // As it is built, and as the loader makes it of its text.
        CQSADefaultAlloc alloc;
        CQSALoadOnlyAlloc loadAlloc(2000);
        CQSANode* pTree = RandomTree(random, 0, alloc);
        CQSATextLayout layout;
        CQSATextBuffer buffer, again;
        ASSERT_TRUE(QSASaveText(*pTree, layout, buffer));
        CRoot root(loadAlloc);
        ASSERT_TRUE(QSALoadText(buffer.GetText().data(), buffer.GetText().size(), &root, &loadAlloc));
        layout = {};
        ASSERT_TRUE(QSASaveText(*root.GetElement(0), layout, again));

        CQSAFile slow(dir.path("slow").c_str(), false, false, false),
            fast(dir.path("fast").c_str(), false, false, false);
        CQSAWriter slowWriter(&slow), fastWriter(&fast);
        if (i % 2 != 0)
        {
            slowWriter.Write("before", false);
            fastWriter.Write("before", false);
        }
        for (int n = 0; n < 2; ++n)
        {
            WriteSlowly(*pTree, slowWriter);
            EXPECT_TRUE(CQSANodeWriter::SaveNode(pTree, &fastWriter));
            slowWriter.Write("behind", true);
            fastWriter.Write("behind", true);
        }
        ASSERT_TRUE(slowWriter.Close() && fastWriter.Close());
        const std::string sSlow = ReadBytes(dir.path("slow"));
        EXPECT_TRUE(sSlow == ReadBytes(dir.path("fast")));
        EXPECT_TRUE(i % 2 != 0 || sSlow.starts_with(buffer.GetText()));
        if (buffer.GetText().size() < 4000) // no atom that the loader cuts
        {
            EXPECT_EQ(buffer.GetText(), again.GetText());
        }
        alloc.FreeNode(pTree);
    }
}

TEST(NodeWriting, EndsBeforeAnEmptySlot)
{
    CAssertCatcher catcher;
    CQSADefaultAlloc alloc;
    CRoot list(alloc);
    ASSERT_TRUE(list.AllocateElements(2, &alloc));
    CQSANode* pAtom = alloc.AllocateNode();
    ASSERT_TRUE(pAtom->SetValue("a", true, &alloc));
    list.SetElement(pAtom, 0);
    CQSATextLayout layout;
    CQSATextBuffer buffer;
    EXPECT_FALSE(QSASaveText(list, layout, buffer));
    EXPECT_EQ("pNode|", catcher.Take());
    EXPECT_EQ("\t(\"a\" ", buffer.GetText());
    EXPECT_TRUE(layout.m_nDepth == 1 && layout.m_bValueWritten && !layout.m_bNeedTab);
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
