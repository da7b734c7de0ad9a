#include "properties/FunctionCurveEditor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "qsnumber.h"

// Picking, dragging, adding and deleting keys, and what follows a change of the selection.

namespace
{

constexpr double c_fLeastMove = 0.00001;
constexpr int64_t c_nDragDistance = 5;

int64_t SquaredDistance(CPoint a, CPoint b)
{
    const int64_t dx = int64_t(a.x) - b.x;
    const int64_t dy = int64_t(a.y) - b.y;
    return dx * dx + dy * dy;
}

} // namespace

void CFunctionCurveDlg::OnLeftDown(CPoint pt, bool bCtrl)
{
    if (IsInArea(pt))
        PickKey(pt, bCtrl);
}

void CFunctionCurveDlg::PickKey(CPoint pt, bool bCtrl)
{
    const int nKey = m_View.HitTest(m_Prop, pt);
    if (nKey < 0 || !bCtrl)
        SetSelected(false);
    if (nKey >= 0)
        m_Prop.GetKey(static_cast<uint32_t>(nKey))->m_bSelected = true;
    OnSelectionChanged();
    if (nKey < 0)
        return;
    m_ptLast = pt;
    m_BeforeDrag = m_Prop;
    m_bDragging = true;
    m_bDragStarted = false;
}

// While the press doesn't count as a drag yet m_ptLast stays where it was, so that the first step includes the
// way up to here and the key doesn't lag behind.
void CFunctionCurveDlg::OnMouseMove(CPoint pt, bool bShift)
{
    if (!m_bDragging)
        return;
    if (!m_bDragStarted && SquaredDistance(pt, m_ptLast) < c_nDragDistance * c_nDragDistance)
        return;
    m_bDragStarted = true;
    const double fTime = bShift ? 0.0 : m_View.XToTime(pt.x) - m_View.XToTime(m_ptLast.x);
    const double fValue = m_View.YToValue(pt.y) - m_View.YToValue(m_ptLast.y);
    if (!m_bReadOnly)
        DragSelected(fTime, fValue);
    m_Prop.SortKeys();
    m_ptLast = pt;
    Repaint();
}

// Every selected key by the same amounts, from its value as it is stored.
void CFunctionCurveDlg::DragSelected(double fTime, double fValue)
{
    const bool bTime = std::abs(fTime) > c_fLeastMove;
    const bool bValue = std::abs(fValue) > c_fLeastMove &&
                        (IsRangeEditable() || Kind() == ePropType_Color || Kind() == ePropType_Vector);
    bool bFirst = true;
    for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
    {
        CPropKey& key = *m_Prop.GetKey(i);
        if (!key.m_bSelected)
            continue;
        if (!IsTimeLocked(i))
            key.m_fTime = static_cast<float>(std::clamp(key.m_fTime + fTime, 0.0, 1.0));
        if (bValue)
        {
            const double fNew = GetAxisValue(m_Prop, key, m_View.m_nAxis) + fValue;
            SetAxisValue(QSNearestFloat(fNew), key, m_View.m_nAxis, m_Prop);
            if (bFirst)
                ShowInRow(static_cast<int>(i));
            bFirst = false;
        }
    }
    if (bTime)
        ButtonsChanged();
}

void CFunctionCurveDlg::OnLeftUp()
{
    m_bDragging = false;
    m_bDragStarted = false;
    m_BeforeDrag.reset();
}

bool CFunctionCurveDlg::CancelDrag()
{
    if (!m_bDragging)
        return false;
    m_Prop = *std::exchange(m_BeforeDrag, std::nullopt);
    OnLeftUp();
    OnSelectionChanged();
    return true;
}

void CFunctionCurveDlg::OnRightUp(CPoint pt)
{
    OnAddKey(pt);
}

void CFunctionCurveDlg::OnAddKey(CPoint pt)
{
    if (m_bReadOnly || !IsInArea(pt))
        return;
    CPropKey key;
    key.m_fTime = static_cast<float>(m_View.XToTime(pt.x));
    if (m_Prop.GetDesc())
        key.m_Data.Assign(m_Prop.GetDesc()->m_Default);
    // Before it is in the list: the others are brought into range, the new one is not until it is dragged.
    SetAxisValue(QSNearestFloat(m_View.YToValue(pt.y)), key, m_View.m_nAxis, m_Prop);
    AddSelected(key);
}

