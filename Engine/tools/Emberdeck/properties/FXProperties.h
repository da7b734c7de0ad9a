#pragma once

#include <memory>
#include <string>
#include <vector>

#include "properties/EffectPropertyCtrls.h"
#include "properties/OwnUndo.h"

// Who shows the dialog. Rows have views of their own.
class IPropertiesView
{
public:
    virtual ~IPropertiesView() = default;
    virtual void OnCheckChanged(uint32_t nRow) = 0; // its check box: mark, place, shown or not, or gone
    virtual void OnScrollBarChanged() = 0;
    virtual void OnParentButtonsChanged() = 0;
    virtual void Repaint() = 0;
};

// What the scroll bar shows. It stays visible when there is nothing to scroll.
struct CScrollBarState
{
    int32_t m_nMax = 0; // the position runs from 0 to here
    int32_t m_nPage = 0;
    int32_t m_nPos = 0;
    bool m_bEnabled = false;
    bool m_bUp = false; // the arrows
    bool m_bDown = false;
    friend bool operator==(const CScrollBarState&, const CScrollBarState&) = default;
};

enum class EScrollCode
{
    eLineUp,
    eLineDown,
    ePageUp,
    ePageDown,
    eThumbTrack,
    eOther
};

// What a key or prefab has for itself.
struct CSetState
{
    std::shared_ptr<const CEffectPropertySet> m_pSet; // never null
    friend bool operator==(const CSetState& left, const CSetState& right);
};

// The list of all properties of a key or prefab. Works on a copy of the set, which the caller takes over
// after OK; only Open Parent writes elsewhere, into the prefab itself and at once.
class CFXPropertiesDlg : public TOwnUndo<CSetState>
{
public:
    static constexpr uint32_t c_nFirstControlID = 5000;
    static constexpr uint32_t c_nFirstCheckID = 7000;
    static constexpr const char* c_szCheckToolTip =
        "Check box that indicates whether or not the property gets its value from this key or the parent "
        "prefab.";

    struct CRow
    {
        std::unique_ptr<CEffectPropertyCtrls> m_pCtrls; // null: the set has no value for it
        std::unique_ptr<CControlDesc> m_pCheck;         // null: no parent to inherit from
    };

    CFXPropertiesDlg(CPropertyServices& services, const CEffectPropertySet& set);
    CFXPropertiesDlg(const CFXPropertiesDlg&) = delete;
    CFXPropertiesDlg& operator=(const CFXPropertiesDlg&) = delete;

    void SetView(IPropertiesView* pView) { m_pView = pView; } // borrowed; null: nobody looks

    // Makes the rows inside a rectangle, in pixels of the dialog. The font is only asked here.
    void OnInitDialog(const CRect& rcRows, const ITextMeasure* pFont);
    bool OnOK(); // reads all own values into m_Props; always true

    void OnOpenParent(); // edits the prefab on top of this dialog
    void OnDisconnect(); // the copy takes over all values of its prefab and leaves it
    // A click on a check box, with its new mark. Other ids are left alone.
    void OnCheck(uint32_t nID, bool bChecked);
    void OnVScroll(EScrollCode eCode, int32_t nPos = 0);
    // One call for each message of a wheel with a vertical delta, up above 0: it scrolls by one row,
    // whatever its size. The fine steps of a touchpad are gathered to 120 first.
    void OnMouseWheel(int32_t nDelta, bool bFine = false);
    // The focus leaves the rows in view at their end, or their start. True: the list has moved by a row, so
    // that the focus goes on to the one that came into view.
    bool OnTabOut(bool bForward);

    const std::string& GetCaption() const { return m_sCaption; }
    const std::vector<CRow>& GetRows() const { return m_Rows; }
    bool HasParentButtons() const { return m_Props.GetParent() != nullptr; }
    CScrollBarState GetScrollBar() const;
    int32_t GetNumVisibleRows() const { return m_nVisibleRows; }
    bool IsRowVisible(uint32_t nRow) const;
    int32_t GetTopRow() const { return m_nTopRow; }

    CEffectPropertySet m_Props;

private:
    CSetState GetState() const override;
    void SetState(const CSetState& state) override;
    void BuildRow(uint32_t nIndex, const ITextMeasure* pFont, uint32_t& nControlID);
    void MakeCheck(uint32_t nIndex);
    void ReadRows();
    void RefreshRow(uint32_t nIndex);
    void RefreshAllRows();
    void UpdateRowState(uint32_t nIndex);
    void UpdateRowVisibility(uint32_t nIndex);
    void UpdateScrollBar();
    void UpdateParentButtons();
    void CheckChanged(uint32_t nIndex);
    int32_t GetNumRows() const { return static_cast<int32_t>(m_Rows.size()); }

    CPropertyServices& m_Services;
    IPropertiesView* m_pView = nullptr;
    std::string m_sCaption;
    std::vector<CRow> m_Rows; // one for each slot of the set, in order
    CRect m_rcRows;
    CRowMetrics m_Metrics;
    int32_t m_nVisibleRows = 0;
    int32_t m_nTopRow = 0;
    bool m_bCanScroll = false;
    int32_t m_nFineDelta = 0;
};

// Shows the dialog on a key or prefab of the library, which takes over the copy on OK: a key only its values,
// name and prefab, not its place on the timeline. True: it was OK.
bool EditProperties(CPropertyServices& services, CEffectPropertySet& set);

// How many pixels the list, and with it the dialog, has to give up so that a dialog fits on a screen: whole
// rows, and at most all but one. nListHeight is the list's own height.
int32_t ListHeightToGiveUp(int32_t nDialogHeight, int32_t nScreenHeight, int32_t nListHeight,
                           const CRowMetrics& metrics);
