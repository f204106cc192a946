#pragma once

#include <memory>

#include "aktar/importplan.h"
#include "aktar/sheetfile.h"
#include "kit/toolwindow.h"

class QStackedWidget;

namespace kovanix::aktar {

class ExportPage;
class PreviewPage;
class ResultPage;

/// The window: two large choices, then the pages of the one that was taken.
class AktarWindow : public ToolWindow {
    Q_OBJECT

public:
    AktarWindow();
    ~AktarWindow() override;

    /// What the file dialogs lead to. @param overwrite  as the dialog has asked
    void exportTo(const QString& path, bool overwrite);
    void readFile(const QString& path, const QString& sheet = {});

protected:
    void workEnded() override;

private:
    enum class Page { choice, exporting, preview, result };

    QWidget* makeChoicePage();
    void goTo(Page page);
    void showButtons();
    void focusSafely();
    void showSheets();
    void goBack();
    void chooseTarget();
    void chooseFile();
    void checkFile();
    bool goesOnWithoutRefused();
    void store();

    Page m_page = Page::choice;
    QStackedWidget* m_pages;
    ExportPage* m_exportPage;
    PreviewPage* m_previewPage;
    ResultPage* m_resultPage;
    DrawnButton* m_back;
    DrawnButton* m_choose;
    DrawnButton* m_check;
    DrawnButton* m_store;
    QString m_path;    // of the file that was read
    QString m_folder;  // where files were chosen last
    std::shared_ptr<const SheetFile> m_file;
    std::shared_ptr<const ImportPlan> m_plan;
    bool m_stored = false;
};

}  // namespace kovanix::aktar
