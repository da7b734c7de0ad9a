// SPDX-License-Identifier: 0BSD
#include "game/GameWindow.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>

#include "game/Legend.h"

namespace
{
constexpr int c_nFrameMs = 16;
constexpr int c_nSoonMs = 60;         // until a file in motion is looked at again
constexpr int c_nNowAndThenMs = 1500; // for file systems that tell nothing

QString Shown(std::string_view s)
{
    const QString sText = QString::fromUtf8(s.data(), qsizetype(s.size()));
    return sText.contains(QChar(QChar::ReplacementCharacter))
               ? QString::fromLatin1(s.data(), qsizetype(s.size()))
               : sText;
}

QString PathText(const std::string& s)
{
    return QFile::decodeName(QByteArray::fromStdString(s));
}
} // namespace

GameWindow::GameWindow(const std::string& sFile, const std::string& sPlugIn, const std::string& sEffect)
    : m_sFile(sFile),
      m_sPlugIn(sPlugIn)
{
    setAccessibleName(QStringLiteral("Bonfire, the effects of a packed file"));
    setMinimumSize(360, 260);
    resize(1000, 700);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);

    m_Clock.start();
    Load();
    if (!sEffect.empty() && !m_Player.Choose(sEffect))
        m_sNotice = "There is no effect named " + sEffect + ".";
    Changed();

    connect(&m_Watcher, &QFileSystemWatcher::fileChanged, this, [this] { CheckFile(); });
    connect(&m_Watcher, &QFileSystemWatcher::directoryChanged, this, [this] { CheckFile(); });
    connect(&m_Checks, &QTimer::timeout, this, [this] { CheckFile(); });
    connect(&m_Frames, &QTimer::timeout, this, [this] { Tick(); });
    m_Checks.start(c_nNowAndThenMs);
    m_Frames.setTimerType(Qt::PreciseTimer);
    m_Frames.start(c_nFrameMs);
}

void GameWindow::Load()
{
    // Before the reading: what is written meanwhile counts as a change.
    m_Reload.Loaded(StampOf(m_sFile));
    std::string sError;
    std::unique_ptr<CGame> pGame = LoadGame(m_sFile, m_sPlugIn, sError);
    m_sError = pGame && pGame->m_File.m_Effects.empty() ? m_sFile + " holds no effects" : sError;
    m_Player.SetFile(pGame ? &pGame->m_File : nullptr);
    m_Births.clear(); // known by the keys of the file that goes
    m_pGame = std::move(pGame);
    WatchFolder();
}

// A save may write the file or put another one in its place, so both the file and its folder are watched.
void GameWindow::WatchFolder()
{
    const QString sFile = PathText(m_sFile);
    const QString sFolder = QFileInfo(sFile).absolutePath();
    if (QFileInfo::exists(sFile) && !m_Watcher.files().contains(sFile))
        m_Watcher.addPath(sFile);
    if (QFileInfo::exists(sFolder) && !m_Watcher.directories().contains(sFolder))
        m_Watcher.addPath(sFolder);
}

void GameWindow::CheckFile()
{
    switch (m_Reload.Ask(StampOf(m_sFile), double(m_Clock.elapsed()) * 0.001))
    {
    case EReload::eNothing:
        m_Checks.start(c_nNowAndThenMs);
        break;
    case EReload::eWait:
        m_Checks.start(c_nSoonMs);
        break;
    case EReload::eLoad:
        Load();
        m_sNotice = m_sError.empty() ? "Read again" : "";
        Changed();
        break;
    case EReload::eGone:
        if (m_pGame)
            m_sNotice = "The file is gone; this is what it held.";
        else
            Load();
        Changed();
        break;
    }
}

void GameWindow::Tick()
{
    const qint64 nNow = m_Clock.elapsed();
    // A machine that slept, or a window that was covered, isn't caught up with.
    m_Player.Advance(double(std::min<qint64>(nNow - m_nLast, 250)) * 0.001);
    m_nLast = nNow;
    update();
}

