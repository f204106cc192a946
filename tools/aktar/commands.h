#pragma once

#include "kit/toolprogram.h"

namespace kovanix::aktar {

/// The program's command line, and what it does without a window.
class Commands : public ToolCommandLine {
public:
    Commands();

    /// Whether nothing is asked for, which is what the window is for.
    bool wantsWindow() const;
    /// Does what is asked for. @return the exit status. @throws RuntimeError
    int run() const;

private:
    int send() const;
    int take() const;

    const QCommandLineOption m_out;
    const QCommandLineOption m_in;
    const QCommandLineOption m_file;
    const QCommandLineOption m_from;
    const QCommandLineOption m_to;
    const QCommandLineOption m_overwrite;
    const QCommandLineOption m_plain;
    const QCommandLineOption m_dryRun;
    const QCommandLineOption m_stock;
    const QCommandLineOption m_sheet;
    const QCommandLineOption m_columns;
    const QCommandLineOption m_noHeading;
    const QCommandLineOption m_skipRefused;
};

}  // namespace kovanix::aktar
