#pragma once

#include "Manifest.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

// Keeps the manifest of the windows on a thread of its own. Making the text
// and replacing the file take a few milliseconds (ext4 writes a file renamed
// over another before the rename), which after every edit would slow the
// edits themselves; here they only wait for the disk. The newest manifest
// always gets written: one that comes while another is being written
// replaces any still waiting, since it says all the older one did.
class ManifestWriter {
public:
    explicit ManifestWriter(QString workFolder);
    ~ManifestWriter(); // writes what is waiting, then stops
    ManifestWriter(const ManifestWriter&) = delete;
    ManifestWriter& operator=(const ManifestWriter&) = delete;

    void write(Manifest manifest);
    // Returns once the newest manifest given is on disk.
    void settle();
    // A clean end: settles, then removes the file.
    void remove();

private:
    void work();

    const QString m_folder;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Manifest> m_waiting;
    bool m_writing = false;
    bool m_stopping = false;
    std::thread m_thread; // last: it starts once the members above exist
};
