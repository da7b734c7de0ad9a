// A file that another program keeps locked.

#include <cerrno>
#include <functional>

#include <sys/file.h>
#include <unistd.h>

#include "FaultBench.h"
#include "platform/FileLock.h"

namespace
{
// While it is set, somebody is always quicker: it does something with the file, and the lock isn't had.
std::function<void(int nFile)> s_Quicker;
} // namespace

extern "C" int __real_flock(int nFile, int nKind);
extern "C" int __wrap_flock(int nFile, int nKind)
{
    if (!s_Quicker)
        return __real_flock(nFile, nKind);
    s_Quicker(nFile);
    errno = EWOULDBLOCK;
    return -1;
}

TEST(BusyFile, ASaveToANewNameThatGetsNoLockLeavesNothing)
{
    CFaultBench bench;
    const auto pApp = bench.StartWith("new.Fx00a", 1, "New");
    std::filesystem::create_symlink("elsewhere.Fx00a", bench.path("link.Fx00a"));
    CFileLock::SetWait(std::chrono::milliseconds(20));
    const auto save = [&](const std::string& sName, const std::function<void(int)>& quicker)
    {
        bench.prompts.m_nFailures = 0;
        pApp->m_sFileName = bench.path(sName);
        s_Quicker = quicker;
        EXPECT_FALSE(pApp->SaveEffectFile());
        s_Quicker = nullptr;
        EXPECT_EQ(1, bench.prompts.m_nFailures);
    };
    save("new.Fx00a", [](int) {});
    EXPECT_FALSE(bench.dir.has("game/new.Fx00a"));
    save("link.Fx00a", [](int) {});
    EXPECT_TRUE(std::filesystem::is_symlink(bench.path("link.Fx00a")));
    EXPECT_FALSE(bench.dir.has("game/elsewhere.Fx00a"));
    // What the other program has written there meanwhile stays.
    save("new.Fx00a", [&](int) { bench.dir.write("game/new.Fx00a", "its own"); });
    EXPECT_EQ("its own", ReadBytes(bench.path("new.Fx00a")));

    CFileLock::SetWait(std::chrono::seconds(10));
    EXPECT_TRUE(pApp->SaveEffectFile());
}
