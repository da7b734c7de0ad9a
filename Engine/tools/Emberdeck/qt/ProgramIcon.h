#pragma once

#include <QIcon>
#include <QImage>
#include <QPixmap>

#include "shell/ToolbarImages.h"

// The program's icon, drawn from its shapes in all sizes.
QIcon ProgramIcon();
// The picture of the splash window.
QPixmap SplashPicture(qreal fScale);
QImage ToQImage(const CPixelImage& image);
