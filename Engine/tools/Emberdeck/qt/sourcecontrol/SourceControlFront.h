#pragma once

#include <functional>
#include <memory>

#include <QDialog>
#include <QPointer>

#include "shared/sourcecontrol/ProviderRegistry.h"
#include "shared/sourcecontrol/SourceControlFront.h"

class IPrompts;
class QListWidget;
class QPlainTextEdit;

// Which provider to connect to; the last row is the choice to work without.
class ProviderChooser : public QDialog
{
    Q_OBJECT

public:
    // Begins on first; on the choice to work without when that isn't registered.
    ProviderChooser(const CProviderRegistry& registry, const CClassId& first, QWidget* pParent);

    CClassId Choice() const; // all zero: without

private:
    const CProviderRegistry& m_Registry;
    QListWidget* m_pList;
};

// What a change is about. OK needs some words.
class ChangeDescription : public QDialog
{
    Q_OBJECT

public:
    ChangeDescription(const std::string& sPath, const std::string& sText, QWidget* pParent);

    std::string Text() const; // UTF-8, without blanks around it

private:
    QPlainTextEdit* m_pText;
};

// The windows of source control, over the main window or the dialog that is up.
class QtSourceControl : public ISourceControlFront
{
public:
    // currentFile tells the library that is worked on, as long as the owner is there.
    void SetOwner(QWidget* pOwner, std::function<std::string()> currentFile);
    std::string CurrentFile() const { return m_pOwner && m_CurrentFile ? m_CurrentFile() : std::string(); }

    // All of it outlives the locator, and so does this object. Without prompts nobody sees what it waits for.
    std::unique_ptr<ISourceControlLocator> MakeLocator(const CProviderRegistry& registry,
                                                       IPrompts* pPrompts) const;

    bool DescribeChange(const std::string& sPath, std::string& sText) override;
    bool ChooseWorkCopy(const std::string& sSystem, const std::string& sWhy, std::string& sFolder) override;
    void ShowHistory(const std::string& sPath, const std::vector<CHistoryEntry>& entries) override;

    QWidget* Owner() const;

private:
    QPointer<QWidget> m_pOwner;
    std::function<std::string()> m_CurrentFile;
};
