// The compressed container: an input as a file to decode, and as data to encode, each by the library in
// memory, by its stream and by the twin.

#include <algorithm>
#include <vector>

#include "FuzzTools.h"
#include "plain/PlainContainer.h"
#include "qsamgr/qsacompressedfile.h"

namespace
{
using CBytes = std::vector<uint8_t>;

constexpr uint32_t c_nCacheSizes[] = {1, 3, 16, 1024, 65536};

// In pieces that the input chooses, single bytes among them.
CBytes DecodeStream(const char* pszPath, bool& bOk, uint32_t nSeed)
{
    const auto pFile = std::make_unique<CQSACompressedFile>();
    CBytes out;
    bOk = pFile->Open(pszPath, CQSACompressedFile::OPEN_READ, c_nCacheSizes[nSeed % 5], false);
    for (bool bMore = bOk; bMore;)
    {
        nSeed = nSeed * 1664525 + 1013904223;
        const uint32_t nLen = nSeed >> 30 ? nSeed >> 20 & 1023 : nSeed >> 28 & 3;
        uint8_t aPiece[1023];
        const uint32_t nRead = pFile->ReadBlock(aPiece, nLen);
        out.insert(out.end(), aPiece, aPiece + nRead);
        uint8_t nByte = 0;
        bMore = nRead == nLen && pFile->ReadByte(&nByte);
        if (bMore)
            out.push_back(nByte);
    }
    Require(pFile->Close(), "an error without a cause");
    return out;
}

void EncodeStream(const char* pszPath, const uint8_t* pData, size_t nSize, uint32_t nSeed)
{
    const auto pFile = std::make_unique<CQSACompressedFile>();
    bool bOk = pFile->Open(pszPath, CQSACompressedFile::OPEN_WRITE, c_nCacheSizes[nSeed % 5], false);
    for (size_t nPos = 0; bOk && nPos < nSize;)
    {
        nSeed = nSeed * 1664525 + 1013904223;
        const size_t nLen = std::min<size_t>(nSeed >> 22, nSize - nPos);
        bOk = nLen == 0 ? pFile->WriteByte(pData[nPos++])
                        : pFile->WriteBlock(pData + nPos, static_cast<uint32_t>(nLen));
        nPos += nLen;
    }
    Require(pFile->Close() && bOk, "the stream can't be written");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize)
{
    CatchAsserts();
    static CMemoryFile s_File;
    const std::string_view sBytes(reinterpret_cast<const char*>(pData), nSize);
    const uint32_t nSeed = static_cast<uint32_t>(std::hash<std::string_view>()(sBytes));

    CBytes decoded, twin;
    const bool bDecoded = QSADecompress(pData, nSize, decoded);
    Require(PlainDecompress(pData, nSize, twin) == bDecoded, "twin and decoder differ on the header");
    Require(!bDecoded || twin == decoded, "twin and decoder differ");
    Require(decoded.size() <= nSize * 8, "more than the promised size");
    s_File.Write(sBytes);
    bool bStream = false;
    Require(DecodeStream(s_File.Path(), bStream, nSeed) == decoded && bStream == bDecoded,
            "stream and decoder differ");

    CBytes encoded;
    Require(QSACompress(pData, nSize, encoded), "no memory");
    Require(PlainCompress(pData, nSize) == encoded, "twin and encoder differ");
    EncodeStream(s_File.Path(), pData, nSize, nSeed);
    Require(s_File.Read() == std::string(encoded.begin(), encoded.end()), "stream and encoder differ");
    Require(QSADecompress(encoded.data(), encoded.size(), decoded, nSize) &&
                decoded == CBytes(pData, pData + nSize),
            "what was encoded decodes to something else");
    return 0;
}
