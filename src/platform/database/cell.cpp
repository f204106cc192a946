#include "database/cell.h"

#include <QDateTime>

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

QVariant momentText(const QDateTime& moment) {
    return moment.isValid() ? moment.toString(u"yyyy-MM-dd HH:mm:ss") : QVariant();
}

/// Whole numbers and moments in their one form; anything else as it is.
QVariant canonical(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::Bool:
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::Long:
        case QMetaType::LongLong:
            return QVariant(qint64{value.toLongLong()});
        case QMetaType::Float:
            return value.toDouble();
        case QMetaType::QDateTime:
            return momentText(value.toDateTime());
        case QMetaType::QDate:
            return momentText(value.toDate().isValid() ? value.toDate().startOfDay(Qt::UTC) : QDateTime());
        default:
            return value;
    }
}

}  // namespace

QVariant given(const QVariant& value) {
    return value.isNull() ? QVariant() : canonical(value);
}

QVariant stored(const QVariant& value) {
    if (value.typeId() == QMetaType::QString && value.toString().isNull())
        return u""_s;  // the drivers take a null text for a null value
    return value.isNull() ? QVariant() : canonical(value);
}

}  // namespace kovanix
