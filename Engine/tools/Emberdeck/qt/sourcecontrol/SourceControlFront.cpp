#include "qt/sourcecontrol/SourceControlFront.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/sourcecontrol/SourceControlHistory.h"
#include "qt/toolkit/QtText.h"
#include "shared/sourcecontrol/BuiltInProviders.h"

namespace
{
constexpr int c_nMargin = 8;

// A dialog may come up in the middle of a call that shows the wait sign.
int Execute(QDialog& dialog)
{
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int nResult = dialog.exec();
    QApplication::restoreOverrideCursor();
    return nResult;
}

QVBoxLayout* MakeLayout(QDialog* pDialog)
{
    auto* pLayout = new QVBoxLayout(pDialog);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nMargin);
    return pLayout;
}

QLabel* MakeLabel(const QString& sText)
{
    auto* pLabel = new QLabel(sText);
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    return pLabel;
}

QDialogButtonBox* MakeButtons(QDialog* pDialog)
{
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QObject::connect(pButtons, &QDialogButtonBox::accepted, pDialog, &QDialog::accept);
    QObject::connect(pButtons, &QDialogButtonBox::rejected, pDialog, &QDialog::reject);
    return pButtons;
}

class CLocator final : public ISourceControlLocator
{
public:
    CLocator(const CProviderRegistry& registry, const QtSourceControl& front, IPrompts* pPrompts)
        : m_Registry(registry),
          m_Front(front),
          m_pPrompts(pPrompts)
    {
    }

    // Who saves a library that lies in no work copy isn't asked which system keeps it: only one answer would do.
    CSourceControlStatus SelectProvider(CClassId& id, bool bCalledFor) override
    {
        id = CClassId();
        const CClassId found = Found();
        if (!bCalledFor && found.IsZero() && !KnowsOthers())
            return {c_nSourceControlUnasked, std::string()};
        ProviderChooser chooser(m_Registry, found, m_Front.Owner());
        if (Execute(chooser) != QDialog::Accepted)
            return {c_nSourceControlCancelled, "No source control provider was chosen."};
        id = chooser.Choice();
        return {};
    }

private:
    // Whose work copy the library lies in. Looked up once for each library: it is asked at each save.
    CClassId Found()
    {
        const std::string sFile = m_Front.CurrentFile();
        if (sFile != m_sFile)
        {
            m_sFile = sFile;
            m_Found = sFile.empty() ? CClassId() : FindBuiltInProvider(sFile, m_pPrompts);
        }
        return m_Found;
    }
    bool KnowsOthers() const
    {
        return !std::all_of(m_Registry.Entries().begin(), m_Registry.Entries().end(),
                            [](const CProviderRegistry::CEntry& entry)
                            { return IsBuiltInProvider(entry.m_Id); });
    }

    const CProviderRegistry& m_Registry;
    const QtSourceControl& m_Front;
    IPrompts* m_pPrompts;
    std::string m_sFile;
    CClassId m_Found;
};
} // namespace

ProviderChooser::ProviderChooser(const CProviderRegistry& registry, const CClassId& first, QWidget* pParent)
    : QDialog(pParent),
      m_Registry(registry),
      m_pList(new QListWidget)
{
    setWindowTitle(tr("Source Control Provider"));
    QVBoxLayout* pLayout = MakeLayout(this);
    pLayout->addWidget(MakeLabel(tr("Which version control system keeps the project's files?")));
    for (const CProviderRegistry::CEntry& entry : registry.Entries())
    {
        m_pList->addItem(QtText::ToQt(entry.m_sName));
        if (entry.m_Id == first)
            m_pList->setCurrentRow(m_pList->count() - 1);
    }
    m_pList->addItem(tr("No source control"));
    m_pList->setAccessibleName(windowTitle());
    if (m_pList->currentRow() < 0)
        m_pList->setCurrentRow(m_pList->count() - 1);
    connect(m_pList, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    pLayout->addWidget(m_pList, 1);
    pLayout->addWidget(MakeLabel(
        tr("To answer for good, name a Provider under [Source Control] in the project locator file. "
           "\"No source control\" holds until Connect is used or the program ends.")));
    pLayout->addWidget(MakeButtons(this));
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 15);
    m_pList->setFocus();
}

