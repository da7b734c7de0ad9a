#include "NodeSupport.h"
#include "qsamgr/qsanodeiterator.h"
#include "qsamgr/qsatextloader.h"
#include "qsamgr/qsautil.h"
#include "sdk/AssertCatcher.h"

#include <gtest/gtest.h>

TEST(NodeSearch, FindsDirectChildrenByName)
{
    const std::string sText = "name (Name 0) (name 1) () ((name) 2) (group (name 3)) (\"name\" 4) (other)";
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    ASSERT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
    const std::string sBefore = TreeText(&root);

    EXPECT_EQ("(<name><1>)", TreeText(CQSAUtil::ShallowFindList(&root, "name")));
    EXPECT_EQ(nullptr, CQSAUtil::ShallowFindList(&root, "nam"));
    EXPECT_EQ(nullptr, CQSAUtil::ShallowFindList(root.GetElement(0), "name")) << "an atom";

    std::vector<CQSANode*> found{nullptr};
    EXPECT_EQ(2u, CQSAUtil::ShallowFindAll(found, &root, "name"));
    ASSERT_EQ(3u, found.size()) << "earlier contents stay";
    EXPECT_EQ("(<name><1>)", TreeText(found[1]));
    EXPECT_EQ("(\"name\"<4>)", TreeText(found[2]));
    EXPECT_EQ(0u, CQSAUtil::ShallowFindAll(found, root.GetElement(3), "name")) << "an empty list";
    EXPECT_EQ(0u, CQSAUtil::ShallowFindAll(found, nullptr, "name"));
    EXPECT_EQ(sBefore, TreeText(&root));
}

TEST(NodeSearch, IteratorWalksWithAStack)
{
    const std::string sText = "a (b (c 1) (d 2)) e (f)";
    CQSALoadOnlyAlloc alloc(2000);
    CRoot root(alloc);
    ASSERT_TRUE(QSALoadText(sText.data(), sText.size(), &root, &alloc));
    CAssertCatcher catcher;
    CQSANodeIterator iterator(&root);
    EXPECT_EQ(&root, iterator.GetCursorElement());
    ASSERT_TRUE(iterator.PushNode(&root));
    EXPECT_EQ("<a>", TreeText(iterator.GetCursorElement()));
    CQSANode* pFirst = iterator.NextList();
    EXPECT_EQ(2u, iterator.GetOffset());
    ASSERT_TRUE(iterator.PushNode(pFirst));
    EXPECT_EQ("(<d><2>)", TreeText(iterator.FindNextList("d")));
    EXPECT_EQ(nullptr, iterator.FindNextList("d"));
    EXPECT_EQ(3u, iterator.GetOffset());
    iterator.SetOffset(1);
    EXPECT_EQ("(<c><1>)", TreeText(iterator.NextList()));
    EXPECT_EQ(0u, catcher.GetCount());

    EXPECT_FALSE(iterator.PushNode(nullptr));
    EXPECT_EQ("pNode|", catcher.Take());
    for (int i = 2; i < 1023; ++i)
        ASSERT_TRUE(iterator.PushNode(&root));
    EXPECT_FALSE(iterator.PushNode(&root));
    EXPECT_EQ("m_nStackPos < 1024 - 1|", catcher.Take());
    EXPECT_EQ(&root, iterator.GetHead());
}

TEST(NodeSearch, CompressionGoesByTheLastLetter)
{
    EXPECT_TRUE(CQSAUtil::IsFileCompressed("lib.Fx00c") && CQSAUtil::IsFileCompressed("LIB.FX00C"));
    EXPECT_FALSE(CQSAUtil::IsFileCompressed("lib.Fx00a") || CQSAUtil::IsFileCompressed(""));
    CAssertCatcher catcher;
    EXPECT_FALSE(CQSAUtil::IsFileCompressed(nullptr));
    EXPECT_EQ("pszFilename|", catcher.Take());
}
