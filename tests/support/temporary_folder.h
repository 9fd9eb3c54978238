#pragma once

// A temporary directory of its own for a test program.

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

namespace velarc {

// What the program and its children write into the temporary directory lies in a folder that goes
// with this object. To be made before the program has threads.
class OwnTemporaryFolder
{
public:
    OwnTemporaryFolder()
    {
        // Another user may reach what lies in it, as in any temporary directory.
        QFile::setPermissions(m_folder.path(),
            QFile::permissions(m_folder.path()) | QFileDevice::ExeGroup | QFileDevice::ExeOther);
        setenv("TMPDIR", m_folder.path().toUtf8().constData(), 1);
    }

private:
    QTemporaryDir m_folder;
};

} // namespace velarc
