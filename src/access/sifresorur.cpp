#include "access/sifresorur.h"

#include "app/modTurkce.h"
#include "widgets/look.h"

namespace kovanix {

sifresorur::sifresorur() {
    ui.setupUi(this);
    applyTextRoles(*this);
}

sifresorur::~sifresorur() = default;

void sifresorur::form_load() {
    ekrandonat(*this);
}

}  // namespace kovanix
