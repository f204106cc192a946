#pragma once

#include <QString>
#include <memory>

namespace kovanix {

/// The default printer as a run of plain text: what is printed piles up until the document is ended, then
/// goes to the printer as one job.
///
/// Goes to the system's default printer through CUPS. The variable KOVANIX_PRINTER=pdf:DIR writes each job as
/// a numbered PDF into DIR instead ("0001.pdf", "0002.pdf", …).
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

private:
    QString m_pending;
};

}  // namespace kovanix
