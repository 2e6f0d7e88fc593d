#include "frmDrukPreview.h"

#include "Dialogs.h"
#include "Messages.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>
#include <QVBoxLayout>

// One page: white paper with the recorded picture, scaled from twips to the screen.
class PreviewPage : public QWidget {
public:
    PreviewPage(QSizeF pageTwips, QWidget *parent) : QWidget(parent), m_pageTwips(pageTwips) { setZoom(0.75); }

    void setPicture(const QPicture *picture)
    {
        m_picture = picture;
        update();
    }
    void setZoom(qreal zoom)
    {
        m_zoom = zoom;
        setFixedSize(QSizeF(m_pageTwips * scale()).toSize() + QSize(12, 12));
        update();
    }
    qreal zoom() const { return m_zoom; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.fillRect(rect(), palette().window());
        const QRectF paper(4, 4, m_pageTwips.width() * scale(), m_pageTwips.height() * scale());
        p.fillRect(paper.translated(4, 4), QColor(0, 0, 0, 60));
        p.fillRect(paper, Qt::white);
        if (!m_picture)
            return;
        p.setClipRect(paper);
        p.translate(paper.topLeft());
        p.scale(scale(), scale());
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        p.drawPicture(0, 0, *m_picture);
    }

private:
    qreal scale() const { return m_zoom * logicalDpiX() / 1440.0; }

    QSizeF m_pageTwips;
    const QPicture *m_picture = nullptr;
    qreal m_zoom = 0.75;
};

frmDrukPreview::frmDrukPreview(const PrintEngine::Job &job, const QList<QPicture> &pages, QSizeF pageTwips,
                               QWidget *parent)
    : QWidget(parent), m_job(job), m_pages(pages), m_pageTwips(pageTwips)
{
    setObjectName(QStringLiteral("frmDrukPreview"));
    setWindowTitle(QStringLiteral("Podgląd wydruku"));
    if (m_pages.isEmpty())
        m_pages.append(QPicture());

    auto *layout = new QVBoxLayout(this);
    auto *bar = new QHBoxLayout;
    auto *previous = new QPushButton(QStringLiteral("<"), this);
    previous->setObjectName(QStringLiteral("cmdmove_0"));
    previous->setToolTip(QStringLiteral("Poprzednia strona"));
    m_counter = new QLabel(this);
    m_counter->setObjectName(QStringLiteral("lblstrona"));
    auto *next = new QPushButton(QStringLiteral(">"), this);
    next->setObjectName(QStringLiteral("cmdmove_1"));
    next->setToolTip(QStringLiteral("Następna strona"));
    auto *zoom = new QComboBox(this);
    zoom->setObjectName(QStringLiteral("cmbpowiekszenie"));
    for (int percent : {50, 75, 100, 125, 150, 200})
        zoom->addItem(QString::number(percent) + QLatin1Char('%'), percent);
    zoom->setCurrentIndex(1);
    auto *maximise = new QPushButton(QStringLiteral("Powiększ okno"), this);
    maximise->setObjectName(QStringLiteral("cmdmax"));
    auto *printButton = new QPushButton(QStringLiteral("&Drukuj"), this);
    printButton->setObjectName(QStringLiteral("cmddrukuj"));
    auto *saveButton = new QPushButton(QStringLiteral("Zapisz"), this);
    saveButton->setObjectName(QStringLiteral("cmdzapisz"));
    saveButton->setToolTip(QStringLiteral("Zapisz wydruk w pliku PDF"));
    auto *close = new QPushButton(Msg(4), this);
    close->setObjectName(QStringLiteral("cmdkoniec"));
    for (QWidget *w : std::initializer_list<QWidget *>{previous, m_counter, next, zoom, maximise})
        bar->addWidget(w);
    bar->addStretch();
    for (QWidget *w : std::initializer_list<QWidget *>{printButton, saveButton, close})
        bar->addWidget(w);
    layout->addLayout(bar);

    m_scroll = new QScrollArea(this);
    m_scroll->setObjectName(QStringLiteral("picpodglad"));
    m_scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_scroll->verticalScrollBar()->setObjectName(QStringLiteral("suwakpionowy"));
    m_scroll->horizontalScrollBar()->setObjectName(QStringLiteral("suwakpoziomy"));
    m_page = new PreviewPage(m_pageTwips, m_scroll);
    m_scroll->setWidget(m_page);
    layout->addWidget(m_scroll);

    connect(previous, &QPushButton::clicked, this, [this] { showPage(m_current - 1); });
    connect(next, &QPushButton::clicked, this, [this] { showPage(m_current + 1); });
    connect(zoom, &QComboBox::currentIndexChanged, this,
            [this, zoom] { setZoom(zoom->currentData().toInt() / 100.0); });
    connect(maximise, &QPushButton::clicked, this, [this] {
        if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget()))
            frame->showMaximized();
        else
            showMaximized();
    });
    connect(printButton, &QPushButton::clicked, this, &frmDrukPreview::print);
    connect(saveButton, &QPushButton::clicked, this, &frmDrukPreview::save);
    connect(close, &QPushButton::clicked, this, [this] {
        if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget()))
            frame->close();
        else
            this->close();
    });
    showPage(0);
    resize(760, 820);
}

void frmDrukPreview::showPage(int index)
{
    if (index < 0 || index >= m_pages.size()) {
        dialogs().beep();
        return;
    }
    m_current = index;
    m_page->setPicture(&m_pages[index]);
    updateCounter();
}

void frmDrukPreview::setZoom(qreal zoom)
{
    m_page->setZoom(zoom);
}

void frmDrukPreview::updateCounter()
{
    m_counter->setText(QString::number(m_current + 1) + QLatin1Char('/') + QString::number(m_pages.size()));
}

void frmDrukPreview::print()
{
    if (m_job.procedure == QLatin1String("raport")) {
        dialogs().information(QStringLiteral("Wydrukuj raport z okienka 'Raporty'"));
        return;
    }
    PrintEngine::instance().setAmountPrinted(m_job.withAmount);
    PrintEngine::instance().setNextAnswers(m_job.answers);
    PrintEngine::instance().Drukuj(m_job.procedure, m_job.parameter, m_job.orientation, false, QStringLiteral("Cmd"));
}

void frmDrukPreview::save()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (dir.isEmpty())
        dir = QDir::homePath();
    const QString suggested = dir + QStringLiteral("/wydruk.pdf");
    QString fileName = dialogs().saveFileName(QStringLiteral("Zapisz"), suggested, QStringLiteral("Pliki PDF (*.pdf)"));
    if (fileName.isEmpty())
        return;
    // The file window asked about replacing the name it gave; a name completed here is asked about now.
    if (!fileName.endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) {
        fileName += QStringLiteral(".pdf");
        if (QFileInfo::exists(fileName) &&
            !dialogs().question(QStringLiteral("Plik %1 już istnieje. Zastąpić go?").arg(QDir::toNativeSeparators(fileName)), Msg(53)))
            return;
    }
    PrintEngine::instance().saveAsPdf(m_job, fileName, SafeOutput::Existing::Replace);
}
