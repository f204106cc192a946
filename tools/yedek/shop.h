#pragma once

#include <QString>
#include <functional>

namespace kovanix::yedek {

/// A shop as its configuration tells of it, at the moment of asking.
struct Shop {
    QString folder;  ///< the application folder
    QString
        data;  ///< path of its database file, or of its server's pointer, links followed; it may be missing
    QString password;
    QString config;  ///< path of its configuration; it may be missing
    QString id;      ///< tells its copies from those of other shops

    /// The shop of the application folder.
    static Shop current();

    /// Whether its data lie on a database server.
    bool isOnServer() const;
};

/// Makes a file of the shop as it stands at one moment, while tills sell, under the shop's password.
/// @param target  there is none yet
/// @param progress  told how much is done of how much; may throw
/// @throws RuntimeError
void copyShopData(const Shop& shop, const QString& target,
                  const std::function<void(qint64 done, qint64 total)>& progress);

}  // namespace kovanix::yedek
