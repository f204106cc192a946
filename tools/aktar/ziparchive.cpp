#include "aktar/ziparchive.h"

#include <zip.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>

#include "aktar/failure.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 smallFile = 1 << 20;

[[noreturn]] void failTooBig() {
    fail(u"Dosya açılınca aşırı büyüyor; güvenli değil, okunmadı"_s);
}

[[noreturn]] void failDamaged() {
    fail(u"Dosya bozuk ya da .xlsx değil"_s);
}

}  // namespace

/// Nothing is thrown while it is read: the toolkit's readers stand in between.
class ZipArchive::Entry : public ZipFile {
public:
    Entry(ZipArchive& archive, zip_file* file, qint64 packed)
        : m_archive(archive), m_file(file), m_packed(packed) {
        QIODevice::open(ReadOnly | Unbuffered);
    }
    ~Entry() override { ::zip_fclose(m_file); }

    void check() const override {
        if (m_end == End::tooBig)
            failTooBig();
        if (m_end == End::damaged)
            failDamaged();
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return m_end != End::none; }

protected:
    qint64 readData(char* data, qint64 wanted) override {
        if (m_end != End::none)
            return -1;
        const qint64 got = ::zip_fread(m_file, data, static_cast<zip_uint64_t>(wanted));
        if (got <= 0) {
            m_end = got == 0 ? End::whole : End::damaged;
            return -1;
        }
        if (isTooMuch({data, got}))
            m_end = End::tooBig;
        return m_end == End::none ? got : -1;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    enum class End { none, whole, tooBig, damaged };

    bool isTooMuch(QByteArrayView bytes) {
        const ZipLimits& limits = m_archive.m_limits;
        m_read += bytes.size();
        m_archive.m_read += bytes.size();
        const qsizetype mark = bytes.lastIndexOf('<');
        m_sinceTag = mark < 0 ? m_sinceTag + bytes.size() : bytes.size() - mark;
        return m_archive.m_read > limits.bytes || m_sinceTag > limits.longestTag ||
               (m_read > smallFile && m_read / limits.ratio > m_packed);
    }

    ZipArchive& m_archive;
    zip_file* m_file;
    qint64 m_packed;
    qint64 m_read = 0;
    qint64 m_sinceTag = 0;
    End m_end = End::none;
};

void ZipArchive::Closer::operator()(zip* archive) const {
    ::zip_discard(archive);
}

ZipArchive::ZipArchive(const QString& path, const ZipLimits& limits)
    : m_limits(limits), m_size(QFileInfo(path).size()) {
    int error = 0;
    m_archive.reset(::zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY, &error));
    check();
}

ZipArchive::ZipArchive(const QByteArray& bytes, const ZipLimits& limits)
    : m_bytes(bytes), m_limits(limits), m_size(bytes.size()) {
    zip_source_t* const source = ::zip_source_buffer_create(
        m_bytes.constData(), static_cast<zip_uint64_t>(m_bytes.size()), 0, nullptr);
    if (source)
        m_archive.reset(::zip_open_from_source(source, ZIP_RDONLY, nullptr));
    if (source && !m_archive)
        ::zip_source_free(source);
    check();
}

ZipArchive::~ZipArchive() = default;

void ZipArchive::check() {
    if (!m_archive)
        failDamaged();
    const qint64 files = ::zip_get_num_entries(m_archive.get(), 0);
    if (files > m_limits.files)
        failTooBig();
    qint64 claimed = 0;
    for (qint64 file = 0; file < files; ++file) {
        zip_stat_t about;
        if (::zip_stat_index(m_archive.get(), static_cast<zip_uint64_t>(file), 0, &about) != 0)
            failDamaged();
        if ((about.valid & ZIP_STAT_SIZE) == 0)
            continue;
        const auto limit = static_cast<zip_uint64_t>(m_limits.bytes);
        if (about.size > limit || (claimed += static_cast<qint64>(about.size)) > m_limits.bytes)
            failTooBig();
    }
}

bool ZipArchive::contains(const QString& name) const {
    return ::zip_name_locate(m_archive.get(), name.toUtf8().constData(), 0) >= 0;
}

std::unique_ptr<ZipFile> ZipArchive::open(const QString& name) {
    const qint64 place = ::zip_name_locate(m_archive.get(), name.toUtf8().constData(), 0);
    zip_stat_t about;
    if (place < 0 || ::zip_stat_index(m_archive.get(), static_cast<zip_uint64_t>(place), 0, &about) != 0)
        failDamaged();
    const auto size = static_cast<qint64>(about.size);
    // A file that claims to be packed into more than the whole archive would never unpack to too much of it.
    const auto packed = static_cast<qint64>(std::min(about.comp_size, static_cast<zip_uint64_t>(m_size)));
    if (size > smallFile && size / m_limits.ratio > packed)
        failTooBig();
    zip_file* const file = ::zip_fopen_index(m_archive.get(), static_cast<zip_uint64_t>(place), 0);
    if (!file)
        failDamaged();
    return std::make_unique<Entry>(*this, file, packed);
}

}  // namespace kovanix::aktar
