#pragma once

#include "model/PropData.h"
#include "properties/EditorDialogs.h"
#include "properties/RowLayout.h"

// How a kind of property is edited: which controls its row has, and how they and the value become each other. One for
// each kind, without a state of its own.
class IRowKind
{
public:
    virtual ~IRowKind() = default;
    virtual bool HasName() const { return true; } // whether slot 0 is a label with the property's name
    virtual void Layout(CRowLayout& layout) const = 0;
    virtual void Show(CRowControls& controls, const CPropData& data) const = 0;
    virtual void Take(const CRowControls& controls, CPropData& data) const = 0;

    // A text as the value can hold it.
    virtual std::string Typed(const std::string& sText) const { return sText; }
    // What a spin makes of the text in its box; one step up is -1.
    virtual std::string Step(const std::string& sText, int nDelta) const;
    // A button of the row other than that of a curve; may open a dialog.
    virtual void Press(CRowControls& controls, int nSlot, CPropertyServices& services) const;
};

// The one of a kind; for numbers that are none, one that shows the name alone.
const IRowKind& RowKind(uint32_t eType);
