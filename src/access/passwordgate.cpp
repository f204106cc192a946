#include "access/passwordgate.h"

#include "access/sifresorur.h"
#include "app/ayarmodul.h"
#include "app/session.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "runtime/screenregistry.h"

namespace kovanix {

using namespace Qt::StringLiterals;

PasswordGate::Guarded PasswordGate::products() {
    return {u"1"_s, u"ekledznlsil"_s, ekledznlsil, u"sifresor1"_s};
}

PasswordGate::Guarded PasswordGate::users() {
    return {u"2"_s, u"ekledznlsilk"_s, ekledznlsilk, u"sifresor1k"_s};
}

PasswordGate::PasswordGate(Guarded guarded, int action) : m_guarded(std::move(guarded)) {
    screen<sifresorur>().ui.nereye->setText(m_guarded.code);
    ayarla(m_guarded.actionKey, QString::number(action));
    // A configuration that can't be written still holds an older action, which must not be carried out.
    m_guarded.pending = QString::number(action);
    m_wanted = sayicevir(ayar(m_guarded.settingKey)) == 0;
}

PasswordGate::~PasswordGate() {
    if (!m_asked)
        unload<sifresorur>();
}

bool PasswordGate::asks() const {
    return m_wanted && !girissifre.isEmpty();
}

void PasswordGate::ask(QWidget& asking) {
    m_asked = true;
    screen<sifresorur>().ui.nereye->setText(m_guarded.code);
    showInFront(screen<sifresorur>(), {.opener = &asking});
}

}  // namespace kovanix
