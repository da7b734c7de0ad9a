#include "qt/frame/AssertDialog.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>

#include "qt/toolkit/QtText.h"

int32_t AskAboutAssert(const CAssertReport& report)
{
    if (!qApp || QThread::currentThread() != qApp->thread())
        return ASSERT_RESULT_CONTINUE;
    QMessageBox box(QApplication::activeModalWidget() ? QApplication::activeModalWidget()
                                                      : QApplication::activeWindow());
    box.setWindowTitle(QStringLiteral("Emberdeck"));
    box.setIcon(QMessageBox::Critical);
    box.setTextFormat(Qt::PlainText);
    const QString sText = QtText::ToQt(report.m_pszText);
    box.setText(QObject::tr("An assertion has failed: %1").arg(QtText::ToQt(report.m_pszExpression)));
    box.setInformativeText((sText.isEmpty() ? sText : sText + QLatin1String("\n\n")) +
                           QObject::tr("%1\n%2, line %3")
                               .arg(QtText::ToQt(report.m_pszFunction), QtText::ToQt(report.m_pszFile))
                               .arg(report.m_nLine));
    // The format above is that of the first text alone, and a function may look like mark-up.
    if (auto* pDetails = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        pDetails->setTextFormat(Qt::PlainText);
    const struct
    {
        const char* m_pszLabel;
        QMessageBox::ButtonRole m_eRole;
        int32_t m_nResult;
        const char* m_pszTip;
    } answers[] = {
        {QT_TR_NOOP("&Debug"), QMessageBox::ActionRole, ASSERT_RESULT_DEBUG,
         QT_TR_NOOP("Stops in the debugger")},
        {QT_TR_NOOP("&Abort"), QMessageBox::DestructiveRole, ASSERT_RESULT_ABORT,
         QT_TR_NOOP("Ends the program at once; what isn't saved is lost")},
        {QT_TR_NOOP("&Ignore"), QMessageBox::ActionRole, ASSERT_RESULT_IGNORE,
         QT_TR_NOOP("Goes on, and says nothing of this place again")},
        {QT_TR_NOOP("&Continue"), QMessageBox::AcceptRole, ASSERT_RESULT_CONTINUE, QT_TR_NOOP("Goes on")},
    };
    std::vector<QPushButton*> buttons;
    for (const auto& answer : answers)
    {
        QPushButton* pButton = box.addButton(QObject::tr(answer.m_pszLabel), answer.m_eRole);
        pButton->setToolTip(QObject::tr(answer.m_pszTip));
        buttons.push_back(pButton);
    }
    box.setDefaultButton(buttons.back());
    box.setEscapeButton(buttons.back());
    QApplication::setOverrideCursor(Qt::ArrowCursor);
    box.exec();
    QApplication::restoreOverrideCursor();
    for (size_t i = 0; i < buttons.size(); ++i)
        if (box.clickedButton() == buttons[i])
            return answers[i].m_nResult;
    return ASSERT_RESULT_CONTINUE;
}

bool AskAboutAsserts()
{
    return SetAssertHandler([](const CAssertReport& report, void*) { return AskAboutAssert(report); },
                            nullptr);
}
