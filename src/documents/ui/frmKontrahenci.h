#pragma once

#include "documents/Contractor.h"
#include "WindowFields.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

// "Kontrahenci": the dictionary of payment recipients. Kept from the main menu, and
// opened by other windows (document entry, scheduled payments, the browse filter) to
// choose a contractor for them.
//
// Choosing: the window that wants a contractor calls openForChoosing(this, take). When
// the user chooses (cmdwybierz or a double click on the list), `take` receives the
// contractor shown and the dictionary closes. Choosing beeps and does nothing while an
// edit is unsaved, while no contractor is shown, or when no window (or one since closed)
// asked.
class frmKontrahenci : public QWidget {
    Q_OBJECT
public:
    using Take = std::function<void(const Contractor &)>;

    explicit frmKontrahenci(QWidget *parent = nullptr);

    // Shows the dictionary (in the main window's work area when `opener` stands there;
    // an open dictionary is brought forward) and makes `opener` the window it chooses for.
    static frmKontrahenci *openForChoosing(QWidget *opener, Take take);
    // Makes `opener` the window that receives the chosen contractor; nullptr for none.
    void chooseFor(QWidget *opener, Take take);

    // Shows contractor `id` in the fields and the list; false (with a beep) while an edit
    // is in progress or when there is no such contractor.
    bool showContractor(qint32 id);
    qint32 shownId() const { return m_shownId; }
    bool isEditing() const { return m_editing; }

private:
    void fillList();
    void itemChosen(QListWidgetItem *item);
    void showFields(const Contractor &c);
    void setEditing(bool on);
    void startNew();
    void startEdit();
    void save();
    void cancel();
    void remove();
    void choose();
    void openSearch();

    QListWidget *m_list = nullptr;
    std::optional<WindowFields::RecipientFields> m_recipient;
    QList<QPushButton *> m_browseButtons; // usable while no edit is in progress
    QPushButton *m_ok = nullptr;
    QPushButton *m_anuluj = nullptr;

    qint32 m_shownId = 0;
    qint32 m_editedId = 0; // the contractor being edited; 0 for a new one
    bool m_editing = false;
    bool m_filling = false;
    QPointer<QWidget> m_opener;
    Take m_take;
};
