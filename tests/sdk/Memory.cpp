#include "qsmemorytracker.h"
#include "sdk/ChildProgram.h"

#include <cstdint>
#include <cstring>

TEST(Memory, HeapWithoutAManager)
{
    void* p = QSAllocate(100);
    ASSERT_NE(nullptr, p);
    EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(p) % alignof(std::max_align_t));
    std::memset(p, 1, 100);
    QSFree(p);
    void* pNothing = QSAllocate(0);
    EXPECT_NE(nullptr, pNothing);
    QSFree(pNothing);
    QSFree(nullptr);
    MemoryTrackerPush("file", 1, c_nMemoryCategory);
    MemoryTrackerPop();
}

// The manager of these tests writes to standard error when the tracker is used, and ends the process when it
// gets a block back that it didn't give.
TEST(Memory, ManagerTakesEveryAllocation)
{
    if (CChildProgram::IsChild())
    {
        void* p = QSAllocate(10);
        auto pObject = std::make_unique<std::string>(1000, 'x');
        MemoryTrackerPush("file.cpp", 12, c_nMemoryCategory);
        QSFree(p);
        MemoryTrackerPop();
        QSFree(QSAllocateTracked(20));
        return;
    }
    const CChildProgram child("Tool");
    child.Place("test_modules/QSMemory.so", "QSMemory.so");
    ASSERT_TRUE(child.Run()) << child.Output();
    EXPECT_NE(std::string::npos, child.Output().find("push file.cpp 12 3")) << child.Output();
    EXPECT_NE(std::string::npos, child.Output().find("pop 1"))
        << child.Output(); // one block came back between
    EXPECT_NE(std::string::npos, child.Output().find("Memory.cpp 33 3\npop 0")) << child.Output();
}

TEST(Memory, ManagerThatComesTooLateIsRefused)
{
#ifdef EMBERDECK_SANITIZED
    GTEST_SKIP() << "the sanitizer keeps new and delete";
#endif
    if (CChildProgram::IsChild())
    {
        QSFree(QSAllocate(10));
        MemoryTrackerPush("file.cpp", 12, c_nMemoryCategory);
        return;
    }
    const CChildProgram child("Tool");
    child.Place("test_modules/QSMemory.so", "libQSMemory.so");
    ASSERT_TRUE(child.Run("QSMEMORY_ALLOCATES=1")) << child.Output();
    EXPECT_EQ(std::string::npos, child.Output().find("push")) << child.Output();
}
