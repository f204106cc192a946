#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "yedek/storage.h"

struct z_stream_s;

namespace kovanix::yedek {

/// Writes a compressed file that any gzip reads. Behind what it holds stands an empty second part with the
/// SHA-256 of all bytes ahead of it, so that no damage to a single one goes unseen.
/// Every operation throws a Failure.
class GzipWriter {
public:
    /// Makes the file; there is none yet.
    explicit GzipWriter(const QString& path);
    ~GzipWriter();
    GzipWriter(const GzipWriter&) = delete;
    GzipWriter& operator=(const GzipWriter&) = delete;

    void write(QByteArrayView bytes);
    void finish();

private:
    void compress(QByteArrayView bytes, int flush);
    void put(QByteArrayView bytes);

    QFile m_file;
    qint64 m_written = 0;
    std::optional<SteadyWrites> m_steady;
    std::unique_ptr<z_stream_s> m_stream;
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

/// Reads such a file from its beginning. Every operation throws a Refusal where it isn't one.
class GzipReader {
public:
    explicit GzipReader(const QString& path);
    ~GzipReader();
    GzipReader(const GzipReader&) = delete;
    GzipReader& operator=(const GzipReader&) = delete;

    /// Exactly so many bytes of what is compressed.
    QByteArray read(qsizetype size);
    /// Makes sure that nothing is left.
    void finish();

private:
    bool fill();

    QFile m_file;
    qint64 m_left = 0;  ///< compressed bytes that weren't read yet
    QByteArray m_input;
    std::unique_ptr<z_stream_s> m_stream;
    bool m_ended = false;
};

/// Goes through a file as it lies on the disk, and makes sure that it bears its own SHA-256.
/// @param step  told the bytes read so far; may throw. @throws Refusal
void checkPackedSum(const QString& path, const std::function<void(qint64 done, qint64 total)>& step = {});

}  // namespace kovanix::yedek
