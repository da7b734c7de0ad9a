// SPDX-License-Identifier: 0BSD
#pragma once

#include <string>
#include <string_view>
#include <vector>

// A file below the resource root: its name as effects refer to it, with backslashes, and its bytes.
struct CResource
{
    std::string m_sName;
    std::string m_sBytes;
};

// The sample's resources, some 30 KB in all: small textures, sounds and models.
std::vector<CResource> MakeResources();

// The names that begin with a folder. An effect may use each of them.
std::vector<std::string> ResourceNames(std::string_view sFolder);
