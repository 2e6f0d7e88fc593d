#pragma once

#include "print/PrintEngine.h"

#include <QList>
#include <QPicture>
#include <QWidget>

class QLabel;
class QScrollArea;
class PreviewPage;

// "Podgląd wydruku": the pages of a job as they will print, one at a time, with page
// buttons, zoom, printing of the same job and saving it as a PDF file.
class frmDrukPreview : public QWidget {
    Q_OBJECT
public:
    frmDrukPreview(const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF pageTwips,
                   QWidget *parent = nullptr);

    int currentPage() const { return m_current; }
    int pageCount() const { return int(m_pages.size()); }
    void showPage(int index);
    void setZoom(qreal zoom);

private:
    void print();
    void save();
    void updateCounter();

    PrintEngine::Job m_job;
    QList<QPicture> m_pages;
    QSizeF m_pageTwips;
    int m_current = 0;
    QScrollArea *m_scroll = nullptr;
    PreviewPage *m_page = nullptr;
    QLabel *m_counter = nullptr;
};
