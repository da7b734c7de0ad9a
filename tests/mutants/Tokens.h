#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The tokens of a C++ source without its comments and preprocessor lines.
enum ETokenKind
{
    TOKEN_NAME,
    TOKEN_NUMBER,
    TOKEN_TEXT, // a string or a character
    TOKEN_PUNCTUATION
};

struct CToken
{
    ETokenKind m_eKind;
    std::string_view m_sText; // within the source
    size_t m_nBegin;          // offsets in the source
    size_t m_nEnd;
    int m_nLine; // from 1
    // The index of the bracket that belongs to this one, of ( ) [ ] { }; SIZE_MAX for every other token.
    size_t m_nPartner;
    // The index of the innermost bracket that this token lies within; SIZE_MAX outside of all.
    size_t m_nWithin;

    bool Is(std::string_view sText) const { return m_eKind != TOKEN_TEXT && m_sText == sText; }
};

// The source must outlive the tokens. An odd bracket has no partner.
std::vector<CToken> Tokenize(const std::string& sSource);
