#include "app/failuretext.h"

#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

QString happened(int number) {
    switch (number) {
        case RuntimeError::typeMismatch:
            return u"Sayı beklenen bir yerde sayı yok."_s;
        case RuntimeError::overflow:
            return u"Bir sayı çok büyük."_s;
        case RuntimeError::outOfRange:
            return u"Olmayan bir satır ya da sütun istendi."_s;
        case RuntimeError::printerError:
            return u"Yazıcı bir işi yapamadı."_s;
        case RuntimeError::databaseFailure:
            return u"Veritabanı bir işi yapamadı."_s;
        default:
            return u"Bir iş tamamlanamadı."_s;
    }
}

}  // namespace

QString uncaughtFailureText(const RuntimeError& error) {
    return u"Beklenmeyen bir hata oldu, program kapanacak. "_s + happened(error.number()) +
           u"\n\nKaydedilen satışlar güvende. Kaydedilmemiş fiş varsa yeniden girin.\n\nDestek için: "_s +
           QString::number(error.number()) + u": "_s + error.description();
}

}  // namespace kovanix