void GameWindow::Changed()
{
    const CEffect* pEffect = m_Player.GetEffect();
    const QString sName = pEffect ? Shown(pEffect->m_sName) : QStringLiteral("no effect");
    setWindowTitle(QStringLiteral("%1 - %2 - Bonfire").arg(sName, QFileInfo(PathText(m_sFile)).fileName()));
    if (pEffect)
        m_View = FitView(m_pGame->m_File, *pEffect, m_Player.GetLength(), m_Births);
    setAccessibleDescription(m_sError.empty() ? sName : Shown(m_sError));
    update();
}

void GameWindow::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key())
    {
    case Qt::Key_Left:
    case Qt::Key_P:
    case Qt::Key_PageUp:
        m_Player.Step(-1);
        break;
    case Qt::Key_Right:
    case Qt::Key_N:
    case Qt::Key_PageDown:
        m_Player.Step(1);
        break;
    case Qt::Key_Space:
        m_Player.TogglePause();
        return update();
    case Qt::Key_R:
    case Qt::Key_Home:
        m_Player.Restart();
        return update();
    case Qt::Key_Escape:
    case Qt::Key_Q:
        close();
        return;
    default:
        QWidget::keyPressEvent(pEvent);
        return;
    }
    m_sNotice.clear();
    Changed();
}

void GameWindow::mousePressEvent(QMouseEvent* pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    m_Player.Step(pEvent->position().x() < width() / 2.0 ? -1 : 1);
    m_sNotice.clear();
    Changed();
}

void GameWindow::paintEvent(QPaintEvent*)
{
    // Adding light needs a picture of known format; what the screen has is anyone's guess.
    const double fRatio = devicePixelRatioF();
    if (m_Canvas.size() != size() * fRatio)
        m_Canvas = QImage(size() * fRatio, QImage::Format_RGB32);
    m_Canvas.setDevicePixelRatio(fRatio);
    const CEffect* pEffect = m_sError.empty() ? m_Player.GetEffect() : nullptr;
    CStage stage;
    if (pEffect)
        stage = BuildStage(m_pGame->m_File, *pEffect, m_Player.GetTime(),
                           m_Player.HasLooped() ? m_Player.GetLength() : 0, m_Births);
    QPainter painter(&m_Canvas);
    painter.setFont(font());
    m_Painter.Paint(painter, size(), stage, m_View);
    if (pEffect)
    {
        PaintSounds(painter, stage);
        PaintLegend(painter, stage);
    }
    else
        PaintMessage(painter);
    painter.end();
    QPainter(this).drawImage(0, 0, m_Canvas);
}

void GameWindow::PaintMessage(QPainter& painter) const
{
    const CTrouble trouble = ExplainTrouble(m_sError, m_sFile, StampOf(m_sFile).m_bThere);
    const QRectF rc = QRectF(rect()).adjusted(40, 40, -40, -40);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    painter.setFont(large);
    painter.setPen(QColor(255, 196, 120));
    const QRectF rcHead(rc.left(), rc.top(), rc.width(), rc.height() / 3);
    painter.drawText(rcHead, Qt::AlignHCenter | Qt::AlignBottom | Qt::TextWordWrap, Shown(trouble.m_sHead));
    painter.setFont(font());
    painter.setPen(QColor(222, 222, 228));
    painter.drawText(QRectF(rc.left(), rcHead.bottom() + 14, rc.width(), rc.height() * 2 / 3 - 14),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWrapAnywhere,
                     Shown(trouble.m_sReason + "\n\n" + trouble.m_sAdvice));
}

