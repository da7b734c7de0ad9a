#include "qt/SourceControlFront.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/QtText.h"
#include "qt/SourceControlHistory.h"

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
    CLocator(const CProviderRegistry& registry, const QtSourceControl& front) : m_Registry(registry), m_Front(front) {}

    CSourceControlStatus SelectProvider(CClassId& id) override
    {
        ProviderChooser chooser(m_Registry, m_Front.Owner());
        if (Execute(chooser) != QDialog::Accepted)
            return {c_nSourceControlCancelled, "No source control provider was chosen."};
        id = chooser.Choice();
        return {};
    }

private:
    const CProviderRegistry& m_Registry;
    const QtSourceControl& m_Front;
};
} // namespace

ProviderChooser::ProviderChooser(const CProviderRegistry& registry, QWidget* pParent)
    : QDialog(pParent), m_Registry(registry), m_pList(new QListWidget)
{
    setWindowTitle(tr("Source Control Provider"));
    QVBoxLayout* pLayout = MakeLayout(this);
    pLayout->addWidget(MakeLabel(tr("Which version control system keeps the project's files?")));
    for (const CProviderRegistry::CEntry& entry : registry.Entries())
        m_pList->addItem(QtText::ToQt(entry.m_sName));
    m_pList->addItem(tr("No source control"));
    m_pList->setAccessibleName(windowTitle());
    m_pList->setCurrentRow(0);
    connect(m_pList, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    pLayout->addWidget(m_pList);
    pLayout->addWidget(MakeButtons(this));
    resize(fontMetrics().averageCharWidth() * 50, fontMetrics().height() * 14);
    m_pList->setFocus();
}

CClassId ProviderChooser::Choice() const
{
    const auto nRow = static_cast<size_t>(m_pList->currentRow());
    return nRow < m_Registry.Entries().size() ? m_Registry.Entries()[nRow].m_Id : CClassId();
}

ChangeDescription::ChangeDescription(const std::string& sPath, const std::string& sText, QWidget* pParent)
    : QDialog(pParent), m_pText(new QPlainTextEdit)
{
    const QString sFile = QtText::PathToQt(sPath);
    setWindowTitle(tr("Submit Pending Changes"));
    setSizeGripEnabled(true);
    QVBoxLayout* pLayout = MakeLayout(this);
    pLayout->addWidget(MakeLabel(tr("What has changed in %1?")
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
std::string ChangeDescription::Text() const { return m_pText->toPlainText().trimmed().toStdString(); }

QWidget* QtSourceControl::Owner() const
{
    QWidget* pModal = QApplication::activeModalWidget();
    return pModal ? pModal : m_pOwner.data();
}

std::unique_ptr<ISourceControlLocator> QtSourceControl::MakeLocator(const CProviderRegistry& registry) const
{
    return std::make_unique<CLocator>(registry, *this);
}

bool QtSourceControl::DescribeChange(const std::string& sPath, std::string& sText)
{
    ChangeDescription dialog(sPath, sText, Owner());
    if (Execute(dialog) != QDialog::Accepted)
        return false;
    sText = dialog.Text();
    return !sText.empty();
}

bool QtSourceControl::ChooseWorkCopy(const std::string& sSystem, std::string& sFolder)
{
    QFileDialog dialog(Owner());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setWindowTitle(QApplication::translate("QtSourceControl", "Folder of the %1 Work Copy").arg(QtText::ToQt(sSystem)));
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
