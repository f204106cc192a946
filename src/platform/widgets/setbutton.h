#pragma once

#include <memory>

#include "widgets/drawnbutton.h"

namespace kovanix {

class FittedText;

/// A button that wears the colours of a saved set. Where such a text could hardly be told from its face (a
/// set that was never saved is black on black), the caption stands on a plate besides.
class SetButton : public vkCommand {
    Q_OBJECT

public:
    explicit SetButton(QWidget* parent = nullptr);
    ~SetButton() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<FittedText> m_plateText;
};

}  // namespace kovanix
