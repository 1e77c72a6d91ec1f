// The program's icon, drawn in code at every size that a desktop asks for.
#pragma once

#include <QIcon>

QIcon AppIcon();
