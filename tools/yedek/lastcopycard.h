#pragma once

#include <QWidget>

#include "widgets/look.h"

class QLabel;

namespace kovanix {
class FittedLabel;
}

namespace kovanix::yedek {

/// What a shopkeeper looks for first, large: when the last good copy was taken, on green, or that there is
/// none or only an old one, on red.
class LastCopyCard : public QWidget {
    Q_OBJECT

public:
    explicit LastCopyCard(QWidget* parent = nullptr);

    /// @param words  the large line. @param hint  the small one below
    void setState(bool good, const QString& words, const QString& hint);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FaceRole m_face = FaceRole::danger;
    FittedLabel* m_words;
    QLabel* m_hint;
};

}  // namespace kovanix::yedek
