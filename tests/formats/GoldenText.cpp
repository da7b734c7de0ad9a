// The saved bytes, to the last tab and line end.

#include "FormatsTest.h"
#include "plain/PlainContainer.h"

namespace
{

// A golden text as it is written here: "|" for a tab, lines end with CR LF; the head's own line ends are "$".
std::string Golden(std::string sText)
{
    std::string sBytes;
    for (const char c : sText)
    {
        if (c == '|')
            sBytes += '\t';
        else if (c == '\n')
            sBytes += "\r\n";
        else
            sBytes += c == '$' ? '\n' : c;
    }
    return sBytes;
}

std::unique_ptr<CTestLibrary> OneOfEach()
{
    return aLibrary()
        .prefabGroup("Basic")
        .prefab("Light", "Lamp")
        .value("Radius", 12.25)
        .group("Weapons")
        .effect("Muzzle")
        .length(2500)
        .track()
        .key("Sprite", 0, 1500)
        .name("Plume")
        .id(3)
        .value("Texture", "fx\\a.dds")
        .value("Blend", "add")
        .curve<CTestColor>("Color", {{0.0f, {255, 128, 0, 64}}, {1.0f, {0, 0, 0, 255}}})
        .curve<double>("Size", {{0.0f, 0.0}, {0.333333f, 2.5}, {1.0f, 1e-7}})
        .value("Count", 7)
        .curve<int>("Frame", {{0.0f, 0}, {0.5f, 15}})
        .value("Velocity", CVector3{-1.5f, 0.0f, 10.0f})
        .value("Label", "say \"hi\"")
        .value("Child", "Spark; Spark ;")
        .track()
        .key("Light", 200, 900)
        .onPrefab("Lamp")
        .id(4)
        .link(3)
        .value("Flicker", 0.5)
        .end()
        .effect("Spark")
        .build();
}

const char* const c_pszEmpty =
    "|(resource-database $|(version 1 )$)$"
    "( header\n|( version 1 )\n)\n"
    "( prefab-tree\n|( container\n||( name \"[Prefabs]\" )\n||( children\n||)\n|)\n)\n"
    "( effect-tree\n|( container\n||( name \"[Effects]\" )\n||( children\n||)\n|)\n)\n";

const char* const c_pszOneOfEach =
    R"(|(resource-database $|(version 1 )$|(resource-list $||(resource $|||(name "Muzzle" )$|||(type "FX" )$||)$||(resource $|||(name "Spark" )$|||(type "FX" )$||)$|)$|(dependency-list $||(dependency $|||(source "Muzzle" )$|||(resource "fx\a.dds" )$|||(type "FX" )$||)$||(dependency $|||(source "Muzzle" )$|||(resource "idle" )$|||(resource-type "Animation" )$|||(type "FX" )$||)$||(dependency $|||(source "Muzzle" )$|||(resource "Spark" )$|||(resource-type "FX" )$|||(type "FX" )$|||(count 2 )$||)$|)$)$( header
|( version 1 )
)
( prefab-tree
|( container
||( name "[Prefabs]" )
||( children
|||( container
||||( name "Basic" )
||||( children
|||||( prefab
||||||( name "Lamp" )
||||||( type "Light" )
||||||( properties
|||||||( property
||||||||( name "Color" )
||||||||( type "Color" )
||||||||( value-list
|||||||||( value
||||||||||( time 0.000000 )
||||||||||( data 255 200 100 255 )
|||||||||)
|||||||||( value
||||||||||( time 1.000000 )
||||||||||( data 255 200 100 255 )
|||||||||)
||||||||)
|||||||)
|||||||( property
||||||||( name "Radius" )
||||||||( type "Float" )
||||||||( value-list
|||||||||( value
||||||||||( time 0.000000 )
||||||||||( data 12.250000 )
|||||||||)
||||||||)
|||||||)
|||||||( property
||||||||( name "Flicker" )
||||||||( type "Float" )
||||||||( value-list
|||||||||( value
||||||||||( time 0.000000 )
||||||||||( data 0.250000 )
|||||||||)
|||||||||( value
||||||||||( time 1.000000 )
||||||||||( data 0.250000 )
|||||||||)
||||||||)
|||||||)
||||||)
|||||)
||||)
|||)
||)
|)
)
( effect-tree
|( container
||( name "[Effects]" )
||( children
|||( container
||||( name "Weapons" )
||||( children
|||||( effect
||||||( name "Muzzle" )
||||||( length 2500 )
||||||( key-list
|||||||( key
||||||||( name "Plume" )
||||||||( type "Sprite" )
||||||||( id 3 )
||||||||( start-time 0 )
||||||||( end-time 1500 )
||||||||( track 0 )
||||||||( properties
|||||||||( property
||||||||||( name "Texture" )
||||||||||( type "Filename" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data "fx\a.dds" )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Blend" )
||||||||||( type "Enum" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data "add" )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Color" )
||||||||||( type "Color" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data 255 128 0 64 )
|||||||||||)
|||||||||||( value
||||||||||||( time 1.000000 )
||||||||||||( data 0 0 0 255 )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Size" )
||||||||||( type "Float" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data 0.000000 )
|||||||||||)
|||||||||||( value
||||||||||||( time 0.333333 )
||||||||||||( data 2.500000 )
|||||||||||)
|||||||||||( value
||||||||||||( time 1.000000 )
||||||||||||( data 0.000000 )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Count" )
||||||||||( type "Int" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data 7 )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Frame" )
||||||||||( type "Int" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data 0 )
|||||||||||)
|||||||||||( value
||||||||||||( time 0.500000 )
||||||||||||( data 15 )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Velocity" )
||||||||||( type "Vector" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data -1.500000 0.000000 10.000000 )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Label" )
||||||||||( type "String" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data "say 'hi'" )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Clip" )
||||||||||( type "Animation" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data "idle" )
|||||||||||)
||||||||||)
|||||||||)
|||||||||( property
||||||||||( name "Child" )
||||||||||( type "FireglassRef" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data "Spark; Spark ;" )
|||||||||||)
||||||||||)
|||||||||)
||||||||)
|||||||)
|||||||( key
||||||||( name "" )
||||||||( type "Light" )
||||||||( id 4 )
||||||||( start-time 200 )
||||||||( end-time 900 )
||||||||( track 1 )
||||||||( parent "Lamp" )
||||||||( motion-link
|||||||||( id 3 )
||||||||)
||||||||( properties
|||||||||( property
||||||||||( name "Flicker" )
||||||||||( type "Float" )
||||||||||( value-list
|||||||||||( value
||||||||||||( time 0.000000 )
||||||||||||( data 0.500000 )
|||||||||||)
|||||||||||( value
||||||||||||( time 1.000000 )
||||||||||||( data 0.500000 )
|||||||||||)
||||||||||)
|||||||||)
||||||||)
|||||||)
||||||)
|||||)
||||)
|||)
|||( effect
||||( name "Spark" )
||||( length 10000 )
||||( key-list
||||)
|||)
||)
|)
)
)";

