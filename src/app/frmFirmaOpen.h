#pragma once

#include <QWidget>

#include <optional>

class QListWidget;
class QPushButton;

// "Otwórz firmę...": the firms in the databases folder, "Firma standardowa" first, the
// firms on a server opened here before, any other firm file chosen from the disk, or a firm
// on a server given by its address.
class frmFirmaOpen : public QWidget {
    Q_OBJECT
public:
    explicit frmFirmaOpen(QWidget *parent = nullptr);
    void refresh();

Q_SIGNALS:
    void chosen(const QString &path);

private:
    void choose(const QString &path);
    void chooseSelected();
    void chooseFile();
    void chooseServer();
    void forgetServer();
    void updateButtons();
    QListWidget *m_list = nullptr;
    QPushButton *m_forget = nullptr;
};

// Asks for the address of a firm on a PostgreSQL server, offering `offer`. The address in its
// usual form; nothing when the user gave up or the address cannot be one (which is said).
std::optional<QString> askServerAddress(const QString &prompt, const QString &title, const QString &offer);
