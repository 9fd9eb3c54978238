#pragma once

// The defaults domain on disk.

#include "base/clock.h"
#include "store/defaults_domain.h"
#include "store/defaults_file.h"

#include <QHash>
#include <QStringList>

#include <memory>

namespace velarc {

// Keeps its values in the first of several files that can be used.
//
// A file that turns out damaged, now or later, is moved aside and started afresh. One that cannot
// be opened gives way to the next one, and the last one to memory. What cannot be written to a file
// that can be read lasts as long as this object.
class SqliteDefaultsDomain final : public DefaultsDomain
{
public:
    // `files` are absolute paths, best first; none of them or their folders need exist. The clock
    // must outlive the domain. Each call waits for other processes, `patience` at most, and then
    // goes without.
    SqliteDefaultsDomain(QStringList files, const Clock &clock,
        std::chrono::milliseconds patience = std::chrono::seconds(5));

protected:
    [[nodiscard]] std::optional<DefaultsValue> read(QByteArrayView key) override;
    void write(QByteArrayView key, const DefaultsValue &value) override;
    void erase(QByteArrayView key) override;
    void writeUnlessChanged(QByteArrayView key, const std::optional<QByteArray> &seen,
        const QByteArray &proposal) override;

private:
    using Outcome = DefaultsFile::Outcome;

    void openFirstUsable();
    [[nodiscard]] std::unique_ptr<DefaultsFile> openOrReplace(const QString &path);
    void replaceDamaged();
    template <typename Operation> [[nodiscard]] Outcome onFile(Operation operation);
    template <typename Operation> [[nodiscard]] Outcome onWritableFile(Operation operation);
    void keepUnlessWritten(
        Outcome outcome, QByteArrayView key, const std::optional<DefaultsValue> &value);

    QStringList m_files;
    const Clock &m_clock;
    std::chrono::milliseconds m_patience;
    std::unique_ptr<DefaultsFile> m_file; // none: memory alone

    // What this process changed and could not write; none stands for removed.
    QHash<QByteArray, std::optional<DefaultsValue>> m_unwritten;
};

// Where the defaults of this user live, by the environment: the shared suite, then what stands in
// for it. Empty where no home folder is to be had.
[[nodiscard]] QStringList defaultsFiles();

} // namespace velarc
