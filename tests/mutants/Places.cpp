#include "Places.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "Tokens.h"

namespace
{

using CNames = std::vector<std::string_view>;

bool IsOneOf(const CToken& token, const CNames& names)
{
    return token.m_eKind != TOKEN_TEXT && std::find(names.begin(), names.end(), token.m_sText) != names.end();
}

const CNames c_NoStatement = {
    "return",        "if",        "else",     "for",       "while",     "do",       "switch",   "case",
    "default",       "break",     "continue", "using",     "goto",      "typedef",  "const",    "static",
    "auto",          "struct",    "class",    "enum",      "throw",     "try",      "catch",    "template",
    "public",        "namespace", "private",  "protected", "constexpr", "delete",   "new",      "friend",
    "static_assert", "operator",  "extern",   "inline",    "virtual",   "explicit", "co_return"};
const CNames c_Assignments = {"=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="};

class CFinder
{
public:
    explicit CFinder(const std::string& sSource) : m_sSource(sSource), m_Tokens(Tokenize(sSource)) {}

    std::vector<CPlace> Run()
    {
        for (size_t i = 0; i < m_Tokens.size(); ++i)
        {
            if (const size_t nEnd = EndOfConstant(i))
            {
                i = nEnd - 1;
                continue;
            }
            Statement(i);
            Assertion(i);
            if (m_nAssertionEnd > i)
                continue; // its text is told: only whether it stands can be changed
            Comparison(i);
            Compound(i);
            Logic(i);
            Not(i);
            Constant(i);
            Condition(i);
            Return(i);
        }
        return std::move(m_Places);
    }

private:
    size_t Size() const { return m_Tokens.size(); }
    bool Is(size_t i, std::string_view sText) const { return i < Size() && m_Tokens[i].Is(sText); }
    bool IsName(size_t i) const { return i < Size() && m_Tokens[i].m_eKind == TOKEN_NAME; }
    bool Opens(size_t i) const { return Is(i, "(") || Is(i, "[") || Is(i, "{"); }
    bool Closes(size_t i) const { return Is(i, ")") || Is(i, "]") || Is(i, "}"); }
    size_t Partner(size_t i) const { return m_Tokens[i].m_nPartner; }

    std::string Text(size_t nFirst, size_t nLast) const
    {
        const size_t nBegin = m_Tokens[nFirst].m_nBegin;
        std::string sText;
        for (char c : m_sSource.substr(nBegin, m_Tokens[nLast].m_nEnd - nBegin))
        {
            if (!std::isspace(static_cast<unsigned char>(c)))
                sText += c;
            else if (!sText.empty() && sText.back() != ' ')
                sText += ' ';
        }
        return sText.size() > 70 ? sText.substr(0, 67) + "..." : sText;
    }

    // The writer of these sources sets off binary operators on both sides, and nothing else.
    bool IsSetOff(size_t i) const
    {
        const CToken& token = m_Tokens[i];
        return token.m_nBegin > 0 &&
               std::isspace(static_cast<unsigned char>(m_sSource[token.m_nBegin - 1])) &&
               token.m_nEnd < m_sSource.size() &&
               std::isspace(static_cast<unsigned char>(m_sSource[token.m_nEnd]));
    }

    CPlace& Add(size_t i, const std::string& sOld, const std::string& sNew)
    {
        m_Places.push_back({m_Tokens[i].m_nLine, sOld, sNew, {}});
        return m_Places.back();
    }

    void Wrap(CPlace& place, size_t nFirst, size_t nLast, const std::string& sOpen,
              const std::string& sClose) const
    {
        const size_t nBegin = m_Tokens[nFirst].m_nBegin;
        const size_t nEnd = m_Tokens[nLast].m_nEnd;
        place.m_Edits.push_back({CEdit::OPENS, nBegin, 0, nEnd, sOpen});
        place.m_Edits.push_back({CEdit::CLOSES, nEnd, 0, nBegin, sClose});
    }

