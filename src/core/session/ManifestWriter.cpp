#include "ManifestWriter.h"

#include <QFile>

ManifestWriter::ManifestWriter(QString workFolder)
    : m_folder(std::move(workFolder)), m_thread([this] { work(); }) {}

ManifestWriter::~ManifestWriter() {
    {
        std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

void ManifestWriter::write(Manifest manifest) {
    {
        std::lock_guard lock(m_mutex);
        m_waiting = std::move(manifest);
    }
    m_changed.notify_all();
}

void ManifestWriter::settle() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_waiting && !m_writing; });
}

void ManifestWriter::remove() {
    settle();
    QFile::remove(manifestPath(m_folder));
}

void ManifestWriter::work() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_waiting || m_stopping; });
        if (!m_waiting)
            return; // stopping, with nothing left to write
        const Manifest manifest = std::move(*m_waiting);
        m_waiting.reset();
        m_writing = true;
        lock.unlock();
        if (!writeManifest(m_folder, manifest))
            qWarning("the manifest of the windows could not be written in %s", qPrintable(m_folder));
        lock.lock();
        m_writing = false;
        m_changed.notify_all();
    }
}
