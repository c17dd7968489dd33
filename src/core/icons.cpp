#include "core/icons.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside any namespace.
static void initIcons() { Q_INIT_RESOURCE(icons); }

void InitIconResources() { initIcons(); }
