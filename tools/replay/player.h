#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>

#include "boxanswers.h"
#include "script.h"

class QWidget;

namespace kovanix {

/// Plays a script on the till's own screens, one step per turn of the event loop, so that painting, timers
/// and focus go their way in between.
class Player : public QObject {
    Q_OBJECT

public:
    /// Does at once what the script begins with of sizes, clocks and answers: the till starts with these.
    /// @param output  the folder that pictures and rows go to
    Player(QList<ScriptStep> steps, QString output, QObject* parent = nullptr);

    /// Starts; finished is emitted behind the last step.
    void start();

    /// Notes the step that the program's end has forestalled, unless the script waits for that end.
    void noteEnd();

    /// What didn't hold, a line each; empty when the script went through.
    const QStringList& failures() const { return m_failures; }

    /// The answers to message boxes.
    const BoxAnswers& boxes() const { return m_boxes; }

Q_SIGNALS:
    void finished();

private:
    void playNext();
    bool waitForFocus(const ScriptStep& step);
    void play(const ScriptStep& step);
    void fail(const ScriptStep& step, const QString& what);

    QWidget* control(const ScriptStep& step, const QString& name);
    void resize(const ScriptStep& step);
    void fillDisplay();
    void stopClock(const ScriptStep& step);
    void press(const ScriptStep& step);
    void touch(const ScriptStep& step);
    void answer(const ScriptStep& step);
    void expectText(const ScriptStep& step);
    void expectCell(const ScriptStep& step);
    void screenshot(const ScriptStep& step);
    void saveRows(const ScriptStep& step);
    void pause();

    QList<ScriptStep> m_steps;
    QString m_output;
    qsizetype m_next = 0;
    QSize m_display;
    QDeadlineTimer m_focusDeadline{QDeadlineTimer::Forever};
    QStringList m_failures;
    BoxAnswers m_boxes;
};

/// Sends a key to whatever has the focus, else to the active window, as the keyboard does: press and release.
void sendKey(int key, const QString& text = {});
/// Types a text into whatever has the focus, key by key.
void typeText(const QString& text);

}  // namespace kovanix
