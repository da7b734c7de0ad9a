#pragma once

#include <string>
#include <string_view>

#include "batch/Batch.h"

// Bytes for a person: UTF-8 as it is, anything else read as Windows-1252.
std::string ReadableText(std::string_view sBytes);
// Bytes for a program: each byte as the character of its number, in UTF-8.
std::string ByteText(std::string_view sBytes);

// Bytes to standard output, as they are.
void Put(std::string_view sBytes);
// Prints a JSON document and a line end to standard output.
void PrintJson(const CJson& json);

// Collects standard output and tells at the end whether all of it could be written.
bool FlushOutput();

// Prints "emberdeck-batch: " and the text to standard error; the result is eExit_Failed.
int Fail(const std::string& sText);
// The same for a file that a command could not read or write: with what stands in the way, if that can be seen.
int FailToRead(const std::string& sPath);
int FailToWrite(const std::string& sPath);
