#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QString>

#include "desktop/keyguard.h"
#include "screens/openedscreen.h"
#include "widgets/printinfo.h"

namespace kovanix {

class ActiveResize;
class DrawnButton;
class PageView;
class Screen;
class TDBGrid;
class vkFrame;
class vkLabel;

/// Opens the preview of the grid's printed pages in front of a screen and returns at once; printing is done
/// from there. What stands around the rows is the grid's printInfo(). The rows are those that the grid shows
/// now: the preview doesn't follow it. A preview that is open already shows the new pages.
void printPreview(TDBGrid& grid, Screen& opener);

/// The screen that printPreview opens. It goes with its opener, which has the keyboard again when it is left.
class PrintPreview : public OpenedScreen {
    Q_OBJECT

public:
    PrintPreview();
    ~PrintPreview() override;

    void form_load() override;

    /// Shows what the grid shows now, from the first page on.
    void preview(TDBGrid& grid, Screen& opener);

    struct Ui {
        ActiveResize* ActiveResize1;
        vkFrame* vkFrame1;
        PageView* sayfalar;
        vkLabel* sayfa;  ///< which page is shown, in the title strip
        DrawnButton* yazdir;
        DrawnButton* kapat;
    } ui;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void giveFocusBack() override;

private:
    void layOut();
    void tellPage();
    bool turnByKey(int key);
    void print();

    void yazdir_click();
    void kapat_click();

    PrintInfo m_info;
    QPointer<Screen> m_opener;
    ScannedKeys m_scanned;
    QElapsedTimer m_sinceJob;
};

}  // namespace kovanix
