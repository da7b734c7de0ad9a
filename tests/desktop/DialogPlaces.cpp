#include "qt/toolkit/DialogPlaces.h"

#include <QListWidget>
#include <QScreen>

#include "desktop/LibraryBench.h"

TEST(DialogPlaces, AFrameIsMovedAndCutIntoItsRoom)
{
    const QRect rcSmall(0, 0, 1024, 600), rcRight(3840, 0, 3840, 2160);
    EXPECT_EQ(QRect(40, 50, 600, 400), DialogPlaces::FitInto(QRect(40, 50, 600, 400), rcSmall));
    EXPECT_EQ(QRect(424, 200, 600, 400), DialogPlaces::FitInto(QRect(3000, 2000, 600, 400), rcSmall));
    EXPECT_EQ(QRect(0, 0, 1024, 600), DialogPlaces::FitInto(QRect(-50, -50, 3000, 2000), rcSmall));
    EXPECT_EQ(QRect(3840, 10, 600, 400), DialogPlaces::FitInto(QRect(100, 10, 600, 400), rcRight));
}

TEST(DialogPlaces, DialogsComeBackWhereTheyWere)
{
    CLibraryDesktop desk(
        [](CLibraryBuilder& library)
        {
            library.prefab("Sprite", "Puff").value("Count", 7);
            library.effect("Smoke").key("Sprite", 0, 9000).onPrefab("Puff");
        });
    DialogPlaces places(*desk.profile);
    const QRect rcScreen = QGuiApplication::primaryScreen()->availableGeometry();
    const auto choose = [&](const std::function<void(QWidget&)>& act)
    {
        Desktop::WhileOpen(
            [&](QWidget* pOpen)
            {
                act(*pOpen);
                Desktop::Key("Escape");
            });
        desk.window.Host().ChooseEffectType();
        Desktop::Settle();
    };

    QRect rcLeft;
    choose(
        [&](QWidget& dialog)
        {
            const QSize before = dialog.size();
            auto* pList = dialog.findChild<QListWidget*>();
            const int nList = pList->height();
            dialog.setGeometry(300, 200, before.width() + 80, before.height() + 120);
            Desktop::Settle();
            rcLeft = dialog.geometry();
            EXPECT_EQ(before + QSize(80, 120), rcLeft.size());
            EXPECT_EQ(nList + 120, pList->height());
            dialog.resize(before / 2);
            EXPECT_EQ(before, dialog.size()) << "its parts need their room";
            dialog.setGeometry(rcLeft);
            Desktop::Settle();
        });
    choose([&](QWidget& dialog) { EXPECT_EQ(rcLeft, dialog.geometry()); });

    // As on a large screen that isn't there any more.
    desk.profile->WriteString("Places", "template150", "5000 -4000 9000 9000");
    choose([&](QWidget& dialog) { EXPECT_TRUE(rcScreen.contains(dialog.frameGeometry())); });
    desk.profile->WriteString("Places", "template150", "1 2 rubbish");
    choose([&](QWidget& dialog) { EXPECT_TRUE(rcScreen.contains(dialog.frameGeometry())); });

    // The prefab's properties don't hide which key they were opened from.
    CKey& key = *KeyOf(desk.App().m_SpellMgr, "Smoke", 0);
    Desktop::WhileOpen(
        [&](QWidget* pKey)
        {
            pKey->move(60, 60);
            Desktop::WhileOpen(
                [&](QWidget* pPrefab)
                {
                    EXPECT_GT(pPrefab->geometry().y(), pKey->geometry().y());
                    EXPECT_TRUE(rcScreen.contains(pPrefab->frameGeometry()));
                    Desktop::Key("Escape");
                });
            Desktop::Click(
                Desktop::On(qobject_cast<TemplateDialog*>(pKey)->Controls().Find(eFXProps_OpenParent)));
            Desktop::Key("Escape");
        });
    desk.window.Host().EditProperties(key);
    EXPECT_EQ("6", desk.profile->GetString("Places", "FxPropertiesDialog").substr(0, 1))
        << "the first one's place";
}
