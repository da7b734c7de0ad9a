#include "shared/sourcecontrol/TokenStringUtils.h"

TEST(TokenizeString, KeepsEmptyPiecesAndWhatIsThere)
{
    std::vector<std::string> tokens{"first"};
    TokenizeString("a;;b", tokens, ";");
    TokenizeString("\\x/y\\", tokens, "\\/");
    EXPECT_EQ((std::vector<std::string>{"first", "a", "", "b", "", "x", "y", ""}), tokens);

    tokens.clear();
    TokenizeString("", tokens, ";");
    TokenizeString("a;b", tokens, "");
    TokenizeString(nullptr, tokens, ";");
    TokenizeString("a;b", tokens, nullptr);
    EXPECT_TRUE(tokens.empty());
    TokenizeString(";", tokens, ";");
    TokenizeString("whole", tokens, ";");
    EXPECT_EQ((std::vector<std::string>{"", "", "whole"}), tokens);
}
