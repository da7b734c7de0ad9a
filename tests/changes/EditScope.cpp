#include "changes/EditScope.h"

namespace
{
struct CLog : IEditListener
{
    explicit CLog(CEditHub& h) : hub(h) { hub.AddListener(this); }
    void OnTouching(const std::string& sLabel, const CTouch&) override { text += "touch " + sLabel + ";"; }
    void OnEdit(const CEdit& edit) override
    {
        text += "edit " + edit.m_sLabel + " " + std::to_string(edit.m_Touched.size()) + ";";
        if (onEdit)
            onEdit();
    }
    CEditHub& hub;
    std::string text;
    std::function<void()> onEdit;
};
} // namespace

TEST(EditScope, TellsOncePerObjectAndOnceAtTheOutermostEnd)
{
    CEditHub hub;
    CLog log(hub);
    CSpell a;
    CSpell b;
    {
        CEditScope outer(hub, "Outer");
        outer.Touch(&a);
        {
            CEditScope inner(hub, "Inner");
            inner.Touch(&a);
            inner.Touch(&b);
            inner.Touch(nullptr);
        }
        EXPECT_EQ("touch Outer;touch Outer;", log.text);
        EXPECT_TRUE(hub.IsOpen());
        outer.TouchEffectTree();
        outer.TouchEffectTree();
    }
    EXPECT_EQ("touch Outer;touch Outer;touch Outer;edit Outer 3;", log.text);
    EXPECT_EQ(1u, hub.GetNumEdits());

    {
        CEditScope untouched(hub, "Nothing");
    }
    EXPECT_EQ(1u, hub.GetNumEdits());
    {
        CEditScope next(hub, "Next"); // what the last edit touched is new again
        next.Touch(&a);
    }
    EXPECT_TRUE(log.text.ends_with("touch Next;edit Next 1;")) << log.text;

    // Once is enough, and nobody is no listener.
    hub.AddListener(&log);
    hub.AddListener(nullptr);
    hub.RemoveListener(nullptr);
    log.text.clear();
    {
        CEditScope scope(hub, "All");
        scope.TouchPrefab(nullptr);
        scope.TouchPrefabTree();
        scope.TouchEffectTree();
        scope.TouchLibrary();
    }
    EXPECT_EQ("touch All;touch All;touch All;edit All 3;", log.text);

    const CEdit edit{"", {{ETouched::eSpell, &a}, {ETouched::ePrefabTree, nullptr}}};
    EXPECT_TRUE(edit.Touches(&a) && edit.Touches(ETouched::ePrefabTree));
    EXPECT_FALSE(edit.Touches(&b) || edit.Touches(ETouched::ePrefab) ||
                 edit.Touches(static_cast<void*>(nullptr)));
}

TEST(EditScope, ListenersMayGoComeAndEditWithinACall)
{
    CEditHub hub;
    CLog first(hub);
    CLog second(hub);
    CLog third(hub);
    auto pLate = std::make_unique<CLog>(hub);
    hub.RemoveListener(pLate.get());
    CSpell spell;
    first.onEdit = [&]
    {
        hub.RemoveListener(&first);
        hub.RemoveListener(&second);
        hub.AddListener(pLate.get());
        CEditScope scope(hub, "Answer");
        scope.Touch(&spell);
    };
    {
        CEditScope scope(hub, "Go");
        scope.TouchLibrary();
    }
    EXPECT_EQ("touch Go;edit Go 1;", first.text);
    EXPECT_EQ("touch Go;", second.text);
    EXPECT_EQ("touch Go;touch Answer;edit Answer 1;edit Go 1;", third.text);
    EXPECT_EQ("touch Answer;edit Answer 1;", pLate->text);
    EXPECT_EQ(2u, hub.GetNumEdits());
}
