#include "qt/frame/EffectWindows.h"

#include <algorithm>

#include <QFileInfo>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPointer>
#include <QStyle>

#include "qt/timeline/TrackWidget.h"
#include "qt/toolkit/ProgramIcon.h"
#include "qt/toolkit/QtText.h"

EffectWindows::EffectWindows(CEmberdeckApp& app, IProfile& profile)
    : m_App(app),
      m_Profile(profile),
      m_pGreeting(new QLabel(this))
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setAccessibleName(tr("Open effects"));
    m_pGreeting->setAlignment(Qt::AlignCenter);
    m_pGreeting->setWordWrap(true);
    m_pGreeting->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(this, &QMdiArea::subWindowActivated, this, &EffectWindows::Changed);
}

std::vector<TrackWidget*> EffectWindows::Timelines() const
{
    std::vector<TrackWidget*> timelines;
    for (QMdiSubWindow* pChild : subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget()))
            timelines.push_back(pTrack);
    return timelines;
}

QMdiSubWindow* EffectWindows::FindChild(const CSpell* pSpell) const
{
    for (QMdiSubWindow* pChild : subWindowList())
        if (auto* pTrack = qobject_cast<TrackWidget*>(pChild->widget());
            pTrack && &pTrack->GetSpell() == pSpell)
            return pChild;
    return nullptr;
}

TrackWidget* EffectWindows::Active() const
{
    const QMdiSubWindow* pChild = activeSubWindow();
    return pChild ? qobject_cast<TrackWidget*>(pChild->widget()) : nullptr;
}

bool EffectWindows::IsActiveMaximised() const
{
    const QMdiSubWindow* pChild = activeSubWindow();
    return pChild && pChild->isMaximized();
}

bool EffectWindows::IsInBackground(const QWidget& widget) const
{
    for (const QMdiSubWindow* pChild : subWindowList())
        if (pChild != activeSubWindow() && pChild->isAncestorOf(&widget))
            return true;
    return false;
}

// ---- Opening and closing

bool EffectWindows::IsOpen(const CSpell* pSpell) const
{
    return FindChild(pSpell) != nullptr;
}

void EffectWindows::Open(CSpell& spell)
{
    QMdiSubWindow* pChild = FindChild(&spell);
    if (!pChild)
    {
        auto* pTrack = new TrackWidget(m_App.Context(), spell, nullptr);
        pTrack->SetOptions(LoadTrackViewOptions(m_Profile));
        pChild = addSubWindow(pTrack);
        pChild->setAttribute(Qt::WA_DeleteOnClose);
        pChild->setWindowIcon(ProgramIcon());
        PlaceChild(*pChild);
        connect(pChild, &QObject::destroyed, this, &EffectWindows::Changed);
        connect(pChild, &QMdiSubWindow::windowStateChanged, this, &EffectWindows::Changed);
    }
    RetitleAll();
    pChild->show();
    setActiveSubWindow(pChild);
    emit Changed();
}

// Each a step below and right of the last one, so that every title can be seen, and starting over where that
// would run out of the area.
void EffectWindows::PlaceChild(QMdiSubWindow& child)
{
    const QSize area = viewport()->size();
    const QSize size(std::min(std::max(area.width() * 7 / 10, 720), area.width()),
                     std::min(std::max(area.height() * 7 / 10, 440), area.height()));
    const int nStep = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &child) + 4;
    const QSize room = area - size;
    const int nPlaces = std::max(std::min(room.width(), room.height()) / nStep, 0) + 1;
    const int nPlace = m_nNextPlace++ % nPlaces;
    child.setGeometry(QRect(QPoint(nPlace, nPlace) * nStep, size));
}

// The effect that becomes active would take the keyboard, from the tree for instance: the next Delete would go to its
// keys. From another effect it takes it.
void EffectWindows::KeepKeyboard(const std::function<void()>& activate)
{
    QPointer<QWidget> pFocus = window()->focusWidget();
    if (pFocus && isAncestorOf(pFocus))
        pFocus = nullptr;
    activate();
    if (pFocus)
        pFocus->setFocus();
}

