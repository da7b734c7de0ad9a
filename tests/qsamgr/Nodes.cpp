#include "NodeSupport.h"
#include "qsamgr/qsaparseutils.h"
#include "sdk/AssertCatcher.h"

#include <cstring>
#include <gtest/gtest.h>

TEST(Nodes, HoldsAnAtomOrElements)
{
    CBookAlloc alloc;
    CRoot node(alloc);
    EXPECT_EQ(16u, sizeof(CQSANode));
    EXPECT_TRUE(node.IsList());
    ASSERT_TRUE(node.SetValue("12 apples", false, &alloc));
    EXPECT_TRUE(node.IsAtom() && !node.IsString());
    EXPECT_EQ(12, GetInt32(&node));
    ASSERT_TRUE(node.SetValue(node.GetValue() + 3, true, &alloc)) << "its own text must outlive the copy";
    EXPECT_EQ("\"apples\"", TreeText(&node));

    ASSERT_TRUE(node.AllocateElements(2, &alloc));
    CQSANode* pFirst = alloc.AllocateNode();
    node.SetElement(pFirst, 0);
    EXPECT_EQ("(()null)", TreeText(&node));
    CQSANode* pLast = alloc.AllocateNode();
    ASSERT_TRUE(pLast->SetValue("z", false, &alloc));
    ASSERT_TRUE(node.AppendElement(pLast, &alloc));
    EXPECT_EQ("(()null<z>)", TreeText(&node));

    alloc.m_sLog.clear();
    ASSERT_TRUE(node.SetValue("v", false, &alloc)) << "frees its elements first";
    EXPECT_EQ("nnbbB", alloc.m_sLog);
    EXPECT_EQ(1, alloc.m_nOut);
}

TEST(Nodes, StaysReleasableWhenMemoryIsOut)
{
    for (int nFailAt = 1; nFailAt <= 6; ++nFailAt)
    {
        CBookAlloc alloc(nFailAt);
        {
            CRoot node(alloc);
            const bool bFirst = node.SetValue("text", true, &alloc);
            EXPECT_EQ(bFirst ? "\"text\"" : "()", TreeText(&node));
            const bool bSecond = node.SetValue("other", false, &alloc);
            EXPECT_EQ(bSecond ? "<other>" : "()", TreeText(&node));
            const bool bThird = node.AllocateElements(1, &alloc);
            EXPECT_EQ(bThird ? "(null)" : "()", TreeText(&node));
            CQSANode* pChild = alloc.AllocateNode();
            const std::string sBefore = TreeText(&node);
            if (!node.AppendElement(pChild, &alloc))
            {
                EXPECT_EQ(sBefore, TreeText(&node));
                alloc.FreeNode(pChild);
            }
        }
        EXPECT_EQ(0, alloc.m_nOut) << nFailAt;
    }
    // Sizes that 32 bits can't tell are refused, not wrapped.
    CBookAlloc alloc;
    CRoot node(alloc);
    EXPECT_FALSE(node.AllocateElements(0x20000001, &alloc));
    EXPECT_FALSE(node.AllocateElements(0x80000000, &alloc));
    EXPECT_EQ(0, alloc.m_nCalls);
}

TEST(Nodes, ReportsMisuseAndStaysSound)
{
    CAssertCatcher catcher;
    ASSERT_TRUE(catcher.IsActive());
    CQSADefaultAlloc alloc;
    {
        CRoot list(alloc);
        CRoot atom(alloc);
        ASSERT_TRUE(atom.SetValue("a", false, &alloc));
        EXPECT_EQ(nullptr, list.GetElement(0));
        EXPECT_EQ("CQSANode::GetElement", catcher.GetLast().m_sFunction);
        EXPECT_EQ("nIndex < m_nFlags|", catcher.Take());
        EXPECT_STREQ("", list.GetValue());
        EXPECT_EQ("IsAtom()|", catcher.Take());
        EXPECT_EQ(0u, atom.GetNumElements());
        EXPECT_EQ("IsList()|", catcher.Take());
        EXPECT_EQ(nullptr, atom.GetElement(0));
        EXPECT_EQ("IsList()|", catcher.Take()) << "an atom's flags are no element count";
        atom.SetElement(&list, 5);
        EXPECT_EQ("IsList()|", catcher.Take());
        EXPECT_FALSE(atom.AppendElement(&list, &alloc));
        EXPECT_EQ("IsList()|", catcher.Take());
        EXPECT_FALSE(list.AppendElement(&atom, nullptr));
        EXPECT_EQ("pAllocator|", catcher.Take());
        EXPECT_FALSE(list.AllocateElements(1, nullptr));
        EXPECT_EQ("pAllocator|", catcher.Take());
        EXPECT_EQ(0, GetInt32(&list));
        EXPECT_EQ("pNode->IsAtom()|", catcher.Take());
        EXPECT_EQ(0, GetInt32(nullptr));
        EXPECT_EQ("pNode|", catcher.Take());
    }
    CQSALoadOnlyAlloc small(1024);
    EXPECT_EQ("nBlockSize > 1024|", catcher.Take());
    {
        CQSANode forgotten;
        ASSERT_TRUE(forgotten.SetValue("a", false, &small));
    }
    EXPECT_EQ("m_pData == 0|", catcher.Take());
}

TEST(LoadOnlyAlloc, CutsMemoryOffItsBlocks)
{
    CQSALoadOnlyAlloc alloc(2000);
    auto* pFirst = static_cast<char*>(alloc.AllocateBlock(5));
    auto* pSecond = static_cast<char*>(alloc.AllocateBlock(10));
    EXPECT_EQ(pFirst + 5, pSecond);
    const auto nNode = reinterpret_cast<uintptr_t>(alloc.AllocateNode());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(pFirst) + 16, nNode)
        << "up to the next aligned place, in the block";
    auto* pLarge = static_cast<char*>(alloc.AllocateBlock(3000)); // a block of exactly its size
    std::memset(pLarge, 1, 3000);
    auto* pNext = static_cast<char*>(alloc.AllocateBlock(1));
    EXPECT_NE(pLarge + 3000, pNext);
    EXPECT_EQ(pNext + 1, alloc.AllocateBlock(1999)) << "the new block has the usual size";

    CQSANode root;
    CQSANode* pNode = alloc.AllocateNode();
    ASSERT_TRUE(pNode->SetValue("kept", true, &alloc));
    ASSERT_TRUE(root.AppendElement(pNode, &alloc));
    const char* pszText = pNode->GetValue();
    alloc.FreeNode(pNode);
    EXPECT_STREQ("kept", pszText) << "only FreeAll ends it";
    root.Free(&alloc);
    alloc.FreeAll();
    EXPECT_NE(nullptr, alloc.AllocateBlock(1));
}