// The resource list, which is written by the node writer's own rules and line ends.
std::string HeadOf(const std::string& sBytes)
{
    return sBytes.substr(0, sBytes.find("( header"));
}

} // namespace

TEST(GoldenText, EmptyLibrary)
{
    const std::string sBytes = SavedBytes(*aLibrary().build());
    EXPECT_EQ(Golden(c_pszEmpty), sBytes);

    // Without any root the lists are empty, and the resource list has no effects.
    const CTestLibrary bare;
    EXPECT_EQ(Golden("|(resource-database $|(version 1 )$)$( header\n|( version 1 )\n)\n"
                     "( prefab-tree\n)\n( effect-tree\n)\n"),
              SavedBytes(bare));
}

TEST(GoldenText, OneOfEachKind)
{
    const auto pLibrary = OneOfEach();
    const std::string sBytes = SavedBytes(*pLibrary);
    const std::string sGolden = Golden(c_pszOneOfEach);
    EXPECT_EQ(HeadOf(sGolden), HeadOf(sBytes));
    EXPECT_EQ(sGolden.substr(HeadOf(sGolden).size()), sBytes.substr(HeadOf(sBytes).size()));
}

// The compressed form has the very bytes that the format's own encoder makes of the golden texts.
TEST(GoldenText, CompressedForm)
{
    const std::pair<std::unique_ptr<CTestLibrary>, std::string> cases[] = {
        {aLibrary().build(), Golden(c_pszEmpty)}, {OneOfEach(), Golden(c_pszOneOfEach)}};
    for (const auto& [pLibrary, sText] : cases)
    {
        const auto expected = PlainCompress(reinterpret_cast<const uint8_t*>(sText.data()), sText.size());
        const std::string sSaved = SavedBytes(*pLibrary, "library.Fx00C");
        EXPECT_LT(sSaved.size(), sText.size());
        EXPECT_TRUE(std::string(expected.begin(), expected.end()) == sSaved) << sText.size();
    }
}
