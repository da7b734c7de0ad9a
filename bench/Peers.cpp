#include "bench/Peers.h"

#include <lz4.h>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <simdjson.h>
#include <zlib.h>
#include <zstd.h>

#include <cstring>
#include <memory>
#include <pugixml.hpp>

#include "bench/Measure.h"

namespace
{
void AppendJson(std::string& sOut, const CQSANode& node)
{
    if (node.IsAtom())
    {
        sOut += '"';
        for (const char* p = node.GetValue(); *p; ++p)
        {
            if (*p == '\\' || *p == '"')
                sOut += '\\';
            sOut += *p;
        }
        sOut += '"';
        return;
    }
    sOut += '[';
    for (uint32_t i = 0; i < node.GetNumElements(); ++i)
    {
        if (i > 0)
            sOut += ',';
        AppendJson(sOut, *node.GetElement(i));
    }
    sOut += ']';
}

void AppendXml(std::string& sOut, const CQSANode& node)
{
    const char* pszName =
        node.GetNumElements() > 0 && node.GetElement(0)->IsAtom() ? node.GetElement(0)->GetValue() : "l";
    (sOut += '<') += pszName;
    sOut += '>';
    for (uint32_t i = 1; i < node.GetNumElements(); ++i)
    {
        const CQSANode& child = *node.GetElement(i);
        if (child.IsList())
            AppendXml(sOut, child);
        else
        {
            if (i > 1)
                sOut += ' ';
            sOut += child.GetValue();
        }
    }
    (sOut += "</") += pszName;
    sOut += '>';
}
} // namespace

std::string NodesAsJson(const CQSANode& root)
{
    std::string sOut;
    AppendJson(sOut, root);
    return sOut;
}

std::string NodesAsXml(const CQSANode& root)
{
    std::string sOut = "<file>";
    for (uint32_t i = 0; i < root.GetNumElements(); ++i)
        AppendXml(sOut, *root.GetElement(i));
    return sOut + "</file>";
}

