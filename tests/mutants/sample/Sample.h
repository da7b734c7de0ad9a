#pragma once

#include <memory>
#include <string>
#include <vector>

int Distance(int nFrom, int nTo); // back counts double, and one more
bool IsWithin(int nAt, int nFirst, int nLast);
int Weigh(const std::vector<int>& values); // those below 3 are taken off
std::unique_ptr<std::string> Name(const char* pszName);
const char* Kind(int nKind);
int Fivefold(int nValue);
bool Flag(bool bTurned);

// Each operand once, the second one only when it is asked for.
bool Ask(int (*pCount)(int));
