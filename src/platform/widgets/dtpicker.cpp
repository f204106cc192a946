#include "widgets/dtpicker.h"

#include "runtime/clock.h"
#include "values/dates.h"

namespace kovanix {

DTPicker::DTPicker(QWidget* parent) : QWidget(parent), m_value(Clock::now()) {}

DTPicker::~DTPicker() = default;

void DTPicker::setFormat(Format format) {
    m_format = format;
}

void DTPicker::setDate(QDate date) {
    if (date.isValid())
        m_value.setDate(date);
}

void DTPicker::setTime(QTime time) {
    if (time.isValid())
        m_value.setTime(time);
}

QString DTPicker::text() const {
    return m_format == Format::date ? dateText(date()) : timeText(time());
}

}  // namespace kovanix
