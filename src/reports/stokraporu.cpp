#include "reports/stokraporu.h"

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/waitcursor.h"
#include "reports/rule.h"
#include "runtime/clock.h"
#include "sales/modSatis.h"
#include "screens/clicks.h"
#include "values/dates.h"
#include "values/numbers.h"
#include "widgets/look.h"

namespace kovanix {

using namespace Qt::StringLiterals;

stokraporu::stokraporu() {
    ui.setupUi(this);
    ui.cizgiLayout->addWidget(new Rule);
    applyTextRoles(*this);
    clicks(this, {{ui.vkCommand3, &stokraporu::vkCommand3_click}});
    standInFrame(*ui.vkFrame1);
    setCloseButton(*ui.vkCommand3);
}

stokraporu::~stokraporu() = default;

void stokraporu::form_load() {
    ekrandonat(*this);
    const QDateTime counted = Clock::now();
    double cost = 0;
    double sale = 0;
    int count = 0;
    // Where a file breaks off, what has been added so far is shown.
    const ReadEnd end = readReport([&] {
        const WaitCursor reading;  // a large catalogue takes a moment
        cost = sale = 0;
        stokdegeri(cost, sale, count);
    });
    if (end == ReadEnd::nothing)
        return;
    const auto lira = [](double value) { return format(value, u"#,##0.00"); };
    ui.urunsayisi->setText(format(count, u"0"));
    ui.stokgelis->setText(lira(cost));
    ui.stoksatis->setText(lira(sale));
    ui.stokkar->setText(lira(sale - cost));
    ui.stokkar->setInk(sale < cost ? ColorRole::danger : ColorRole::success);
    ui.vkFrame1->setTitleNote(dateText(counted.date()) + u' ' + timeText(counted.time()).first(5));
}

void stokraporu::vkCommand3_click() {
    leave();
}

}  // namespace kovanix