void EffectWindows::Close(const CSpell* pSpell)
{
    // At once: the effect may be destroyed right after.
    QMdiSubWindow* pChild = FindChild(pSpell);
    if (!pChild)
        return;
    KeepKeyboard([pChild] { delete pChild; });
    emit Changed();
}

void EffectWindows::CloseAll()
{
    for (QMdiSubWindow* pChild : subWindowList())
        delete pChild;
    emit Changed();
}

// ---- What they show

void EffectWindows::RetitleAll()
{
    for (TrackWidget* pTrack : Timelines())
        pTrack->parentWidget()->setWindowTitle(QtText::Title(QtText::ToQt(pTrack->GetSpell().m_szName)));
    emit Changed();
}

void EffectWindows::RepaintAll()
{
    for (TrackWidget* pTrack : Timelines())
        pTrack->update();
}

bool EffectWindows::ShowChange(const std::vector<CChangeSpots::CEffect>& effects)
{
    QMdiSubWindow* pFirst = nullptr;
    bool bActive = false;
    for (const CChangeSpots::CEffect& effect : effects)
    {
        QMdiSubWindow* pChild = FindChild(effect.m_pSpell);
        if (!pChild)
            continue;
        qobject_cast<TrackWidget*>(pChild->widget())->ShowKeys(effect.m_Keys, effect.m_pTrack);
        bActive = bActive || pChild == activeSubWindow();
        if (!pFirst)
            pFirst = pChild;
    }
    if (pFirst && !bActive)
        KeepKeyboard([this, pFirst] { setActiveSubWindow(pFirst); });
    return pFirst != nullptr;
}

void EffectWindows::ReadOptions()
{
    for (TrackWidget* pTrack : Timelines())
        pTrack->SetOptions(LoadTrackViewOptions(m_Profile));
}

bool EffectWindows::IsGestureRunning() const
{
    const std::vector<TrackWidget*> timelines = Timelines();
    return std::any_of(timelines.begin(), timelines.end(),
                       [](TrackWidget* pTrack) { return pTrack->Logic().IsBusy(); });
}

void EffectWindows::CancelGestures()
{
    for (TrackWidget* pTrack : Timelines())
        if (pTrack->Logic().IsBusy())
            pTrack->Logic().OnMouseLost();
}

void EffectWindows::UpdateGreeting()
{
    const bool bEmpty = subWindowList().isEmpty();
    if (bEmpty)
        m_nNextPlace = 0;
    m_pGreeting->setVisible(bEmpty);
    m_pGreeting->setGeometry(rect().adjusted(40, 40, -40, -40));
    if (!bEmpty)
        return;
    const bool bLibrary = !m_App.m_SpellMgr.Spells().empty();
    m_pGreeting->setText(
        bLibrary ? tr("<h2>%1</h2><p>Double-click an effect at the left to see its timeline.</p>")
                       .arg(QFileInfo(QString(QtText::PathToQt(m_App.m_sFileName))
                                          .replace(QLatin1Char('\\'), QLatin1Char('/')))
                                .fileName()
                                .toHtmlEscaped())
                 : tr("<h2>No effect is open</h2><p>Open an effect library with <b>File &gt; "
                      "Open</b> (Ctrl+O), drop one "
                      "here, or start with <b>New Effect</b> in the toolbar.</p>") +
                       (m_App.m_EffectModule.IsLoaded()
                            ? QString()
                            : tr("<p>The types of keys come from a game's project. With the first key of a "
                                 "new library you choose it.</p>")));
}

void EffectWindows::resizeEvent(QResizeEvent* pEvent)
{
    QMdiArea::resizeEvent(pEvent);
    UpdateGreeting();
}

void EffectWindows::changeEvent(QEvent* pEvent)
{
    QMdiArea::changeEvent(pEvent);
    if (pEvent->type() == QEvent::PaletteChange) // the area keeps the colour that it began with
        setBackground(palette().brush(QPalette::Dark));
}
