#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

class CQSAFile;

// Lines of node text as the effect file has them: tabs by depth, the text, CR LF. Lines gather in a
// buffer and go to the file in blocks, so that a line costs no call into it. Results of the writes
// aren't kept: the file's Close tells of a failure.
//
// Without a file nothing is written, and only the depth is measured.
//
// Words and names are literals of a few dozen bytes, which the compiler copies as numbers. Within a line the
// place to write to is a local variable: behind a byte that is stored a member would have to be read again.
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
    template <size_t N>
    void Line(uint32_t nDepth, const char (&szLine)[N])
    {
        char* pNext = Put(Begin(nDepth), szLine);
        m_pNext = Put(pNext, "\r\n");
    }
    // ( NAME VALUE... ) with whole numbers in decimal, and others with six decimals, correctly rounded, the
    // same under every locale.
    template <size_t N, class... TValues>
    void ValueLine(uint32_t nDepth, const char (&szName)[N], TValues... values)
    {
        char* pNext = Put(Put(Begin(nDepth), "( "), szName);
        ((pNext = PutNumber(Put(pNext, " "), values)), ...);
        m_pNext = Put(pNext, " )\r\n");
    }
    // ( NAME "TEXT" ). A text is cut where the reader would cut it, at a NUL and behind c_nMaxText bytes,
    // and a double quote becomes a single one, since nothing else would load again.
    template <size_t N>
    void TextLine(uint32_t nDepth, const char (&szName)[N], std::string_view sText)
    {
        char* pNext = Put(Put(Begin(nDepth), "( "), szName);
        pNext = PutText(Put(pNext, " \""), sText);
        m_pNext = Put(pNext, "\" )\r\n");
    }

    // Hands what is gathered to the file.
    void Flush();

    // Lists that are open, the line's own included, at the deepest line so far.
    uint32_t GetMaxOpenLists() const { return m_nMaxDepth + 1; }

private:
    static constexpr size_t c_nBufferSize = 64 * 1024;
    static constexpr size_t c_nMaxLine = 2048; // without its tabs
    static constexpr uint32_t c_nUsualTabs = 32;

    // Puts the tabs; from the result on there is room for c_nMaxLine bytes.
    char* Begin(uint32_t nDepth)
    {
        m_nMaxDepth = nDepth > m_nMaxDepth ? nDepth : m_nMaxDepth;
        if (nDepth > c_nUsualTabs || static_cast<size_t>(m_pEnd - m_pNext) < c_nUsualTabs + c_nMaxLine)
            return BeginSlowly(nDepth);
        std::memset(m_pNext, '\t', c_nUsualTabs); // as many as are needed, and room for some more
        return m_pNext + nDepth;
    }
    char* BeginSlowly(uint32_t nDepth);

    template <size_t N>
    static char* Put(char* pNext, const char (&szPiece)[N])
    {
        static_assert(N <= 64);
        std::memcpy(pNext, szPiece, N - 1);
        return pNext + N - 1;
    }
    static char* PutNumber(char* pNext, int32_t nValue);
    static char* PutNumber(char* pNext, float fValue);
    static char* PutText(char* pNext, std::string_view sText);

    CQSAFile* m_pFile;
    std::unique_ptr<char[]> m_pBuffer;
    char* m_pNext;
    char* m_pEnd;
    uint32_t m_nMaxDepth = 0;
};
