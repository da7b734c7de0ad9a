#pragma once

#include <initializer_list>
#include <string>

#include "platform/IPrompts.h"

// Every message of the file workflow, with its caption, buttons and icon. The words stand here alone; what can be said
// beyond them about the case at hand stands below the text, from app/Advice.h.
struct CMessage
{
    const char* m_pszText; // %s places are filled in order, %1!s! places by number
    const char* m_pszCaption;
    EButtons m_eButtons;
    EIcon m_eIcon;
};

constexpr CMessage c_MsgNoProject = {
    "Unable to find a project locator file in the same directory or above the file %s. Please make sure that "
    "there is a %s file.",
    "Error Loading", EButtons::eOk, EIcon::eStop};
constexpr const char* c_szProjectExtension = "proj00"; // the second place of c_MsgNoProject

// The library's path as the machine has it.
constexpr CMessage c_MsgNoPlugin = {"Unable to load the Fireglass library %s for handling this file",
                                    "Error Loading", EButtons::eOk, EIcon::eStop};

// At start, instead of the last file.
constexpr CMessage c_MsgPluginEndedLast = {"The last start ended while it loaded the Fireglass library %s "
                                           "for the file %s, so nothing is opened this time.",
                                           "Error Loading", EButtons::eOk, EIcon::eExclamation};

// The path as it was given, and the loader's reasons, one a line.
constexpr CMessage c_MsgLoadFailed = {"Failed loading the file %s:\r\n%s", "Error Loading", EButtons::eOk,
                                      EIcon::eStop};
// The same words of an import, which ends nothing.
constexpr CMessage c_MsgImportFailed = {"Failed loading the file %s:\r\n%s", "Error Loading", EButtons::eOk,
                                        EIcon::eExclamation};

// A file that was loaded, but is cut or in conflict.
constexpr CMessage c_MsgDamaged = {"The file %s isn't whole. Only what could be read of it was loaded.",
                                   "Error Loading", EButtons::eOk, EIcon::eExclamation};
// Before the first save over such a file. No leaves it alone.
constexpr CMessage c_MsgSaveOverDamaged = {"The file %s wasn't whole when it was opened. Once it is saved, "
                                           "it can't be seen any more that something is "
                                           "missing. Would you like to save over it all the same?",
                                           "Save Over Damaged File?", EButtons::eYesNo, EIcon::eStop};

// The name of the library, which stays the library's.
constexpr CMessage c_MsgSaveFailed = {
    "An error occurred saving the file %s. Please make sure that the file is writable and there is room on "
    "the drive.",
    "Error Saving", EButtons::eOk, EIcon::eExclamation};

// The packed file's path as the machine has it.
constexpr CMessage c_MsgPackFailed = {
    "An error occurred packing the file %s. Please make sure that the file is writable and there is room on "
    "the drive.",
    "Error Packing", EButtons::eOk, EIcon::eExclamation};

// Whether something has changed or not. A save that fails doesn't keep the program.
constexpr CMessage c_MsgSaveBeforeExit = {"Would you like to save your work before exiting?", "Save Work",
                                          EButtons::eYesNoCancel, EIcon::eQuestion};

// At each opening, connected or not.
constexpr CMessage c_MsgCheckOut = {"Would you like to checkout the following file for edit?  You must check "
                                    "the file out before you start to "
                                    "modify it because changes may accidentally get overwritten.\n\n%1!s!",
                                    "Checkout For Edit?", EButtons::eYesNo, EIcon::eQuestion};

// Source control works on a file, so a library needs a name first.
constexpr CMessage c_MsgSaveBeforeConnect = {
    "The resource must be saved before a connection to source control can be established.  Would you like to "
    "save the current resource and continue with the connection to source control?",
    "Save Resource Required", EButtons::eYesNo, EIcon::eExclamation};

// A label edit is over then, with the old name.
constexpr CMessage c_MsgEffectNameInUse = {"An effect with the name '%s' already exists.",
                                           "Error Renaming Effect", EButtons::eOk, EIcon::eExclamation};
constexpr CMessage c_MsgPrefabNameInUse = {"A prefab with the name '%s' already exists.",
                                           "Error Renaming Prefab", EButtons::eOk, EIcon::eExclamation};

// File dialogs and the one entry dialog of the workflow.
constexpr const char* c_szEffectFilter =
    "Effect Files (*.Fx00a,*.Fx00c)|*.Fx00a;*.Fx00c|All Files (*.*)|*.*||";
constexpr const char* c_szProjectFilter = "Project Locator Files (*.proj00)|*.proj00|All Files (*.*)|*.*||";
constexpr const char* c_szPackedFilter = "Packed Effect Files (*.Fx00p)|*.Fx00p|All Files (*.*)|*.*||";
constexpr const char* c_szGameInfoCaption = "Game Information";
constexpr const char* c_szGameInfoLabel = "Command Line";

// Names of the settings, in the section with the empty name.
constexpr const char* c_szSettingLastFile = "LastOpenedFile";
constexpr const char* c_szSettingCommandLine = "CommandLine";

// Of the journal, in a section of its own: "0" turns it off; the megabytes of steps beyond which it begins anew.
constexpr const char* c_szJournalSection = "Journal";
constexpr const char* c_szSettingJournalKeep = "Keep";
constexpr int c_nMaxJournalMegabytes = 512;
// Of the history: the megabytes of memory beyond which its oldest steps go.
constexpr const char* c_szHistorySection = "History";
constexpr int c_nMaxHistoryMegabytes = 65536;
constexpr const char* c_szSettingMegabytes = "Megabytes"; // of both

// A message's text with its places filled. Arguments are data: nothing in them is a place. Missing
// ones are empty.
std::string FillMessage(const CMessage& message, std::initializer_list<std::string> arguments);

// Shows a message with its places filled, and gives the answer: eOk from a box that has only that. May run a message
// loop, and may throw std::bad_alloc.
EAnswer ShowMessage(IPrompts& prompts, const CMessage& message,
                    std::initializer_list<std::string> arguments = {});

// Tells of a failure that memory may be the cause of. When there is none for the words, fewer are used. Nulls
// are empty.
void ShowFailure(IPrompts& prompts, const CMessage& message, const char* pszFirst,
                 const char* pszSecond = nullptr) noexcept;
