#include "widgets/fontsize.h"

#include <QWidget>

namespace kovanix {

void setPixels(QWidget& control, int pixels, QFont::Weight weight) {
    QFont font = control.font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    control.setFont(font);
}

}  // namespace kovanix
