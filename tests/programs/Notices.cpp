#include <fstream>

#include "programs/Programs.h"

// What is meant to be copied into games says itself that it may be.
TEST(Notices, WhatGamesCopySaysThatItIsFree)
{
    const std::filesystem::path source = EMBERDECK_SOURCE_DIR;
    std::vector<std::filesystem::path> files = {source / "Engine/sdk/inc/effecttypes.h",
                                                source / "Engine/sdk/inc/emberdeck_effects.h",
                                                source / "docs/manual/smallest-plugin.c"};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(source / "samples/bonfire"))
    {
        const std::string sKind = entry.path().extension().string();
        if (sKind == ".c" || sKind == ".cpp" || sKind == ".h" || sKind == ".sh")
            files.push_back(entry.path());
    }
    EXPECT_GT(files.size(), 30u);
    for (const std::filesystem::path& file : files)
    {
        std::ifstream stream(file);
        std::string sHead, sLine;
        for (int i = 0; i < 2 && std::getline(stream, sLine); ++i)
            sHead += sLine;
        EXPECT_NE(std::string::npos, sHead.find("SPDX-License-Identifier: 0BSD")) << file;
    }
}
