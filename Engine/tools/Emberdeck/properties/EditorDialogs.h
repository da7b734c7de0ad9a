#pragma once

#include "app/EditContext.h"
#include "platform/IProfile.h"

class CEditVectorDlg;
class CFXPropertiesDlg;
class CFunctionCurveDlg;
class CKRColorDialog;

// Shows the dialogs that a property editor opens on top of itself. Each call is modal: it calls the
// dialog's OnInitDialog with the places of its controls, forwards what the user does, and gives true when
// the dialog was closed by an OK that its OnOK accepted. A test answers instead of a person.
class IEditorDialogs
{
public:
    virtual ~IEditorDialogs() = default;
    virtual bool RunProperties(CFXPropertiesDlg& dialog) = 0;
    virtual bool RunCurve(CFunctionCurveDlg& dialog) = 0;
    virtual bool RunVector(CEditVectorDlg& dialog) = 0;
    virtual bool RunColor(CKRColorDialog& dialog) = 0;
};

// What the property editors work with; all of it outlives them. Number entries, file dialogs and messages
// go through the context's prompts.
struct CPropertyServices
{
    CEditContext& m_Context;
    IProfile& m_Profile; // where the custom colours are kept
    IEditorDialogs& m_Dialogs;
};
