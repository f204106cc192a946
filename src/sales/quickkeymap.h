#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>
#include <vector>

namespace kovanix {

class CommandButton;

/// A small map of the quick-sale keys, as they stand on the screen: filled ones in their faces, empty ones as
/// dashed rims, and the one that is being edited marked with a pencil, with a line above that says which it
/// is.
///
/// No control: it has no name, takes neither presses nor focus, and tells assistive tools its line as a
/// description.
class QuickKeyMap : public QWidget {
    Q_OBJECT

public:
    /// @param keys  in rows of four, from the left upper one; they outlive the map
    explicit QuickKeyMap(std::vector<const CommandButton*> keys, QWidget* parent = nullptr);

    /// Marks a key, by its place among the keys; -1 marks none.
    void mark(int place, const QString& words);
    int marked() const { return m_marked; }
    const QString& words() const { return m_words; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintKey(QPainter& painter, const QRectF& cell, int place) const;

    std::vector<const CommandButton*> m_keys;
    QIcon m_pencil;
    int m_marked = -1;
    QString m_words;
};

}  // namespace kovanix
