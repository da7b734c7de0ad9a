#pragma once

#include <memory>

#include "app/EditContext.h"
#include "timeline/KeyLinks.h"
#include "timeline/KeySelection.h"
#include "timeline/TrackScene.h"

// The commands of the timeline, but for those of links: what becomes of keys and tracks. They work on the
// selection and, where a key is added, on the point of the last right click. With the needed state missing they do
// nothing, or the status line tells why. Each is one edit.
class CKeyCommands
{
public:
    // All borrowed.
    CKeyCommands(CEditContext& context, CSpell& spell, CKeySelection& selection, CKeyLinks& links,
                 CTrackScene& scene, ITrackView& view)
        : m_Context(context),
          m_Spell(spell),
          m_Selection(selection),
          m_Links(links),
          m_Scene(scene),
          m_View(view)
    {
    }

    // In window coordinates: where keys are added and pasted.
    void SetMenuPoint(CPoint pt) { m_ptMenu = pt; }
    // A key of that type about the menu's point on the current track. pPrefab may be null; one of another type is
    // left out. False: no type, no track, no memory, or no room.
    bool AddKey(const CEffectTypeDesc* pType, CEffectPropertySet* pPrefab);
    void AddChosenKey(); // asks for the type
    void AddChildKey();  // of the active prefab
    void InsertTrack();  // behind the current one, or at the end
    void DeleteTrack();  // asks

    void CopyKey(); // the current one
    void CutKey();  // copies that, deletes all that are selected
    void PasteKeyAt(CPoint pt);
    void PasteKey() { PasteKeyAt(m_ptMenu); }
    void PasteKeyAtMouse();

    // On all selected keys.
    void DeleteKeys();
    void ExpandKeys();
    void SetKeyLength();              // asks
    void NameKeys(const CKey& first); // asks; first is the first of them

    // On the current key.
    void EditKey();
    void CreatePrefab(); // asks for its name
    void AssignPrefab();

private:
    std::string LabelFor(const char* pszVerb) const; // of a step with the selected keys
    bool PlaceNewKey(CTrack& track, std::unique_ptr<CKey> pKey, CPoint pt, const char* pszLabel);
    CTrackList& Tracks() const { return m_Spell.m_Tracks; }
    CKey* CurKey() const { return m_Selection.GetCurKey(); }
    CTrack* CurTrack() const { return m_Selection.GetCurTrack(); }

    CEditContext& m_Context;
    CSpell& m_Spell;
    CKeySelection& m_Selection;
    CKeyLinks& m_Links;
    CTrackScene& m_Scene;
    ITrackView& m_View;
    CPoint m_ptMenu;
};
