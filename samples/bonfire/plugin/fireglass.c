// SPDX-License-Identifier: 0BSD
/*
 * Fireglass, the effect library of the game Bonfire, as far as the editor sees it: the effect types, and
 * what each can be told. All of it is static data.
 *
 * FIREGLASS_EDITION 2 is how the library may look a few months on: the same types in another order and one
 * more, with properties renamed, removed, added and changed in every way. It exists to try libraries that
 * were saved under the first edition.
 */

#include "fields.h"

#ifndef FIREGLASS_EDITION
#define FIREGLASS_EDITION 1
#endif
#define IS_SECOND (FIREGLASS_EDITION == 2)

#define TEXTURES "Textures (*.dds;*.Texture00a)|*.dds;*.Texture00a|All Files (*.*)|*.*||"
#define SOUNDS "Sounds (*.wav)|*.wav||"
#define MODELS "Models (*.Model00a;*.Model00c)|*.Model00a;*.Model00c||"

#if IS_SECOND
#define BLENDS "Alpha, Add, Screen, Multiply" /* Subtract is gone, the order is new */
#else
#define BLENDS "Add, Alpha, Multiply, Subtract"
#endif

static const CField s_Sprite[] = {
    LINE("Look"),
    FILENAME("Texture", TEXTURES, "textures\\glow.dds", "What the sprite shows"),
    ENUM("Blend", CONSTANT, BLENDS, "Add", "How the sprite mixes with what lies behind it"),
#if IS_SECOND
    INT("Picture", STEP, "0;63", 0, "Which picture of a sheet is shown"), /* was Frame */
    FLOAT("Size", CONSTANT, "0;50", 1.0f, "Edge in metres"),              /* was a curve up to 100 */
    COLOR("Color", LINEAR, 0xFFFFFFFFu, "Tint over the life of the key"),
    FLOAT("Softness", LINEAR, "0;1", 0.25f, "Fades the sprite out where it cuts into the scene"),
#else
    INT("Frame", STEP, "0;63", 0, "Which picture of a sheet is shown"),
    COLOR("Color", LINEAR, 0xFFFFFFFFu, "Tint over the life of the key"),
    FLOAT("Size", LINEAR, "0;100", 1.0f, "Edge in metres"),
#endif
    LINE("Place"),
    FLOAT("Rotation", LINEAR, "", 0.0f, "Degrees, counter-clockwise"),
    VECTOR("Offset", LINEAR, "-1000;1000", 0.0f, 0.0f, 0.0f, "Metres from the origin of the effect"),
    INT("Layer", CONSTANT, "-8;8", 0, "Sprites of a higher layer are drawn later"),
    SPARE("Reserved", "Free for later use"),
};

static const CField s_Emitter[] = {
    LINE("Particles"),
    FILENAME("Texture", TEXTURES, "textures\\spark.dds", "What each particle shows"),
    ENUM("Blend", CONSTANT, BLENDS, "Add", "How particles mix with what lies behind them"),
#if IS_SECOND
    INT("Rate", LINEAR, "0;500", 20, "Particles in a second"),                     /* was a Float */
    FLOAT("Lifetime", LINEAR, "0.05;30", 1.5f, "Seconds that a particle lives"),   /* was constant */
    INT("Max Particles", CONSTANT, "1;256", 200, "Never more than these at once"), /* was up to 10000 */
#else
    FLOAT("Rate", LINEAR, "0;", 20.0f, "Particles in a second"),
    FLOAT("Lifetime", CONSTANT, "0.05;30", 1.5f, "Seconds that a particle lives"),
    INT("Max Particles", CONSTANT, "1;10000", 200, "Never more than these at once"),
    INT("Burst", LINEAR, "0;", 0, "Particles that appear beside the rate"),
#endif
    LINE("Motion"),
    VECTOR("Velocity", LINEAR, "-100;100", 0.0f, 1.5f, 0.0f, "Metres a second at birth"),
    FLOAT("Spread", CONSTANT, "0;180", 15.0f, "Degrees about the velocity"),
    VECTOR("Gravity", CONSTANT, "", 0.0f, -9.81f, 0.0f, "Metres a second, each second"),
    FLOAT("Turbulence", STEP, "0;10", 0.0f, "Strength of the whirls"),
    LINE("Look"),
    FLOAT("Size", LINEAR, "0.001;20", 0.1f, "Edge of a particle in metres"),
    COLOR("Color", LINEAR, 0xFFFFC040u, "Tint over the life of the key"),
    EFFECT("On Death", CONSTANT, "",
           "Effects that start where a particle ends, with semicolons between them"),
};

static const CField s_Light[] = {
    COLOR("Color", LINEAR, 0xFFFFB060u, "What the light gives to surfaces; alpha is its strength"),
    FLOAT("Radius", LINEAR, "0.5;", 6.0f, "Metres to where the light ends"),
#if IS_SECOND
    FLOAT("Flicker", STEP, "0;1", 0.2f, "0 burns calmly, 1 goes out at times"), /* was a line */
    ENUM("Shadows", CONSTANT, "Off, Hard, Soft", "Soft",
         "Whether things cast a shadow in it"), /* was No, Yes */
#else
    FLOAT("Flicker", LINEAR, "0;1", 0.2f, "0 burns calmly, 1 goes out at times"),
    ENUM("Shadows", CONSTANT, "No, Yes", "No", "Whether things cast a shadow in it"),
#endif
    VECTOR("Offset", STEP, "-1000;1000", 0.0f, 0.5f, 0.0f, "Metres from the origin of the effect"),
};

