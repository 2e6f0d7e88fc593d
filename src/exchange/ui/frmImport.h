#pragma once

#include <QWidget>

#include <functional>

class QCheckBox;
class QListWidget;

// "Import z pliku": the payments another program of the suite left in its export file,
// one list entry per block; a chosen block goes into a new document of the entry window,
// and blocks can be removed from the file.
class frmImport : public QWidget {
    Q_OBJECT
public:
    // Gives the entry window to fill, opening one for a new document when none is open;
    // null when it cannot.
    using EntryWindow = std::function<QWidget *()>;

    explicit frmImport(EntryWindow entryWindow, QWidget *parent = nullptr);

    // The export file in use, empty before one was chosen.
    QString file() const { return m_file; }

    // cmdImport, also run once when the window opens.
    void chooseFile();
    // cmdpokaz (and a double click): the chosen block into the entry window.
    void takeOver();
    // cmdusun: the chosen block out of the file, without a question.
    void removeChosen();

private:
    void ListBlocks();
    bool TakeOverBlock(int index);
    void RemoveBlock(int index);

    EntryWindow m_entryWindow;
    QString m_file;
    QListWidget *m_lstdok = nullptr;
    QCheckBox *m_chkusun = nullptr;
};
