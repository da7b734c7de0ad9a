#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

class CQSAFile;
class CQSANode;

// What stands before the next parenthesis or value of node text. A fresh one begins a text.
struct CQSATextLayout
{
    uint32_t m_nDepth = 0;        // lists open
    bool m_bNeedTab = false;      // a list has just ended: one tab before the next value
    bool m_bValueWritten = false; // since the last list's end
};

// Memory that text is written to. It grows as needed and keeps what it has: for whoever writes one text after
// the other.
class CQSATextBuffer
{
public:
    CQSATextBuffer() = default;
    ~CQSATextBuffer();
    CQSATextBuffer(const CQSATextBuffer&) = delete;
    CQSATextBuffer& operator=(const CQSATextBuffer&) = delete;

    std::string_view GetText() const { return {m_pBegin, m_nUsed}; }
    void Clear() { m_nUsed = 0; }

    // At least nSize bytes to write to, behind the text. Null when memory is out; the text stays.
    char* Reserve(size_t nSize);
    // So many of them are text now.
    void Commit(size_t nSize) { m_nUsed += nSize; }
    size_t GetRoom() const { return m_nCapacity - m_nUsed; }

private:
    char* m_pBegin = nullptr;
    size_t m_nUsed = 0;
    size_t m_nCapacity = 0;
};

// The fast road from a tree to node text: the same bytes as CQSAWriter puts for the same lists and values one
// by one, but put together in memory. CQSANodeWriter takes it by itself.
//
// Each writes a list with all that is in it, as it comes behind what layout tells, and brings layout up to
// date. An atom at the top is reported and gives false. So does an empty slot: the text ends before it, and
// the lists around it stay open.

// Behind what buffer holds. False also when memory is out.
bool QSASaveText(const CQSANode& node, CQSATextLayout& layout, CQSATextBuffer& buffer);

// To a file that is open for writing, by blocks. False also for the first block that can't be written; what
// follows isn't tried then.
bool QSASaveText(const CQSANode& node, CQSATextLayout& layout, CQSAFile& file);
