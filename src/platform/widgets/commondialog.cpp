#include "widgets/commondialog.h"

#include <QColorDialog>
#include <QPushButton>
#include <QWidget>
#include <utility>

namespace kovanix {

namespace {

constexpr int touchHeight = 44;

}  // namespace

CommonDialog::CommonDialog(QObject* parent) : QObject(parent) {}

void CommonDialog::showColor(QWidget& above, std::function<void()> done) {
    auto* dialog = new QColorDialog(m_color, above.window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    // The toolkit's own: its words follow the program's language, not the desktop's.
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    // Only the window above would be blocked otherwise, and the sale behind it could go on with half a
    // colour.
    dialog->setWindowModality(Qt::ApplicationModal);
    const auto buttons = dialog->findChildren<QPushButton*>();
    for (QPushButton* button : buttons)
        button->setMinimumHeight(touchHeight);

    connect(dialog, &QDialog::finished, this, [this, dialog, done = std::move(done)](int result) {
        if (result == QDialog::Accepted)
            m_color = dialog->selectedColor();
        done();
    });
    // Without this control no one waits for an answer: gone without the signal that a close would send.
    connect(this, &QObject::destroyed, dialog, [dialog] {
        dialog->hide();
        dialog->deleteLater();
    });
    dialog->show();
}

}  // namespace kovanix
