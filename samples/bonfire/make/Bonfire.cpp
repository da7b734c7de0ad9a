// SPDX-License-Identifier: 0BSD
#include "make/LibraryText.h"

// The small library: a night at the fire. What the README shows and the game plays first.

namespace
{
struct CPrefabs
{
    const CSet &flame, &ember, &spark, &puff, &rain, &glow, &flash, &crackle, &boom, &hiss, &scorch, &log;
};

CPrefabs MakePrefabs(CLibrary& lib)
{
    CGroup<CSet>& fire = lib.m_Prefabs.Group("Fire");
    CGroup<CSet>& weather = lib.m_Prefabs.Group("Smoke and Weather");
    CGroup<CSet>& lights = fire.Group("Lights");
    CGroup<CSet>& sounds = lib.m_Prefabs.Group("Sounds");
    CGroup<CSet>& things = lib.m_Prefabs.Group("Things");
    lib.m_Prefabs.Group("Drafts");

    CSet& flame = lib.Prefab(fire, "Flame", "Emitter");
    flame.Set("Texture", Text("textures\\flame.dds"))
        .Set("Lifetime", Number(0.9))
        .Set("Max Particles", Number(120));
    flame.Set("Rate", {{0, Number(0.0)}, {0.1, Number(60.0)}, {0.9, Number(60.0)}, {1, Number(0.0)}});
    flame.Set("Velocity", Vector(0, 1.2, 0)).Set("Gravity", Vector(0, 0.6, 0)).Set("Spread", Number(22.0));
    flame.Set("Size", {{0, Number(0.35)}, {0.4, Number(0.5)}, {1, Number(0.05)}});
    flame.Set("Color", {{0, Color(255, 240, 160, 0)},
                        {0.15, Color(255, 200, 80, 220)},
                        {0.6, Color(255, 96, 16, 160)},
                        {1, Color(96, 16, 8, 0)}});
    CSet& ember = lib.Prefab(fire, "Ember", "Emitter");
    ember.Set("Rate", Number(6.0)).Set("Lifetime", Number(2.5)).Set("Gravity", Vector(0, 0.2, 0));
    ember.Set("Turbulence", {{0, Number(0.5)}, {0.5, Number(2.0)}}).Set("Size", Number(0.03));
    ember.Set("Color", {{0, Color(255, 160, 48, 255)}, {1, Color(160, 24, 0, 0)}});
    CSet& spark = lib.Prefab(fire, "Spark Burst", "Emitter");
    spark.Set("Rate", Number(0.0)).Set("Burst", {{0, Number(80)}, {0.1, Number(0)}, {1, Number(0)}});
    spark.Set("Velocity", Vector(0, 6, 0)).Set("Spread", Number(70.0)).Set("Size", Number(0.04));
    spark.Set("On Death", Text("Sparks; Smoke Column"));

    CSet& glow = lib.Prefab(lights, "Fire Light", "Light");
    glow.Set("Flicker", {{0, Number(0.1)}, {0.5, Number(0.35)}, {1, Number(0.1)}})
        .Set("Shadows", Text("Yes"));
    CSet& flash = lib.Prefab(lights, "Flash", "Light");
    flash.Set("Radius", {{0, Number(2.0)}, {0.08, Number(24.0)}, {1, Number(0.5)}});
    flash.Set("Color", {{0, Color(255, 255, 255)}, {0.2, Color(255, 180, 90)}, {1, Color(64, 16, 0, 0)}});
    flash.Set("Flicker", Number(0.0));

    CSet& puff = lib.Prefab(weather, "Smoke Puff", "Emitter");
    puff.Set("Texture", Text("textures\\smoke.Texture00a"))
        .Set("Blend", Text("Alpha"))
        .Set("Lifetime", Number(4.0));
    puff.Set("Rate", Number(8.0)).Set("Gravity", Vector(0.3, 0.4, 0)).Set("Spread", Number(12.0));
    puff.Set("Size", {{0, Number(0.2)}, {1, Number(1.8)}});
    puff.Set("Color",
             {{0, Color(48, 44, 40, 0)}, {0.2, Color(64, 60, 56, 140)}, {1, Color(120, 120, 124, 0)}});
    CSet& rain = lib.Prefab(weather, "Rain Drops", "Emitter");
    rain.Set("Texture", Text("textures\\drop.dds"))
        .Set("Blend", Text("Alpha"))
        .Set("Max Particles", Number(4000));
    rain.Set("Rate", {{0, Number(0.0)}, {0.2, Number(900.0)}, {0.8, Number(900.0)}, {1, Number(0.0)}});
    rain.Set("Velocity", Vector(1.5, -9, 0))
        .Set("Size", Number(0.02))
        .Set("Color", Color(170, 190, 220, 120));

    CSet& crackle = lib.Prefab(sounds, "Crackle", "Sound");
    crackle.Set("Loop", Text("Loop"))
        .Set("Volume", {{0, Number(0.0)}, {0.05, Number(0.8)}, {1, Number(0.8)}});
    CSet& boom = lib.Prefab(sounds, "Boom", "Sound");
    boom.Set("File", Text("sounds\\boom.wav")).Set("Reach", Number(120.0)).Set("Bus", Text("weapons"));
    CSet& hiss = lib.Prefab(sounds, "Hiss", "Sound");
    hiss.Set("File", Text("sounds\\hiss.wav")).Set("Pitch", {{0, Number(1.4)}, {1, Number(0.7)}});

    CSet& scorch = lib.Prefab(things, "Scorch Mark", "Decal");
    scorch.Set("Color", {{0, Color(16, 12, 8, 0)}, {0.1, Color(16, 12, 8, 200)}, {1, Color(16, 12, 8, 0)}});
    CSet& log = lib.Prefab(things, "Log", "Model");
    log.Set("Clip", {{0, Text("idle")}, {0.6, Text("glow")}, {0.95, Text("fall apart")}});
    return {flame, ember, spark, puff, rain, glow, flash, crackle, boom, hiss, scorch, log};
}

void AddFires(CLibrary& lib, CGroup<CEffectText>& group, const CPrefabs& p)
{
    CEffectText& campfire = lib.Effect(group, "Campfire", 10000);
    CKeyText& log = campfire.Key(p.log, 0, 0, 10000);
    campfire.Key(p.flame, 1, 100, 9000)
        .LinkTo(log)
        .Named("Flames")
        .Set("Velocity", {{0, Vector(0, 0.8, 0)}, {0.5, Vector(0.2, 1.6, 0)}, {1, Vector(0, 0.4, 0)}});
    campfire.Key(p.ember, 2, 1000, 8000).LinkTo(log).Named("Embers");
    campfire.Key(p.puff, 2, 8000, 9900)
        .LinkTo(log)
        .Named("Last smoke")
        .Set("Rate", {{0, Number(20.0)}, {1, Number(0.0)}});
    CKeyText& light = campfire.Key(p.glow, 3, 0, 9500);
    light.Set("Radius", {{0, Number(0.5)}, {0.1, Number(7.0)}, {0.9, Number(6.0)}, {1, Number(0.5)}});
    light.Set("Offset",
              {{0, Vector(0, 0.4, 0)}, {0.33, Vector(0.05, 0.45, 0)}, {0.66, Vector(-0.05, 0.42, 0)}});
    campfire.Key(p.crackle, 4, 100, 9000).LinkTo(log);
    campfire.Key(lib.Type("Marker"), 5, 9000, 9100).Named("Burnt down");

    CEffectText& torch = lib.Effect(group, "Torch", 4000);
    torch.Key(p.flame, 0, 0, 4000).Set("Rate", Number(40.0)).Set("Spread", Number(8.0));
    torch.Key(p.glow, 1, 0, 4000).Set("Radius", Number(4.0));
    torch.Key(p.crackle, 2, 0, 4000).Set("Volume", Number(0.3));

    CEffectText& embers = lib.Effect(group, "Embers", 6000);
    embers.Key(p.ember, 0, 0, 6000);
    embers.Key(lib.Type("Sprite"), 1, 500, 5500)
        .Named("Bed of coals")
        .Set("Texture", Text("textures\\glow.dds"))
        .Set("Frame", {{0, Number(0)}, {0.25, Number(3)}, {0.5, Number(1)}, {0.75, Number(2)}})
        .Set("Color",
             {{0, Color(255, 80, 16, 0)}, {0.5, Color(255, 120, 32, 255)}, {1, Color(120, 16, 0, 0)}})
        .Set("Size", {{0, Number(0.6)}, {1, Number(0.9)}})
        .Set("Layer", Number(-2));
}

void AddBlasts(CLibrary& lib, CGroup<CEffectText>& group, const CPrefabs& p)
{
    CEffectText& explosion = lib.Effect(group, "Explosion", 3000);
    CKeyText& ball = explosion.Key(p.flame, 0, 0, 700);
    ball.Named("Fireball").Set("Rate", {{0, Number(800.0)}, {0.3, Number(0.0)}, {1, Number(0.0)}});
    ball.Set("Spread", Number(180.0)).Set("Velocity", {{0, Vector(0, 12, 0)}, {1, Vector(0, 1, 0)}});
    explosion.Key(p.puff, 0, 700, 3000).Set("Size", {{0, Number(1.0)}, {1, Number(5.0)}});
    explosion.Key(p.spark, 1, 50, 650).LinkTo(ball);
    explosion.Key(p.flash, 2, 50, 400).LinkTo(ball);
    explosion.Key(p.boom, 3, 0, 1800);
    explosion.Key(lib.Type("Camera Shake"), 4, 0, 900)
        .Set("Strength", {{0, Vector(0.6, 0.6, 0.1)}, {1, Vector(0, 0, 0)}})
        .Set("Rumble", {{0, Number(255)}, {0.2, Number(160)}, {0.6, Number(40)}})
        .Set("Frequency", Number(25.0));
    explosion.Key(p.scorch, 5, 200, 3000)
        .Set("Extent", Vector(4, 4, 1))
        .Set("Surface", {{0, Text("Stone")}, {0.5, Text("Any")}});

    CEffectText& sparks = lib.Effect(group, "Sparks", 1500);
    sparks.Key(p.spark, 0, 0, 500).Set("On Death", Text(""));
    sparks.Key(p.spark, 0, 500, 1500).Set("On Death", Text("")).Set("Spread", Number(120.0));
}

void AddWeather(CLibrary& lib, CGroup<CEffectText>& group, const CPrefabs& p)
{
    CEffectText& smoke = lib.Effect(group, "Smoke Column", 8000);
    smoke.Key(p.puff, 0, 0, 8000)
        .Set("Turbulence", {{0, Number(0.0)}, {0.5, Number(1.5)}, {0.8, Number(3.0)}});

    CEffectText& rain = lib.Effect(group, "Rain", 12000);
    rain.Key(p.rain, 0, 0, 12000);
    rain.Key(p.hiss, 1, 2500, 7500);
    rain.Key(lib.Type("Nested Effect"), 2, 3000, 11000)
        .Named("The fire goes out")
        .Set("Effect", {{0, Text("Campfire")}, {0.4, Text("Embers; Smoke Column")}, {0.8, Text("")}})
        .Set("Repeat", Number(1));
}

void AddTitles(CLibrary& lib, CGroup<CEffectText>& group, const CPrefabs& p)
{
    CEffectText& title = lib.Effect(group, "Welcome", 5000);
    CKeyText& words = title.Key(lib.Type("Text"), 0, 0, 5000);
    words.Named("Words").Set("Message", {{0, Text("Come closer.")},
                                         {0.35, Text("Warm your hands (mind the sparks).")},
                                         {0.7, Text("Gr\xc3\xbc\xc3\x9f Gott, night owls!")}});
    words.Set("Color",
              {{0, Color(255, 220, 160, 0)}, {0.2, Color(255, 220, 160, 255)}, {1, Color(255, 120, 40, 0)}});
    title.Key(p.glow, 1, 100, 4900).LinkTo(words);
    title.Key(lib.Type("Nested Effect"), 2, 1000, 4000).Set("Effect", Text("Torch"));
}
} // namespace

CLibrary MakeBonfire(const CEffectTypeTable& types)
{
    CLibrary lib(types);
    const CPrefabs prefabs = MakePrefabs(lib);
    AddFires(lib, lib.m_Effects.Group("Fires"), prefabs);
    CGroup<CEffectText>& world = lib.m_Effects.Group("World");
    AddBlasts(lib, world.Group("Blasts"), prefabs);
    AddWeather(lib, world.Group("Weather"), prefabs);
    AddTitles(lib, lib.m_Effects, prefabs);
    return lib;
}
