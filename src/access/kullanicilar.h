#pragma once

#include "screens/listscreen.h"
#include "ui_kullanicilar.h"
#include "widgets/timer.h"

namespace kovanix {

class PaintedHint;

/// The users: a list to look at, and the manager's way to add, change and delete one. It is also where the
/// login sends a shop that has none yet.
///
/// Each of the three actions asks for the role, notes itself in the configuration, and then goes on or hands
/// over to the password prompt, which carries it out by the procedures here.
class kullanicilar : public ListScreen {
    Q_OBJECT

public:
    kullanicilar();
    ~kullanicilar() override;

    /// Reads the users anew, too: as often as it is run.
    void form_load() override;

    // The actions behind the gate.

    /// Opens the fields, emptied, for a new user. The first one of a shop is a manager.
    void add();
    /// Opens the fields for the list's current row, or says that none is picked.
    /// @param caption  of the frame: its mode
    void edit(const QString& caption);
    /// Deletes the user of `secilikullanici`, unless it is the last manager; asks first.
    void remove();

    Ui::kullanicilar ui;

    Timer yenile;  ///< stands still; a tick reads the users anew once

private:
    enum class Passage { open, prompted, unknownPassword };

    void connectControls();
    void labelFields();

    void kisiekleme3_click();
    void duzenle3_click();
    void kisisil3_click();
    void kaydet_click();
    void vazgec_click();
    void kapat_click();
    void Check1_click();
    void yenile_tick();

    void tell(const QString& key) const;
    Passage passGate(int action);
    bool isNothingPickedToDelete() const;
    bool isLastManager() const;
    void askAndDelete();
    void openFields(const QString& caption, const QString& record);
    void chooseRole(const QString& yetki);
    void storeNew() const;
    void storeChanges() const;

    PaintedHint* m_passwordNote = nullptr;
};

}  // namespace kovanix
