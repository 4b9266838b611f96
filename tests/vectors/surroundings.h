// SPDX-License-Identifier: MIT
#ifndef VECTORS_SURROUNDINGS_H
#define VECTORS_SURROUNDINGS_H

#include <QTemporaryDir>

namespace Vectors {

/**
 * A user's folders that are the same everywhere: the home folder is /home/user, which need not
 * exist, and settings lie in a temporary folder. To be created before the application object.
 */
class Surroundings
{
public:
    Surroundings()
    {
        qputenv("HOME", "/home/user");
        qputenv("XDG_CONFIG_HOME", m_settings.path().toLocal8Bit());
        qputenv("XDG_RUNTIME_DIR", m_settings.path().toLocal8Bit()); // Qt logs that it is not set
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen"); // a pixmap needs a platform, no display
    }

private:
    QTemporaryDir m_settings;
};

} // namespace Vectors

#endif // VECTORS_SURROUNDINGS_H
