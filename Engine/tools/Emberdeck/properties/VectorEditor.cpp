#include "properties/VectorEditor.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>

#include "app/Messages.h"
#include "properties/ValueText.h"
#include "qsmath.h"
#include "qsnumber.h"

namespace
{

constexpr CMessage c_MsgNoNumber = {c_szEnterNumber, "Emberdeck", EButtons::eOk, EIcon::eExclamation};
constexpr CMessage c_MsgMagnitude = {"Enter a number between 0.001 and 1000.", "Emberdeck", EButtons::eOk,
                                     EIcon::eExclamation};

constexpr CVector3 c_vUp = {0.0f, 1.0f, 0.0f};

// Of an arrow: half its base, and the arms of the cross at its tip.
constexpr int32_t c_nHalfBase = 10;
constexpr int32_t c_nCrossArm = 2;

CPoint CentreOf(const CRect& rc)
{
    return CPoint{rc.left + rc.Width() / 2, rc.top + rc.Height() / 2};
}

int32_t Trunc(double fValue)
{
    return static_cast<int32_t>(std::clamp(fValue, -32000.0, 32000.0));
}

} // namespace

CEditVectorDlg::CEditVectorDlg(IPrompts& prompts, const CVector3& vValue)
    : m_vDirection(vValue),
      m_Prompts(prompts)
{
    const double fLength = QSLength(vValue);
    if (fLength > 0.0 && std::isfinite(fLength))
    {
        m_fMagnitude = static_cast<float>(std::min(fLength, double(FLT_MAX)));
        m_vDirection.Normalize();
    }
    else
    {
        m_vDirection = c_vUp;
    }
    m_sMagnitude = NumberEntryText(m_fMagnitude);
}

void CEditVectorDlg::OnInitDialog(const CRect& rcSide, const CRect& rcTop)
{
    m_rcSide = rcSide;
    m_rcTop = rcTop;
    NoteStep();
}

void CEditVectorDlg::SetState(const CVectorState& state)
{
    m_vDirection = state.m_vDirection;
    m_sMagnitude = state.m_sMagnitude;
    Repaint();
    if (m_pView)
        m_pView->ShowMagnitude();
}

bool CEditVectorDlg::OnOK()
{
    float fMagnitude = 0.0f;
    const bool bNumber = QSParseFloat(m_sMagnitude, fMagnitude);
    if (!bNumber || fMagnitude < c_fMinMagnitude || fMagnitude > c_fMaxMagnitude)
    {
        ShowMessage(m_Prompts, bNumber ? c_MsgMagnitude : c_MsgNoNumber);
        if (m_pView)
            m_pView->SelectMagnitude();
        return false;
    }
    m_fMagnitude = fMagnitude;
    m_vResult = m_vDirection * fMagnitude;
    return true;
}

void CEditVectorDlg::OnPreset(int nItem)
{
    if (nItem < 0 || static_cast<size_t>(nItem) >= std::size(c_VectorPresets))
        return;
    m_vDirection = c_VectorPresets[nItem].m_vDirection;
    Repaint();
}

void CEditVectorDlg::OnStepPreset(bool bNext)
{
    constexpr int c_nPresets = std::size(c_VectorPresets);
    constexpr float c_fAt = 0.9999f; // cosine of the angle between them
    int nAt = bNext ? -1 : c_nPresets;
    for (int i = 0; i < c_nPresets; ++i)
    {
        const CVector3& vPreset = c_VectorPresets[i].m_vDirection;
        const float fCosine =
            vPreset.x * m_vDirection.x + vPreset.y * m_vDirection.y + vPreset.z * m_vDirection.z;
        if (fCosine > c_fAt)
            nAt = i;
    }
    OnPreset(nAt + (bNext ? 1 : -1));
}

void CEditVectorDlg::OnLeftDown(CPoint pt)
{
    const bool bSide = m_rcSide.Contains(pt);
    if (!bSide && !m_rcTop.Contains(pt))
        return;
    m_eDragged = bSide ? EVectorView::eSide : EVectorView::eTop;
    m_bDragging = true;
    m_vBeforeDrag = m_vDirection;
    m_ptLast = FromCentre(pt);
}

bool CEditVectorDlg::CancelDrag()
{
    if (!m_bDragging)
        return false;
    m_bDragging = false;
    m_vDirection = m_vBeforeDrag;
    Repaint();
    return true;
}

// The direction swings at half the speed of the pointer, clockwise on the screen as the pointer does, about +X
// in the side view and +Y in the top view. On the centre a pointer has no angle.
void CEditVectorDlg::OnMouseMove(CPoint pt)
{
    if (!m_bDragging)
        return;
    const CPoint ptNow = FromCentre(pt);
    if (ptNow == m_ptLast || ptNow == CPoint{})
        return;
    const CPoint ptLast = m_ptLast;
    m_ptLast = ptNow;
    if (ptLast == CPoint{})
        return;
    // Crossing straight down the angle jumps by a whole turn, half of which would flip the direction.
    const double fTurn =
        std::remainder(std::atan2(ptNow.x, ptNow.y) - std::atan2(ptLast.x, ptLast.y), 2.0 * c_fPi);
    const CVector3 vAxis = m_eDragged == EVectorView::eSide ? CVector3{1, 0, 0} : CVector3{0, 1, 0};
    m_vDirection = MakeRotationMatrix(vAxis, fTurn * 0.5) * m_vDirection;
    m_vDirection.Normalize();
    Repaint();
}

CPoint CEditVectorDlg::FromCentre(CPoint pt) const
{
    const CPoint ptCentre = CentreOf(m_eDragged == EVectorView::eSide ? m_rcSide : m_rcTop);
    return CPoint{pt.x - ptCentre.x, ptCentre.y - pt.y};
}

void CEditVectorDlg::PaintView(IDrawSurface& surface, EVectorView eView, const CRect& rc) const
{
    const bool bSide = eView == EVectorView::eSide;
    const double a = bSide ? m_vDirection.z : m_vDirection.x;
    const double b = bSide ? m_vDirection.y : m_vDirection.z;
    const CPenSpec pen{EPenStyle::eSolid, MakeColorRef(255, 255, 255), 1};
    const CPoint c = CentreOf(rc);
    const int32_t s = std::min(rc.Width() / 2, rc.Height() / 2);
    const CPoint tip{c.x + Trunc(s * a), c.y - Trunc(s * b)};
    const int32_t p = Trunc(-c_nHalfBase * b);
    const int32_t q = Trunc(c_nHalfBase * a);
    const CPoint p1{c.x - p, c.y + q};
    const CPoint p2{c.x + p, c.y - q};
    surface.FillRect(rc, MakeColorRef(0, 0, 0));
    surface.DrawLine(p1, p2, pen);
    surface.DrawLine(p2, tip, pen);
    surface.DrawLine(tip, p1, pen);
    surface.DrawLine(CPoint{tip.x - c_nCrossArm, tip.y}, CPoint{tip.x + c_nCrossArm + 1, tip.y}, pen);
    surface.DrawLine(CPoint{tip.x, tip.y - c_nCrossArm}, CPoint{tip.x, tip.y + c_nCrossArm + 1}, pen);
}

void CEditVectorDlg::Repaint()
{
    if (m_pView)
        m_pView->RepaintViews();
}
