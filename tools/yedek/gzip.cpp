#include "yedek/gzip.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "yedek/failure.h"
#include "yedek/storage.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype chunk = 1 << 18;
constexpr int gzipFormat = 15 + 16;
constexpr int level = 2;  // quick: a copy is for each day, and the till sells meanwhile

/// The empty part with the sum, in the form of the gzip format: a header with a comment, an empty block, and
/// the check numbers of nothing.
QByteArray tailFor(const QByteArray& sha256) {
    return QByteArray::fromHex("1f8b0810000000000003") + "sha256:" + sha256 + '\0' +
           QByteArray::fromHex("03000000000000000000");
}

const qsizetype tailSize = tailFor(QByteArray(64, '0')).size();

[[noreturn]] void refuse() {
    throw Refusal(u"Yedek dosyası bozuk ya da eksik"_s);
}

}  // namespace

GzipWriter::GzipWriter(const QString& path) : m_file(path), m_stream(std::make_unique<z_stream_s>()) {
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                     QFile::ReadOwner | QFile::WriteOwner))
        throw Failure(systemWords(path, errno));
    m_steady.emplace(path);
    constexpr int memory = 8;
    if (deflateInit2(m_stream.get(), level, Z_DEFLATED, gzipFormat, memory, Z_DEFAULT_STRATEGY) != Z_OK)
        throw Failure(u"Sıkıştırma başlatılamadı"_s);
}

GzipWriter::~GzipWriter() {
    deflateEnd(m_stream.get());
}

void GzipWriter::put(QByteArrayView bytes) {
    m_hash.addData(bytes);
    if (m_file.write(bytes.data(), bytes.size()) != bytes.size())
        throw Failure(systemWords(m_file.fileName(), errno));
    m_written += bytes.size();
    m_steady->upTo(m_written);
}

void GzipWriter::compress(QByteArrayView bytes, int flush) {
    QByteArray packed(chunk, Qt::Uninitialized);
    m_stream->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    m_stream->avail_in = static_cast<uInt>(bytes.size());
    int code = Z_OK;
    do {
        m_stream->next_out = reinterpret_cast<Bytef*>(packed.data());
        m_stream->avail_out = static_cast<uInt>(packed.size());
        code = deflate(m_stream.get(), flush);
        put(QByteArrayView(packed.constData(), packed.size() - m_stream->avail_out));
    } while (m_stream->avail_out == 0 || (flush == Z_FINISH && code == Z_OK));
}

void GzipWriter::write(QByteArrayView bytes) {
    for (; !bytes.isEmpty(); bytes = bytes.sliced(std::min(chunk, bytes.size())))
        compress(bytes.first(std::min(chunk, bytes.size())), Z_NO_FLUSH);
}

void GzipWriter::finish() {
    compress({}, Z_FINISH);
    put(tailFor(m_hash.result().toHex()));
    if (!m_file.flush())
        throw Failure(systemWords(m_file.fileName(), errno));
    m_file.close();
}

GzipReader::GzipReader(const QString& path) : m_file(path), m_stream(std::make_unique<z_stream_s>()) {
    if (!m_file.open(QIODevice::ReadOnly))
        throw Refusal(systemWords(path, errno));
    m_left = m_file.size() - tailSize;
    if (m_left <= 0 || inflateInit2(m_stream.get(), gzipFormat) != Z_OK)
        refuse();
}

GzipReader::~GzipReader() {
    inflateEnd(m_stream.get());
}

/// @return false where nothing is left
bool GzipReader::fill() {
    m_input = m_file.read(std::min<qint64>(chunk, m_left));
    m_left -= m_input.size();
    m_stream->next_in = reinterpret_cast<Bytef*>(m_input.data());
    m_stream->avail_in = static_cast<uInt>(m_input.size());
    return !m_input.isEmpty();
}

QByteArray GzipReader::read(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    m_stream->next_out = reinterpret_cast<Bytef*>(bytes.data());
    m_stream->avail_out = static_cast<uInt>(size);
    while (m_stream->avail_out > 0) {
        if (m_ended || (m_stream->avail_in == 0 && !fill()))
            refuse();
        const int code = inflate(m_stream.get(), Z_NO_FLUSH);
        m_ended = code == Z_STREAM_END;
        if (code != Z_OK && !m_ended)
            refuse();
    }
    return bytes;
}

void GzipReader::finish() {
    char none = 0;
    while (!m_ended) {
        if (m_stream->avail_in == 0 && !fill())
            refuse();
        m_stream->next_out = reinterpret_cast<Bytef*>(&none);
        m_stream->avail_out = 1;
        const int code = inflate(m_stream.get(), Z_NO_FLUSH);
        m_ended = code == Z_STREAM_END;
        if ((code != Z_OK && !m_ended) || m_stream->avail_out == 0)
            refuse();
    }
    if (m_left > 0 || m_stream->avail_in > 0)
        refuse();
}

void checkPackedSum(const QString& path, const std::function<void(qint64 done, qint64 total)>& step) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Refusal(systemWords(path, errno));
    const qint64 total = file.size() - tailSize;
    if (total <= 0)
        refuse();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (qint64 done = 0; done < total;) {
        const QByteArray bytes = file.read(std::min<qint64>(chunk, total - done));
        if (bytes.isEmpty())
            refuse();
        hash.addData(bytes);
        done += bytes.size();
        if (step)
            step(done, total);
    }
    if (file.read(tailSize + 1) != tailFor(hash.result().toHex()))
        refuse();
}

}  // namespace kovanix::yedek
