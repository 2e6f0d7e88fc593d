#pragma once

#include <QWidget>

class QListWidget;

// "Otwórz firmę...": the firms in the databases folder, "Firma standardowa" first, or any
// other firm file chosen from the disk.
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
    QListWidget *m_list = nullptr;
};
