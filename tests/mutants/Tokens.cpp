#include "Tokens.h"

#include <cctype>
#include <cstdint>

namespace
{

constexpr std::string_view c_aPunctuation[] = {"<<=", ">>=", "...", "->*", "<=>", "::", "->", "++",
                                               "--",  "<<",  "<=",  ">=",  "==",  "!=", "&&", "||",
                                               "+=",  "-=",  "*=",  "/=",  "%=",  "&=", "|=", "^="};

bool IsNameLetter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

class CLexer
{
public:
    explicit CLexer(const std::string& sSource) : m_sSource(sSource) {}

    std::vector<CToken> Run()
    {
        while (SkipBlanks())
            AddToken();
        return std::move(m_Tokens);
    }

private:
    char At(size_t nAt) const { return nAt < m_sSource.size() ? m_sSource[nAt] : 0; }
    bool StartsWith(std::string_view sText) const
    {
        return m_sSource.compare(m_nAt, sText.size(), sText) == 0;
    }

    void Step()
    {
        if (At(m_nAt) == '\n')
        {
            ++m_nLine;
            m_bLineIsEmpty = true;
        }
        ++m_nAt;
    }

    void StepPast(std::string_view sEnd)
    {
        while (m_nAt < m_sSource.size() && !StartsWith(sEnd))
            Step();
        for (size_t i = 0; i < sEnd.size() && m_nAt < m_sSource.size(); ++i)
            Step();
    }

    void SkipDirective()
    {
        while (m_nAt < m_sSource.size() && At(m_nAt) != '\n')
        {
            if (At(m_nAt) == '\\')
                Step();
            Step();
        }
    }

    // To the next token; false at the end.
    bool SkipBlanks()
    {
        while (m_nAt < m_sSource.size())
        {
            if (std::isspace(static_cast<unsigned char>(At(m_nAt))))
                Step();
            else if (StartsWith("//"))
                StepPast("\n");
            else if (StartsWith("/*"))
                StepPast("*/");
            else if (At(m_nAt) == '#' && m_bLineIsEmpty)
                SkipDirective();
            else
                return true;
        }
        return false;
    }

    ETokenKind SkipToken()
    {
        const char c = At(m_nAt);
        if (StartsWith("R\""))
        {
            const size_t nOpen = m_sSource.find('(', m_nAt);
            StepPast(")" + m_sSource.substr(m_nAt + 2, nOpen - m_nAt - 2) + "\"");
            return TOKEN_TEXT;
        }
        if (c == '"' || c == '\'')
        {
            for (Step(); m_nAt < m_sSource.size() && At(m_nAt) != c; Step())
            {
                if (At(m_nAt) == '\\')
                    Step();
            }
            Step();
            return TOKEN_TEXT;
        }
        if (std::isdigit(static_cast<unsigned char>(c)) ||
            (c == '.' && std::isdigit(static_cast<unsigned char>(At(m_nAt + 1)))))
        {
            while (IsNameLetter(At(m_nAt)) || At(m_nAt) == '.' || At(m_nAt) == '\'' ||
                   ((At(m_nAt) == '-' || At(m_nAt) == '+') && (At(m_nAt - 1) == 'e' || At(m_nAt - 1) == 'E')))
                Step();
            return TOKEN_NUMBER;
        }
        if (IsNameLetter(c))
        {
            while (IsNameLetter(At(m_nAt)))
                Step();
            return TOKEN_NAME;
        }
        size_t nSize = 1;
        for (std::string_view sText : c_aPunctuation)
        {
            if (StartsWith(sText))
            {
                nSize = sText.size();
                break;
            }
        }
        m_nAt += nSize;
        return TOKEN_PUNCTUATION;
    }

    void AddToken()
    {
        CToken token = {
            TOKEN_NAME, {}, m_nAt, 0, m_nLine, SIZE_MAX, m_Open.empty() ? SIZE_MAX : m_Open.back()};
        token.m_eKind = SkipToken();
        m_bLineIsEmpty = false;
        token.m_nEnd = m_nAt;
        token.m_sText = std::string_view(m_sSource).substr(token.m_nBegin, m_nAt - token.m_nBegin);
        if (token.Is(")") || token.Is("]") || token.Is("}"))
        {
            if (!m_Open.empty())
            {
                token.m_nPartner = m_Open.back();
                token.m_nWithin = m_Tokens[token.m_nPartner].m_nWithin;
                m_Tokens[token.m_nPartner].m_nPartner = m_Tokens.size();
                m_Open.pop_back();
            }
        }
        else if (token.Is("(") || token.Is("[") || token.Is("{"))
        {
            m_Open.push_back(m_Tokens.size());
        }
        m_Tokens.push_back(token);
    }

    const std::string& m_sSource;
    size_t m_nAt = 0;
    int m_nLine = 1;
    bool m_bLineIsEmpty = true; // nothing but blanks before this place
    std::vector<CToken> m_Tokens;
    std::vector<size_t> m_Open;
};

} // namespace

std::vector<CToken> Tokenize(const std::string& sSource)
{
    return CLexer(sSource).Run();
}
