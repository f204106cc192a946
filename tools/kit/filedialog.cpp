#include "kit/filedialog.h"

#include <QComboBox>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/keyguard.h"
#include "desktop/messagebox.h"
#include "desktop/windowplace.h"
#include "kit/filerows.h"
#include "kit/listlook.h"
#include "widgets/activeresize.h"
#include "widgets/dialogframe.h"
#include "widgets/drawnbutton.h"
#include "widgets/fittedlabel.h"
#include "widgets/gridcell.h"
#include "widgets/paintedhint.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

// At the design size. What is touched keeps 44 pixels on a display of 800×600.
constexpr QSize design(960, 700);
constexpr int margin = 16;
constexpr int gap = 8;
constexpr int touchHeight = 60;
constexpr int rowHeight = 48;
constexpr int placesWidth = 190;
constexpr int buttonWidth = 180;
constexpr int iconSide = 24;

constexpr int smallestTouch = 44;  // pixels
constexpr qsizetype mostPlaces = 5;

bool isFolder(FileQuestion::What what) {
    return what == FileQuestion::What::folder;
}

QStringList mountedFolders() {
    QStringList folders;
    const QList<QStorageInfo> disks = QStorageInfo::mountedVolumes();
    for (const QStorageInfo& disk : disks) {
        if (disk.isReady())
            folders << disk.rootPath();
    }
    return folders;
}

}  // namespace

QList<Place> placesToGo(const QStringList& mounts) {
    QList<Place> found;
    const auto add = [&found](const QString& caption, QStandardPaths::StandardLocation location) {
        const QString folder = QStandardPaths::writableLocation(location);
        const bool isKnown = std::ranges::any_of(found, [&](const Place& at) { return at.folder == folder; });
        if (!isKnown && QFileInfo(folder).isDir() && folder != QDir::homePath())
            found.append({caption, folder});
    };
    add(u"Belgeler"_s, QStandardPaths::DocumentsLocation);
    add(u"İndirilenler"_s, QStandardPaths::DownloadLocation);
    add(u"Masaüstü"_s, QStandardPaths::DesktopLocation);
    if (found.isEmpty())
        found.append({u"Ev klasörü"_s, QDir::homePath()});
    for (const QString& mount : mounts) {
        if (mount.startsWith(u"/media/") || mount.startsWith(u"/run/media/"))
            found.append({u"USB: "_s + QFileInfo(mount).fileName(), mount});
    }
    return found.first(std::min(found.size(), mostPlaces));
}

FileDialog::FileDialog(const FileQuestion& question, QWidget* above)
    : QFileDialog(above, question.title, question.folder),
      m_what(question.what),
      m_resize(new ActiveResize),
      m_path(new FittedLabel) {
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setOptions(DontUseNativeDialog | DontUseCustomDirectoryIcons | DontConfirmOverwrite | ReadOnly);
    setOption(ShowDirsOnly, isFolder(m_what));
    setAcceptMode(m_what == FileQuestion::What::fileToWrite ? AcceptSave : AcceptOpen);
    setFileMode(isFolder(m_what)                            ? Directory
                : m_what == FileQuestion::What::fileToWrite ? AnyFile
                                                            : ExistingFile);
    setViewMode(Detail);
    if (!question.kinds.isEmpty())
        setNameFilters(question.kinds);
    if (m_what == FileQuestion::What::fileToWrite)
        setDefaultSuffix(question.ending);
    setProxyModel(new FileColumns(this));
    keepParts(question);
    layOut(question);
    if (!question.name.isEmpty())
        selectFile(question.name);

    auto* const files = qobject_cast<QFileSystemModel*>(proxyModel()->sourceModel());
    connect(files, &QFileSystemModel::rootPathChanged, this, &FileDialog::tellFolder);
    connect(m_resize, &ActiveResize::resized, this, &FileDialog::scaleList);
    const auto showChoosable = [this] {
        m_choose->setEnabled(isFolder(m_what) || !m_name->text().isEmpty());
        if (!m_name->hasFocus())
            m_name->home(false);  // of a name that was touched in the list, the beginning is seen
    };
    connect(m_name, &QLineEdit::textChanged, this, showChoosable);
    showChoosable();
    tellFolder();
    const QWindow* const owner = above ? above->window()->windowHandle() : nullptr;
    resize((QSizeF(design) * screenScale()).toSize().boundedTo(screenArea(owner).size()));
    move(placeFor(size(), owner).topLeft());
}

