#pragma once

#include <QString>
#include <memory>

namespace kovanix {

/// The default printer as a run of plain text: what is printed piles up until the document is ended, then
/// goes to the printer as one job.
///
/// Where a job goes, see PrintJob.
class Printer {
public:
    Printer();
    ~Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    /// Appends text and a line break. CR LF, CR and LF break lines; tabs go to the next stop of eight
    /// characters.
    void print(const QString& text);

    /// Sets the job's pages in the default font, breaking lines and pages where the paper ends, and sends
    /// them. Nothing was printed: no job. The pending text is gone in any case.
    /// @throws RuntimeError (printerError) when there is no printer or it takes no job.
    void endDocument();

    /// The twips (1440 to the inch) in a pixel of the printer, across and down.
    static double twipsPerPixelX();
    static double twipsPerPixelY();

private:
    QString m_pending;
};

}  // namespace kovanix
