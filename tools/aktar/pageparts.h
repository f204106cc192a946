#pragma once

#include <QLabel>
#include <QVBoxLayout>
#include <functional>

#include "widgets/drawnbutton.h"
#include "widgets/look.h"

class QTableView;

namespace kovanix::aktar {

/// A label in one of the till's text roles, in the ink of a colour role.
QLabel* makeLabel(const QString& text, const char16_t* textRole, ColorRole ink = ColorRole::ink);

/// A row of switches of which one is on.
class Switches : public QWidget {
    Q_OBJECT

public:
    /// @param name  an object name; each switch has it with its number behind
    Switches(const QString& name, const QStringList& captions);
    int chosen() const { return m_chosen; }
    void choose(int place);

Q_SIGNALS:
    void changed(int chosen);

private:
    QList<DrawnButton*> m_buttons;
    int m_chosen = 0;
};

/// Gives a table the look of the till's lists: rows as high as a touch, every second one on another ground.
void dressTable(QTableView& table);
/// Gives its rows and columns their sizes at a scale. @param widths  at design size; the last column
/// stretches
void scaleTable(QTableView& table, double scale, const QList<int>& widths);

}  // namespace kovanix::aktar
