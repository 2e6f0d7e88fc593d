#pragma once

#include <QString>

#include <memory>

class QLockFile;

// One interactive copy of the program per user session. The guard is a lock file in the
// user's runtime folder; the lock of a copy that crashed is taken over.
class SingleInstance {
public:
    SingleInstance();
    ~SingleInstance();
    // True when this process is now the one copy; false when another copy runs.
    bool acquire();
    static QString lockPath();

private:
    std::unique_ptr<QLockFile> m_lock;
};