    void Replace(CPlace& place, size_t i, const std::string& sText) const
    {
        const CToken& token = m_Tokens[i];
        place.m_Edits.push_back({CEdit::REPLACES, token.m_nBegin, token.m_nEnd - token.m_nBegin, 0, sText});
    }

    // One past the end of what begins here and must be known while compiling; 0 when nothing of it does.
    size_t EndOfConstant(size_t i) const
    {
        if (Is(i, "case"))
        {
            while (i < Size() && !Is(i, ":"))
                ++i;
            return i;
        }
        if (!IsOneOf(m_Tokens[i], {"constexpr", "static_assert", "enum", "using", "typedef", "alignas"}))
            return 0;
        for (; i < Size() && !Is(i, ";"); ++i)
        {
            if (!Opens(i) || Partner(i) == SIZE_MAX)
                continue;
            const bool bIsBody = Is(i, "{");
            const bool bIsCondition = Is(i - 1, "constexpr"); // "if constexpr (...)"
            i = Partner(i);
            if (bIsCondition || (bIsBody && (IsName(i + 1) || Is(i + 1, "}"))))
                return i + 1;
        }
        return i;
    }

    bool BeginsStatement(size_t i) const
    {
        const size_t nWithin = m_Tokens[i].m_nWithin;
        if (i == 0 || nWithin == SIZE_MAX || !Is(nWithin, "{"))
            return false;
        if (Is(i - 1, ";") || Is(i - 1, "{") || Is(i - 1, "}") || Is(i - 1, "else") || Is(i - 1, "do"))
            return true;
        if (Is(i - 1, ")"))
        {
            const size_t nOpen = Partner(i - 1);
            return nOpen != SIZE_MAX && nOpen > 0 && IsOneOf(m_Tokens[nOpen - 1], {"if", "for", "while"});
        }
        if (!Is(i - 1, ":"))
            return false;
        size_t nCase = i - 1; // the label before, if it is one
        while (nCase > 0 && !Is(nCase, ";") && !Is(nCase, "{") && !Is(nCase, "}") && !Is(nCase, "?"))
        {
            if (Is(nCase, "case") || Is(nCase, "default"))
                return true;
            --nCase;
        }
        return false;
    }

    // A call or an assignment left out.
    void Statement(size_t i)
    {
        if (!BeginsStatement(i) || IsOneOf(m_Tokens[i], c_NoStatement))
            return;
        size_t nAt = i;
        while (Is(nAt, "*") || Is(nAt, "++") || Is(nAt, "--"))
            ++nAt;
        if (!IsName(nAt) && !Is(nAt, "("))
            return;
        bool bDoes = nAt > i && !Is(nAt - 1, "*");
        for (bool bAfterName = false; !Is(nAt, ";"); ++nAt)
        {
            if (nAt >= Size() || (IsName(nAt) && bAfterName))
                return; // a declaration
            bAfterName = IsName(nAt);
            if (IsOneOf(m_Tokens[nAt], c_Assignments))
            {
                bDoes = true;
                while (nAt < Size() && !Is(nAt, ";"))
                {
                    if (Closes(nAt))
                        return;
                    nAt = Opens(nAt) && Partner(nAt) != SIZE_MAX ? Partner(nAt) + 1 : nAt + 1;
                }
                break;
            }
            if (Is(nAt, "(") || Is(nAt, "["))
            {
                bDoes = bDoes || Is(nAt, "(");
                if (Partner(nAt) == SIZE_MAX)
                    return;
                nAt = Partner(nAt);
            }
            else if (!bAfterName && !IsOneOf(m_Tokens[nAt], {".", "->", "::", "++", "--"}))
            {
                return;
            }
            bDoes = bDoes || Is(nAt, "++") || Is(nAt, "--");
        }
        if (!bDoes || nAt >= Size())
            return;
        CPlace& place = Add(i, Text(i, nAt), "left out");
        Wrap(place, i, nAt, "{ if (!EmberdeckFault(@)) ", " }");
    }

