// SPDX-License-Identifier: 0BSD
#pragma once

#include <memory>

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QTimer>
#include <QWidget>

#include "game/GameFile.h"
#include "game/Player.h"
#include "game/Reload.h"
#include "game/StagePainter.h"

// The game's window: plays one effect after the other, and what the packed file has become whenever it changes.
class GameWindow : public QWidget
{
public:
    // sEffect: the effect to begin with; empty for the first of the file.
    GameWindow(const std::string& sFile, const std::string& sPlugIn, const std::string& sEffect);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;

private:
    void Load();
    void WatchFolder();
    void CheckFile();
    void Tick();
    void Changed(); // another effect or another file: title, view
    void PaintLegend(QPainter& painter, const CStage& stage) const;
    void PaintKeys(QPainter& painter, const QRectF& rc) const;
    void PaintSounds(QPainter& painter, const CStage& stage) const;
    void PaintMessage(QPainter& painter) const;

    std::string m_sFile, m_sPlugIn;
    std::string m_sError;  // why nothing plays; empty when something does
    std::string m_sNotice; // a remark in the legend
    std::unique_ptr<CGame> m_pGame;
    CPlayer m_Player;
    CBirthsOfKeys m_Births;
    CView m_View;
    StagePainter m_Painter;
    QImage m_Canvas;
    CReloadWatch m_Reload;
    QFileSystemWatcher m_Watcher;
    QTimer m_Frames, m_Checks;
    QElapsedTimer m_Clock;
    qint64 m_nLast = 0;
};

// Runs the window until it is closed; the program's exit status.
int RunGameWindow(char* pszProgram, const std::string& sFile, const std::string& sPlugIn,
                  const std::string& sEffect);

// Whether there is a display to open a window on. Asked before the toolkit, which ends the program without one.
bool HasDisplay();
