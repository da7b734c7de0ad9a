#include <map>

#include "app/DialogSizeCtrl.h"

namespace
{
struct CDialog : IDialogControls
{
    CRect GetClientRect() const override { return client; }
    bool GetControlRect(uint32_t nID, CRect& rc) const override
    {
        const auto it = controls.find(nID);
        if (it != controls.end())
            rc = it->second;
        return it != controls.end();
    }
    void MoveControl(uint32_t nID, const CRect& rc) override { controls[nID] = rc; }
    CRect client{0, 0, 100, 80};
    std::map<uint32_t, CRect> controls{{1, {10, 10, 90, 70}},
                                       {2, {40, 5, 60, 15}},
                                       {3, {90, 0, 100, 80}},
                                       {4, {5, 70, 25, 80}},
                                       {5, {40, 30, 60, 50}}};
};
} // namespace

TEST(DialogSize, EdgesFollowTheirAnchorsFromTheReference)
{
    CDialog dialog;
    DialogSizeCtrl size;
    EXPECT_FALSE(size.AddControl(1, 0, 0, 0, 0));
    size.OnParentSize();
    EXPECT_TRUE(size.Initialize(&dialog));
    EXPECT_TRUE(size.AddControl(1, 0, 0, 0, 0)); // stretched
    EXPECT_TRUE(size.AddControl(2, 2, 0, 2, 1)); // centred, kept at the top
    EXPECT_TRUE(size.AddControl(3, 1, 0, 0, 0)); // carried along the right edge
    EXPECT_TRUE(size.AddControl(4, 0, 1, 1, 0)); // carried along the bottom edge
    EXPECT_TRUE(size.AddControl(5, 2, 2, 2, 2)); // centred both ways
    EXPECT_FALSE(size.AddControl(9, 0, 0, 0, 0));

    dialog.client = {0, 0, 110, 90};
    size.OnParentSize();
    EXPECT_EQ((CRect{10, 10, 100, 80}), dialog.controls[1]);
    EXPECT_EQ((CRect{45, 5, 65, 15}), dialog.controls[2]);
    EXPECT_EQ((CRect{100, 0, 110, 90}), dialog.controls[3]);
    EXPECT_EQ((CRect{5, 80, 25, 90}), dialog.controls[4]);
    EXPECT_EQ((CRect{45, 35, 65, 55}), dialog.controls[5]);

    // Halves are cut toward zero when it shrinks, too; a control may end up without area.
    dialog.client = {0, 0, 15, 80};
    dialog.controls.erase(3);
    size.OnParentSize();
    EXPECT_EQ((CRect{10, 10, 5, 70}), dialog.controls[1]);
    EXPECT_EQ((CRect{-2, 5, 18, 15}), dialog.controls[2]);
    EXPECT_EQ(0u, dialog.controls.count(3));

    dialog.client = {0, 0, 100, 80}; // nothing adds up
    size.OnParentSize();
    EXPECT_EQ((CRect{10, 10, 90, 70}), dialog.controls[1]);
    EXPECT_EQ((CRect{40, 5, 60, 15}), dialog.controls[2]);
}