static const CField s_Sound[] = {
    FILENAME("File", SOUNDS, "sounds\\crackle.wav", "What is heard"),
    FLOAT("Volume", LINEAR, "0;1", 1.0f, "0 is silence"),
    FLOAT("Pitch", LINEAR, "0.1;4", 1.0f, "1 plays the sound as it was recorded"),
    ENUM("Loop", CONSTANT, "Once, Loop", "Once", "What happens at the end of the sound"),
    FLOAT("Reach", CONSTANT, "1;", 25.0f, "Metres to where the sound is lost"),
#if IS_SECOND
    ENUM("Bus", CONSTANT, "world, weapons, interface", "world",
         "The channel of the mixer"), /* was a String */
#else
    STRING("Bus", CONSTANT, "world", "The channel of the mixer"),
#endif
};

static const CField s_CameraShake[] = {
    VECTOR("Strength", LINEAR, "0;2", 0.1f, 0.1f, 0.0f, "Metres along each axis"),
    FLOAT("Frequency", CONSTANT, ";60", 12.0f, "Swings in a second"),
    INT("Rumble", STEP, "0;255", 0, "Force of the motors in the controller"),
    FLOAT("Falloff", CONSTANT, "0;", 10.0f, "Metres to where nothing shakes any more"),
};

static const CField s_Decal[] = {
    FILENAME("Texture", TEXTURES, "textures\\scorch.Texture00a", "What is left on the ground"),
    COLOR("Color", LINEAR, 0xC0101010u, "Tint over the life of the key"),
    VECTOR("Extent", CONSTANT, "0.01;", 1.0f, 1.0f, 0.5f, "Width, height and depth of the box in metres"),
    ENUM("Surface", STEP, "Any, Stone, Wood, Water", "Any", "Which surfaces take the decal"),
    INT("Priority", CONSTANT, ";100", 10, "Decals of a higher priority stay when there are too many"),
};

static const CField s_Text[] = {
    LINE("Words that hang in the air"),
    STRING("Message", STEP, "Fire!", "What is written, one text after the other"),
    FLOAT("Height", CONSTANT, "0.05;5", 0.3f, "Metres from line to line"),
    COLOR("Color", LINEAR, 0xFFFFFFFFu, "Tint over the life of the key"),
    ENUM("Align", CONSTANT, "Left, Centre, Right", "Centre", "Which part of the text stands at the origin"),
};

static const CField s_Model[] = {
    FILENAME("Model", MODELS, "models\\log.Model00a", "What is shown"),
    ANIMATION("Clip", STEP, "idle", "The animation that runs"),
    FLOAT("Speed", LINEAR, "-4;4", 1.0f, "Below 0 runs backward"),
    VECTOR("Scale", LINEAR, "0.001;100", 1.0f, 1.0f, 1.0f, "Along each axis"),
};

static const CField s_NestedEffect[] = {
    EFFECT("Effect", STEP, "", "Effects that play in this one, with semicolons between them"),
    INT("Repeat", CONSTANT, "1;", 1, "How often they play"),
    FLOAT("Delay", CONSTANT, "0;", 0.0f, "Seconds from one to the next"),
    SPARE("Reserved", "Free for later use"),
};

#if IS_SECOND
static const CField s_Wind[] = {
    VECTOR("Force", LINEAR, "-50;50", 1.0f, 0.0f, 0.0f, "Metres a second, each second"),
};
#endif

static const CEffectTypeDesc s_Types[] = {
#if IS_SECOND
    TYPE("Emitter", 0, s_Emitter), TYPE("Sprite", 1, s_Sprite),
    TYPE("Light", 2, s_Light),     TYPE("Wind", 3, s_Wind),
    TYPE("Sound", 4, s_Sound),     TYPE("Camera Shake", 5, s_CameraShake),
    TYPE("Decal", 6, s_Decal),     TYPE("Text", 7, s_Text),
    TYPE("Model", 8, s_Model),     TYPE("Nested Effect", 9, s_NestedEffect),
    {"Marker", 10, 0, NULL},
#else
    TYPE("Sprite", 0, s_Sprite),
    TYPE("Emitter", 1, s_Emitter),
    TYPE("Light", 2, s_Light),
    TYPE("Sound", 3, s_Sound),
    TYPE("Camera Shake", 4, s_CameraShake),
    TYPE("Decal", 5, s_Decal),
    TYPE("Text", 6, s_Text),
    TYPE("Model", 7, s_Model),
    TYPE("Nested Effect", 8, s_NestedEffect),
    {"Marker", 9, 0, NULL}, /* a moment that the game's scripts wait for; there is nothing to tell it */
#endif
};

static CEffectTypeTable s_Table = {FIREGLASS_EDITION, COUNT(s_Types), s_Types};

EMBERDECK_EXPORT void EmberdeckGetInfo(CEffectTypeTable** ppTable);
EMBERDECK_EXPORT void EmberdeckReleaseInfo(CEffectTypeTable* pTable);

void EmberdeckGetInfo(CEffectTypeTable** ppTable)
{
    *ppTable = &s_Table;
}

void EmberdeckReleaseInfo(CEffectTypeTable* pTable)
{
    (void)pTable; /* static data: there is nothing to give back */
}
