#include "qt/frame/FrameStatusBar.h"

#include <QLabel>

#include "app/resources/Bars.h"
#include "qt/toolkit/KeyLocks.h"
#include "qt/toolkit/PropertyControls.h"
#include "shell/MainFrame.h"

FrameStatusBar::FrameStatusBar(QWidget* pParent) : QStatusBar(pParent), m_pLine(new QLabel(this))
{
    m_pLine->setObjectName(QStringLiteral("hint"));
    m_pLine->setTextFormat(Qt::PlainText);
    // A long line doesn't widen the window.
    m_pLine->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    addWidget(m_pLine, 1);
    m_StatusEnd.setSingleShot(true);
    connect(&m_StatusEnd, &QTimer::timeout, this, [this] { ShowStatus(QString()); });
    for (const CStatusIndicator& indicator : c_StatusIndicators)
    {
        auto* pLock = new QLabel(this);
        pLock->setAccessibleName(QString::fromUtf8(indicator.m_pszText));
        pLock->setFixedWidth(fontMetrics().horizontalAdvance(QString::fromUtf8(indicator.m_pszText)) + 12);
        pLock->setAlignment(Qt::AlignCenter);
        addPermanentWidget(pLock);
        m_Locks.push_back(pLock);
    }
    ShowHint(0);
    UpdateLocks();
}

void FrameStatusBar::ShowHint(int32_t nCommand)
{
    const std::string_view sHint = CMainFrame::GetStatusLine(nCommand);
    const bool bIdle = sHint == CMainFrame::GetStatusLine(0);
    const QString sLine =
        bIdle && !m_sStatus.isEmpty() ? m_sStatus : QString::fromUtf8(sHint.data(), qsizetype(sHint.size()));
    m_pLine->setText(sLine);
    m_pLine->setToolTip(
        m_pLine->fontMetrics().horizontalAdvance(sLine) > m_pLine->width() ? PlainToolTip(sLine) : QString());
}

void FrameStatusBar::ShowStatus(const QString& sText)
{
    constexpr int c_nStatusMs = 60000; // long enough to come back from another window
    m_sStatus = sText;
    m_StatusEnd.start(c_nStatusMs);
    ShowHint(0);
}

void FrameStatusBar::UpdateLocks()
{
    const CKeyLocks locks = ReadKeyLocks();
    const auto isOn = [&locks](EStatusIndicator eID)
    {
        switch (eID)
        {
        case eIndicator_Caps:
            return locks.m_bCaps;
        case eIndicator_Num:
            return locks.m_bNum;
        case eIndicator_Scroll:
            return locks.m_bScroll;
        }
        return false;
    };
    for (size_t i = 0; i < m_Locks.size(); ++i)
        m_Locks[i]->setText(isOn(c_StatusIndicators[i].m_eID)
                                ? QString::fromUtf8(c_StatusIndicators[i].m_pszText)
                                : QString());
}
