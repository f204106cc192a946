#include "player.h"

#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <utility>

#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/messagebox.h"
#include "desktop/screensize.h"
#include "hands.h"
#include "runtime/clock.h"
#include "runtime/runtimeerror.h"
#include "runtime/screen.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "widgets/caption.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int longestWaitForFocus = 2000;  // milliseconds

satisekrani& salesScreen() {
    return screen<satisekrani>();
}

/// The screen that a step is about where it names none: the active one, else the one shown last.
QWidget& frontScreen() {
    if (auto* active = qobject_cast<Screen*>(QApplication::activeWindow()))
        return *active;
    const std::vector<Screen*> all = ScreenRegistry::all();
    for (auto shown = all.rbegin(); shown != all.rend(); ++shown) {
        if ((*shown)->isVisible())
            return **shown;
    }
    return salesScreen();
}

/// A control by its name, or by its screen's and its own ("menu.kapat").
QWidget* namedControl(const QString& name) {
    const QString screenName = name.contains(u'.') ? name.section(u'.', 0, 0) : QString();
    if (screenName.isEmpty()) {
        if (auto* found = frontScreen().findChild<QWidget*>(name))
            return found;
    }
    for (const Screen* candidate : ScreenRegistry::all()) {
        if (screenName.isEmpty() || controlKind(*candidate) == screenName) {
            if (auto* found = candidate->findChild<QWidget*>(name.section(u'.', -1)))
                return found;
        }
    }
    return nullptr;
}

QString shownText(const QWidget& control) {
    if (const auto* field = qobject_cast<const QLineEdit*>(&control))
        return field->text();
    return caption(control);
}

}  // namespace

void sendKey(int key, const QString& text) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QWidget* focus = QApplication::focusWidget();
        if (QWidget* receiver = focus ? focus : QApplication::activeWindow()) {
            QKeyEvent event(type, key, Qt::NoModifier, text);
            QApplication::sendEvent(receiver, &event);
        }
    }
}

void typeText(const QString& text) {
    for (const QChar character : text)
        sendKey(character.toUpper().unicode(), QString(character));
}

Player::Player(QList<ScriptStep> steps, QString output, QObject* parent)
    : QObject(parent), m_steps(std::move(steps)), m_output(std::move(output)) {
    // What the till finds at its start: display, moment and who answers its boxes.
    const QStringList surroundings{u"answer"_s, u"size"_s, u"clock"_s};
    for (; m_next < m_steps.size() && surroundings.contains(m_steps.at(m_next).command); ++m_next)
        play(m_steps.at(m_next));
}

void Player::start() {
    QTimer::singleShot(0, this, &Player::playNext);
}

void Player::playNext() {
    if (m_next == m_steps.size()) {
        for (const QString& failure : m_boxes.failures())
            m_failures.append(failure);
        if (m_boxes.waiting() > 0)
            m_failures.append(QString::number(m_boxes.waiting()) + u" answer(s) left over");
        Q_EMIT finished();
        return;
    }
    const ScriptStep& step = m_steps.at(m_next);
    if (waitForFocus(step)) {
        QTimer::singleShot(1, this, &Player::playNext);
        return;
    }
    ++m_next;
    if (step.command == u"stay")
        return;
    if (step.command == u"pause") {
        pause();
        return;
    }
    play(step);
    QTimer::singleShot(0, this, &Player::playNext);
}

void Player::noteEnd() {
    if (m_next < m_steps.size() && m_steps.at(m_next).command != u"stay")
        fail(m_steps.at(m_next), u"the program has ended before this step"_s);
}

/// Whether a step that sends keys must wait: without a window manager the screen isn't active at once, nor by
/// itself again when a box has closed over it.
bool Player::waitForFocus(const ScriptStep& step) {
    const bool sendsKeys = step.command == u"scan" || step.command == u"key" || step.command == u"type";
    if (!sendsKeys || QApplication::focusWidget()) {
        m_focusDeadline = QDeadlineTimer(QDeadlineTimer::Forever);
        return false;
    }
    if (m_focusDeadline.isForever()) {
        m_focusDeadline = QDeadlineTimer(longestWaitForFocus);
        frontScreen().activateWindow();
    }
    if (!m_focusDeadline.hasExpired())
        return true;
    fail(step, u"nothing has the focus"_s);
    m_focusDeadline = QDeadlineTimer(QDeadlineTimer::Forever);
    return false;
}

void Player::pause() {
    auto* input = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this);
    connect(input, &QSocketNotifier::activated, this, [this, input] {
        // Byte by byte: what stands behind the line belongs to the next pause.
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) == 1 && byte != '\n')
            return;
        input->setEnabled(false);
        input->deleteLater();
        playNext();
    });
}

void Player::fail(const ScriptStep& step, const QString& what) {
    m_failures.append(u"line " + QString::number(step.line) + u": " + what);
}

QWidget* Player::control(const ScriptStep& step, const QString& name) {
    QWidget* found = namedControl(name);
    if (!found)
        fail(step, u"no control " + name);
    return found;
}

