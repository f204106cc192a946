#pragma once

#include <QLabel>
#include <memory>

namespace kovanix {

class FittedText;

/// A label whose text may be longer than its place: it breaks into two lines and gets smaller, and ends in an
/// ellipsis only where that isn't enough. It has room for two lines at any time, so that what stands below it
/// doesn't move, and it never asks for more width than it is given.
class FittedLabel : public QLabel {
    Q_OBJECT

public:
    explicit FittedLabel(QWidget* parent = nullptr);
    ~FittedLabel() override;

    /// What was painted last of the text.
    QString shown() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<FittedText> m_fitted;
};

}  // namespace kovanix
