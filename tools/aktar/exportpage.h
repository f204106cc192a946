#pragma once

#include <QWidget>

#include "aktar/exporter.h"

class QLabel;

namespace kovanix {
class CheckBox;
class DTPicker;
}  // namespace kovanix

namespace kovanix::aktar {

class Switches;

/// Where it is chosen what goes out, and told what became of it.
class ExportPage : public QWidget {
    Q_OBJECT

public:
    ExportPage();

    /// What is chosen; without a path yet.
    ExportOrder order() const;
    /// The ending of the chosen kind of file, without a dot.
    QString ending() const;
    /// The name that the file gets unless another is chosen.
    QString usualName() const;
    /// Says what is so, large; empty for nothing.
    void tell(const QString& words, const QString& detail = {});

private:
    void showRange();

    Switches* m_kind;
    Switches* m_format;
    QWidget* m_range;
    CheckBox* m_all;
    DTPicker* m_from;
    DTPicker* m_to;
    QLabel* m_result;
    QLabel* m_detail;
};

}  // namespace kovanix::aktar
