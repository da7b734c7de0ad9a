#include "qsassert.h"

#include <string_view>

namespace
{

bool IsNameByte(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// Place of the bracket that opens the group closed at nClose; npos when it isn't opened.
size_t FindOpening(std::string_view s, size_t nClose)
{
    int nDepth = 0;
    for (size_t n = nClose + 1; n-- > 0;)
    {
        if (s[n] == ')')
            ++nDepth;
        else if (s[n] == '(' && --nDepth == 0)
            return n;
    }
    return std::string_view::npos;
}

// Drops what a compiler adds for templates, and goes from a lambda to the function around it.
std::string_view CutTail(std::string_view s)
{
    if (!s.empty() && s.back() == ']')
        s = s.substr(0, s.find(" ["));
    for (const std::string_view sLambda : {"::<lambda", "::(anonymous class)", "::(lambda"})
        s = s.substr(0, s.find(sLambda));
    return s;
}

// What stands before the argument list.
std::string_view CutArguments(std::string_view s)
{
    for (;;)
    {
        const size_t nClose = s.rfind(')');
        const size_t nOpen = nClose == std::string_view::npos ? nClose : FindOpening(s, nClose);
        if (nOpen == std::string_view::npos || nOpen == 0)
            return s;
        const std::string_view sHead = s.substr(0, nOpen);
        if (sHead.back() != ')' || sHead.ends_with("operator()"))
            return sHead;
        // A result that is a pointer to a function stands round the name: void (* Get(int))(char)
        const size_t nInner = FindOpening(sHead, sHead.size() - 1);
        if (nInner == std::string_view::npos)
            return sHead;
        s = sHead.substr(nInner + 1, sHead.size() - nInner - 2);
    }
}

// Place of the word operator in the name's last part, or the name's length.
size_t FindOperator(std::string_view s)
{
    constexpr std::string_view c_sOperator = "operator";
    const size_t n = s.rfind(c_sOperator);
    if (n == std::string_view::npos || (n > 0 && IsNameByte(s[n - 1])))
        return s.size();
    const size_t nBehind = n + c_sOperator.size();
    return nBehind < s.size() && IsNameByte(s[nBehind]) ? s.size() : n;
}

// Start of the qualified name that ends at nEnd: behind the result type.
size_t FindNameStart(std::string_view s, size_t nEnd)
{
    int nDepth = 0;
    size_t n = nEnd;
    for (; n > 0; --n)
    {
        const char c = s[n - 1];
        if (c == '>' || c == ')' || c == '}')
            ++nDepth;
        else if (c == '<' || c == '(' || c == '{')
            --nDepth;
        else if (nDepth == 0 && (c == ' ' || c == '*' || c == '&'))
            break;
        if (nDepth < 0)
            break;
    }
    return n;
}

// Bounded output that leaves out groups in brackets and the empty qualifiers that these leave behind.
class CNameWriter
{
public:
    CNameWriter(char* pszName, uint32_t nSize) : m_pszName(pszName), m_nSize(nSize) {}

    void PutQualified(std::string_view s)
    {
        int nDepth = 0;
        for (size_t n = 0; n < s.size(); ++n)
        {
            const char c = s[n];
            if (c == '<' || c == '(' || c == '{')
                ++nDepth;
            else if (c == '>' || c == ')' || c == '}')
                --nDepth;
            else if (nDepth == 0 && s.substr(n).starts_with("::") && (m_nUsed == 0 || Last() == ':'))
                ++n;
            else if (nDepth == 0)
                Put(c);
        }
    }

    void Put(char c)
    {
        if (m_nUsed + 1 < m_nSize)
            m_pszName[m_nUsed++] = c;
    }

    void Finish() { m_pszName[m_nUsed] = '\0'; }

private:
    char Last() const { return m_pszName[m_nUsed - 1]; }

    char* m_pszName;
    uint32_t m_nSize;
    uint32_t m_nUsed = 0;
};

} // namespace

void CutFunctionName(const char* pszSignature, char* pszName, uint32_t nSize)
{
    if (!pszName || nSize == 0)
        return;
    const std::string_view s = CutArguments(CutTail(pszSignature ? pszSignature : ""));
    const size_t nOperator = FindOperator(s);
    const size_t nStart = FindNameStart(s, nOperator);

    CNameWriter writer(pszName, nSize);
    writer.PutQualified(s.substr(nStart, nOperator - nStart));
    for (const char c : s.substr(nOperator))
        writer.Put(c);
    writer.Finish();
}
