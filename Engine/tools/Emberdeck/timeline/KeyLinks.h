#pragma once

#include <vector>

#include "app/EditContext.h"
#include "timeline/KeySelection.h"
#include "timeline/TrackScene.h"

// The motion links of one effect's keys: made by the link line, ended by command or question.
class CKeyLinks
{
public:
    // All borrowed.
    CKeyLinks(CEditContext& context, CSpell& spell, CKeySelection& selection, CTrackScene& scene,
              ITrackView& view)
        : m_Context(context),
          m_Spell(spell),
          m_Selection(selection),
          m_Scene(scene),
          m_View(view)
    {
    }

    bool IsLinkedTo(const CKey* pKey) const; // some other key has a motion link to it; null: false
    // Whether its own link has a target, or it is the target of another.
    bool IsBound(const CKey& key) const;
    // Ends the links to these keys, and their own. Touches the effect when there was one.
    void UnlinkKeys(const std::vector<CKey*>& keys, CEditScope& scope);
    void UnlinkKey(CKey* pKey); // the same for one, as an edit of its own; null: nothing
    void UnlinkSelected();

    // From here on a line follows the pointer from the current key. Nothing begins without one.
    void BeginLine();
    // Links the current key to the one at that place, where that holds it.
    void EndLine(CPoint pt);

    // True: the current key is the target of a link, so it has to stay where it is. Then the user was asked, and
    // its links have ended if that was the answer.
    bool AskAboutTarget();

private:
    CEditContext& m_Context;
    CSpell& m_Spell;
    CKeySelection& m_Selection;
    CTrackScene& m_Scene;
    ITrackView& m_View;
};
