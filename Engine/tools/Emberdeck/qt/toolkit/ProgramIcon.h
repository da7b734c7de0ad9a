#pragma once

#include <QIcon>
#include <QPixmap>

// The program's icon, drawn from its shapes in all sizes.
QIcon ProgramIcon();
// The picture of the splash window.
QPixmap SplashPicture(qreal fScale);
