#pragma once

#include <QFileDialog>
#include <QList>
#include <QString>
#include <functional>

class QLineEdit;
class QTreeView;

namespace kovanix {

class ActiveResize;
class DrawnButton;
class FittedLabel;

/// What is to be chosen, and how the question begins.
struct FileQuestion {
    enum class What { fileToRead, fileToWrite, folder };

    What what = What::fileToRead;
    QString title;
    QString folder;       ///< where it begins
    QStringList kinds{};  ///< "Tablolar (*.csv *.xlsx)"; none: all files
    QString name{};       ///< proposed, of a file to write
    QString ending{};     ///< that a name gets which has none, without a dot
};

/// A folder that can be gone to with one touch.
struct Place {
    QString caption;
    QString folder;

    bool operator==(const Place&) const = default;
};

/// The user's own folders, as far as they are there, and then what is plugged in.
/// @param mounts  the folders at which disks lie in the tree
QList<Place> placesToGo(const QStringList& mounts);

/// The dialog that asks for a file or folder, in the till's look: rows and buttons for a thumb, every word
/// Turkish on a machine without the toolkit's translations, too. Files can be neither renamed nor deleted
/// here.
class FileDialog : public QFileDialog {
    Q_OBJECT

public:
    FileDialog(const FileQuestion& question, QWidget* above);

protected:
    /// Takes what is chosen, and asks ahead of writing over a file and of making a folder that isn't there.
    void accept() override;

private:
    bool isRefused(const QString& path);
    void keepParts(const FileQuestion& question);
    void layOut(const FileQuestion& question);
    QWidget* makePath();
    QWidget* makePlaces();
    QWidget* makeName();
    QWidget* makeButtons();
    DrawnButton* makeButton(const QString& name, const QString& caption, const QString& icon);
    void goTo(const QString& folder);
    void tellFolder();
    void scaleList();

    FileQuestion::What m_what;
    ActiveResize* m_resize;
    QTreeView* m_list;
    QLineEdit* m_name;
    FittedLabel* m_path;
    DrawnButton* m_up;
    DrawnButton* m_choose;
};

/// Asks for a file or folder in a dialog over a window, and returns at once.
/// @param chosen  is given the path; not called where nothing is chosen
void askForFile(QWidget& above, const FileQuestion& question,
                std::function<void(const QString& path)> chosen);

}  // namespace kovanix
