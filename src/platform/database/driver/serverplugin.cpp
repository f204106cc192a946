#include <QSqlDriverPlugin>

#include "serverdriver.h"

namespace kovanix::engine {

/// Gives the toolkit the driver "KOVANIXPSQL".
class ServerPlugin : public QSqlDriverPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QSqlDriverFactoryInterface_iid FILE "plugin.json")

public:
    using QSqlDriverPlugin::QSqlDriverPlugin;

    QSqlDriver* create(const QString& key) override {
        // The toolkit owns what a driver plugin makes.
        return key == QLatin1StringView("KOVANIXPSQL") ? new ServerDriver : nullptr;
    }
};

}  // namespace kovanix::engine

#include "serverplugin.moc"