    void Assertion(size_t i)
    {
        if (IsName(i) && m_Tokens[i].m_sText.substr(0, 9) == "QS_ASSERT" && Is(i + 1, "(") &&
            Partner(i + 1) != SIZE_MAX)
            m_nAssertionEnd = Partner(i + 1);
    }

    void Comparison(size_t i)
    {
        struct COperator
        {
            std::string_view m_sText;
            const char* m_pszName;
            std::vector<size_t> m_Instead;
        };
        static const std::array<COperator, 10> s_Operators = {{{"<", "Less", {1, 3}},
                                                               {"<=", "LessEqual", {0, 2}},
                                                               {">", "Greater", {3, 1}},
                                                               {">=", "GreaterEqual", {2, 0}},
                                                               {"==", "Equal", {5}},
                                                               {"!=", "NotEqual", {4}},
                                                               {"+", "Plus", {7}},
                                                               {"-", "Minus", {6}},
                                                               {"*", "Times", {9}},
                                                               {"/", "Over", {8}}}};
        const CToken& token = m_Tokens[i];
        if (token.m_eKind != TOKEN_PUNCTUATION || i == 0 || !IsSetOff(i) || Is(i - 1, "template") ||
            Is(i - 1, "return"))
            return;
        for (const COperator& clean : s_Operators)
        {
            if (clean.m_sText != token.m_sText)
                continue;
            for (size_t nInstead : clean.m_Instead)
            {
                const COperator& faulty = s_Operators[nInstead];
                const std::string sOperator(clean.m_sText);
                CPlace& place = Add(i, sOperator, std::string(faulty.m_sText));
                Replace(place, i,
                        sOperator + " CEmberdeckOperator<CEmberdeck" + clean.m_pszName + ", CEmberdeck" +
                            faulty.m_pszName + ">{@} " + sOperator);
            }
        }
    }

    void Compound(size_t i)
    {
        if ((!Is(i, "+=") && !Is(i, "-=")) || !IsSetOff(i))
            return;
        const size_t nLast = EndOfOperand(i + 1, {";", ","});
        if (nLast == SIZE_MAX)
            return;
        CPlace& place = Add(i, std::string(m_Tokens[i].m_sText), Is(i, "+=") ? "-=" : "+=");
        Wrap(place, i + 1, nLast, "EmberdeckTurnedSign(@, ", ")");
    }

    // The last token before one of the ends at the same depth, or before the bracket that closes it.
    size_t EndOfOperand(size_t i, const CNames& ends) const
    {
        const size_t nFirst = i;
        while (i < Size() && !Closes(i) && !IsOneOf(m_Tokens[i], ends))
        {
            if (Opens(i) && Partner(i) == SIZE_MAX)
                return SIZE_MAX;
            i = Opens(i) ? Partner(i) + 1 : i + 1;
        }
        return i > nFirst && i < Size() ? i - 1 : SIZE_MAX;
    }

    size_t BeginOfOperand(size_t i, const CNames& ends) const
    {
        size_t nAt = i; // one past the token that is looked at
        while (nAt > 0 && !Opens(nAt - 1) && !IsOneOf(m_Tokens[nAt - 1], ends))
        {
            if (Closes(nAt - 1) && Partner(nAt - 1) == SIZE_MAX)
                return SIZE_MAX;
            nAt = Closes(nAt - 1) ? Partner(nAt - 1) : nAt - 1;
        }
        return nAt < i ? nAt : SIZE_MAX;
    }

