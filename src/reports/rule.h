#pragma once

#include <QWidget>

namespace kovanix {

/// A thin line between the parts of a window. No control: it has no name and takes no focus.
class Rule : public QWidget {
    Q_OBJECT

public:
    explicit Rule(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kovanix
