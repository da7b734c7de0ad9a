#pragma once

#include <cstdint>

#include "qsamgr/qsafile.h"

// What CQSAReader::NextToken gives.
enum EQSAToken : uint32_t
{
    TOKEN_END = 0,    // the stream has ended, or can't be read further
    TOKEN_OPEN = 1,   // (
    TOKEN_CLOSE = 2,  // )
    TOKEN_VALUE = 3,  // a bare value
    TOKEN_STRING = 4, // a quoted string, without its quotes
};

// Cuts a plain or compressed file of node text into tokens.
//
// The syntax works on bytes. Blank, tab, line feed and carriage return separate tokens; ( and ) are tokens; a
// double quote opens a string that runs to the next one or to the end, with no escapes; anything else is a
// bare value that runs up to the next of these or to the end.
class CQSAReader
{
public:
    CQSAReader() = default;
    ~CQSAReader() = default; // the file closes itself
    CQSAReader(const CQSAReader&) = delete;
    CQSAReader& operator=(const CQSAReader&) = delete;

    // Closes what is open first. False when the file can't be opened, or isn't a compressed one though it
    // should be.
    bool Open(const char* pszFilename, bool bCompressed);
    // False when the file had an I/O error.
    bool Close();
    bool IsOpen() const { return m_File.IsOpen(); }

    // The next token. The text of a value or string goes into the buffer of nBufferLen bytes, at least 2,
    // with a NUL behind it; a longer text is cut and still is one token. Other tokens leave the buffer alone.
    // A null buffer or a smaller size gives TOKEN_END, as does a closed reader; all but a size of 1 are reported.
    EQSAToken NextToken(char* pszValueBuffer, uint32_t nBufferLen);

private:
    EQSAToken ReadString(char* pszValueBuffer, uint32_t nBufferLen);
    EQSAToken ReadValue(uint8_t nFirst, char* pszValueBuffer, uint32_t nBufferLen);

    uint8_t m_cPushback = ' '; // byte that ended the last bare value; a blank when there is none
    CQSAFile m_File;
};
