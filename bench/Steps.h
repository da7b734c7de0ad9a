#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The program's own steps, each once on given content: the seconds of one run, below 0 when it failed.
double StepTextToTree(const std::string& sText);
double StepTextToTreeKept(const std::string& sText); // into an allocator that is kept, blocks and all
double StepTreeToText(const std::string& sText);     // read before the clock starts; into memory that is kept
double StepCompress(const std::string& sText, std::vector<uint8_t>* pOut = nullptr);
double StepDecompress(const std::vector<uint8_t>& packed, size_t nSize); // into memory made before
double StepLoadLibrary(const std::string& sFile);
double StepSaveLibrary(const std::string& sFile, const std::string& sOut); // loaded before the clock starts
double StepPackLibrary(const std::string& sFile, const std::string& sOut); // loaded before the clock starts

// The plain twins of the steps.
double PlainTextToTree(const std::string& sText);
double PlainCompressStep(const std::string& sText);
double PlainDecompressStep(const std::vector<uint8_t>& packed);

// Whether the fast roads and the twins agree on this content; tells on standard error where they don't.
bool CheckAgainstTwins(const std::string& sText);

// Memory that the node tree takes, in bytes: the pages that are touched meanwhile and stay, tails of blocks
// among them. In a process that hasn't yet given memory back, or these would be taken again unseen.
uint64_t TreeMemory(const std::string& sText);
