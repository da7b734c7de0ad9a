#include "bench/window/Bench.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWindow>

#include "changes/EditScope.h"
#include "platform/Profile.h"
#include "qt/frame/EffectWindows.h"
#include "qt/frame/MainWindow.h"
#include "qt/timeline/TrackWidget.h"
#include "shared/sourcecontrol/SharedSourceControlMgr.h"

namespace
{

constexpr int c_nTracks = 200;
constexpr int c_nKeysOnTrack = 50;
constexpr int c_nPhase = 20000;

// Keys with gaps between them, out of step from track to track.
bool Fill(CEmberdeckApp& app, CSpell& spell)
{
    if (app.m_EffectModule.GetNumTypes() == 0)
        return false;
    CEditScope scope(app.m_Edits, "Fill");
    scope.TouchLibrary();
    spell.m_Tracks.m_nPhaseLength = c_nPhase;
    for (int i = 0; i < c_nTracks; ++i)
    {
        CTrack* pTrack = spell.m_Tracks.AddTrack();
        for (int j = 0; j < c_nKeysOnTrack; ++j)
        {
            const uint32_t nType = uint32_t(i + j) % app.m_EffectModule.GetNumTypes();
            auto pKey = std::make_unique<CKey>(app.m_EffectModule.GetType(nType));
            pKey->m_nKeyID = spell.m_Tracks.TakeKeyID();
            pKey->m_nTrack = uint32_t(i);
            pKey->m_nStartTime = 100 + (i * 37) % 200 + j * (c_nPhase - 600) / c_nKeysOnTrack;
            pKey->m_nEndTime = pKey->m_nStartTime + 250;
            pTrack->AppendKey(std::move(pKey));
        }
    }
    return true;
}

// One drag to and fro, each step by the window's own event.
std::vector<double> Drag(TrackWidget& timeline, QPoint start, Qt::KeyboardModifiers held, int nFrames)
{
    QWindow* pWindow = timeline.window()->windowHandle();
    const QPoint origin = timeline.mapTo(timeline.window(), start);
    std::vector<double> frames;
    QTest::mouseMove(pWindow, origin);
    QTest::mousePress(pWindow, Qt::LeftButton, held, origin);
    if (!timeline.Logic().IsDragging())
        return frames;
    for (int i = 0; i < nFrames; ++i)
    {
        QElapsedTimer clock;
        clock.start();
        QTest::mouseMove(pWindow, origin + QPoint(i % 6 - 3, 0));
        QApplication::processEvents();
        frames.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    QTest::mouseRelease(pWindow, Qt::LeftButton, held, origin);
    return frames;
}

} // namespace

std::vector<CWindowFigure> MeasureTimelinePaint(int nFrames)
{
    constexpr double fFrame = 1000.0 / 60.0;
    std::vector<CWindowFigure> figures = {
        {"Step of a drag, 200 tracks, 10,000 keys, one selected", {}, fFrame},
        {"Step of a drag, 200 tracks, 10,000 keys, all selected", {}, fFrame}};
    const std::unique_ptr<IProfile> pProfile = MakeMemoryProfile();
    QtPrompts prompts;
    MenuStyle* pStyle = new MenuStyle; // the application takes it
    QApplication::setStyle(pStyle);
    MainWindow window(*pProfile, CSharedSourceControlMgr::Instance(), prompts);
    CEmberdeckApp& app = window.App();
    const std::string sSample = EMBERDECK_BIN_DIR "/bonfire-project/bonfire.Fx00a";
    if (!window.Create(false, pStyle) || !app.LocateProject(sSample.c_str()) || !app.LoadProjectPlugin())
        return figures;
    app.NewEffectFile();
    CSpell* pSpell = app.m_SpellMgr.AddSpell();
    if (!pSpell || !Fill(app, *pSpell))
        return figures;
    window.resize(1920, 1080);
    window.show();
    window.Effects().Open(*pSpell);
    TrackWidget* pTimeline = window.ActiveTimeline();
    pTimeline->parentWidget()->showMaximized();
    QTest::qWait(100);

    CTrackWnd& track = pTimeline->Logic();
    const CRect rc = track.GetKeyRect(pSpell->m_Tracks.GetTrack(3)->GetKey(10));
    const QPoint middle((rc.left + rc.right) / 2, (rc.top + rc.bottom) / 2);
    figures[0].m_Samples = Drag(*pTimeline, middle, Qt::NoModifier, nFrames);
    for (const auto& pTrack : pSpell->m_Tracks.Tracks())
        for (const auto& pKey : pTrack->Keys())
            pKey->m_bSelected = true;
    figures[1].m_Samples = Drag(*pTimeline, middle, Qt::ControlModifier, nFrames);
    return figures;
}
