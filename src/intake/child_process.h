#pragma once

// A program of our own that is fed, listened to and ended.

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <chrono>
#include <mutex>

namespace velarc {

// One thread uses it; kill() alone may come from any. Nothing of the child is left behind when it
// goes: neither a process nor a descriptor.
class ChildProcess
{
public:
    // Starts `program`, with nothing of our descriptors but its own three.
    ChildProcess(const QString &program, const QStringList &arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    [[nodiscard]] bool isRunning() const { return m_process > 0; }

    // Writes `input` while it reads what the child says, until the child has closed both its
    // outputs. False if that took longer than `time` or gave more than `outputLimit` bytes.
    [[nodiscard]] bool converse(
        const QByteArray &input, std::chrono::milliseconds time, qsizetype outputLimit);

    void kill();

    // Waits for the end. Whether the child ended by itself with status 0.
    [[nodiscard]] bool waitForSuccess();

    [[nodiscard]] QByteArray takeOutput() { return std::move(m_output); }
    [[nodiscard]] const QByteArray &complaint() const { return m_complaint; }

private:
    // A descriptor that is closed when it goes.
    class Descriptor
    {
    public:
        Descriptor() = default;
        ~Descriptor() { close(); }
        Descriptor(const Descriptor &) = delete;
        Descriptor &operator=(const Descriptor &) = delete;
        void reset(int descriptor);
        void close();
        [[nodiscard]] int get() const { return m_descriptor; }

    private:
        int m_descriptor = -1;
    };

    void start(const QString &program, const QStringList &arguments, const int (&theirs)[3]);
    void feed(const QByteArray &input);
    static void drain(Descriptor &source, QByteArray &into);

    std::mutex m_processMutex; // guards the process's number against its reuse after the end
    pid_t m_process = -1;
    Descriptor m_input;
    Descriptor m_outputEnd;
    Descriptor m_complaintEnd;
    qsizetype m_fed = 0;
    QByteArray m_output;
    QByteArray m_complaint;
};

} // namespace velarc
