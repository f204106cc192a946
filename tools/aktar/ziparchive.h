#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QStringList>
#include <memory>

struct zip;
struct zip_file;

namespace kovanix::aktar {

/// How much an archive may unpack to; beyond that it is refused.
struct ZipLimits {
    qint64 files = 2'000;
    qint64 bytes = qint64(1) << 30;  ///< of all that is read out of it
    qint64 ratio = 250;              ///< of a file above a megabyte; a sheet's own is below a hundred
    qint64 longestTag = 4 << 20;     ///< without a "<" coming: a reader of XML keeps so much of it in memory
};

/// A file of an archive while it is read. Too much of it, or a damage, ends it: see check.
class ZipFile : public QIODevice {
public:
    /// @throws RuntimeError where the file has ended in any other way than by its end
    virtual void check() const = 0;
};

/// An archive that anyone may have made. What it says of its sizes is believed only where it speaks against
/// it: what comes out is counted, too.
class ZipArchive {
public:
    /// @throws RuntimeError where it is no archive, or claims sizes beyond the limits
    explicit ZipArchive(const QString& path, const ZipLimits& limits = {});
    /// Of bytes in memory.
    explicit ZipArchive(const QByteArray& bytes, const ZipLimits& limits = {});
    ~ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    bool contains(const QString& name) const;

    /// A file of the archive, to be read once from its beginning. The archive must outlive it.
    /// @throws RuntimeError where there is none, or its claim goes beyond the limits
    std::unique_ptr<ZipFile> open(const QString& name);

private:
    class Entry;
    struct Closer {
        void operator()(zip* archive) const;
    };

    void check();

    QByteArray m_bytes;
    ZipLimits m_limits;
    std::unique_ptr<zip, Closer> m_archive;
    qint64 m_size = 0;  // of the archive itself
    qint64 m_read = 0;
};

}  // namespace kovanix::aktar