    // By the law that "a or b" is "not (not a and not b)": neither operand is copied, and both are evaluated as ever.
    void Logic(size_t i)
    {
        const bool bAnd = Is(i, "&&");
        if ((!bAnd && !Is(i, "||")) || !IsSetOff(i))
            return;
        CNames ends = c_Assignments;
        for (std::string_view sEnd : {"return", ";", ",", "?", ":", "||"})
            ends.push_back(sEnd);
        CNames begins = ends;
        if (bAnd)
            ends.push_back("&&");
        else
            begins.erase(std::find(begins.begin(), begins.end(), "||"));
        const size_t nFirst = BeginOfOperand(i, begins);
        const size_t nLast = EndOfOperand(i + 1, ends);
        if (nFirst == SIZE_MAX || nLast == SIZE_MAX)
            return;
        CPlace& place = Add(i, std::string(m_Tokens[i].m_sText), bAnd ? "||" : "&&");
        Wrap(place, nFirst, nLast, "(EmberdeckFault(@) != (", "))");
        Wrap(place, nFirst, i - 1, "(EmberdeckFault(@) != static_cast<bool>(", "))");
        Wrap(place, i + 1, nLast, "(EmberdeckFault(@) != static_cast<bool>(", "))");
    }

    void Not(size_t i)
    {
        if (!Is(i, "!"))
            return;
        size_t nAt = i + 1;
        while (Is(nAt, "!") || Is(nAt, "*") || Is(nAt, "-"))
            ++nAt;
        if (!IsName(nAt) && !Is(nAt, "("))
            return;
        if (Is(nAt, "("))
            nAt = Partner(nAt);
        while (nAt != SIZE_MAX && nAt + 1 < Size())
        {
            if (Is(nAt + 1, "(") || Is(nAt + 1, "["))
                nAt = Partner(nAt + 1);
            else if (IsOneOf(m_Tokens[nAt + 1], {".", "->", "::"}) && IsName(nAt + 2))
                nAt += 2;
            else
                break;
        }
        if (nAt == SIZE_MAX)
            return;
        CPlace& place = Add(i, Text(i, nAt), Text(i + 1, nAt));
        Wrap(place, i, nAt, "(EmberdeckFault(@) != ", ")");
    }

    void Instead(size_t i, const std::string& sNew)
    {
        const std::string sOld(m_Tokens[i].m_sText);
        CPlace& place = Add(i, sOld, sNew);
        Replace(place, i, "(EmberdeckFault(@) ? " + sNew + " : " + sOld + ")");
    }

    void Constant(size_t i)
    {
        const CToken& token = m_Tokens[i];
        if (token.Is("true") || token.Is("false"))
            Instead(i, token.Is("true") ? "false" : "true");
        if (token.m_eKind != TOKEN_NUMBER)
            return;
        std::string sDigits(token.m_sText);
        sDigits.erase(std::remove(sDigits.begin(), sDigits.end(), '\''), sDigits.end());
        if (sDigits.find('.') != std::string::npos)
            return;
        char* pszEnd = nullptr;
        const bool bHex = sDigits.size() > 2 && (sDigits[1] == 'x' || sDigits[1] == 'X');
        const unsigned long long nValue = std::strtoull(sDigits.c_str(), &pszEnd, bHex ? 16 : 10);
        const std::string sSuffix = pszEnd;
        const auto Number = [&](unsigned long long nNumber)
        {
            char szNumber[32];
            std::snprintf(szNumber, sizeof(szNumber), bHex ? "0x%llX" : "%llu", nNumber);
            return szNumber + sSuffix;
        };
        Instead(i, Number(nValue + 1));
        if (nValue > 0)
            Instead(i, Number(nValue - 1));
        if (nValue > 1)
            Instead(i, Number(0));
    }

    void Condition(size_t i)
    {
        if (Is(i, "for") && Is(i + 1, "(") && Partner(i + 1) != SIZE_MAX)
        {
            const size_t nFirst = EndOfOperand(i + 2, {";"});
            if (nFirst == SIZE_MAX || !Is(nFirst + 1, ";"))
                return;
            const size_t nLast = EndOfOperand(nFirst + 2, {";"});
            if (nLast != SIZE_MAX)
                Wrapped(nFirst + 2, nLast, "false", "(", ") && !EmberdeckFault(@)");
            return;
        }
        if ((!Is(i, "if") && !Is(i, "while")) || !Is(i + 1, "(") || Partner(i + 1) == SIZE_MAX)
            return;
        const size_t nFirst = i + 2;
        const size_t nLast = Partner(i + 1) - 1;
        if (nLast < nFirst)
            return;
        Wrapped(nFirst, nLast, "negated", "EmberdeckFault(@) != static_cast<bool>(", ")");
        Wrapped(nFirst, nLast, "false", "(", ") && !EmberdeckFault(@)");
        if (Is(i, "if"))
            Wrapped(nFirst, nLast, "true", "(", ") || EmberdeckFault(@)");
    }

