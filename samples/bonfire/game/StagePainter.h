// SPDX-License-Identifier: 0BSD
#pragma once

#include <QHash>
#include <QImage>
#include <QPainter>

#include "game/Stage.h"

// Draws a stage: night, the ground, and what burns on it.
class StagePainter
{
public:
    void Paint(QPainter& painter, const QSize& size, const CStage& stage, const CView& view);

private:
    QPointF ToScreen(const CPoint& at) const;
    void PaintBackdrop(QPainter& painter, const CStage& stage);
    void PaintStain(QPainter& painter, const CStain& stain) const;
    void PaintLampOnGround(QPainter& painter, const CLamp& lamp) const;
    void PaintGlow(QPainter& painter, const CLamp& lamp) const;
    void PaintThing(QPainter& painter, const CThing& thing) const;
    void PaintDot(QPainter& painter, const CDot& dot);
    void PaintWords(QPainter& painter, const CWords& words) const;
    const QImage& SoftShape(ELook eLook, const CTint& tint);

    QSize m_Size;
    double m_fScale = 1;             // pixels for a metre
    double m_fGround = 0;            // y of the ground on the screen
    double m_fMiddle = 0;            // x of the world that stands in the middle
    QHash<quint32, QImage> m_Shapes; // by look and colour
};