void Player::play(const ScriptStep& step) {
    if (step.command == u"scan") {
        typeText(step.argument);
        sendKey(Qt::Key_Return, u"\r"_s);
    } else if (step.command == u"type") {
        if (QWidget* field = control(step, step.first())) {
            giveFocus(*field);
            typeText(step.rest());
        }
    } else if (step.command == u"key") {
        const QKeySequence sequence(step.argument);
        if (sequence.isEmpty())
            fail(step, u"no key " + step.argument);
        else
            sendKey(sequence[0].key(), sequence[0].key() == Qt::Key_Return ? u"\r"_s : QString());
    } else if (step.command == u"press") {
        press(step);
    } else if (step.command == u"right") {
        if (QWidget* pressed = control(step, step.argument))
            pressOn(*pressed, Qt::RightButton);
    } else if (step.command == u"double") {
        if (QWidget* pressed = control(step, step.argument))
            pressTwice(*pressed);
    } else if (step.command == u"touch") {
        touch(step);
    } else if (step.command == u"answer") {
        answer(step);
    } else if (step.command == u"expect") {
        expectText(step);
    } else if (step.command == u"cell") {
        expectCell(step);
    } else if (step.command == u"size") {
        resize(step);
    } else if (step.command == u"clock") {
        stopClock(step);
    } else if (step.command == u"screenshot") {
        screenshot(step);
    } else if (step.command == u"rows") {
        saveRows(step);
    } else if (step.command == u"say") {
        std::printf("%s\n", qUtf8Printable(step.argument));
        std::fflush(stdout);
    } else if (step.command == u"close") {
        frontScreen().close();
    }
}

void Player::resize(const ScriptStep& step) {
    const QStringList sides = step.argument.split(u'x');
    const QSize size(sides.value(0).toInt(), sides.value(1).toInt());
    if (size.isEmpty()) {
        fail(step, u"size takes WIDTHxHEIGHT"_s);
        return;
    }
    setScreenMetricsSource([size] { return ScreenMetrics{size, 15, 15}; });
    m_display = size;
    fillDisplay();
}

/// Gives the screens that fill the display its size: the platform's own may be another.
void Player::fillDisplay() {
    if (m_display.isEmpty())
        return;
    for (Screen* shown : ScreenRegistry::all()) {
        const bool isSales = qobject_cast<satisekrani*>(shown);
        if (!shown->isMaximized() && !isSales)
            continue;
        shown->setWindowState(Qt::WindowNoState);
        shown->resize(m_display);
        if (isSales)
            salesScreen().toplamyazisi(-1);
    }
}

void Player::stopClock(const ScriptStep& step) {
    const QDateTime moment = QDateTime::fromString(step.argument, Qt::ISODate);
    if (!moment.isValid()) {
        fail(step, u"no moment " + step.argument);
        return;
    }
    Clock::setSource([moment] { return moment; });
    if (loaded<satisekrani>())
        Q_EMIT salesScreen().Timer1.tick();  // what the next picture shows
}

void Player::press(const ScriptStep& step) {
    QWidget* pressed = control(step, step.argument);
    if (!pressed)
        return;
    if (auto* button = qobject_cast<QAbstractButton*>(pressed)) {
        if (!button->isEnabled())
            fail(step, step.argument + u" is disabled");
        button->click();
        return;
    }
    pressOn(*pressed);
}

void Player::touch(const ScriptStep& step) {
    VSFlexGrid& grid = *salesScreen().ui.satisekrani1;
    const QRect cell = grid.cellRect(step.first().toInt(), step.rest().toInt());
    if (!grid.viewport()->rect().contains(cell.center()))
        fail(step, u"no cell to be seen there"_s);
    else
        pressOn(*grid.viewport(), cell.center());
}

void Player::answer(const ScriptStep& step) {
    const std::initializer_list<std::pair<QStringView, int>> answers{
        {u"Tamam", MessageBoxAnswer::ok},   {u"Evet", MessageBoxAnswer::yes},
        {u"Hayır", MessageBoxAnswer::no},   {u"İptal", MessageBoxAnswer::cancel},
        {u"Devam", MessageBoxAnswer::goOn}, {u"Yeniden dene", MessageBoxAnswer::tryAgain},
        {u"Escape", BoxAnswers::escape}};
    for (const auto& [name, code] : answers) {
        if (step.argument == name) {
            m_boxes.expectAny(code);
            return;
        }
    }
    fail(step, u"no button " + step.argument);
}

void Player::expectText(const ScriptStep& step) {
    const QWidget* shown = control(step, step.first());
    if (shown && shownText(*shown) != step.rest())
        fail(step, step.first() + u" shows \"" + shownText(*shown) + u"\", not \"" + step.rest() + u'"');
}

void Player::expectCell(const ScriptStep& step) {
    const VSFlexGrid& grid = *salesScreen().ui.satisekrani1;
    const int row = step.first().toInt();
    const int column = step.rest().section(u' ', 0, 0).toInt();
    const QString expected = step.rest().section(u' ', 1);
    try {
        if (grid.textMatrix(row, column) != expected)
            fail(step, u"the cell holds \"" + grid.textMatrix(row, column) + u"\", not \"" + expected + u'"');
    } catch (const RuntimeError& error) {
        fail(step, error.description());
    }
}

void Player::screenshot(const ScriptStep& step) {
    QDir().mkpath(m_output);
    fillDisplay();
    // Packed as small as it goes: pictures are kept for long.
    constexpr int smallest = 0;
    if (!frontScreen().grab().save(QDir(m_output).filePath(step.argument), "PNG", smallest))
        fail(step, u"can't save " + step.argument);
}

void Player::saveRows(const ScriptStep& step) {
    QDir().mkpath(m_output);
    QFile file(QDir(m_output).filePath(step.first()));
    if (!file.open(QIODevice::WriteOnly)) {
        fail(step, u"can't save " + step.first());
        return;
    }
    try {
        Recordset rows;
        rows.open(step.rest(), baglanti());
        for (; !rows.atEnd(); rows.moveNext()) {
            QStringList texts;
            for (const QString& name : rows.fieldNames())
                texts.append(nullmetin(rows.field(name)));
            file.write((texts.join(u'\t') + u'\n').toUtf8());
        }
    } catch (const RuntimeError& error) {
        fail(step, error.description());
    }
}

}  // namespace kovanix
