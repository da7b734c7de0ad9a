#pragma once

#include <cstdint>

class CQSANode;

// An atom's text as a whole number, by the rules of CQSAConverter::StrToInt. A null or a list is reported and
// gives 0. There is no getter for other types: their readers work from CQSANode::GetValue.
int32_t GetInt32(const CQSANode* pNode);
