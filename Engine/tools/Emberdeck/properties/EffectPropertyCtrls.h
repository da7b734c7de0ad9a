#pragma once

#include <functional>
#include <string>

#include "model/EffectPropertySet.h"
#include "properties/EditorDialogs.h"
#include "properties/RowLayout.h"

class IRowKind;

// The controls that edit one property: a label and, by kind, boxes, spins, a list, a swatch, a file picker or
// a button. Moves values between controls and a property, but never decides when: its owner does.
//
// Slots, by kind (labels in slot 0, except for a line of text, which has nothing else):
//     String, Animation, FireglassRef   1 box
//     Filename                          1 file button   2 clear button
//     Enum                              1 list
//     Int, Float                        1 box           2 spin
//     Color                             1 swatch        2 "Alpha:"    3 box     4 spin
//     Vector                            1 "X:"  2 box   3 "Y:"  4 box   5 "Z:"  6 box   7 vector button
//     a function curve of any kind      1 function button
class CEffectPropertyCtrls
{
public:
    static constexpr int c_nMaxSlots = CRowControls::c_nMaxSlots;
    using ChangeFn = std::function<void()>;

    explicit CEffectPropertyCtrls(CPropertyServices& services) : m_Services(services) {}
    CEffectPropertyCtrls(const CEffectPropertyCtrls&) = delete;
    CEffectPropertyCtrls& operator=(const CEffectPropertyCtrls&) = delete;

    void SetView(IRowView* pView) { m_Controls.m_pView = pView; } // borrowed; null: nobody looks

    // A row for a single value. change, which may be empty, runs at each change of a value's control, by the
    // user or by SetFromProperty, once for each box that is written. nCount is the number of slots used.
    // False, with no slot: no descriptor or no font.
    bool CreateControls(const CEffectPropertyDesc* pDesc, const CRowPlace& place, uint32_t& nCount,
                        ChangeFn change = ChangeFn());
    // A row for a function curve, whose button opens the curve dialog on what the set has at the index then.
    // The set is borrowed. False, with no slot: no font, or nothing at the index.
    bool CreateFunctionControls(CEffectPropertySet* pSet, uint32_t nIndex, const CRowPlace& place,
                                uint32_t& nCount);

    // False, nothing done: no such key, a property of another kind than the row, or the row of a curve.
    bool SetFromProperty(const CEffectProperty* pProp, int nKey);
    bool GetFromControls(CEffectProperty* pProp, int nKey) const;

    void EnableControls(bool bEnable); // those of the value, never the labels
    void ShowControls(bool bShow);
    void MoveControls(int32_t dx, int32_t dy);
    void DestroyControls();

    // What the user did. A slot of another kind, and one that is disabled, is left alone.
    void SetText(int nSlot, const std::string& sText); // typed into a box
    void Select(int nSlot, int nItem);                 // chosen from a list, the same item again too
    void Spin(int nSlot, int nDelta);                  // change of position: -1 is the upper arrow
    void Press(int nSlot);                             // any button; may open a dialog

    const CControlDesc* GetControl(int nSlot) const { return m_Controls.Get(nSlot); } // null: an unused slot
    uint32_t GetType() const { return m_eType; }
    bool IsFunctionRow() const { return m_pSet != nullptr; }

private:
    const IRowKind& Kind() const;
    CControlDesc* UsableSlot(int nSlot, EControlKind eKind) const;
    void OnFunctionButton();

    CPropertyServices& m_Services;
    uint32_t m_eType = 0; // kind that the row was made for
    CRowControls m_Controls;
    CEffectPropertySet* m_pSet = nullptr; // rows of curves alone
    uint32_t m_nIndex = 0;
};
