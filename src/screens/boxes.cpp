#include "screens/boxes.h"

#include "app/modTurkce.h"
#include "desktop/messagebox.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

bool askToCloseProgram() {
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::question | MessageBoxStyle::secondIsDefault;
    return mesajsor(u"PROGRAM_KAPAT_SORU"_s, style, u"PROGRAM_KAPAT_BASLIK"_s) == MessageBoxAnswer::yes;
}

void tellNoDatabase() {
    mesaj(u"DB_HATA"_s, MessageBoxStyle::critical, metin(u"HATA"_s));
}

void tellDatabaseFailure(const RuntimeError& error) {
    mesaj(metin(u"DB_HATA"_s) + u": " + error.description(), MessageBoxStyle::critical, metin(u"HATA"_s));
}

void tellPrinterFailure(const RuntimeError& error) {
    mesaj(u"Yazd|r|lamad|. Yaz|c|y| denetleyip yeniden deneyin.\n"_s + error.description(),
          MessageBoxStyle::critical, metin(u"HATA"_s));
}

}  // namespace kovanix