void CFunctionCurveDlg::OnStepKey(bool bNext, bool bAdd)
{
    const int nKeys = static_cast<int>(m_Prop.GetNumKeys());
    int nFrom = -1;
    for (int i = 0; i < nKeys; ++i)
    {
        if (m_Prop.GetKey(static_cast<uint32_t>(i))->m_bSelected && (nFrom < 0 || bNext))
            nFrom = i;
    }
    if (nKeys == 0 || m_bDragging)
        return;
    const int nTo = nFrom < 0 ? 0 : std::clamp(nFrom + (bNext ? 1 : -1), 0, nKeys - 1);
    if (!bAdd)
        SetSelected(false);
    m_Prop.GetKey(static_cast<uint32_t>(nTo))->m_bSelected = true;
    OnSelectionChanged();
}

void CFunctionCurveDlg::OnInsertKey()
{
    if (m_bReadOnly || m_bDragging)
        return;
    const uint32_t nKeys = m_Prop.GetNumKeys();
    const int nFirst = GetSelection().m_nFirst;
    double fTime = (double(m_View.m_fStartTime) + double(m_View.m_fEndTime)) / 2.0;
    if (nFirst >= 0)
    {
        const auto nKey = static_cast<uint32_t>(nFirst);
        double fOther = nKey + 1 < nKeys ? double(m_Prop.GetKey(nKey + 1)->m_fTime) : 1.0;
        // No room behind it: one more at the very end would set the pinned last key free.
        if (nKey > 0 && m_Prop.GetKey(nKey)->m_fTime >= 1.0f)
            fOther = m_Prop.GetKey(nKey - 1)->m_fTime;
        fTime = (double(m_Prop.GetKey(nKey)->m_fTime) + fOther) / 2.0;
    }
    CPropKey key;
    key.m_fTime = static_cast<float>(fTime);
    if (nKeys > 0)
        key.m_Data = EvaluateValue(m_Prop, key.m_fTime);
    else if (m_Prop.GetDesc())
        key.m_Data.Assign(m_Prop.GetDesc()->m_Default);
    // At the time of others it comes behind them, where the last one's value holds.
    for (uint32_t i = 0; i < nKeys; ++i)
    {
        if (std::as_const(m_Prop).GetKey(i)->m_fTime == key.m_fTime)
            key.m_Data = std::as_const(m_Prop).GetKey(i)->m_Data;
    }
    AddSelected(key);
}

void CFunctionCurveDlg::AddSelected(CPropKey& key)
{
    SetSelected(false);
    key.m_bSelected = true;
    m_Prop.AddKey(key);
    OnSelectionChanged();
}

// From the back, where removing one moves only keys that stay. The pinned ones are the same either way.
void CFunctionCurveDlg::OnDeleteKeys()
{
    for (uint32_t i = m_Prop.GetNumKeys(); i-- > 0;)
    {
        if (m_Prop.GetKey(i)->m_bSelected && !IsTimeLocked(i))
            m_Prop.RemoveKey(i);
    }
    SelectAll(false);
}

void CFunctionCurveDlg::SelectAll(bool bSelect)
{
    SetSelected(bSelect);
    OnSelectionChanged();
}

void CFunctionCurveDlg::SetSelected(bool bSelected)
{
    for (uint32_t i = 0; i < m_Prop.GetNumKeys(); ++i)
        m_Prop.GetKey(i)->m_bSelected = bSelected;
}

void CFunctionCurveDlg::ShowInRow(int nKey)
{
    m_bUpdatingCtrls = true;
    m_Ctrls.SetFromProperty(&m_Prop, nKey);
    m_bUpdatingCtrls = false;
}

void CFunctionCurveDlg::OnSelectionChanged()
{
    const CSelection selection = GetSelection();
    const bool bShow = selection.m_nCount > 0;
    const bool bHidden = m_bRowShown && !bShow;
    m_bRowShown = bShow;
    m_Ctrls.ShowControls(bShow);
    m_Ctrls.EnableControls(!(m_bReadOnly && bShow));
    ShowInRow(selection.m_nFirst);
    ButtonsChanged();
    Repaint();
    if (bHidden && m_pView)
        m_pView->OnRowHidden();
}

// The whole value goes into every selected key, unchecked: a range acts at the next drag or at OK.
void CFunctionCurveDlg::OnRowChanged()
{
    if (m_bUpdatingCtrls)
        return;
    for (uint32_t i = 0; i < m_Prop.GetNumKeys() && !m_bReadOnly; ++i)
    {
        if (m_Prop.GetKey(i)->m_bSelected)
            m_Ctrls.GetFromControls(&m_Prop, static_cast<int>(i));
    }
    Repaint();
}
