#include <cstdlib>

#include "programs/Programs.h"

namespace
{
// The programs keep copies and settings in the user's folders: here these are the test's own.
class COwnFolders : public testing::Environment
{
public:
    void SetUp() override
    {
        m_pDir = std::make_unique<CTempDir>();
        setenv("XDG_STATE_HOME", m_pDir->path("state").c_str(), 1);
        setenv("XDG_CONFIG_HOME", m_pDir->path("config").c_str(), 1);
    }
    void TearDown() override { m_pDir.reset(); }

private:
    std::unique_ptr<CTempDir> m_pDir;
};
const auto* const s_pFolders = testing::AddGlobalTestEnvironment(std::make_unique<COwnFolders>().release());
} // namespace