/// Of the toolkit's own controls, which go by the names that it gives them, the list, the field and the kinds
/// stay; the others have neither its words nor a size for a thumb.
void FileDialog::keepParts(const FileQuestion& question) {
    const auto parts = findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    delete layout();
    auto* const parked = new QWidget(this);
    parked->hide();
    for (QWidget* const part : parts)
        part->setParent(parked);
    m_list = findChild<QTreeView*>(u"treeView"_s);
    m_name = findChild<QLineEdit*>(u"fileNameEdit"_s);
    m_list->setAccessibleName(u"Klasörün içindekiler"_s);
    m_list->setProperty("textRole", u"text"_s);
    m_list->setItemDelegate(new FileRowPainter(m_list));
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setIndentation(0);
    m_list->setUniformRowHeights(true);
    m_list->setContextMenuPolicy(Qt::NoContextMenu);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // widths don't jump
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setColumnHidden(FileColumns::kind, true);
    QHeaderView& heading = *m_list->header();
    heading.setContextMenuPolicy(Qt::NoContextMenu);
    heading.setSectionsMovable(false);
    heading.setMinimumSectionSize(1);
    heading.setStretchLastSection(false);
    heading.setSectionResizeMode(QHeaderView::Fixed);
    heading.setSectionResizeMode(FileColumns::name, QHeaderView::Stretch);
    m_list->sortByColumn(FileColumns::name, Qt::AscendingOrder);
    m_name->setAccessibleName(isFolder(question.what) ? u"Klasör adı"_s : u"Dosya adı"_s);
    m_name->setProperty("textRole", u"field"_s);
    m_name->setMinimumHeight(touchHeight);
    m_name->setCompleter(nullptr);  // its rows are too low to be touched
}

