#include "access/firstscreen.h"

#include "access/frmLogin.h"
#include "runtime/screenregistry.h"

namespace kovanix {

void showFirstScreen() {
    auto& login = screen<frmLogin>();
    login.show();
    login.raise();
    login.activateWindow();
    login.FrmloginBaglantiSonrasi();
}

}  // namespace kovanix
