#include <QSqlDriverPlugin>

#include "driver.h"

namespace kovanix::sqlcipher {

/// Gives the toolkit the driver "QSQLCIPHER".
class Plugin : public QSqlDriverPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QSqlDriverFactoryInterface_iid FILE "sqlcipher.json")

public:
    using QSqlDriverPlugin::QSqlDriverPlugin;

    QSqlDriver* create(const QString& key) override {
        // The toolkit owns what a driver plugin makes.
        return key == QLatin1StringView("QSQLCIPHER") ? new Driver : nullptr;
    }
};

}  // namespace kovanix::sqlcipher

#include "plugin.moc"
