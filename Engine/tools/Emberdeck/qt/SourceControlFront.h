#pragma once

#include <memory>

#include <QDialog>
#include <QPointer>

#include "shared/engine/ProviderRegistry.h"
#include "shared/engine/SourceControlFront.h"

class QListWidget;
class QPlainTextEdit;

// Which provider to connect to; the last row is the choice to work without.
class ProviderChooser : public QDialog
{
    Q_OBJECT

public:
    ProviderChooser(const CProviderRegistry& registry, QWidget* pParent);

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
    void SetOwner(QWidget* pOwner) { m_pOwner = pOwner; }

    // The registry outlives it, and so does this object.
    std::unique_ptr<ISourceControlLocator> MakeLocator(const CProviderRegistry& registry) const;

    bool DescribeChange(const std::string& sPath, std::string& sText) override;
    bool ChooseWorkCopy(const std::string& sSystem, std::string& sFolder) override;
    void ShowHistory(const std::string& sPath, const std::vector<CHistoryEntry>& entries) override;

    QWidget* Owner() const;

private:
    QPointer<QWidget> m_pOwner;
};
