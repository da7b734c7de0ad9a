#include <gtest/gtest.h>

#include "SmallFile.h"
#include "game/Listing.h"
#include "game/Playback.h"

TEST(PackedFileReading, GivesAllThatTheFileHoldsInEitherByteOrder)
{
    for (const bool bBig : {false, true})
    {
        CPackedFile file;
        std::string sError;
        CSmallFile small(bBig);
        ASSERT_TRUE(ReadPackedFile(small.Bytes(), SmallTypes(), file, sError)) << sError;
        EXPECT_EQ(bBig, file.m_pFile->m_bBigEndian);
        EXPECT_EQ(1u, EmberdeckKeyCount(file.m_pFile.get(), 0));
        EXPECT_EQ(2u, EmberdeckKeyCount(file.m_pFile.get(), 1));
        EXPECT_EQ(16u, file.m_Strings.size());
        ASSERT_EQ(2u, file.m_Effects.size());
        const CEffect& fire = file.m_Effects[0];
        EXPECT_EQ("Fire", fire.m_sName);
        EXPECT_EQ(4000u, fire.m_nPhaseLength);
        ASSERT_EQ(3u, fire.m_Keys.size());
        ASSERT_EQ(9u, fire.m_Keys[0].m_Properties.size());
        EXPECT_EQ("a\\b.dds", Evaluate(fire.m_Keys[0].m_Properties[0], 0).m_sText);
        EXPECT_EQ(-2.0, Evaluate(fire.m_Keys[0].m_Properties[4], 0).m_Numbers[2]);
        EXPECT_EQ(-3, Evaluate(fire.m_Keys[0].m_Properties[7], 0).m_Numbers[0]);
        EXPECT_EQ(fire.m_Keys[0].m_Properties[2].m_nCurve, fire.m_Keys[2].m_Properties[0].m_nCurve);
        EXPECT_EQ(5u, fire.m_Keys[2].m_nLink);
        EXPECT_EQ(&fire, file.FindEffect("FIRE"));
        EXPECT_EQ(nullptr, file.FindEffect("Fir"));
    }
}

TEST(PackedFileReading, JsonHoldsBytesAsCharactersAndFloatsWhole)
{
    const CPackedFile file = ReadSmallFile();
    const std::string sJson = DumpAsJson(file, nullptr);
    EXPECT_EQ(0u, sJson.find("{\"header\":{\"magic\":1481003857,\"fileVersion\":2,\"typeTableVersion\":7,"));
    EXPECT_NE(std::string::npos,
              sJson.find("\"byteOrder\":\"little\",\"keyCounts\":[1,2],\"strings\":[[0,\"Fire\"],"));
    EXPECT_NE(std::string::npos,
              sJson.find("\"type\":\"Filename\",\"curve\":false,\"values\":[{\"time\":0,\"value\":"
                         "\"a\\u005cb.dds\"}]}"));
    EXPECT_NE(std::string::npos, sJson.find("\"type\":\"Int\",\"curve\":true,\"curveOffset\":20,\"values\":"
                                            "[{\"time\":0,\"value\":4},{\"time\":0.5,\"value\":-6}]}"));
    EXPECT_NE(std::string::npos, sJson.find("{\"time\":1,\"value\":[0,0,1,0.5]}"));
    EXPECT_NE(std::string::npos, sJson.find("\"effectNames\":[\"Fire\",\"D\\u00fcster\"]}\n"));
    const std::string sOne = DumpAsJson(file, &file.m_Effects[1]);
    EXPECT_NE(std::string::npos, sOne.find("\"effects\":[{\"name\":\"D\\u00fcster\","));
    EXPECT_EQ(std::string::npos, sOne.find("\"values\""));
}
