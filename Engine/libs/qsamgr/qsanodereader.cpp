#include "qsamgr/qsanodereader.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include "qsamgr/qsaallocator.h"
#include "qsamgr/qsanodebuilder.h"
#include "qsamgr/qsareader.h"
#include "qsamgr/qsatextloader.h"

namespace
{
// About how long the text of a file is, from its size alone; 0 when even that isn't known.
size_t ExpectTextLen(const char* pszFilename, bool bCompressed)
{
    constexpr uintmax_t c_nUsualRatio = 5; // of text to its compressed form
    constexpr uintmax_t c_nMost = SIZE_MAX / 8;
    std::error_code error;
    const uintmax_t nSize = std::filesystem::file_size(pszFilename, error);
    return error ? 0 : static_cast<size_t>(std::min(nSize, c_nMost) * (bCompressed ? c_nUsualRatio : 1));
}

// On which line of a file's text, from 1, a byte stands.
uint64_t FindLine(const char* pszFilename, bool bCompressed, uint64_t nAt)
{
    const auto pFile = std::make_unique<CQSAFile>(pszFilename, true, bCompressed, false); // large
    char szPiece[16384];
    uint64_t nLine = 1;
    while (const auto nRead =
               pFile->ReadBlock(szPiece, static_cast<uint32_t>(std::min<uint64_t>(nAt, sizeof(szPiece)))))
    {
        nLine += static_cast<uint64_t>(std::count(szPiece, szPiece + nRead, '\n'));
        nAt -= nRead;
    }
    return nLine;
}

// Feeds the tokens to the builder. False when the load has to be given up.
bool BuildFromTokens(CQSAReader& reader, CQSANodeBuilder& builder)
{
    char szToken[CQSANodeReader::c_nMaxAtomLen + 1];
    for (;;)
    {
        bool bOk = true;
        switch (reader.NextToken(szToken, sizeof(szToken)))
        {
        case TOKEN_OPEN:
            bOk = builder.Push();
            break;
        case TOKEN_CLOSE:
            builder.Pop(); // with nothing open it does nothing
            break;
        case TOKEN_VALUE:
            bOk = builder.AddValue(szToken, false);
            break;
        case TOKEN_STRING:
            bOk = builder.AddValue(szToken, true);
            break;
        case TOKEN_END:
            return true;
        }
        if (!bOk)
            return false;
    }
}
} // namespace

bool CQSANodeReader::LoadEntireFile(const char* pszFilename, bool bCompressed, CQSANode* pRoot,
                                    CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    QS_ASSERT(pszFilename);
    if (pAllocator == nullptr || pszFilename == nullptr)
        return false;

    if (auto* pLoadOnly = dynamic_cast<CQSALoadOnlyAlloc*>(pAllocator))
    {
        CQSATextOutcome outcome;
        return LoadEntireFile(pszFilename, bCompressed, pRoot, pLoadOnly, outcome);
    }
    CQSAReader reader;
    return reader.Open(pszFilename, bCompressed) && LoadEntireFile(&reader, pRoot, pAllocator);
}

bool CQSANodeReader::LoadEntireFile(const char* pszFilename, bool bCompressed, CQSANode* pRoot,
                                    CQSALoadOnlyAlloc* pAllocator, CQSATextOutcome& outcome)
{
    QS_ASSERT(pAllocator);
    QS_ASSERT(pszFilename);
    if (pAllocator == nullptr || pszFilename == nullptr)
        return false;
    CQSAFile file(pszFilename, true, bCompressed, false);
    uint64_t nConflictAt = c_nNoConflict;
    const bool bLoaded = file.IsOpen() && QSALoadFile(file, ExpectTextLen(pszFilename, bCompressed), pRoot,
                                                      pAllocator, outcome, nConflictAt);
    if (nConflictAt != c_nNoConflict)
        outcome.m_nConflictLine = FindLine(pszFilename, bCompressed, nConflictAt);
    return bLoaded;
}

bool CQSANodeReader::LoadEntireFile(CQSAReader* pReader, CQSANode* pRoot, CQSAAllocator* pAllocator)
{
    QS_ASSERT(pAllocator);
    if (pAllocator == nullptr || pReader == nullptr || !pReader->IsOpen())
        return false;

    CQSANodeBuilder builder(pAllocator);
    if (!BuildFromTokens(*pReader, builder))
        return false; // the builder frees what it holds
    if (!pReader->Close())
        return false; // what can't be read looks like the end until the file is asked
    // Something waits, so something must arrive, or memory was out and the file would be lost in silence.
    const bool bAnyNode = builder.GetNumHeads() != 0;
    return builder.DetachHeadsToList(pRoot) != 0 || !bAnyNode || pRoot == nullptr;
}
