#pragma once

#include <QListWidget>

namespace kovanix::yedek {

/// The copies, a row each in the manner of the till's lists: when it was taken, where it lies, its size.
class CopyList : public QListWidget {
public:
    explicit CopyList(QWidget* parent = nullptr);

    void addCopy(const QString& moment, const QString& place, const QString& size);
    /// How much larger everything is than designed: rows never get smaller than a thumb.
    void setScale(double scale);

private:
    int m_rowHeight = 0;
};

}  // namespace kovanix::yedek
