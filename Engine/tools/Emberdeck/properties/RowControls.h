#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>

#include "properties/ControlDesc.h"
#include "properties/ResourceFile.h"

// Who shows a row. The row must be shown as it stands, without telling it back as something that the user
// did.
class IRowView
{
public:
    virtual ~IRowView() = default;
    virtual void OnControlChanged(int nSlot) = 0; // text, choice, colour, state or place
};

// The controls of a row in their slots, and who hears of what happens to them.
class CRowControls
{
public:
    static constexpr int c_nMaxSlots = 10;

    CControlDesc&
    Add(std::unique_ptr<CControlDesc> pControl); // into the next slot, of which there must be one
    CControlDesc* Get(int nSlot) const;          // null: an unused slot
    int GetCount() const { return m_nCount; }
    void Clear(); // the view stays

    void Changed(int nSlot); // to the view
    void Notify();           // to the owner: the value is another one
    // Writing a box tells of a change even when its text stays the same.
    void WriteBox(int nSlot, const std::string& sText);
    // The caption and the value are one; a caption tells the view alone.
    void WriteFile(int nSlot, const std::string& sFile);
    const std::string& BoxText(int nSlot) const; // empty for an unused slot

    IRowView* m_pView = nullptr;    // borrowed; null: nobody looks
    std::function<void()> m_Change; // the owner's; may be empty
    CResourceFileButton m_File;     // of a row that picks files

private:
    std::array<std::unique_ptr<CControlDesc>, c_nMaxSlots> m_apCtrls;
    int m_nCount = 0;
};
