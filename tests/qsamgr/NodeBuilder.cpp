#include "NodeSupport.h"
#include "qsamgr/qsanodebuilder.h"
#include "sdk/AssertCatcher.h"

#include <gtest/gtest.h>
#include <memory>

TEST(NodeBuilder, BuildsListsFromEvents)
{
    CBookAlloc alloc;
    {
        CRoot root(alloc);
        CQSANodeBuilder builder(&alloc);
        EXPECT_EQ(nullptr, builder.Pop());
        EXPECT_TRUE(builder.AddValue("top", false));
        EXPECT_EQ(nullptr, builder.Pop()) << "what waits at the top isn't disturbed";
        EXPECT_TRUE(builder.PushValue("version", false));
        EXPECT_TRUE(builder.AddValue(-12));
        EXPECT_TRUE(builder.Push());
        EXPECT_TRUE(builder.TryPop());
        EXPECT_TRUE(builder.PushValue("s", true));
        EXPECT_EQ(2u, builder.DetachHeadsToList(&root));
        EXPECT_EQ("(<top>(<version><-12>()(\"s\")))", TreeText(&root));

        // Used again: only the first head is wanted, the others are freed.
        builder.PushValue("x", false);
        builder.Pop();
        builder.PushValue("y", false);
        CQSANode* pHead = builder.DetachHead();
        EXPECT_EQ("(<x>)", TreeText(pHead));
        alloc.FreeNode(pHead);
        EXPECT_EQ(nullptr, builder.DetachHead());

        builder.PushValue("dropped", true);
        builder.Reset();
        EXPECT_EQ(0u, builder.GetNumHeads());
        builder.AddValue("dropped with the builder", true);
    }
    EXPECT_EQ(0, alloc.m_nOut);
}

TEST(NodeBuilder, CountsHeadsBeforeItClosesLists)
{
    struct CCase
    {
        const char* m_pszEvents; // ( Push, ) Pop, a AddValue
        const char* m_pszTree;
    };
    for (const CCase& c :
         {CCase{"(", "()"}, {"((", "()"}, {"a(", "(<a>)"}, {"(a((", "((<a>(())))"}, {"(a", "((<a>))"}})
    {
        CBookAlloc alloc;
        CRoot root(alloc);
        CQSANodeBuilder builder(&alloc);
        for (const char* p = c.m_pszEvents; *p != '\0'; ++p)
            EXPECT_TRUE(*p == '(' ? builder.Push() : builder.AddValue("a", false));
        builder.DetachHeadsToList(&root);
        EXPECT_EQ(c.m_pszTree, TreeText(&root)) << c.m_pszEvents;
    }
}

TEST(NodeBuilder, HoldsToItsLimits)
{
    CQSALoadOnlyAlloc alloc(1 << 20);
    CRoot root(alloc);
    CQSANodeBuilder builder(&alloc);
    for (int i = 0; i < 1023; ++i)
        ASSERT_TRUE(builder.Push()) << i;
    EXPECT_FALSE(builder.Push());
    EXPECT_NE(nullptr, builder.Pop());
    EXPECT_TRUE(builder.Push());
    builder.Reset();

    ASSERT_TRUE(builder.Push());
    for (uint32_t i = 0; i < CQSANodeBuilder::c_nMaxPending; ++i)
        ASSERT_TRUE(builder.AddValue("a", false)) << i;
    EXPECT_FALSE(builder.AddValue("a", false));
    EXPECT_TRUE(builder.Push());
    EXPECT_EQ(nullptr, builder.Pop()) << "an empty list finds no place either";
    const CQSANode* pList = builder.Pop();
    ASSERT_NE(nullptr, pList);
    EXPECT_EQ(CQSANodeBuilder::c_nMaxPending, pList->GetNumElements());
    EXPECT_TRUE(builder.AddValue("a", false)) << "its elements wait no longer";
}

TEST(NodeBuilder, KeepsOrderOverItsRows)
{
    CQSADefaultAlloc alloc;
    CRoot root(alloc);
    CQSANodeBuilder builder(&alloc);
    for (int i = 0; i < 2500; ++i)
        builder.AddValue(i);
    EXPECT_EQ(2500u, builder.DetachHeadsToList(&root));
    for (uint32_t i = 0; i < 2500; ++i)
        ASSERT_EQ(std::to_string(i), root.GetElement(i)->GetValue());
}

TEST(NodeBuilder, LeaksNothingWhicheverAllocationFails)
{
    int nFailAt = 1;
    for (;; ++nFailAt)
    {
        CBookAlloc alloc(nFailAt);
        {
            CRoot root(alloc);
            CQSANodeBuilder builder(&alloc);
            builder.PushValue("a", false);
            builder.PushValue("b", true);
            builder.AddValue(7);
            builder.Pop();
            builder.Push();
            builder.Pop();
            builder.Pop();
            builder.AddValue("c", false);
            builder.Push();
            builder.AddValue("d", false);
            builder.DetachHeadsToList(&root);
            CQSANode* pRest = builder.DetachHead();
            alloc.FreeNode(pRest);
        }
        EXPECT_EQ(0, alloc.m_nOut) << nFailAt;
        if (alloc.m_nCalls < nFailAt)
            break;
    }
    EXPECT_GT(nFailAt, 15);
}

TEST(NodeBuilder, ReportsMisuse)
{
    CAssertCatcher catcher;
    CQSADefaultAlloc alloc;
    CQSANodeBuilder builder(&alloc);
    EXPECT_EQ(nullptr, builder.GetCacheElement(CQSANodeBuilder::c_nMaxPending));
    EXPECT_EQ("nRow < MAX_CACHE_ROWS|", catcher.Take());
    EXPECT_EQ(nullptr, builder.GetCacheElement(0));
    EXPECT_EQ("m_pCache[nRow]|", catcher.Take());
    builder.AddValue("kept", false);
    EXPECT_EQ(0u, builder.DetachHeads(nullptr, 1));
    EXPECT_EQ("ppNodeList|", catcher.Take());
    EXPECT_EQ(1u, builder.GetNumHeads());
    CQSANodeBuilder homeless(nullptr);
    EXPECT_EQ("m_pAllocator|", catcher.Take());
    EXPECT_FALSE(homeless.PushValue("a", false));
    EXPECT_EQ(nullptr, homeless.Pop());
}