CClassId ProviderChooser::Choice() const
{
    const auto nRow = static_cast<size_t>(m_pList->currentRow());
    return nRow < m_Registry.Entries().size() ? m_Registry.Entries()[nRow].m_Id : CClassId();
}

ChangeDescription::ChangeDescription(const std::string& sPath, const std::string& sText, QWidget* pParent)
    : QDialog(pParent),
      m_pText(new QPlainTextEdit)
{
    const QString sFile = QtText::PathToQt(sPath);
    setWindowTitle(tr("Submit Pending Changes"));
    setSizeGripEnabled(true);
    QVBoxLayout* pLayout = MakeLayout(this);
    pLayout->addWidget(
        MakeLabel(tr("What has changed in %1?")
                      .arg(sFile.endsWith(QLatin1Char('/')) ? sFile : QFileInfo(sFile).fileName())));
    m_pText->setPlainText(QString::fromStdString(sText));
    m_pText->setTabChangesFocus(true);
    m_pText->setAccessibleName(tr("Description of the change"));
    pLayout->addWidget(m_pText, 1);
    QDialogButtonBox* pButtons = MakeButtons(this);
    QPushButton* pOk = pButtons->button(QDialogButtonBox::Ok);
    pOk->setEnabled(!Text().empty());
    connect(m_pText, &QPlainTextEdit::textChanged, pOk, [this, pOk] { pOk->setEnabled(!Text().empty()); });
    pLayout->addWidget(pButtons);
    resize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 14);
    m_pText->setFocus();
}

// Always UTF-8: it goes to the version control system, not into the library.
std::string ChangeDescription::Text() const
{
    return m_pText->toPlainText().trimmed().toStdString();
}

QWidget* QtSourceControl::Owner() const
{
    QWidget* pModal = QApplication::activeModalWidget();
    return pModal ? pModal : m_pOwner.data();
}

void QtSourceControl::SetOwner(QWidget* pOwner, std::function<std::string()> currentFile)
{
    m_pOwner = pOwner;
    m_CurrentFile = std::move(currentFile);
}

std::unique_ptr<ISourceControlLocator> QtSourceControl::MakeLocator(const CProviderRegistry& registry,
                                                                    IPrompts* pPrompts) const
{
    return std::make_unique<CLocator>(registry, *this, pPrompts);
}

bool QtSourceControl::DescribeChange(const std::string& sPath, std::string& sText)
{
    ChangeDescription dialog(sPath, sText, Owner());
    if (Execute(dialog) != QDialog::Accepted)
        return false;
    sText = dialog.Text();
    return !sText.empty();
}

bool QtSourceControl::ChooseWorkCopy(const std::string& sSystem, const std::string& sWhy,
                                     std::string& sFolder)
{
    QFileDialog dialog(Owner(), QString(), QFileInfo(QtText::PathToQt(CurrentFile())).path());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setWindowTitle(
        QApplication::translate("QtSourceControl", "Folder of the %1 Work Copy").arg(QtText::ToQt(sSystem)));
    if (auto* pGrid = qobject_cast<QGridLayout*>(dialog.layout()))
        pGrid->addWidget(MakeLabel(QtText::ToQt(sWhy)), pGrid->rowCount(), 0, 1, pGrid->columnCount());
    if (Execute(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    sFolder = QtText::PathFromQt(dialog.selectedFiles().constFirst());
    return true;
}

void QtSourceControl::ShowHistory(const std::string& sPath, const std::vector<CHistoryEntry>& entries)
{
    SourceControlHistory window(sPath, entries, Owner());
    Execute(window);
}
