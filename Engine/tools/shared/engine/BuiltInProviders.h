#pragma once

#include "shared/engine/ProviderRegistry.h"
#include "shared/engine/SourceControlFront.h"

// The providers that come with the program: Git and Subversion.
void RegisterBuiltInProviders(CProviderRegistry& registry, const CProviderHost& host);
