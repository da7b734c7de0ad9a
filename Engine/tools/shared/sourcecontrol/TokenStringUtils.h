#pragma once

#include <string>
#include <vector>

// Cuts a text at each byte that is one of szTokens and appends the pieces to tokens, empty ones too:
// "a;;b" gives three, a text that ends in a delimiter an empty last one. Nothing happens for an empty
// text, for no delimiters, and for a null, which is reported.
void TokenizeString(const char* szString, std::vector<std::string>& tokens, const char* szTokens);
