#pragma once

#include <cstddef>

class CQSAFile;
class CQSALoadOnlyAlloc;
class CQSANode;

// The fast road from node text to a tree: the same tree as CQSAReader and CQSANodeBuilder make of the same
// bytes, with the same limits and the same failures (CQSANodeReader tells them), but scanned 64 bytes at a
// time and put straight into the allocator's blocks. pRoot is an empty list of the caller's; its elements
// come behind what it may hold. False leaves it untouched.

// From memory. The tree keeps nothing of the text.
bool QSALoadText(const char* pText, size_t nLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc);

// From where an open file stands to its end, through a window of fixed size: memory is taken for the tree
// alone, so that a file which fails early has cost little, whatever its size. nExpectedLen is about how long
// the text will be, 0 when nobody knows; it only helps to choose the size of blocks. Closes the file on
// success.
bool QSALoadFile(CQSAFile& file, size_t nExpectedLen, CQSANode* pRoot, CQSALoadOnlyAlloc* pAlloc);
