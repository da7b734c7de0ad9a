#include "qt/toolkit/QtPrompts.h"

#include <functional>
#include <utility>

#include <QApplication>
#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include "app/Messages.h"
#include "properties/ResourceFile.h"
#include "properties/ValueText.h"
#include "qsnumber.h"
#include "qt/toolkit/QtText.h"
#include "qt/toolkit/TemplateDialog.h"

namespace
{
constexpr qint64 c_nProgressAfterMs = 500;
constexpr qint64 c_nProgressEachMs = 40; // work that tells more often isn't slowed down by it

CBoxOwner* s_pBoxOwner = nullptr; // the innermost

QMessageBox::StandardButtons Buttons(EButtons eButtons)
{
    switch (eButtons)
    {
    case EButtons::eOk:
        return QMessageBox::Ok;
    case EButtons::eOkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case EButtons::eYesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case EButtons::eYesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon Icon(EIcon eIcon)
{
    switch (eIcon)
    {
    case EIcon::eStop:
        return QMessageBox::Critical;
    case EIcon::eQuestion:
        return QMessageBox::Question;
    case EIcon::eExclamation:
        return QMessageBox::Warning;
    case EIcon::eNone:
        break;
    }
    return QMessageBox::NoIcon;
}

// A filter's parts as the toolkit has them: "Text (a b)". Patterns ignore case, which makes them hard to read: the
// dialog hides them and shows the text, which brings its own.
QStringList Filters(const std::string& sFilter)
{
    QStringList filters;
    for (const CFileFilter& filter : ParseFileFilter(sFilter))
    {
        QStringList patterns;
        for (const std::string& sPattern : filter.m_Patterns)
        {
            QString sAnyCase;
            for (QChar c : QtText::ToQt(sPattern))
                sAnyCase += c.isLetter()
                                ? QLatin1Char('[') + QString(c.toLower()) + c.toUpper() + QLatin1Char(']')
                                : QString(c);
            patterns << sAnyCase;
        }
        filters << QtText::ToQt(filter.m_sText) + QLatin1String(" (") + patterns.join(QLatin1Char(' ')) +
                       QLatin1Char(')');
    }
    return filters;
}

// The toolkit's save dialog greys its button when the full path of a file that is there has been typed, since
// it takes the row that it has marked by itself for the choice. Such a path can be saved to.
class SaveButtonKeeper : public QObject
{
public:
    explicit SaveButtonKeeper(QFileDialog& dialog)
        : QObject(&dialog),
          m_pName(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
    {
        if (auto* pBox = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox")))
            m_pSave = pBox->button(QDialogButtonBox::Save);
        if (m_pSave && m_pName)
            m_pSave->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::EnabledChange && !m_pSave->isEnabled())
            QTimer::singleShot(0, this, [this] { EnableForPath(); });
        return QObject::eventFilter(pObject, pEvent);
    }

private:
    void EnableForPath()
    {
        const QFileInfo file(m_pName->text());
        if (file.isAbsolute() && file.isFile())
            m_pSave->setEnabled(true);
    }

    QLineEdit* m_pName;
    QPushButton* m_pSave = nullptr;
};

// Stays open until what was entered is taken.
class EntryDialog : public TemplateDialog
{
public:
    EntryDialog(int nTemplate, QWidget* pOwner, QLineEdit*& pEdit, int nEdit)
        : TemplateDialog(nTemplate, pOwner)
    {
        m_pEdit = pEdit = m_Controls.Get<QLineEdit>(nEdit);
    }
    void accept() override
    {
        if (m_Take())
        {
            QDialog::accept();
            return;
        }
        m_pEdit->selectAll();
        m_pEdit->setFocus();
    }
    // Takes the text, or says what is wrong with it and gives false.
    std::function<bool()> m_Take;

private:
    QLineEdit* m_pEdit;
};
} // namespace

CBoxOwner::CBoxOwner(QWidget& window) : m_pWindow(&window), m_pOuter(std::exchange(s_pBoxOwner, this)) {}

CBoxOwner::~CBoxOwner()
{
    s_pBoxOwner = m_pOuter;
}

QWidget* CBoxOwner::Current()
{
    QWidget* pWindow = s_pBoxOwner ? s_pBoxOwner->m_pWindow.data() : nullptr;
    return pWindow && pWindow->isVisible() ? pWindow : nullptr;
}

QWidget* QtPrompts::Owner() const
{
    if (QWidget* pModal = QApplication::activeModalWidget())
        return pModal;
    if (QWidget* pWindow = CBoxOwner::Current())
        return pWindow;
    // A modeless one that the user works in.
    if (QWidget* pActive = QApplication::activeWindow(); qobject_cast<QDialog*>(pActive))
        return pActive;
    return m_pOwner;
}

EAnswer QtPrompts::Ask(const std::string& sText, const std::string& sCaption, EButtons eButtons, EIcon eIcon)
{
    EndProgress();
    QMessageBox box(Icon(eIcon), QtText::ToQt(sCaption), QString(), Buttons(eButtons), Owner());
    box.setTextFormat(Qt::PlainText);
    box.setText(QtText::ToQt(sText).remove(QLatin1Char('\r')));
    box.setInformativeText(QtText::ToQt(std::exchange(m_sAdvice, std::string())));
    // The box gives its own format to the first text alone, and a path may look like mark-up.
    if (auto* pAdvice = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        pAdvice->setTextFormat(Qt::PlainText);
    // Esc and the frame mean Cancel where there is one, else No.
    if (eButtons == EButtons::eYesNo)
        box.setEscapeButton(QMessageBox::No);
    // What is asked under a stop sign isn't done by a quick Enter.
    if (eButtons == EButtons::eYesNo && eIcon == EIcon::eStop)
        box.setDefaultButton(QMessageBox::No);
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int nButton = box.exec();
    QApplication::restoreOverrideCursor();
    switch (nButton)
    {
    case QMessageBox::Yes:
        return EAnswer::eYes;
    case QMessageBox::No:
        return EAnswer::eNo;
    case QMessageBox::Cancel:
        return EAnswer::eCancel;
    default:
        return EAnswer::eOk;
    }
}

bool QtPrompts::ChooseFile(const CFileDialogRequest& request, std::string& sPath)
{
    QFileDialog dialog(Owner());
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.resize(dialog.sizeHint().expandedTo(QSize(760, 480)));
    if (auto* pFiles = dialog.findChild<QTreeView*>(QStringLiteral("treeView")))
    {
        // The columns as they come cut dates in the middle.
        const QString sDate =
            QLocale().toString(QDateTime(QDate(2000, 12, 28), QTime(22, 58, 58)), QLocale::ShortFormat);
        pFiles->header()->resizeSection(0, 300);
        pFiles->header()->resizeSection(3, dialog.fontMetrics().horizontalAdvance(sDate) + 60);
    }
    dialog.setAcceptMode(request.m_bOpen ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(request.m_bOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    if (!request.m_bOpen)
        new SaveButtonKeeper(dialog); // the dialog's own
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.m_bOverwritePrompt);
    dialog.setNameFilters(Filters(request.m_sFilter));
    std::string sSuffix = request.m_sDefaultExtension;
    sSuffix.erase(0, sSuffix.find_last_of("*.") + 1);
    dialog.setDefaultSuffix(QtText::PathToQt(sSuffix));
    if (!request.m_sInitialDirectory.empty())
        dialog.setDirectory(QtText::PathToQt(request.m_sInitialDirectory));
    // A pattern is a legal file name here: the field stays empty, and the filter shows what there is.
    const bool bPattern = request.m_sInitialName.find_first_of("*?") != std::string::npos;
    if (!request.m_sInitialName.empty() && !bPattern)
        dialog.selectFile(
            QtText::PathToQt(request.m_sInitialName).replace(QLatin1Char('\\'), QLatin1Char('/')));

    for (;;)
    {
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
            return false;
        const QString sFile = dialog.selectedFiles().constFirst();
        if (!QFileInfo(sFile).fileName().contains(QLatin1Char('*')) &&
            !QFileInfo(sFile).fileName().contains(QLatin1Char('?')))
        {
            QDir::setCurrent(QFileInfo(sFile).absolutePath());
            sPath = QtText::PathFromQt(sFile);
            return true;
        }
        Ask("A file name can't hold * or ?.", "Emberdeck", EButtons::eOk, EIcon::eExclamation);
    }
}

bool QtPrompts::EnterText(const CTextEntry& request, std::string& sText)
{
    // A text to take as it stands may be long, such as a command line.
    TemplateDialog dialog(request.m_bAsItStands ? eDlg_GameInfo : eDlg_NameEntry, Owner());
    dialog.setWindowTitle(QtText::Title(QtText::ToQt(request.m_sCaption)));
    auto* pEdit = dialog.Controls().Get<QLineEdit>(request.m_bAsItStands ? int32_t(eGameInfo_CommandLine)
                                                                         : int32_t(eNameEntry_Text));
    auto* pOk = dialog.Controls().Get<QPushButton>(c_nControlOk);
    pEdit->setText(QtText::ToQt(sText));
    pEdit->setAccessibleName(QtText::ToQt(request.m_sLabel.empty() ? request.m_sCaption : request.m_sLabel));
    pEdit->selectAll();
    if (!request.m_bAsItStands)
    {
        // The user has to change the text before OK works, also with a name already in the box.
        pOk->setEnabled(false);
        QObject::connect(pEdit, &QLineEdit::textChanged, pOk,
                         [pOk](const QString& s) { pOk->setEnabled(!s.isEmpty()); });
    }
    pEdit->setFocus();
    if (dialog.exec() != QDialog::Accepted)
        return false;
    sText = QtText::FromQt(pEdit->text());
    return true;
}

bool QtPrompts::EnterNumber(const CNumberEntry& request, int32_t& nValue)
{
    QLineEdit* pEdit = nullptr;
    EntryDialog dialog(eDlg_IntEntry, Owner(), pEdit, eIntEntry_Number);
    dialog.setWindowTitle(QtText::Title(QtText::ToQt(request.m_sCaption)));
    pEdit->setAccessibleName(QtText::ToQt(request.m_sCaption));
    pEdit->setText(QString::number(nValue));
    pEdit->selectAll();
    pEdit->setFocus();
    dialog.m_Take = [&]
    {
        int64_t nEntered = 0;
        if (QSParseInt(QtText::FromQt(pEdit->text()), nEntered) && nEntered >= request.m_nMin &&
            nEntered <= request.m_nMax)
        {
            nValue = static_cast<int32_t>(nEntered);
            return true;
        }
        Ask(QSFormat("Please enter a whole number between %d and %d.", request.m_nMin, request.m_nMax),
            "Emberdeck", EButtons::eOk, EIcon::eExclamation);
        return false;
    };
    return dialog.exec() == QDialog::Accepted;
}

bool QtPrompts::EnterFloat(const std::string& sCaption, const std::string& sLabel, float& fValue)
{
    QLineEdit* pEdit = nullptr;
    EntryDialog dialog(eDlg_FloatEntry, Owner(), pEdit, eFloatEntry_Number);
    dialog.setWindowTitle(QtText::Title(QtText::ToQt(sCaption)));
    pEdit->setAccessibleName(QtText::ToQt(sLabel.empty() ? sCaption : sLabel));
    pEdit->setText(QtText::ToQt(NumberEntryText(fValue)));
    pEdit->selectAll();
    pEdit->setFocus();
    dialog.m_Take = [&]
    {
        float fEntered = 0.0f;
        if (QSParseFloat(QtText::FromQt(pEdit->text()), fEntered))
        {
            fValue = fEntered;
            return true;
        }
        Ask(c_szEnterNumber, "Emberdeck", EButtons::eOk, EIcon::eExclamation);
        return false;
    };
    return dialog.exec() == QDialog::Accepted;
}

void QtPrompts::BeginWait()
{
    if (m_nWaits++ == 0)
    {
        m_Clock.start();
        m_nShownAt = 0;
    }
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

void QtPrompts::EndWait()
{
    QApplication::restoreOverrideCursor();
    if (--m_nWaits == 0)
        EndProgress();
}

// A question may come up while the dialog looks after events: it is destroyed once it has come back from there.
void QtPrompts::EndProgress()
{
    if (!m_pProgress)
        return;
    m_pProgress->hide();
    m_pProgress->deleteLater();
    m_pProgress = nullptr;
}

bool QtPrompts::Progress(const std::string& sWhat, double fFraction)
{
    if (!m_Clock.isValid())
        m_Clock.start();
    if (!m_pProgress && m_Clock.elapsed() < c_nProgressAfterMs)
        return true;
    if (!m_pProgress)
    {
        m_pProgress = new QProgressDialog(Owner());
        m_pProgress->setWindowTitle(QStringLiteral("Emberdeck"));
        m_pProgress->setWindowModality(Qt::ApplicationModal);
        m_pProgress->setMinimumDuration(0);
        m_pProgress->setAutoReset(false);
    }
    else if (fFraction < 1.0 && m_Clock.elapsed() < m_nShownAt + c_nProgressEachMs)
        return true;
    m_nShownAt = m_Clock.elapsed();
    m_pProgress->setLabelText(QtText::ToQt(sWhat));
    m_pProgress->setRange(0, fFraction < 0.0 ? 0 : 100);
    m_pProgress->setValue(fFraction < 0.0 ? 0 : int(std::min(fFraction, 1.0) * 100.0));
    QApplication::processEvents();
    const bool bGoOn = !m_pProgress || !m_pProgress->wasCanceled();
    if (!bGoOn || fFraction >= 1.0)
        EndProgress();
    return bGoOn;
}
