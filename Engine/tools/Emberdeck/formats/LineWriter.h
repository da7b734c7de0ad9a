#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

class CQSAFile;

// Lines of node text as the effect file has them: tabs by depth, the text, CR LF. Lines gather in a
// buffer and go to the file in blocks, so that a line costs no call into it. Results of the writes
// aren't kept: the file's Close tells of a failure.
//
// Without a file nothing is written, and only the depth is measured.
class CLineWriter
{
public:
    // Longest text between quotes that the reader takes in one atom.
    static constexpr size_t c_nMaxText = 1023;

    // pFile is open for writing and outlives the writer; null only measures.
    explicit CLineWriter(CQSAFile* pFile);
    ~CLineWriter() { Flush(); }
    CLineWriter(const CLineWriter&) = delete;
    CLineWriter& operator=(const CLineWriter&) = delete;

    // A whole line, as it stands.
    void Line(uint32_t nDepth, std::string_view sText);
    // ( NAME VALUE ) with a decimal number.
    void IntLine(uint32_t nDepth, std::string_view sName, int32_t nValue);
    // ( NAME "TEXT" ), see AddText.
    void TextLine(uint32_t nDepth, std::string_view sName, std::string_view sText);

    // A line piece by piece: Begin, pieces, End. The pieces of one line take less than c_nMaxLine bytes.
    static constexpr size_t c_nMaxLine = 2048;
    void Begin(uint32_t nDepth);
    void Add(std::string_view sPiece);
    void AddInt(int32_t nValue);
    // With six decimals, correctly rounded, the same under every locale.
    void AddFixed(float fValue);
    // Between quotes. A text is cut where the reader would cut it, at a NUL and behind c_nMaxText bytes,
    // and a double quote becomes a single one, since nothing else would load again.
    void AddText(std::string_view sText);
    void End();

    // Hands what is gathered to the file.
    void Flush();

    // Lists that are open, the line's own included, at the deepest line so far.
    uint32_t GetMaxOpenLists() const { return m_nMaxDepth + 1; }

private:
    static constexpr size_t c_nBufferSize = 64 * 1024;

    void PutTabs(uint32_t nCount);

    CQSAFile* m_pFile;
    std::unique_ptr<char[]> m_pBuffer;
    size_t m_nUsed = 0;
    uint32_t m_nMaxDepth = 0;
};
