#include "screens/recordscreen.h"

#include <QLineEdit>
#include <algorithm>

#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "desktop/focus.h"
#include "desktop/folders.h"
#include "desktop/messagebox.h"
#include "runtime/attempt.h"
#include "screens/boxes.h"
#include "screens/entryframe.h"
#include "widgets/adodc.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;

RecordScreen::RecordScreen(const ListTraits& list, const RecordTraits& records)
    : ListScreen(list), m_records(records) {}

RecordScreen::~RecordScreen() = default;

void RecordScreen::setUpRecords(const RecordControls& controls) {
    m_controls = controls;
    // A row that a filter hides must not be deleted in place of the one that is marked then.
    connect(&grid(), &TDBGrid::filterChange, this, [this] {
        if (data().recordset().recordCount() > 0 && cell(0) != selected().text())
            selected().setText({});
    });
}

void RecordScreen::openToAdd() {
    m_controls.frame->setMode(u"EKLE"_s, m_records.newRecord);
    m_controls.frame->clearFields();
    grid().setEditedRow({});
    m_controls.frame->show();
    giveFocus(*m_controls.firstField);
}

bool RecordScreen::takeSelectedRow() {
    const RowSet& rows = data().recordset();
    const bool nothingSelected = selected().text().isEmpty();
    const bool nothingToSelect = rows.recordCount() == 0;
    if (nothingSelected || nothingToSelect) {
        // An open frame is turned all the same, as required.
        m_controls.frame->setMode(u"D!ZENLE"_s);
        tell(nothingSelected ? m_records.nothingToEdit : m_records.emptyList);
        return false;
    }
    if (!isSelectedRowCurrent()) {
        tell(m_records.nothingToEdit);
        return false;
    }
    if (!baglantihazir()) {
        tellNoDatabase();
        return false;
    }
    if (const auto failure = attempt([&] { data().refreshRow(rows.identity(rows.current())); })) {
        tellDatabaseFailure(*failure);
        return false;
    }
    m_controls.frame->setMode(u"D!ZENLE"_s);
    return true;
}

void RecordScreen::tell(const QString& notice) {
    uyarimesaj(notice, MessageBoxStyle::ok);
    giveFocus(grid());
}

QString RecordScreen::cell(int column) const {
    return grid().column(column).value();
}

void RecordScreen::openToEdit(const QString& name, QWidget& focus) {
    const RowSet& rows = data().recordset();
    m_controls.frame->setMode(m_controls.frame->caption(), name);
    m_controls.frame->show();
    grid().setEditedRow(rows.identity(rows.current()));
    giveFocus(focus);
}

bool RecordScreen::store(const std::function<void()>& statements) {
    const auto failure = attempt([&] { storeTogether(statements); });
    kayitkapat();
    if (failure)
        tellDatabaseFailure(*failure);
    return !failure;
}

void RecordScreen::goOnAdding() {
    m_controls.frame->clearFields();
    grid().setEditedRow({});
    showRows();
    giveFocus(grid());
    giveFocus(*m_controls.firstField);
    m_controls.frame->setMode(u"EKLE"_s, m_records.newRecord);
}

void RecordScreen::closeFrame() {
    m_controls.frame->setMode(u"EKLE"_s);
    // Else the keyboard would be left on whichever button comes next.
    if (m_controls.frame->isAncestorOf(focusWidget()))
        giveFocus(grid());
    m_controls.frame->hide();
    grid().setEditedRow({});
}

void RecordScreen::deleteSelected() {
    const QString number = selected().text();
    if (number.isEmpty() || !isSelectedRowCurrent()) {
        tell(m_records.nothingToDelete);
        return;
    }
    showCurrentRow();
    const int style = MessageBoxStyle::yesNo | MessageBoxStyle::warning;
    const int answer = mesajsor(m_records.deleteQuestion, style, metin(u"MSG_SILME_ONAY_BASLIK"_s));
    giveFocus(grid());  // the Enter of the next scan must not press the button again
    if (answer != MessageBoxAnswer::yes)
        return;
    if (!baglantihazir()) {
        tellNoDatabase();
        return;
    }
    // One look-up finds the row, so that these have nothing to read.
    m_controls.deletionData->setConnectionString(baglantiyazisi());
    m_controls.deletionData->setRecordSource(listTraits().source);
    attempt([this] { m_controls.deletionGrid->setDataSource(*m_controls.deletionData); });
    bool deleted = false;
    if (const auto failure = attempt([&] { deleted = deleteRow(number); })) {
        tellDatabaseFailure(*failure);
        return;
    }
    if (deleted) {
        uyarimesaj(m_records.deleted, MessageBoxStyle::ok);
        const qsizetype place = data().recordset().current();
        showRows();
        // The list stays where it was.
        if (const qsizetype rows = data().recordset().recordCount(); rows > 0 && place >= 0)
            data().setCurrent(std::min(place, rows - 1));
        giveFocus(grid());
    }
    selected().setText({});
}

/// @return whether there was such a row. @throws RuntimeError
bool RecordScreen::deleteRow(const QString& number) {
    Recordset rows;
    rows.open(u"select * from "_s + listTraits().source, baglanti());
    if (!rows.find(u"no like '" + sqllike(number) + u'\'') || nullmetin(rows.field(u"no"_s)) != number)
        return false;
    storeTogether([&] {
        rows.deleteCurrent();
        rows.update();
    });
    return true;
}

void RecordScreen::exportList() {
    attempt([this] { grid().exportToFile(drivePath(m_records.exportPath), false); });
    tell(m_records.exported);
}

}  // namespace kovanix
