#include "frmstart.h"

#include "Version.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

frmstart::frmstart(QWidget *parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmstart"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    setStyleSheet(QStringLiteral("frmstart { background: #f4f7fa; border: 1px solid #7a8ea5; }"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    auto *name = new QLabel(QStringLiteral("<span style='font-size:22pt; font-weight:bold; color:#2c4a6e'>Zlecanki</span>"), this);
    name->setObjectName(QStringLiteral("lblnazwa"));
    auto *version = new QLabel(QStringLiteral("wersja ") + QLatin1String(ZLECANKI_VERSION), this);
    version->setObjectName(QStringLiteral("lblwersja"));
    m_step = new QLabel(QStringLiteral("Uruchamiam..."), this);
    m_step->setObjectName(QStringLiteral("lblpostep"));
    m_bar = new QProgressBar(this);
    m_bar->setRange(0, 100);
    m_bar->setTextVisible(false);
    m_bar->setMaximumHeight(8);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addStretch();
    layout->addWidget(m_step);
    layout->addWidget(m_bar);
    setFixedSize(380, 180);
    if (const QScreen *screen = QApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void frmstart::showProgress(const QString &text, int percent)
{
    m_step->setText(text + QStringLiteral("... ") + QString::number(percent) + QLatin1Char('%'));
    m_bar->setValue(percent);
    repaint();
}
