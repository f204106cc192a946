#pragma once

#include <QPoint>
#include <Qt>

class QWidget;

namespace kovanix {

// What a cashier's hands do on a screen, beside the keys of the player.

/// Whether a pointer can get at the middle of a control: it is shown, alive, and nothing lies above it.
bool canPress(const QWidget& control);
bool canPress(const QWidget& control, const QPoint& place);

/// A press and its release; the focus goes along as it does with a pointer.
void pressOn(QWidget& control, Qt::MouseButton button = Qt::LeftButton);
void pressOn(QWidget& control, const QPoint& place, Qt::MouseButton button = Qt::LeftButton);
/// Two presses in quick succession.
void pressTwice(QWidget& control);
void pressTwice(QWidget& control, const QPoint& place);

/// Enter.
void sendEnter();

}  // namespace kovanix
