#include "app/ContentStamp.h"

#include "app/StoreNames.h"
#include "support/TempDir.h"

TEST(ContentStamp, TellsWhatHasBecomeOfAFile)
{
    using EState = CContentStamp::EState;
    CTempDir dir;
    const std::string sFile = dir.write("a", "one");
    CContentStamp stamp(sFile);
    EXPECT_EQ(3u, stamp.GetSize());
    EXPECT_EQ(HashOf("one"), stamp.GetHash());
    CContentStamp noted(sFile, 3, stamp.GetHash()); // by another program
    CContentStamp late(sFile);                      // whose hash nobody asked for
    const auto both = [&](EState eState, const char* pszWhat)
    {
        EXPECT_EQ(eState, stamp.Look()) << pszWhat;
        EXPECT_EQ(eState, noted.Look()) << pszWhat;
    };
    both(EState::eSame, "untouched");
    std::filesystem::remove(sFile);
    both(EState::eGone, "removed");
    WriteBytes(sFile, "two");
    both(EState::eOther, "as long, with other bytes");
    WriteBytes(sFile, "longer");
    both(EState::eOther, "longer");
    WriteBytes(sFile, "one");
    std::filesystem::last_write_time(sFile,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    both(EState::eSame, "written anew");
    EXPECT_EQ(EState::eOther, late.Look());
    EXPECT_EQ("", late.GetHash()) << "what is there now isn't what was loaded";

    EXPECT_EQ(EState::eUnknown, CContentStamp().Look());
    CContentStamp none(dir.path("none"));
    EXPECT_EQ(EState::eUnknown, none.Look());
    EXPECT_EQ("", none.GetHash());
}
