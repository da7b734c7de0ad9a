#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Everything that the workflow and the editors ask a person. A window answers with dialogs, the
// batch command from its command line, a test from a list. Every call returns when the question is
// answered; texts are bytes, shown as they are, with no mark-up and no shortcut marks. A line end, with or without
// a carriage return, begins a new line.
//
// A call may run a message loop: anything that a person can do elsewhere may have happened when it returns. Whoever
// asks holds no pointer over it that a command could make invalid, and keeps what it needs in copies. Only from
// the thread of the front. An exception of memory that is out may come through (TryAllocating).

enum class EButtons
{
    eOk,
    eOkCancel,
    eYesNo,
    eYesNoCancel
};
enum class EIcon
{
    eNone,
    eStop,
    eQuestion,
    eExclamation
};
enum class EAnswer
{
    eOk,
    eCancel,
    eYes,
    eNo
};

// What a file dialog is to look like. All of it may stay empty.
struct CFileDialogRequest
{
    bool m_bOpen = true;             // gives only existing files
    std::string m_sDefaultExtension; // as given, such as "Fx00c" or "*.Fx00c"
    std::string m_sInitialName;      // may hold patterns such as "*.Fx00a;*.Fx00c"
    std::string m_sInitialDirectory; // empty: the working directory
    std::string m_sFilter;           // "Text|pattern;pattern|Text|pattern||"
    bool m_bOverwritePrompt = true;  // a save dialog asks before it gives an existing file
};

// What EnterText asks for.
struct CTextEntry
{
    std::string m_sCaption;
    std::string m_sLabel; // empty: the caption says it
    // OK takes the text as it stands, also an empty one; else it has to be changed into another that isn't empty.
    bool m_bAsItStands = false;
};

// What EnterNumber asks for. Both ends of the range belong to it.
struct CNumberEntry
{
    std::string m_sCaption;
    std::string m_sLabel;
    int32_t m_nMin = 0;
    int32_t m_nMax = 0;
};

class IPrompts
{
public:
    virtual ~IPrompts() = default;

    // A message box. Closing it by Esc or its frame counts as Cancel where there is one, else as No, else OK.
    // Yes or No under a stop sign: No is what Enter gives, too.
    virtual EAnswer Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons,
                        EIcon eIcon) = 0;

    // What to do about the message that comes next, or where the lost work lies. It is shown with that message,
    // below the text. Empty: nothing.
    virtual void Advise(const std::string& sText) { (void)sText; }

    // Gives the chosen path, absolute, the suffix added where the name had none. False: cancelled, and sPath
    // stays. An accepted dialog makes its folder the working directory.
    virtual bool ChooseFile(const CFileDialogRequest& request, std::string& sPath) = 0;

    // One line of text; sText is the first text and the answer, which is never cut here. False: cancelled, and
    // sText stays.
    virtual bool EnterText(const CTextEntry& request, std::string& sText) = 0;

    // A whole number, limited by the dialog to the request's range; nValue is the first one, which may lie outside,
    // and the answer. False: cancelled, and nValue stays.
    virtual bool EnterNumber(const CNumberEntry& request, int32_t& nValue) = 0;

    // A finite number within float range; the first value and the answer likewise. False: cancelled.
    virtual bool EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue) = 0;

    // Wraps long work; may do nothing. Calls nest, and each begin has its end (CWaitScope).
    virtual void BeginWait() = 0;
    virtual void EndWait() = 0;

    // Long work tells how far it is: a few words and a fraction from 0 to 1, or below 0 when unknown.
    // False: the user wants it to stop, which the work does where it can without harm.
    virtual bool Progress(const std::string& sWhat, double fFraction)
    {
        (void)sWhat;
        (void)fFraction;
        return true;
    }
};

// Keeps the wait sign up for a scope. Null: there is nobody to show one.
class CWaitScope
{
public:
    explicit CWaitScope(IPrompts* pPrompts) : m_pPrompts(pPrompts)
    {
        if (m_pPrompts)
            m_pPrompts->BeginWait();
    }
    ~CWaitScope()
    {
        if (m_pPrompts)
            m_pPrompts->EndWait();
    }
    CWaitScope(const CWaitScope&) = delete;
    CWaitScope& operator=(const CWaitScope&) = delete;

private:
    IPrompts* m_pPrompts;
};
