#pragma once

// A scope in which code of a plug-in runs: while it is loaded, called and unloaded. What it prints to standard
// output goes to standard error, for our own output may be read by another program. Scopes nest, the outermost
// name counts; all belong to one thread.
class CPluginCall
{
public:
    explicit CPluginCall(const char* pszPlugin);
    ~CPluginCall();
    CPluginCall(const CPluginCall&) = delete;
    CPluginCall& operator=(const CPluginCall&) = delete;

private:
    bool m_bOutermost;
    int m_nOutput = -1; // the real standard output; -1: it is where it was
};

// For a program whose exit status others rely on: from now on a plug-in that ends the program with exit, or by a
// signal, is named on standard error, and the status of an exit is 1. The name is the program's own.
void TellOfPluginsThatEnd(const char* pszProgram);

// Ends the program at once, without exit handlers: with that status or, told as above, with 1 while a plug-in is
// called. For a program that gives its plug-ins this in place of the system's _exit.
[[noreturn]] void EndProgram(int nStatus);

// From now on what is printed to standard output goes to standard error. For a program that has printed all it
// wanted to, and whose plug-in may have left something behind that runs at its end.
void CloseOutputToPlugins();
