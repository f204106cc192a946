#pragma once

#include <QFile>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QString>
#include <memory>

namespace kovanix {

/// One job for the system's default printer, through CUPS, and without a dialog. While the variable
/// KOVANIX_PRINTER is pdf:DIR, each job is a numbered PDF in DIR instead ("0001.pdf", "0002.pdf", …); one
/// that isn't finished leaves no file.
///
/// Whatever fails throws a RuntimeError (printerError).
class PrintJob {
public:
    /// Opens the printer or the file. @throws when there is no printer, or the file can't be made
    PrintJob();
    ~PrintJob();
    PrintJob(const PrintJob&) = delete;
    PrintJob& operator=(const PrintJob&) = delete;

    /// The paper of the default printer; A4 where there is none, and in files.
    static QPageSize paper();

    /// Whether the job goes into a file, which takes paper of any size.
    bool isFile() const { return m_file != nullptr; }
    /// What the pages are painted on. Their layout can be changed until the first one is begun.
    QPagedPaintDevice& device() { return *m_device; }
    /// Gives the pages a paper that can be painted on to its edges.
    void setWholePages(const QPageSize& paper);

    /// Begins the first page. @return the painter of all pages, in the device's dots
    QPainter& begin();
    /// Begins another page. @throws once the file can't be written any more, too
    void nextPage();
    /// Ends the last page and sends the job.
    void finish();

private:
    void openFile(const QString& folder);
    void openDefaultPrinter();

    std::unique_ptr<QFile> m_file;  ///< nothing for a printer
    std::unique_ptr<QPagedPaintDevice> m_device;
    QPainter m_painter;
};

}  // namespace kovanix
