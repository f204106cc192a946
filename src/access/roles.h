#pragma once

#include <QString>

namespace kovanix {

/// What a user may do, as the column `yetki` of the users tells it.
enum class Role { manager, cashier, warehouse, other };

/// The role that a text stands for. Older files spell the manager's in many ways (Yönetici, YÖNETİCİ,
/// yonetici, YONETICI); blanks around it and letter case never count.
Role roleOf(const QString& yetki);

}  // namespace kovanix
