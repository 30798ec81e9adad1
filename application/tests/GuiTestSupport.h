#ifndef CIFWARD_GUITESTSUPPORT_H
#define CIFWARD_GUITESTSUPPORT_H

#include "IsolatedSettings.h"

#include <QString>

// The shared corpus and dictionaries beside the repository; tests that need them skip without.
inline QString sharedPath(const QString& relative)
{
    return QStringLiteral(CIFWARD_SHARED_DIR "/") + relative;
}

#endif
