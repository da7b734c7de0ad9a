#include "PlainNodeReader.h"

#include <utility>

namespace
{
constexpr size_t c_nMaxDepth = 1023;
constexpr size_t c_nMaxWaiting = 2048 * 1024;
constexpr size_t c_nMaxAtom = 1023;

bool IsWhite(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

bool EndsValue(char c)
{
    return IsWhite(c) || c == '(' || c == ')' || c == '"';
}

class CPlainReader
{
public:
    explicit CPlainReader(std::string_view text) : m_Text(text), m_Levels(1) {}

    bool Read()
    {
        while (m_nPos < m_Text.size())
        {
            const char c = m_Text[m_nPos++];
            if (IsWhite(c))
                continue;
            if (c == '(')
            {
                if (m_Levels.size() > c_nMaxDepth)
                    return false;
                m_Levels.emplace_back();
            }
            else if (c == ')')
            {
                CloseList();
            }
            else if (!ReadAtom(c))
            {
                return false;
            }
        }
        const size_t nMaxHeads = m_nWaiting; // counted while lists are still open
        while (m_Levels.size() > 1)
            CloseList();
        if (m_Levels[0].size() > nMaxHeads)
            m_Levels[0].resize(nMaxHeads);
        return true;
    }

    std::vector<CPlainNode> TakeNodes() { return std::move(m_Levels[0]); }

private:
    bool ReadAtom(char cFirst)
    {
        CPlainNode atom;
        atom.m_bAtom = true;
        atom.m_bString = cFirst == '"';
        if (!atom.m_bString)
            --m_nPos;
        while (m_nPos < m_Text.size())
        {
            const char c = m_Text[m_nPos];
            if (atom.m_bString ? c == '"' : EndsValue(c))
                break;
            if (atom.m_sValue.size() < c_nMaxAtom)
                atom.m_sValue += c;
            ++m_nPos;
        }
        if (atom.m_bString && m_nPos < m_Text.size())
            ++m_nPos;                                                    // the closing quote
        atom.m_sValue.resize(std::string(atom.m_sValue.c_str()).size()); // up to a NUL byte
        if (m_nWaiting == c_nMaxWaiting)
            return false;
        ++m_nWaiting;
        m_Levels.back().push_back(std::move(atom));
        return true;
    }

    void CloseList()
    {
        if (m_Levels.size() == 1)
            return;
        CPlainNode list;
        list.m_Elements = std::move(m_Levels.back());
        m_Levels.pop_back();
        m_nWaiting -= list.m_Elements.size();
        if (m_nWaiting == c_nMaxWaiting)
            return; // no place for one more: the list goes
        ++m_nWaiting;
        m_Levels.back().push_back(std::move(list));
    }

    std::string_view m_Text;
    size_t m_nPos = 0;
    std::vector<std::vector<CPlainNode>> m_Levels; // elements of the top level and of each open list
    size_t m_nWaiting = 0;                         // of them all together
};
} // namespace

bool PlainReadNodes(std::string_view text, std::vector<CPlainNode>& nodes)
{
    CPlainReader reader(text);
    nodes.clear();
    if (!reader.Read())
        return false;
    nodes = reader.TakeNodes();
    return true;
}
