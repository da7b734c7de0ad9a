#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>

#include "platform/IPrompts.h"

class QWidget;

// While one lives, boxes belong to this window in place of the main window, if it is shown. They nest.
class CBoxOwner
{
public:
    explicit CBoxOwner(QWidget& window); // borrowed, and may go
    ~CBoxOwner();
    CBoxOwner(const CBoxOwner&) = delete;
    CBoxOwner& operator=(const CBoxOwner&) = delete;
    static QWidget* Current(); // null: none that is shown

private:
    QPointer<QWidget> m_pWindow;
    CBoxOwner* m_pOuter;
};

// Answers with dialogs over the main window, or over the dialog that is up. Each call runs a message loop until it is
// answered. Long work gets the wait cursor at once, and after a while a window that tells how far it is and takes a
// cancel.
class QtPrompts : public IPrompts
{
public:
    void SetOwner(QWidget* pOwner) { m_pOwner = pOwner; } // borrowed, and may go; null: none

    EAnswer Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons,
                EIcon eIcon) override;
    void Advise(const std::string& sText) override { m_sAdvice = sText; }
    bool ChooseFile(const CFileDialogRequest& request, std::string& sPath) override;
    bool EnterText(const CTextEntry& request, std::string& sText) override;
    bool EnterNumber(const CNumberEntry& request, int32_t& nValue) override;
    bool EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue) override;
    void BeginWait() override;
    void EndWait() override;
    bool Progress(const std::string& sWhat, double fFraction) override;

private:
    QWidget* Owner() const;
    void EndProgress();

    QPointer<QWidget> m_pOwner;
    std::string m_sAdvice; // for the next message
    int m_nWaits = 0;
    QElapsedTimer m_Clock;
    qint64 m_nShownAt = 0;                 // on that clock, when the progress was brought up to date
    QPointer<QProgressDialog> m_pProgress; // its owner may take it along
};