double ParsePugixml(const std::string& sXml)
{
    const double fStart = Now();
    pugi::xml_document document;
    const bool bOk = bool(document.load_buffer(sXml.data(), sXml.size()));
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double ParsePugixmlInPlace(const std::string& sXml)
{
    std::string sCopy = sXml;
    const double fStart = Now();
    pugi::xml_document document;
    const bool bOk = bool(document.load_buffer_inplace(sCopy.data(), sCopy.size()));
    const double fTime = Now() - fStart;
    return bOk ? fTime : -1.0;
}

double ParseRapidJson(const std::string& sJson)
{
    const double fStart = Now();
    rapidjson::Document document;
    document.Parse(sJson.data(), sJson.size());
    const double fTime = Now() - fStart;
    return document.HasParseError() ? -1.0 : fTime;
}

double ParseRapidJsonInSitu(const std::string& sJson)
{
    std::string sCopy = sJson;
    const double fStart = Now();
    rapidjson::Document document;
    document.ParseInsitu(sCopy.data());
    const double fTime = Now() - fStart;
    return document.HasParseError() ? -1.0 : fTime;
}

double ParseSimdjson(const std::string& sJson)
{
    static simdjson::dom::parser s_Parser;
    static simdjson::padded_string s_Padded;
    if (s_Padded.size() != sJson.size())
        s_Padded = simdjson::padded_string(sJson);
    const double fStart = Now();
    simdjson::dom::element element;
    const auto error = s_Parser.parse(s_Padded).get(element);
    const double fTime = Now() - fStart;
    return error ? -1.0 : fTime;
}

double ParseSimdjsonFresh(const std::string& sJson)
{
    const simdjson::padded_string padded(sJson);
    const double fStart = Now();
    simdjson::dom::parser parser;
    simdjson::dom::element element;
    const auto error = parser.parse(padded).get(element);
    const double fTime = Now() - fStart;
    return error ? -1.0 : fTime;
}

struct CPeerWriters::CTrees
{
    pugi::xml_document m_Xml;
    rapidjson::Document m_Json;
};

CPeerWriters::CPeerWriters(const std::string& sXml, const std::string& sJson)
    : m_pTrees(std::make_unique<CTrees>().release())
{
    m_pTrees->m_Xml.load_buffer(sXml.data(), sXml.size());
    m_pTrees->m_Json.Parse(sJson.data(), sJson.size());
}

CPeerWriters::~CPeerWriters()
{
    std::unique_ptr<CTrees>(m_pTrees).reset();
}

// Both write into memory that is kept from run to run, as Emberdeck's own writer does.
double CPeerWriters::WritePugixml() const
{
    struct CWriter : pugi::xml_writer
    {
        void write(const void* pData, size_t nSize) override
        {
            m_sText.append(static_cast<const char*>(pData), nSize);
        }
        std::string m_sText;
    };
    static CWriter s_Writer;
    s_Writer.m_sText.clear();
    const double fStart = Now();
    m_pTrees->m_Xml.save(s_Writer, "\t");
    const double fTime = Now() - fStart;
    return s_Writer.m_sText.empty() ? -1.0 : fTime;
}

double CPeerWriters::WriteRapidJsonPretty() const
{
    static rapidjson::StringBuffer s_Buffer;
    s_Buffer.Clear();
    const double fStart = Now();
    rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(s_Buffer);
    writer.SetIndent('\t', 1);
    m_pTrees->m_Json.Accept(writer);
    const double fTime = Now() - fStart;
    return s_Buffer.GetSize() == 0 ? -1.0 : fTime;
}

CPacked CompressZlib(const std::string& sText, int nLevel)
{
    CPacked packed;
    uLongf nSize = compressBound(sText.size());
    packed.m_Bytes.resize(nSize);
    const double fStart = Now();
    const int nResult = compress2(reinterpret_cast<Bytef*>(packed.m_Bytes.data()), &nSize,
                                  reinterpret_cast<const Bytef*>(sText.data()), sText.size(), nLevel);
    const double fTime = Now() - fStart;
    packed.m_Bytes.resize(nSize);
    packed.m_fSeconds = nResult == Z_OK ? fTime : -1.0;
    return packed;
}

CPacked CompressLz4(const std::string& sText)
{
    CPacked packed;
    packed.m_Bytes.resize(static_cast<size_t>(LZ4_compressBound(static_cast<int>(sText.size()))));
    const double fStart = Now();
    const int nSize =
        LZ4_compress_default(sText.data(), packed.m_Bytes.data(), static_cast<int>(sText.size()),
                             static_cast<int>(packed.m_Bytes.size()));
    const double fTime = Now() - fStart;
    packed.m_Bytes.resize(static_cast<size_t>(nSize > 0 ? nSize : 0));
    packed.m_fSeconds = nSize > 0 ? fTime : -1.0;
    return packed;
}

CPacked CompressZstd(const std::string& sText, int nLevel)
{
    CPacked packed;
    packed.m_Bytes.resize(ZSTD_compressBound(sText.size()));
    const double fStart = Now();
    const size_t nSize =
        ZSTD_compress(packed.m_Bytes.data(), packed.m_Bytes.size(), sText.data(), sText.size(), nLevel);
    const double fTime = Now() - fStart;
    packed.m_fSeconds = ZSTD_isError(nSize) ? -1.0 : fTime;
    packed.m_Bytes.resize(ZSTD_isError(nSize) ? 0 : nSize);
    return packed;
}

double DecompressZlib(const std::vector<char>& packed, size_t nSize)
{
    std::vector<char> out(nSize);
    uLongf nOut = nSize;
    const double fStart = Now();
    const int nResult = uncompress(reinterpret_cast<Bytef*>(out.data()), &nOut,
                                   reinterpret_cast<const Bytef*>(packed.data()), packed.size());
    const double fTime = Now() - fStart;
    return nResult == Z_OK && nOut == nSize ? fTime : -1.0;
}

double DecompressLz4(const std::vector<char>& packed, size_t nSize)
{
    std::vector<char> out(nSize);
    const double fStart = Now();
    const int nOut = LZ4_decompress_safe(packed.data(), out.data(), static_cast<int>(packed.size()),
                                         static_cast<int>(nSize));
    const double fTime = Now() - fStart;
    return nOut == static_cast<int>(nSize) ? fTime : -1.0;
}

double DecompressZstd(const std::vector<char>& packed, size_t nSize)
{
    std::vector<char> out(nSize);
    const double fStart = Now();
    const size_t nOut = ZSTD_decompress(out.data(), nSize, packed.data(), packed.size());
    const double fTime = Now() - fStart;
    return nOut == nSize ? fTime : -1.0;
}

double CopyMemory(const std::string& sText)
{
    std::vector<char> out(sText.size());
    const double fStart = Now();
    std::memcpy(out.data(), sText.data(), sText.size());
    // Keeps the compiler from leaving the copy out.
    asm volatile("" : : "r"(out.data()) : "memory");
    return Now() - fStart;
}

uint64_t PugixmlMemory(const std::string& sXml)
{
    static uint64_t s_nBytes;
    static uint64_t s_nPeak;
    s_nBytes = s_nPeak = 0;
    pugi::set_memory_management_functions(
        [](size_t nSize) -> void*
        {
            s_nBytes += nSize;
            s_nPeak = s_nBytes > s_nPeak ? s_nBytes : s_nPeak;
            return std::malloc(nSize);
        },
        [](void* p) { std::free(p); });
    std::string sCopy = sXml;
    pugi::xml_document document;
    document.load_buffer_inplace(sCopy.data(), sCopy.size());
    const uint64_t nPeak = s_nPeak;
    document.reset();
    pugi::set_memory_management_functions(std::malloc, std::free);
    return nPeak;
}
