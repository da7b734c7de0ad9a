// A provider that knows every file, says that it is open, and refuses all the rest with its own words.

#include <cstring>
#include <memory>

#include "shared/sourcecontrol/SourceControlProvider.h"

namespace
{

using CStatus = CSourceControlStatus;
using CText = std::string;

class CTestProvider final : public ISourceControlProvider
{
public:
    CStatus Initialize(SourceControlWindow, int) override { return {}; }
    CStatus ChooseDatabase(CText&) override { return No(); }
    CStatus OpenDatabase(const CText&, int) override { return {}; }
    CStatus GetFileStatus(const CText&, uint32_t& nStatus) override
    {
        nStatus = c_nOpenHere;
        return {};
    }
    CStatus SyncFile(const CText&, int) override { return No(); }
    CStatus CheckOutFile(const CText&, const CText&, int) override { return No(); }
    CStatus SubmitFile(const CText&, const CText&, int) override { return No(); }
    CStatus RevertFile(const CText&, const CText&, int) override { return No(); }
    CStatus AddFile(const CText&, const CText&, int) override { return No(); }
    CStatus AddFolder(const CText&, const CText&, const CText&, int) override { return No(); }
    CStatus IsKnown(const CText&, bool& bKnown) override
    {
        bKnown = true;
        return {};
    }
    CStatus LocalToDepot(const CText& sLocal, CText& sDepot) override
    {
        sDepot = sLocal;
        return {};
    }
    CStatus GetCapabilities(uint32_t& n) override
    {
        n = 0;
        return {};
    }
    CStatus ShowHistory(const CText&) override { return No(); }
    CStatus SetActiveChangeSet(int) override { return No(); }
    CStatus CreateChangeSet(const CText&, const CText&, int) override { return No(); }

private:
    static CStatus No() { return {c_nSourceControlFailed, "not in this test"}; }
};

} // namespace

extern "C" __attribute__((visibility("default"))) uint32_t SourceControlProviderVersion()
{
    return 1;
}

extern "C" __attribute__((visibility("default"))) ISourceControlProvider*
MakeSourceControlProvider(const char* szClassId)
{
    if (std::strcmp(szClassId, "{0F5B7C1E-4D2A-4E63-9B18-7A6C5D4E3F21}") != 0)
        return nullptr;
    return std::make_unique<CTestProvider>().release();
}
