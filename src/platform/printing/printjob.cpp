#include "printing/printjob.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>
#include <optional>

#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int highestJobNumber = 9999;
constexpr int fileResolution = 600;  // dots an inch
constexpr QLatin1String filePrefix("pdf:");

[[noreturn]] void fail(const QString& description) {
    throw RuntimeError(RuntimeError::printerError, description, u"Printer"_s);
}

/// A file's own words are the system's: they stand behind ours, for support.
[[noreturn]] void failOn(const QFile& file) {
    fail(u"Dosyaya yazılamıyor: %1 (%2)"_s.arg(file.fileName(), file.errorString()));
}

QString target() {
    return qEnvironmentVariable("KOVANIX_PRINTER");
}

/// What the print server said to the last request of this thread, when it was a refusal. The toolkit doesn't
/// pass that on, so its own client library is asked (status codes of RFC 8011; 0x400 and above are errors).
std::optional<QString> refusal() {
    constexpr int firstError = 0x400;
    QLibrary client(u"cups"_s, 2);
    const auto lastError = reinterpret_cast<int (*)()>(client.resolve("cupsLastError"));
    const auto lastErrorString = reinterpret_cast<const char* (*)()>(client.resolve("cupsLastErrorString"));
    if (!lastError || !lastErrorString || lastError() < firstError)
        return std::nullopt;
    return QString::fromUtf8(lastErrorString());
}

}  // namespace

PrintJob::PrintJob() {
    if (const QString where = target(); where.startsWith(filePrefix))
        openFile(where.mid(filePrefix.size()));
    else
        openDefaultPrinter();
}

PrintJob::~PrintJob() {
    if (m_painter.isActive())
        m_painter.end();
    m_device.reset();
    // Half a receipt is worse than none.
    if (m_file && m_file->isOpen()) {
        m_file->close();  // fails on a full disk, and remove() of an open file gives up then
        QFile::remove(m_file->fileName());
    }
}

/// Opens the file of the next free number; two programs that print into one folder never share one.
void PrintJob::openFile(const QString& folder) {
    const QDir dir(folder);
    if (!dir.mkpath(u"."_s))
        fail(u"Klasör açılamadı: %1"_s.arg(folder));
    int number = 1;
    const QStringList present = dir.entryList({u"????.pdf"_s}, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString& name : present)
        number = std::max(number, name.left(4).toInt() + 1);
    m_file = std::make_unique<QFile>();
    for (; !m_file->isOpen(); ++number) {
        if (number > highestJobNumber)
            fail(u"Klasörde yer kalmadı: %1"_s.arg(folder));
        m_file->setFileName(dir.filePath(u"%1.pdf"_s.arg(number, 4, 10, QLatin1Char('0'))));
        if (!m_file->open(QIODevice::WriteOnly | QIODevice::NewOnly) && !m_file->exists())
            failOn(*m_file);
    }
    auto writer = std::make_unique<QPdfWriter>(m_file.get());
    writer->setTitle(QCoreApplication::applicationName());
    writer->setCreator(QCoreApplication::applicationName());
    writer->setResolution(fileResolution);
    m_device = std::move(writer);
}

void PrintJob::openDefaultPrinter() {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        fail(u"Varsayılan yazıcı yok: sistem ayarlarından bir yazıcı seçin."_s);
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    if (!printer->isValid())
        fail(u"Yazıcı kullanılamıyor: %1"_s.arg(info.printerName()));
    printer->setDocName(QCoreApplication::applicationName());
    printer->setCreator(QCoreApplication::applicationName());
    m_device = std::move(printer);
}

QPageSize PrintJob::paper() {
    const QPageSize ordinary(QPageSize::A4);
    if (target().startsWith(filePrefix))
        return ordinary;
    const QPageSize own = QPrinterInfo::defaultPrinter().defaultPageSize();
    return own.isValid() ? own : ordinary;
}

void PrintJob::setWholePages(const QPageSize& paper) {
    QPageLayout layout(paper, QPageLayout::Portrait, QMarginsF());
    layout.setMode(QPageLayout::FullPageMode);
    m_device->setPageLayout(layout);
}

QPainter& PrintJob::begin() {
    if (!m_painter.begin(m_device.get()))
        fail(u"Yazıcı iş almıyor."_s);
    return m_painter;
}

void PrintJob::nextPage() {
    // A job of many pages that a full disk has ended needn't be painted to its end.
    if (m_file && m_file->error() != QFileDevice::NoError)
        failOn(*m_file);
    if (!m_device->newPage())
        fail(u"Yazıcı bir sonraki sayfaya geçemedi."_s);
}

void PrintJob::finish() {
    if (!m_painter.end())
        fail(u"Yazıcı işi bitiremedi."_s);
    m_device.reset();
    if (!m_file) {
        if (const auto reason = refusal())
            fail(u"Yazıcı işi almadı (%1)"_s.arg(*reason));
        return;
    }
    if (!m_file->flush() || m_file->error() != QFileDevice::NoError)
        failOn(*m_file);
    m_file->close();
}

}  // namespace kovanix
