#pragma once

#include <QString>
#include <QStringView>

namespace kovanix::aktar {

// What keeps a spreadsheet that opens a text file by a double click from taking a text for something else,
// and how it comes off again.

/// A text with a guard where it needs one: a tab ahead of what would be taken for a number or a date and lose
/// digits by that ("8690000000001", "0532…", "1/2"), an apostrophe ahead of what would be a formula
/// ("=…", "+…", "-…", "@…").
QString guarded(const QString& text);

/// The text without such a guard; also without the formula that other programs write around digits
/// (="8690000000001").
QString unguarded(const QString& text);

}  // namespace kovanix::aktar
