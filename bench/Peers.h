#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "qsamgr/qsanode.h"

// The same content as other formats hold it, and what people use to read and write these.

// A list as an array, an atom as a string.
std::string NodesAsJson(const CQSANode& root);
// A list as an element named by its first atom; its other atoms as text.
std::string NodesAsXml(const CQSANode& root);

// Each gives the seconds of one run, below 0 when it failed. What a run needs beside the content
// (a copy to parse in place, padding) is made before the clock starts.
double ParsePugixml(const std::string& sXml);
double ParsePugixmlInPlace(const std::string& sXml);
double ParseRapidJson(const std::string& sJson);
double ParseRapidJsonInSitu(const std::string& sJson);
double ParseSimdjson(const std::string& sJson); // a parser that is kept, as its makers advise
double ParseSimdjsonFresh(const std::string& sJson);

// Writers from a tree that was read before the clock starts.
class CPeerWriters
{
public:
    CPeerWriters(const std::string& sXml, const std::string& sJson);
    ~CPeerWriters();
    CPeerWriters(const CPeerWriters&) = delete;
    CPeerWriters& operator=(const CPeerWriters&) = delete;
    double WritePugixml() const;
    double WriteRapidJsonPretty() const;

private:
    struct CTrees;
    CTrees* m_pTrees;
};

struct CPacked
{
    std::vector<char> m_Bytes;
    double m_fSeconds = -1.0;
};
CPacked CompressZlib(const std::string& sText, int nLevel);
CPacked CompressLz4(const std::string& sText);
CPacked CompressZstd(const std::string& sText, int nLevel);
double DecompressZlib(const std::vector<char>& packed, size_t nSize);
double DecompressLz4(const std::vector<char>& packed, size_t nSize);
double DecompressZstd(const std::vector<char>& packed, size_t nSize);
double CopyMemory(const std::string& sText);

// Memory that a DOM of the content takes beyond the content's own text, in bytes.
uint64_t PugixmlMemory(const std::string& sXml);