void GameWindow::PaintSounds(QPainter& painter, const CStage& stage) const
{
    const QFontMetricsF metrics(font());
    double y = 14;
    painter.setFont(font());
    const auto line = [&](const QString& sText, double fBar)
    {
        const double w = 70;
        const QRectF rcBar(width() - 16 - w, y + metrics.height() / 2 - 3, w, 6);
        painter.setPen(Qt::NoPen);
        if (fBar >= 0)
        {
            painter.setBrush(QColor(255, 255, 255, 36));
            painter.drawRoundedRect(rcBar, 3, 3);
            painter.setBrush(QColor(120, 190, 255, 220));
            painter.drawRoundedRect(QRectF(rcBar.left(), rcBar.top(), w * fBar, 6), 3, 3);
        }
        painter.setPen(QColor(198, 212, 232));
        painter.drawText(QRectF(16, y, rcBar.left() - 26, metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter, sText);
        y += metrics.height() + 4;
    };
    for (size_t i = 0; i < std::min<size_t>(stage.m_Heard.size(), 8); ++i)
        line(Shown(SoundText(stage.m_Heard[i])), stage.m_Heard[i].m_fVolume);
    for (size_t i = 0; i < std::min<size_t>(stage.m_Others.size(), 8); ++i)
        line(Shown(stage.m_Others[i]), -1);
}

void GameWindow::PaintLegend(QPainter& painter, const CStage&) const
{
    const QFontMetricsF metrics(font());
    const double fLine = metrics.height(), fPad = 14;
    const double fTop = height() - fPad * 2 - fLine * 3 - 10;
    const QRectF rc(fPad, fTop, width() - 2 * fPad, height() - fPad - fTop);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(8, 9, 14, 150));
    painter.drawRoundedRect(rc, 8, 8);
    const QRectF rcIn = rc.adjusted(12, 7, -12, -7);
    PaintKeys(painter, QRectF(rcIn.left(), rcIn.top() + fLine * 1.3, rcIn.width(), fLine * 0.6));

    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(QColor(255, 214, 150));
    const QRectF rcName(rcIn.left(), rcIn.top(), rcIn.width(), fLine * 1.1);
    const CLegend legend = MakeLegend(m_Player);
    painter.drawText(rcName, Qt::AlignLeft | Qt::AlignVCenter, Shown(legend.m_sName));
    painter.setFont(font());
    painter.setPen(QColor(214, 216, 224));
    painter.drawText(rcName, Qt::AlignRight | Qt::AlignVCenter, Shown(legend.m_sTime));
    const QRectF rcKeys(rcIn.left(), rcIn.bottom() - fLine, rcIn.width(), fLine);
    painter.setPen(QColor(160, 164, 176));
    painter.drawText(rcKeys, Qt::AlignLeft | Qt::AlignVCenter, QString::fromLatin1(c_szKeysHelp));
    painter.setPen(QColor(255, 170, 90));
    painter.drawText(rcKeys, Qt::AlignRight | Qt::AlignVCenter, Shown(m_sNotice));
}

// The keys of the effect as bars over its time, and where it is now.
void GameWindow::PaintKeys(QPainter& painter, const QRectF& rc) const
{
    static const QColor c_Colours[] = {
        {250, 140, 50}, {255, 205, 90}, {120, 190, 255}, {170, 140, 250}, {110, 205, 140}};
    const CEffect& effect = *m_Player.GetEffect();
    const double fPerSecond = rc.width() / m_Player.GetLength();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 24));
    painter.drawRoundedRect(rc, 3, 3);
    const size_t nKeys = std::min<size_t>(effect.m_Keys.size(), 24);
    for (size_t i = 0; i < nKeys; ++i)
    {
        const CKey& key = effect.m_Keys[i];
        const double fStep = rc.height() / double(nKeys);
        const double fLeft = std::clamp(double(key.m_fStart) * fPerSecond, 0.0, rc.width());
        const double fRight = std::clamp(double(key.m_fEnd) * fPerSecond, fLeft, rc.width());
        painter.setBrush(c_Colours[key.m_pType->m_nTypeID % std::size(c_Colours)]);
        painter.drawRect(QRectF(rc.left() + fLeft, rc.top() + fStep * double(i),
                                std::max(1.0, fRight - fLeft), std::max(1.0, fStep * 0.75)));
    }
    painter.setBrush(Qt::white);
    painter.drawRect(
        QRectF(rc.left() + m_Player.GetTime() * fPerSecond - 0.75, rc.top() - 3, 1.5, rc.height() + 6));
}

int RunGameWindow(char* pszProgram, const std::string& sFile, const std::string& sPlugIn,
                  const std::string& sEffect)
{
    // The toolkit gets the program's name alone: it has options of its own, and one is called as ours.
    int argc = 1;
    char* argv[] = {pszProgram, nullptr};
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Bonfire"));
    QApplication::setDesktopFileName(QStringLiteral("emberdeck-bonfire"));
    GameWindow window(sFile, sPlugIn, sEffect);
    window.show();
    return QApplication::exec();
}