void FileDialog::layOut(const FileQuestion& question) {
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    m_resize->setDesignSize(design);
    whole->addWidget(m_resize);
    auto* const inside = new QVBoxLayout(m_resize);
    inside->setContentsMargins({});
    auto* const frame = new DialogFrame(m_resize);
    frame->setProperty("textRole", u"title"_s);
    frame->setCaption(question.title);
    inside->addWidget(frame);

    auto* const rows = new QVBoxLayout(frame);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(gap);
    auto* const middle = new QHBoxLayout;
    middle->setSpacing(gap);
    QWidget* const path = makePath();
    middle->addWidget(makePlaces());
    middle->addWidget(m_list, 1);
    rows->addWidget(path);
    rows->addLayout(middle, 1);
    rows->addWidget(makeName());
    rows->addWidget(makeButtons());
    m_list->show();
    applyTextRoles(*this);

    QWidgetList order{m_up};
    order << path->parentWidget()->findChildren<QWidget*>(QRegularExpression(uR"(^yer\d)"_s));
    order << m_list << m_name << findChild<QComboBox*>(u"fileTypeCombo"_s) << m_choose
          << findChild<DrawnButton*>(u"vazgec"_s);
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

DrawnButton* FileDialog::makeButton(const QString& name, const QString& caption, const QString& icon) {
    auto* const button = new vkCommand;
    button->setObjectName(name);
    button->setCaption(caption);
    button->setIconFile(icon);
    button->setIconSize({iconSide, iconSide});
    button->setIconPlace(DrawnButton::IconPlace::beside);
    button->setLook(FaceRole::light);
    button->setProperty("textRole", u"choice"_s);
    button->setFixedHeight(touchHeight);
    button->installEventFilter(new UnmeantKeys(button));
    return button;
}

QWidget* FileDialog::makePath() {
    auto* const all = new QWidget;
    auto* const row = new QHBoxLayout(all);
    row->setContentsMargins({});
    row->setSpacing(margin);
    m_up = makeButton(u"ustklasor"_s, u"Üst klasör"_s, u":/icons/back.svg"_s);
    m_up->setFixedWidth(placesWidth);
    connect(m_up, &DrawnButton::clicked, this, [this] {
        QDir folder = directory();
        if (folder.cdUp())
            goTo(folder.absolutePath());
    });
    m_path->setObjectName(u"klasor"_s);
    m_path->setProperty("textRole", u"section"_s);
    m_path->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    row->addWidget(m_up);
    row->addWidget(m_path, 1);
    return all;
}

QWidget* FileDialog::makePlaces() {
    auto* const all = new QWidget;
    all->setFixedWidth(placesWidth);
    auto* const column = new QVBoxLayout(all);
    column->setContentsMargins({});
    column->setSpacing(gap);
    const QList<Place> places = placesToGo(mountedFolders());
    for (const Place& place : places) {
        DrawnButton* const button =
            makeButton(u"yer%1"_s.arg(column->count()), place.caption, u":/icons/folder.svg"_s);
        button->setIconAtEdge(true);
        button->setCaptionIsName(true);
        connect(button, &DrawnButton::clicked, this, [this, folder = place.folder] { goTo(folder); });
        column->addWidget(button);
    }
    column->addStretch();
    return all;
}

QWidget* FileDialog::makeName() {
    auto* const all = new QWidget;
    auto* const row = new QHBoxLayout(all);
    row->setContentsMargins({});
    row->setSpacing(margin);
    auto* const label = new QLabel(m_name->accessibleName());
    label->setProperty("textRole", u"label"_s);
    row->addWidget(label);
    row->addWidget(m_name, 3);
    m_name->show();
    auto* const kinds = findChild<QComboBox*>(u"fileTypeCombo"_s);
    if (kinds->count() > 1) {
        kinds->setAccessibleName(u"Dosya türü"_s);
        kinds->setProperty("textRole", u"text"_s);
        kinds->setMinimumHeight(touchHeight);
        kinds->setItemDelegate(new QStyledItemDelegate(kinds));  // a menu's own takes no height from its rows
        kinds->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        row->addWidget(kinds, 4);
        kinds->show();
    }
    return all;
}

QWidget* FileDialog::makeButtons() {
    auto* const all = new QWidget;
    auto* const row = new QHBoxLayout(all);
    row->setContentsMargins({});
    row->setSpacing(margin);
    row->addWidget(
        new PaintedHint({}, isFolder(m_what) ? u"Bir klasöre bir kez dokunun: seçilir; iki kez: açılır."_s
                                             : u"Bir klasöre iki kez dokunun: açılır."_s),
        1);
    m_choose = m_what == FileQuestion::What::fileToWrite
                   ? makeButton(u"sec"_s, u"Kaydet"_s, u":/icons/save.svg"_s)
                   : makeButton(u"sec"_s, isFolder(m_what) ? u"Seç"_s : u"Aç"_s, u":/icons/check.svg"_s);
    m_choose->setLook(FaceRole::accent);
    connect(m_choose, &DrawnButton::clicked, this, &FileDialog::accept);
    DrawnButton* const leave = makeButton(u"vazgec"_s, u"Vazgeç"_s, u":/icons/x.svg"_s);
    leave->setLook(FaceRole::slate);
    connect(leave, &DrawnButton::clicked, this, &FileDialog::reject);
    for (DrawnButton* const button : {m_choose, leave}) {
        button->setFixedWidth(buttonWidth);
        row->addWidget(button);
    }
    return all;
}

void FileDialog::goTo(const QString& folder) {
    setDirectory(folder);
    if (m_what != FileQuestion::What::fileToWrite)
        m_name->clear();
}

void FileDialog::tellFolder() {
    m_path->setText(QDir::toNativeSeparators(directory().absolutePath()));
    m_up->setEnabled(!directory().isRoot());
}

void FileDialog::scaleList() {
    const double scale = m_resize->scale();
    const int row = std::max(smallestTouch, qRound(rowHeight * scale));
    static_cast<FileRowPainter*>(m_list->itemDelegate())->setRowHeight(row);
    dressHeading(*m_list->header(), scale, row);
    m_list->verticalScrollBar()->setStyleSheet(scrollBarStyle(scale));
    QFont chosen = m_list->font();
    chosen.setWeight(QFont::Medium);
    const QFontMetrics letters(chosen);
    const auto widthOf = [&](const QString& longest) {
        return letters.horizontalAdvance(longest) + 2 * qRound(cellPadding * scale) + 2;
    };
    m_list->header()->resizeSection(FileColumns::size, widthOf(u"1.023,9 MB"_s));
    m_list->header()->resizeSection(FileColumns::changed, widthOf(u"00.00.0000 00:00"_s));
    m_list->doItemsLayout();
    auto* const kinds = findChild<QComboBox*>(u"fileTypeCombo"_s);
    for (int kind = 0; kind < kinds->count(); ++kind)
        kinds->setItemData(kind, QSize(0, row), Qt::SizeHintRole);
}

bool FileDialog::isRefused(const QString& path) {
    const QFileInfo file(path);
    const QString shown = QDir::toNativeSeparators(path);
    const auto tell = [this](const QString& words) {
        messageBox(words, MessageBoxStyle::warning, windowTitle());
        return true;
    };
    const auto isNo = [this](const QString& question) {
        return messageBox(
                   question,
                   MessageBoxStyle::yesNo | MessageBoxStyle::warning | MessageBoxStyle::secondIsDefault,
                   windowTitle()) != MessageBoxAnswer::yes;
    };
    if (file.isDir())
        return false;  // a file's dialog goes into it
    switch (m_what) {
        case FileQuestion::What::fileToRead:
            return !file.exists() && tell(u"Böyle bir dosya yok:\n"_s + shown);
        case FileQuestion::What::fileToWrite:
            return file.exists() && isNo(u"Bu dosya var. Üzerine yazılsın mı?\n"_s + shown);
        case FileQuestion::What::folder:
            break;
    }
    if (file.exists())
        return tell(u"Bu bir klasör değil:\n"_s + shown);
    if (isNo(u"Böyle bir klasör yok. Açılsın mı?\n"_s + shown))
        return true;
    return !QDir().mkpath(path) && tell(u"Klasör açılamadı:\n"_s + shown);
}

void FileDialog::accept() {
    const QStringList chosen = selectedFiles();
    if (!chosen.isEmpty() && !isRefused(chosen.first()))
        QFileDialog::accept();
}

void askForFile(QWidget& above, const FileQuestion& question,
                std::function<void(const QString& path)> chosen) {
    auto* const dialog = new FileDialog(question, &above);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::fileSelected, &above, std::move(chosen));
    dialog->open();
}

}  // namespace kovanix
