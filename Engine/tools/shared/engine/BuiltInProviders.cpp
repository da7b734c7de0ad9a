#include "shared/engine/BuiltInProviders.h"

#include "shared/engine/GitProvider.h"
#include "shared/engine/SubversionProvider.h"

void RegisterBuiltInProviders(CProviderRegistry& registry, const CProviderHost& host)
{
    registry.Register(CGitProvider::c_Id, "Git", [host] { return std::make_unique<CGitProvider>(host); });
    registry.Register(CSubversionProvider::c_Id, "Subversion",
                      [host] { return std::make_unique<CSubversionProvider>(host); });
}