    void Wrapped(size_t nFirst, size_t nLast, const char* pszNew, const char* pszOpen, const char* pszClose)
    {
        CPlace& place = Add(nFirst, "condition " + Text(nFirst, nLast), pszNew);
        Wrap(place, nFirst, nLast, pszOpen, pszClose);
    }

    void Return(size_t i)
    {
        if (!Is(i, "return") || Is(i + 1, ";"))
            return;
        const size_t nLast = EndOfOperand(i + 1, {";"});
        if (nLast == SIZE_MAX || !Is(nLast + 1, ";"))
            return;
        const std::string sValue = Text(i + 1, nLast);
        for (const char* pszNothing :
             {"false", "nullptr", "0", "{}", "true"}) // the last two have kinds of their own
        {
            if (sValue == pszNothing)
                return;
        }
        CPlace& place = Add(i, "return " + sValue, "return {}");
        Wrap(place, i, nLast + 1, "{ if (EmberdeckFault(@)) return {}; ", " }");
    }

    const std::string& m_sSource;
    std::vector<CToken> m_Tokens;
    std::vector<CPlace> m_Places;
    size_t m_nAssertionEnd = 0; // the last token of the assertion that the search is in
};

} // namespace

std::vector<CPlace> FindPlaces(const std::string& sSource)
{
    return CFinder(sSource).Run();
}

std::string Plant(const std::string& sSource, const std::vector<CPlanted>& planted)
{
    std::vector<CEdit> edits;
    for (const CPlanted& one : planted)
    {
        for (CEdit edit : one.m_pPlace->m_Edits)
        {
            const std::string sFault = std::to_string(one.m_nFault);
            for (size_t nAt = edit.m_sText.find('@'); nAt != std::string::npos;
                 nAt = edit.m_sText.find('@', nAt))
                edit.m_sText.replace(nAt, 1, sFault);
            edits.push_back(edit);
        }
    }
    // At one place ranges close from the inside, then open from the outside; equal ranges close in turned order.
    std::stable_sort(edits.begin(), edits.end(),
                     [](const CEdit& a, const CEdit& b)
                     {
                         if (a.m_nAt != b.m_nAt || a.m_eKind != b.m_eKind)
                             return a.m_nAt != b.m_nAt ? a.m_nAt < b.m_nAt : a.m_eKind < b.m_eKind;
                         return a.m_eKind != CEdit::REPLACES && a.m_nOtherEnd > b.m_nOtherEnd;
                     });
    for (size_t i = 0; i < edits.size();)
    {
        size_t nEnd = i + 1;
        while (nEnd < edits.size() && edits[i].m_eKind == CEdit::CLOSES &&
               edits[nEnd].m_eKind == CEdit::CLOSES && edits[nEnd].m_nAt == edits[i].m_nAt &&
               edits[nEnd].m_nOtherEnd == edits[i].m_nOtherEnd)
            ++nEnd;
        std::reverse(edits.begin() + ptrdiff_t(i), edits.begin() + ptrdiff_t(nEnd));
        i = nEnd;
    }
    std::string sResult;
    size_t nDone = 0;
    for (const CEdit& edit : edits)
    {
        sResult.append(sSource, nDone, edit.m_nAt - nDone);
        sResult += edit.m_sText;
        nDone = edit.m_nAt + edit.m_nSize;
    }
    return sResult.append(sSource, nDone, std::string::npos);
}
