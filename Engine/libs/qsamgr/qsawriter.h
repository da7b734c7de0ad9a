#pragma once

#include <cstdint>

#include "qsamgr/qsafile.h"
#include "qsamgr/qsatextwriter.h"

// Puts node text on a file: parentheses, values with a blank behind each, and line feeds and tabs that make
// it readable. The bytes are fixed to the last tab.
//
// Values are written as they are: one that holds a double quote, or a bare one that holds white space or a
// parenthesis, doesn't read back as one atom. Writes of layout aren't checked; the file's Close tells of a
// failure that went unseen.
class CQSAWriter
{
public:
    // pFile is open for writing, isn't owned and outlives the writer, which never closes it by itself.
    explicit CQSAWriter(CQSAFile* pFile);

    // Whether the file is open. The operations below report a writer that isn't valid, and fail.
    bool IsValid() const;

    // Starts a list.
    bool BeginNode();
    // Ends a list. With no list open it still writes the parenthesis, and reports and gives false.
    bool EndNode();

    // Writes one value of nLen bytes, between double quotes if so told.
    bool Write(const void* pBytes, uint32_t nLen, bool bQuote);
    bool Write(const char* pszValue, bool bQuote);

    // Closes the file; its result. The writer counts no list as open afterwards.
    bool Close();

private:
    friend class CQSANodeWriter; // writes whole lists past the operations above

    bool WriteTabs(uint32_t nCount);

    CQSAFile* m_pFile;
    CQSATextLayout m_Layout;
};
