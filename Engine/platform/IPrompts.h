#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Everything that the workflow and the editors ask a person. A window answers with dialogs, the
// batch command from its command line, a test from a list. Every call returns when the question is
// answered; texts are bytes, shown as they are, with no mark-up and no shortcut marks.

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

struct CFileDialogRequest
{
    bool m_bOpen = true;
    std::string m_sDefaultExtension; // as given, such as "Fx00c" or "*.Fx00c"
    std::string m_sInitialName;      // may hold patterns such as "*.Fx00a;*.Fx00c"
    std::string m_sInitialDirectory; // empty: the working directory
    std::string m_sFilter;           // "Text|pattern;pattern|Text|pattern||"
    bool m_bOverwritePrompt = true;  // a save dialog asks before it gives an existing file
    bool m_bMustExist = false;       // an open dialog gives only existing files
};

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

    // Gives the chosen path, the suffix added where the name had none. False: cancelled.
    // An accepted dialog makes its folder the working directory.
    virtual bool ChooseFile(const CFileDialogRequest& request, std::string& sPath) = 0;

    // One line of text in a dialog with a caption and a label; sText is the first text and the answer.
    virtual bool EnterText(const std::string& sCaption, const std::string& sLabel, std::string& sText) = 0;

    // A whole number, limited by the dialog to the request's range. False: cancelled.
    virtual bool EnterNumber(const CNumberEntry& request, int32_t& nValue) = 0;

    // A number within float range. False: cancelled.
    virtual bool EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue) = 0;

    // Wraps long work; may do nothing. Calls nest.
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

// Keeps the wait sign up for a scope.
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
