#pragma once

#include <QString>

namespace kovanix {

/// One key at a time out of and into a profile file: `key=value` lines below `[section]` headings, in
/// Windows-1254.
///
/// Sections and keys are found without regard to case; the first of two equal ones counts. A heading may lack
/// its closing bracket. A line that starts with ";" is a comment. Everything else in the file (other lines,
/// comments, order, line ends, the bytes of other values) stays as it is.
class ProfileFile {
public:
    /// The longest value that is read, in characters; a longer one comes back cut.
    static constexpr int longestValue = 254;

    /// The value of a key, without surrounding blanks and one pair of surrounding quotes; empty when the
    /// file, the section or the key is absent or can't be read.
    static QString value(const QString& path, const QString& section, const QString& key);

    /// Writes a value, up to its first line break or NUL. Makes the file, the section and the key where they
    /// are missing (not the folder). A name that a line can't hold (empty, "=" or a line break in a key) is
    /// refused.
    ///
    /// The file is replaced in one step, so that a reader sees the old one or the new one; links, owner and
    /// permissions are kept, and a new file is readable by its owner only. Where the folder takes no new
    /// file, or the owner can't be kept, the file is written in place instead.
    /// @return whether the file now holds the value.
    static bool setValue(const QString& path, const QString& section, const QString& key,
                         const QString& value);
};

}  // namespace kovanix
