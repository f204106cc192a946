#include <QSqlDriverPlugin>

#include "driver.h"

namespace kovanix::engine {

/// Gives the toolkit the driver "QSQLCIPHER" or "KOVANIXSQLITE", as the build says.
class Plugin : public QSqlDriverPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QSqlDriverFactoryInterface_iid FILE "plugin.json")

public:
    using QSqlDriverPlugin::QSqlDriverPlugin;

    QSqlDriver* create(const QString& key) override {
        // The toolkit owns what a driver plugin makes.
        return key == QLatin1StringView(encrypts ? "QSQLCIPHER" : "KOVANIXSQLITE") ? new Driver : nullptr;
    }
};

}  // namespace kovanix::engine

#include "plugin.moc"
