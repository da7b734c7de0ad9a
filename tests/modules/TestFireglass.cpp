// The standard test types as a plug-in that is really loaded: unloading it takes its tables out of memory,
// so that whoever still looks at them is caught.
#include <cstdlib>
#include <memory>

#include "support/TestPlugin.h"

namespace
{
std::unique_ptr<CTestPlugin> s_pPlugin;
}

EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable)
{
    if (std::getenv("EMBERDECK_TEST_PLUGIN_ENDS"))
        std::_Exit(0);
    s_pPlugin = std::make_unique<CTestPlugin>();
    *ppTable = DescribeStandardTypes(*s_pPlugin).table();
}

EMBERDECK_EXPORT void EmberdeckReleaseInfo(CEffectTypeTable*)
{
    s_pPlugin.reset();
}
