#pragma once

#include <QImage>

#include "shell/ToolbarImages.h"

// Draws an image's shapes with nGrid pixels to a side. Level and upright edges are moved onto whole pixels, and outlines
// are whole pixels wide, so that they are sharp also where a unit is a pixel and a half. Shapes that can't be read are
// left out from there on. Its own size gives the art's own pixels.
CPixelImage PaintIcon(const CIconArt& art, int32_t nGrid);

QImage ToQImage(const CPixelImage& image); // with its pixel ratio
