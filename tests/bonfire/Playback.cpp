#include "game/Playback.h"

#include <gtest/gtest.h>

#include "SmallFile.h"
#include "game/Listing.h"

namespace
{
enum
{
    eSize = 2,
    eFrame = 3,
    eOffset = 4,
    eColor = 5,
    eWords = 6
};
} // namespace

TEST(Playback, ValuesAlongACurve)
{
    const CPackedFile file = ReadSmallFile();
    const auto& props = file.m_Effects[0].m_Keys[0].m_Properties;
    const auto number = [&](int nProp, double t, size_t i = 0)
    { return Evaluate(props[size_t(nProp)], t).m_Numbers[i]; };
    // A line from 1 to 3, held outside.
    EXPECT_EQ(1.0, number(eSize, -1));
    EXPECT_EQ(2.0, number(eSize, 0.5));
    EXPECT_EQ(3.0, number(eSize, 2));
    // A step from 4 to -6 comes behind its time, and the last value holds.
    EXPECT_EQ(4.0, number(eFrame, 0.25));
    EXPECT_EQ(-6.0, number(eFrame, 0.5)); // the last key's own time is its own
    CLooseValues loose;
    const CProperty frames =
        loose.Property(*props[eFrame].m_pDesc, {{0.0f, {4}}, {0.5f, {uint32_t(-6)}}, {0.75f, {4}}});
    EXPECT_EQ(4.0, Evaluate(frames, 0.5).m_Numbers[0]); // with a key behind it the old value still holds
    EXPECT_EQ(-6.0, Evaluate(frames, 0.500001).m_Numbers[0]);
    EXPECT_EQ(4.0, Evaluate(frames, 0.75).m_Numbers[0]);
    // All four channels, alpha too; a constant never changes; texts can't be mixed.
    EXPECT_EQ(0.75, number(eColor, 0.25));
    EXPECT_EQ(0.875, number(eColor, 0.25, 3));
    EXPECT_EQ(-2.0, number(eOffset, 0.9, 2));
    EXPECT_EQ("hot", Evaluate(props[eWords], 0.2).m_sText);
    EXPECT_EQ("", Evaluate(props[eWords], 0.25).m_sText);
    // Two keys of one time: the line jumps, and nothing divides by zero.
    const CProperty sizes = loose.Property(
        *props[eSize].m_pDesc, {{0.0f, {Bits(1)}}, {0.5f, {Bits(1)}}, {0.5f, {Bits(7)}}, {1.0f, {Bits(3)}}});
    EXPECT_EQ(1.0, Evaluate(sizes, 0.5).m_Numbers[0]);
    EXPECT_EQ(5.0, Evaluate(sizes, 0.75).m_Numbers[0]);
}

TEST(Playback, EventsInOrderOfTime)
{
    const CPackedFile file = ReadSmallFile();
    std::string s;
    for (const CEvent& event : ListEvents(file.m_Effects[0]))
        s += (event.m_bStart ? "+" : "-") + std::to_string(event.m_pKey->m_nID) + "@" +
             std::to_string(int(event.m_fTime)) + " ";
    // At 2 s the first key ends, and a key without length starts before it ends.
    EXPECT_EQ("+5@0 -5@2 +6@2 +8@2 -6@2 -8@3 ", s);
    EXPECT_EQ(4.0, Duration(file.m_Effects[0]));
}

TEST(Playback, LinksAndReferences)
{
    const CPackedFile file = ReadSmallFile();
    const CEffect& fire = file.m_Effects[0];
    EXPECT_EQ(nullptr, FindLinkedKey(fire, fire.m_Keys[0])); // its own id: no link
    EXPECT_EQ(nullptr, FindLinkedKey(fire, fire.m_Keys[1])); // to a key that is gone
    EXPECT_EQ(&fire.m_Keys[0], FindLinkedKey(fire, fire.m_Keys[2]));
    EXPECT_EQ((std::vector<std::string_view>{"a", "b c"}), SplitReference(" a ;; b c; "));
    EXPECT_TRUE(SplitReference("").empty());

    const std::string sList = ListEffect(file, fire);
    EXPECT_EQ(0u, sList.find("effect \"Fire\", 4000 ms, 3 keys\n  0 s: start Spark 5, until 2 s\n"));
    EXPECT_NE(std::string::npos,
              sList.find("      Blend = Alpha\n      Size = [0] 1 [0.25] 1.5 [0.5] 2 [0.75] 2.5 [1] 3\n"));
    EXPECT_NE(std::string::npos,
              sList.find("      Child = \"fire; Gone\"  plays \"Fire\", \"Gone\" (missing)\n"));
    EXPECT_NE(std::string::npos, sList.find("start Wait 6, until 2 s, would move with 9 (missing)\n"));
    EXPECT_NE(std::string::npos, sList.find("start Spark 8, until 3 s, moves with Spark 5\n"));
}

TEST(Playback, WhatRunsAtAMoment)
{
    const CPackedFile file = ReadSmallFile();
    const CEffect& fire = file.m_Effects[0];
    // The first key plays the effect that it stands in: five times in all, and no deeper.
    const std::vector<CVisibleKey> at1 = ListVisible(file, fire, 1);
    ASSERT_EQ(5u, at1.size());
    EXPECT_EQ(0.5, at1[0].m_fTime);
    EXPECT_EQ(0u, at1[0].m_nNesting);
    EXPECT_EQ(4u, at1[4].m_nNesting);
    EXPECT_EQ(&fire, at1[4].m_pEffect);

    const std::vector<CVisibleKey> at2 = ListVisible(file, fire, 2); // the end isn't part of a key
    ASSERT_EQ(1u, at2.size());
    EXPECT_EQ(8u, at2[0].m_pKey->m_nID);
    EXPECT_EQ(&fire.m_Keys[0], at2[0].m_pMovesWith);
    EXPECT_TRUE(ListVisible(file, fire, 3).empty());
    EXPECT_TRUE(ListVisible(file, fire, -0.1).empty());
}
