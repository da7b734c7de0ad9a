#include "game/Player.h"

#include <gtest/gtest.h>

#include "SmallFile.h"

TEST(Player, StepsRoundTheFileAndKeepsTime)
{
    const CPackedFile file = ReadSmallFile();
    CPlayer player;
    EXPECT_EQ(nullptr, player.GetEffect());
    player.Step(1); // nothing to step to
    player.Advance(1);
    player.SetFile(&file);
    EXPECT_EQ("Fire", player.GetEffect()->m_sName);
    player.Advance(3);
    EXPECT_FALSE(player.HasLooped());
    player.Advance(1.5); // Fire has 4 s
    EXPECT_TRUE(player.HasLooped());
    EXPECT_DOUBLE_EQ(0.5, player.GetTime());
    player.TogglePause();
    player.Advance(1);
    EXPECT_DOUBLE_EQ(0.5, player.GetTime());
    player.Step(-1); // to the last one, which has no length and lasts a moment all the same
    EXPECT_EQ("D\xfcster", player.GetEffect()->m_sName);
    EXPECT_EQ(0.0, player.GetTime());
    EXPECT_FALSE(player.HasLooped());
    EXPECT_GT(player.GetLength(), 0.1);
    player.Step(3);
    EXPECT_EQ("Fire", player.GetEffect()->m_sName);
    EXPECT_FALSE(player.Choose("Gone"));
    EXPECT_TRUE(player.Choose("d\xfcSTER"));
}

TEST(Player, KeepsTheEffectByNameOverAReload)
{
    const CPackedFile file = ReadSmallFile();
    CPackedFile turned = ReadSmallFile();
    std::swap(turned.m_Effects[0], turned.m_Effects[1]);
    CPackedFile without = ReadSmallFile();
    without.m_Effects.erase(without.m_Effects.begin());

    CPlayer player;
    player.SetFile(&file);
    player.Advance(1.25);
    player.SetFile(&turned); // the same effect at the same moment, though it lies elsewhere
    EXPECT_EQ(1u, player.GetIndex());
    EXPECT_EQ("Fire", player.GetEffect()->m_sName);
    EXPECT_DOUBLE_EQ(1.25, player.GetTime());
    player.SetFile(&without); // gone: something plays, from its start
    EXPECT_EQ("D\xfcster", player.GetEffect()->m_sName);
    EXPECT_EQ(0.0, player.GetTime());
    player.SetFile(nullptr); // damaged
    EXPECT_EQ(nullptr, player.GetEffect());
    player.SetFile(&file); // and back
    EXPECT_EQ("Fire", player.GetEffect()->m_sName);

    CPlayer early; // told before there is a file
    EXPECT_TRUE(early.Choose("D\xfcster"));
    early.SetFile(&file);
    EXPECT_EQ(1u, early.GetIndex());
}
